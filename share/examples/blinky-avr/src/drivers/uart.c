#include "drivers/uart.h"

#include <avr/interrupt.h>
#include <avr/io.h>
#include <avr/pgmspace.h>
#include <stdbool.h>
#include <stdlib.h>

#include "board.h"

#define BAUD BOARD_BAUD
#include <util/setbaud.h>

/* One writer and one reader, each with an index of its own in one byte: no lock needed. A power of
   two, so that the wrap is a mask. */
#define QUEUE_SIZE 64
#define QUEUE_MASK (QUEUE_SIZE - 1)

static volatile char queue[QUEUE_SIZE];
static volatile uint8_t queue_in;
static volatile uint8_t queue_out;
static volatile bool anything_sent;

ISR(USART_UDRE_vect) {
  if (queue_in == queue_out) {
    UCSR0B &= (uint8_t)~_BV(UDRIE0);
    return;
  }
  /* Cleared before the byte goes, so that it shows when this byte, not an earlier one, is out. */
  UCSR0A |= _BV(TXC0);
  UDR0 = (uint8_t)queue[queue_out];
  queue_out = (queue_out + 1) & QUEUE_MASK;
  anything_sent = true;
}

void uart_init(void) {
  UBRR0 = UBRR_VALUE;
#if USE_2X
  UCSR0A = _BV(U2X0);
#else
  UCSR0A = 0;
#endif
  UCSR0C = _BV(UCSZ01) | _BV(UCSZ00);
  UCSR0B = _BV(TXEN0);
}

void uart_put(char c) {
  const uint8_t next = (queue_in + 1) & QUEUE_MASK;
  while (next == queue_out) continue;
  queue[queue_in] = c;
  queue_in = next;
  UCSR0B |= _BV(UDRIE0);
}

void uart_puts_P(const char* text) {
  char c;
  while ((c = (char)pgm_read_byte(text++)) != '\0') uart_put(c);
}

void uart_put_number(uint16_t number) {
  char digits[6];
  utoa(number, digits, 10);
  for (const char* p = digits; *p != '\0'; ++p) uart_put(*p);
}

void uart_flush(void) {
  while (queue_in != queue_out) continue;
  if (!anything_sent) return;
  while ((UCSR0A & _BV(TXC0)) == 0) continue;
}
