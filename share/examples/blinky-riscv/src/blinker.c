#include "blinker.h"

#define SHORTEST_PHASE_MS 10

void blinker_start(blinker_t* blinker, uint16_t first_phase_ms, uint8_t phases) {
  blinker->phase_ms = first_phase_ms;
  blinker->phases_left = phases;
}

bool blinker_next(blinker_t* blinker, uint16_t* phase_ms) {
  if (blinker->phases_left == 0) return false;
  --blinker->phases_left;
  *phase_ms = blinker->phase_ms;
  blinker->phase_ms -= blinker->phase_ms / 4;
  if (blinker->phase_ms < SHORTEST_PHASE_MS) blinker->phase_ms = SHORTEST_PHASE_MS;
  return true;
}
