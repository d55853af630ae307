#include "drivers/led.h"

#include "board.h"

void led_init(void) {
  BOARD_LED_PORT &= (uint8_t)~_BV(BOARD_LED_BIT);
  BOARD_LED_DDR |= _BV(BOARD_LED_BIT);
}

void led_toggle(void) {
  /* A one written to the input register flips the output in a single cycle, so no interrupt can
     come between reading and writing the port. */
  BOARD_LED_PIN_INPUT = _BV(BOARD_LED_BIT);
}

bool led_is_on(void) {
  return (BOARD_LED_PORT & _BV(BOARD_LED_BIT)) != 0;
}
