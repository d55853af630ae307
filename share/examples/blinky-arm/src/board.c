#include "board.h"

#include <stddef.h>

#define BAUD 115200UL

#define REGISTER(address) (*(volatile uint32_t*)(address))

/* System control: clocks of the peripherals. */
#define RCGC1 REGISTER(0x400FE104)
#define RCGC2 REGISTER(0x400FE108)
#define RCGC1_UART0 (1U << 0)
#define RCGC2_GPIOA (1U << 0)
#define RCGC2_GPIOF (1U << 5)

/* Port A, pins 0 and 1: serial port. Port F, pin 0: LED. The address of a data register selects the
   pins that an access reads and writes. */
#define GPIOA_AFSEL REGISTER(0x40004420)
#define GPIOA_DEN REGISTER(0x4000451C)
#define GPIOF_PIN0 REGISTER(0x40025004)
#define GPIOF_DIR REGISTER(0x40025400)
#define GPIOF_DEN REGISTER(0x4002551C)

#define UART0_DR REGISTER(0x4000C000)
#define UART0_FR REGISTER(0x4000C018)
#define UART0_IBRD REGISTER(0x4000C024)
#define UART0_FBRD REGISTER(0x4000C028)
#define UART0_LCRH REGISTER(0x4000C02C)
#define UART0_CTL REGISTER(0x4000C030)
#define UART_FR_BUSY (1U << 3)
#define UART_FR_TXFF (1U << 5)
#define UART_LCRH_8BITS_FIFO (0x7U << 4)
#define UART_CTL_ENABLE_TX ((1U << 0) | (1U << 8))

#define SYST_CSR REGISTER(0xE000E010)
#define SYST_RVR REGISTER(0xE000E014)
#define SYST_CVR REGISTER(0xE000E018)
#define SYST_CSR_ENABLE_INTERRUPT_CORE_CLOCK 7U

static volatile uint32_t ticks;

void SysTick_Handler(void) {
  ticks = ticks + 1;
}

void board_init(void) {
  RCGC1 |= RCGC1_UART0;
  RCGC2 |= RCGC2_GPIOA | RCGC2_GPIOF;
  (void)RCGC2; /* The clocks need some cycles before the registers can be used. */

  GPIOF_DIR |= 1;
  GPIOF_DEN |= 1;

  /* The divisor in 64ths, rounded. */
  const uint32_t divisor = (F_CPU * 4 + BAUD / 2) / BAUD;
  GPIOA_AFSEL |= 3;
  GPIOA_DEN |= 3;
  UART0_CTL = 0;
  UART0_IBRD = divisor / 64;
  UART0_FBRD = divisor % 64;
  UART0_LCRH = UART_LCRH_8BITS_FIFO;
  UART0_CTL = UART_CTL_ENABLE_TX;

  SYST_RVR = F_CPU / 1000 - 1;
  SYST_CVR = 0;
  SYST_CSR = SYST_CSR_ENABLE_INTERRUPT_CORE_CLOCK;
}

void led_toggle(void) {
  GPIOF_PIN0 ^= 1;
}

bool led_is_on(void) {
  return (GPIOF_PIN0 & 1) != 0;
}

uint32_t ticks_now(void) {
  return ticks;
}

void ticks_wait_until(uint32_t start, uint32_t milliseconds) {
  while (ticks - start < milliseconds) __asm volatile("wfi");
}

/* What printf() writes; see syscalls.c. */
void stdout_write(const char* data, size_t size) {
  for (size_t i = 0; i < size; ++i) {
    while ((UART0_FR & UART_FR_TXFF) != 0) continue;
    UART0_DR = (uint8_t)data[i];
  }
  while ((UART0_FR & UART_FR_BUSY) != 0) continue;
}
