/* Blinks the LED of an ATmega328P board eight times, each time faster, tells of it on the serial
   line, and goes to sleep. */

#include <avr/interrupt.h>
#include <avr/pgmspace.h>
#include <avr/sleep.h>

#include "blinker.h"
#include "drivers/led.h"
#include "drivers/ticks.h"
#include "drivers/uart.h"

#define FIRST_PHASE_MS 200
#define PHASES 16

static void report(uint16_t time) {
  uart_put_number(time);
  uart_puts_P(led_is_on() ? PSTR(" ms: LED on\n") : PSTR(" ms: LED off\n"));
}

/* Nothing wakes the chip again but a reset; the simulator ends here. */
static void power_down(void) {
  uart_flush();
  cli();
  set_sleep_mode(SLEEP_MODE_PWR_DOWN);
  sleep_enable();
  for (;;) sleep_cpu();
}

int main(void) {
  led_init();
  uart_init();
  ticks_init();
  sei();

#ifdef DEBUG
  uart_puts_P(PSTR("blinky (debug)\n"));
#else
  uart_puts_P(PSTR("blinky\n"));
#endif

  blinker_t blinker;
  uint16_t phase_ms;
  uint16_t start = ticks_now();
  blinker_start(&blinker, FIRST_PHASE_MS, PHASES);
  while (blinker_next(&blinker, &phase_ms)) {
    led_toggle();
    report(start);
    ticks_wait_until(start, phase_ms);
    start += phase_ms;
  }

  uart_puts_P(PSTR("good night\n"));
  power_down();
}
