#include "board.h"

#include "ticks.h"

#define TICKS_PER_SECOND 100
#define RELOAD (65536UL - BOARD_CYCLES_PER_SECOND / TICKS_PER_SECOND)

static volatile uint8_t ticks;

void ticks_interrupt(void) __interrupt(TF0_VECTOR) {
  /* Mode 1 doesn't reload by itself. The timer stands still for the few cycles of the two writes,
     which is a lag of well below one part in a thousand. */
  TR0 = 0;
  TH0 = (uint8_t)(RELOAD >> 8);
  TL0 = (uint8_t)RELOAD;
  TR0 = 1;
  ++ticks;
}

void ticks_init(void) {
  TMOD = (TMOD & 0xF0) | T0_M0;
  TH0 = (uint8_t)(RELOAD >> 8);
  TL0 = (uint8_t)RELOAD;
  ET0 = 1;
  TR0 = 1;
}

void ticks_wait(uint8_t count) {
  const uint8_t start = ticks;
  while ((uint8_t)(ticks - start) < count) PCON |= IDL;
}
