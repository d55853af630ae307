/* Blinks an LED at PB5 ten times. */

#define PB_ODR (*(volatile unsigned char*)0x5005)
#define PB_DDR (*(volatile unsigned char*)0x5007)
#define PB_CR1 (*(volatile unsigned char*)0x5008)
#define LED (1 << 5)

static void wait(void) {
  for (volatile unsigned int i = 0; i < 2000; ++i) {
  }
}

void main(void) {
  PB_DDR |= LED;
  PB_CR1 |= LED; /* push-pull */
  for (unsigned char i = 0; i < 20; ++i) {
    PB_ODR ^= LED;
    wait();
  }
  __asm__("halt");
  for (;;) {
  }
}
