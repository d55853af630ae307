#ifndef BLINKER_H
#define BLINKER_H

#include <stdbool.h>
#include <stdint.h>

/* A rhythm: how long each phase of the LED lasts. It starts slowly and gets faster. Knows nothing
   of the hardware. */
typedef struct {
  uint16_t phase_ms;
  uint8_t phases_left;
} blinker_t;

void blinker_start(blinker_t* blinker, uint16_t first_phase_ms, uint8_t phases);

/* Gives the length of the next phase, or false when the rhythm is over. */
bool blinker_next(blinker_t* blinker, uint16_t* phase_ms);

#endif
