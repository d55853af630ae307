#include "serial.h"

#include "board.h"

#define RELOAD (256UL - BOARD_CYCLES_PER_SECOND / 32 / BOARD_BAUD)

void serial_init(void) {
  TMOD = (TMOD & 0x0F) | T1_M1; /* 8 bits with automatic reload */
  TH1 = (uint8_t)RELOAD;
  TL1 = (uint8_t)RELOAD;
  TR1 = 1;
  SM1 = 1; /* 8 data bits, rate from timer 1 */
}

static void put(char c) {
  SBUF = (uint8_t)c;
  while (!TI) continue;
  TI = 0;
}

void serial_puts(const char __code* text) {
  while (*text != '\0') put(*text++);
}
