/* Blinks an LED ten times. Replace led_set() by what your board needs: a board's target sets
   LED_PIN, and often LED_PORT, in Compiler.Defines. With Target.Semihosting, a debugger or
   simulator shows the state of the LED, and the end of main() ends a simulation. */

#ifdef SEMIHOSTING
#include <stdio.h>
#endif

static volatile unsigned char led;

static void led_set(unsigned char on) {
  led = on;
#ifdef SEMIHOSTING
  puts(on ? "on" : "off");
#endif
}

static void wait(void) {
  for (volatile unsigned int i = 0; i < 100000; ++i) {
  }
}

int main(void) {
  for (unsigned char i = 0; i < 20; ++i) {
    led_set(!led);
    wait();
  }
  return 0;
}
