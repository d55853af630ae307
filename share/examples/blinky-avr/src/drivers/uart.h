#ifndef DRIVERS_UART_H
#define DRIVERS_UART_H

#include <stdint.h>

/* USART 0, 8 data bits, no parity, one stop bit, at the board's baud rate; transmits only. */
void uart_init(void);

/* Queues a byte; waits only while the queue is full. SignalHandler must be enabled. */
void uart_put(char c);

/* A text in program memory, so that it takes no RAM. */
void uart_puts_P(const char* text);

void uart_put_number(uint16_t number);

/* Waits until the last bit has left the pin. */
void uart_flush(void);

#endif
