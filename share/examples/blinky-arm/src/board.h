#ifndef BOARD_H
#define BOARD_H

#include <stdbool.h>
#include <stdint.h>

/* The evaluation board of the LM3S6965: its status LED at port F, pin 0, and the serial port of the
   debugger, 115200 baud. */
void board_init(void);

void led_toggle(void);
bool led_is_on(void);

/* Milliseconds since the start. */
uint32_t ticks_now(void);

/* Sleeps between the ticks. */
void ticks_wait_until(uint32_t start, uint32_t milliseconds);

#endif
