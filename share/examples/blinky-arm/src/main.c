/* Blinks the LED of an LM3S6965 board eight times, each time faster, reports it on the serial line,
   and ends. */

#include <stdio.h>

#include "blinker.h"
#include "board.h"

#define FIRST_PHASE_MS 200
#define PHASES 16

int main(void) {
  board_init();
#ifdef DEBUG
  puts("blinky (debug)");
#else
  puts("blinky");
#endif

  blinker_t blinker;
  uint16_t phase_ms;
  uint32_t start = ticks_now();
  blinker_start(&blinker, FIRST_PHASE_MS, PHASES);
  while (blinker_next(&blinker, &phase_ms)) {
    led_toggle();
    printf("%u ms: LED %s\n", (unsigned)start, led_is_on() ? "on" : "off");
    ticks_wait_until(start, phase_ms);
    start += phase_ms;
  }
  puts("good night");
  return 0;
}
