#include "drivers/ticks.h"

#include <avr/interrupt.h>
#include <avr/io.h>
#include <avr/sleep.h>
#include <util/atomic.h>

#define TICKS_PRESCALER 64UL
#define TICKS_PER_SECOND 1000UL

static volatile uint16_t ticks;

ISR(TIMER1_COMPA_vect) {
  ++ticks;
}

void ticks_init(void) {
  OCR1A = (uint16_t)(F_CPU / TICKS_PRESCALER / TICKS_PER_SECOND - 1);
  TCCR1A = 0;
  TCCR1B = _BV(WGM12) | _BV(CS11) | _BV(CS10); /* clear on compare, clock / 64 */
  TIMSK1 = _BV(OCIE1A);
}

uint16_t ticks_now(void) {
  uint16_t now;
  /* Two bytes: without the lock an interrupt between them gives a number that never was. */
  ATOMIC_BLOCK(ATOMIC_RESTORESTATE) {
    now = ticks;
  }
  return now;
}

void ticks_wait_until(uint16_t start, uint16_t milliseconds) {
  set_sleep_mode(SLEEP_MODE_IDLE);
  while ((uint16_t)(ticks_now() - start) < milliseconds) sleep_mode();
}
