#ifndef SERIAL_H
#define SERIAL_H

#include <stdint.h>

/* Sets up the serial port for the board's baud rate, by timer 1; transmits only. */
void serial_init(void);

/* Writes a text that lies in code memory, waiting for each byte. */
void serial_puts(const char __code* text);

#endif
