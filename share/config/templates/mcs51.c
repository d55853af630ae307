/* Blinks an LED at P1.0 ten times. */

__sfr __at(0x87) PCON;
__sfr __at(0x90) P1;

static void wait(void) {
  for (volatile unsigned int i = 0; i < 2000; ++i) {
  }
}

void main(void) {
  for (unsigned char i = 0; i < 20; ++i) {
    P1 ^= 1;
    wait();
  }
  PCON |= 2; /* power down */
  for (;;) {
  }
}
