#ifndef BOARD_H
#define BOARD_H

#include <stdbool.h>
#include <stdint.h>

/* A HiFive1 board with an FE310: its green LED at pin 19 and the serial port of the debugger,
   115200 baud. */
void board_init(void);

void led_toggle(void);
bool led_is_on(void);

/* Sleeps until so much time has passed since the call before, or since board_init(). */
void wait_next(uint32_t milliseconds);

#endif
