/* Blinks an LED ten times. A board's target sets LED_PORT and LED_PIN in Compiler.Defines; set them
   there for a circuit of your own. */

#include <avr/interrupt.h>
#include <avr/io.h>
#include <avr/sleep.h>
#include <util/delay.h>

#ifndef LED_PORT
#ifdef __AVR_XMEGA__
#define LED_PORT C
#else
#define LED_PORT B
#endif
#define LED_PIN 0
#endif

#define JOIN_NAMES(a, b) a##b
#define JOIN(a, b) JOIN_NAMES(a, b)
#define LED (1 << LED_PIN)

static void led_init(void) {
#ifdef __AVR_XMEGA__
  JOIN(PORT, LED_PORT).DIRSET = LED;
#else
  JOIN(DDR, LED_PORT) |= LED;
#endif
}

static void led_toggle(void) {
#ifdef __AVR_XMEGA__
  JOIN(PORT, LED_PORT).OUTTGL = LED;
#else
  JOIN(PORT, LED_PORT) ^= LED;
#endif
}

int main(void) {
  led_init();
  for (unsigned char i = 0; i < 20; ++i) {
    led_toggle();
    _delay_ms(100);
  }
  /* A sleep from which no interrupt wakes the part also ends a simulation. */
  cli();
  for (;;) sleep_mode();
}
