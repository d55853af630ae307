#ifndef DRIVERS_TICKS_H
#define DRIVERS_TICKS_H

#include <stdint.h>

/* Starts a count of milliseconds on timer 1. SignalHandler must be enabled for it to run. */
void ticks_init(void);

/* Milliseconds since the start; wraps after about 65 seconds. Differences of two readings are right
   across the wrap as long as they are taken in 16 bits. */
uint16_t ticks_now(void);

/* Sleeps until the next tick, and longer when another interrupt isn't the one waited for. */
void ticks_wait_until(uint16_t start, uint16_t milliseconds);

#endif
