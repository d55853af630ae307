#ifndef TICKS_H
#define TICKS_H

#include <stdint.h>

/* Starts a tick of ten milliseconds on timer 0. */
void ticks_init(void);

/* Idles for a number of ticks. */
void ticks_wait(uint8_t count);

/* Declared where main() sees it: the compiler fills the vector table from there. */
void ticks_interrupt(void) __interrupt(TF0_VECTOR);

#endif
