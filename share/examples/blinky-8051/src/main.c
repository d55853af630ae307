/* Blinks the LED of an 8052 board twice a second and tells of it on the serial line. */

#include "board.h"
#include "serial.h"
#include "ticks.h"

#define PHASE_TICKS 25

void main(void) {
  serial_init();
  ticks_init();
  EA = 1;

  serial_puts("blinky\r\n");
  for (;;) {
    BOARD_LED = 0;
    serial_puts("LED on\r\n");
    ticks_wait(PHASE_TICKS);
    BOARD_LED = 1;
    serial_puts("LED off\r\n");
    ticks_wait(PHASE_TICKS);
  }
}
