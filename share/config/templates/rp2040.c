/* Blinks an LED on an RP2040. The target of a board sets the number of its pin, LED_PIN, in
   Compiler.Defines. */

#include <stdint.h>

#ifndef LED_PIN
#define LED_PIN 25
#endif

#define REGISTER(address) (*(volatile uint32_t*)(address))

/* Peripherals start in reset. Writing a bit to the second address clears it in the register. */
#define RESETS_RESET_CLEAR REGISTER(0x4000C000 + 0x3000)
#define RESETS_DONE REGISTER(0x4000C008)
#define RESET_IO_BANK0 (1u << 5)
#define RESET_PADS_BANK0 (1u << 8)

/* Selects what drives a pin. */
#define GPIO_CONTROL(pin) REGISTER(0x40014004 + 8 * (pin))
#define FUNCTION_SIO 5

/* Outputs that the processor drives. */
#define SIO_OUT_SET REGISTER(0xD0000014)
#define SIO_OUT_CLEAR REGISTER(0xD0000018)
#define SIO_ENABLE_SET REGISTER(0xD0000024)

static void led_init(void) {
  const uint32_t needed = RESET_IO_BANK0 | RESET_PADS_BANK0;
  RESETS_RESET_CLEAR = needed;
  while ((RESETS_DONE & needed) != needed) {
  }
  SIO_OUT_CLEAR = 1u << LED_PIN;
  SIO_ENABLE_SET = 1u << LED_PIN;
  GPIO_CONTROL(LED_PIN) = FUNCTION_SIO;
}

static void wait(void) {
  for (volatile unsigned int i = 0; i < 200000; ++i) {
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
