/* Blinks an LED on an RP2350. The target of a board sets the number of its pin, LED_PIN, in
   Compiler.Defines. */

#include <stdint.h>

#ifndef LED_PIN
#define LED_PIN 25
#endif

#define REGISTER(address) (*(volatile uint32_t*)(address))

/* Writing a bit to the second address of a peripheral's register clears it. */
#define CLEAR_ALIAS 0x3000

/* Peripherals start in reset. */
#define RESETS_RESET 0x40020000
#define RESETS_DONE REGISTER(0x40020008)
#define RESET_IO_BANK0 (1u << 6)
#define RESET_PADS_BANK0 (1u << 9)

/* Selects what drives a pin. */
#define GPIO_CONTROL(pin) REGISTER(0x40028004 + 8 * (pin))
#define FUNCTION_SIO 5

/* Pads start isolated: they keep their state. */
#define PAD(pin) (0x40038004 + 4 * (pin))
#define PAD_ISOLATED (1u << 8)

/* Outputs that the processor drives. */
#define SIO_OUT_SET REGISTER(0xD0000018)
#define SIO_OUT_CLEAR REGISTER(0xD0000020)
#define SIO_ENABLE_SET REGISTER(0xD0000038)

static void led_init(void) {
  const uint32_t needed = RESET_IO_BANK0 | RESET_PADS_BANK0;
  REGISTER(RESETS_RESET + CLEAR_ALIAS) = needed;
  while ((RESETS_DONE & needed) != needed) {
  }
  SIO_OUT_CLEAR = 1u << LED_PIN;
  SIO_ENABLE_SET = 1u << LED_PIN;
  GPIO_CONTROL(LED_PIN) = FUNCTION_SIO;
  REGISTER(PAD(LED_PIN) + CLEAR_ALIAS) = PAD_ISOLATED;
}

static void wait(void) {
  for (volatile unsigned int i = 0; i < 300000; ++i) {
  }
}

int main(void) {
  led_init();
  for (;;) {
    SIO_OUT_SET = 1u << LED_PIN;
    wait();
    SIO_OUT_CLEAR = 1u << LED_PIN;
    wait();
  }
}
