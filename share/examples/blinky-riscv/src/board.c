#include "board.h"

#include <stddef.h>

#define BAUD 115200UL
#define TIMER_HZ 32768UL

#define REGISTER(address) (*(volatile uint32_t*)(address))

#define GPIO_OUTPUT_ENABLE REGISTER(0x10012008)
#define GPIO_OUTPUT REGISTER(0x1001200C)
#define GPIO_FUNCTION_ENABLE REGISTER(0x10012038)
#define GPIO_FUNCTION_SELECT REGISTER(0x1001203C)
#define PIN_TX (1UL << 17)
#define PIN_LED (1UL << 19) /* on at the low level */

#define UART0_TXDATA REGISTER(0x10013000)
#define UART0_TXCTRL REGISTER(0x10013008)
#define UART0_DIV REGISTER(0x10013018)
#define UART_TXDATA_FULL (1UL << 31)
#define UART_TXCTRL_ENABLE 1UL

#define MTIMECMP_LOW REGISTER(0x02004000)
#define MTIMECMP_HIGH REGISTER(0x02004004)
#define MTIME_LOW REGISTER(0x0200BFF8)
#define MTIME_HIGH REGISTER(0x0200BFFC)
#define MIE_MACHINE_TIMER (1UL << 7)
#define MSTATUS_MIE (1UL << 3)

static volatile bool is_time;
static uint64_t next_time;

/* The time is read in two halves; if the upper one has changed, the lower one has wrapped. */
static uint64_t timer_now(void) {
  uint32_t high, low;
  do {
    high = MTIME_HIGH;
    low = MTIME_LOW;
  } while (high != MTIME_HIGH);
  return (uint64_t)high << 32 | low;
}

static void timer_set(uint64_t time) {
  MTIMECMP_HIGH = UINT32_MAX; /* no interrupt between the halves */
  MTIMECMP_LOW = (uint32_t)time;
  MTIMECMP_HIGH = (uint32_t)(time >> 32);
}

void MachineTimer_Handler(void) {
  timer_set(UINT64_MAX);
  is_time = true;
}

void board_init(void) {
  GPIO_OUTPUT |= PIN_LED;
  GPIO_OUTPUT_ENABLE |= PIN_LED;
  GPIO_FUNCTION_SELECT &= ~PIN_TX;
  GPIO_FUNCTION_ENABLE |= PIN_TX;
  UART0_DIV = F_CPU / BAUD - 1;
  UART0_TXCTRL = UART_TXCTRL_ENABLE;

  next_time = timer_now();
  timer_set(UINT64_MAX);
  __asm volatile("csrs mie, %0" : : "r"(MIE_MACHINE_TIMER));
  __asm volatile("csrs mstatus, %0" : : "r"(MSTATUS_MIE));
}

void led_toggle(void) {
  GPIO_OUTPUT ^= PIN_LED;
}

bool led_is_on(void) {
  return (GPIO_OUTPUT & PIN_LED) == 0;
}

void wait_next(uint32_t milliseconds) {
  next_time += (uint64_t)milliseconds * TIMER_HZ / 1000;
  is_time = false;
  timer_set(next_time);
  /* The interrupt stays off while the flag is tested, or it could come just before the sleep; a
     core wakes up from a pending one all the same. */
  for (;;) {
    __asm volatile("csrc mstatus, %0" : : "r"(MSTATUS_MIE));
    if (is_time) break;
    __asm volatile("wfi");
    __asm volatile("csrs mstatus, %0" : : "r"(MSTATUS_MIE));
  }
  __asm volatile("csrs mstatus, %0" : : "r"(MSTATUS_MIE));
}

/* What printf() writes; see syscalls.c. */
void stdout_write(const char* data, size_t size) {
  for (size_t i = 0; i < size; ++i) {
    while ((UART0_TXDATA & UART_TXDATA_FULL) != 0) continue;
    UART0_TXDATA = (uint8_t)data[i];
  }
}
