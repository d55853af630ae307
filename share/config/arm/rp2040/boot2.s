/* Second-stage boot loader of the RP2040, the first 256 bytes of its flash. The boot ROM copies
   them to the RAM, compares the checksum in the last word, and runs them. They connect the flash to
   the address space and start the program that follows them.

   This file belongs to your project. It reads the flash with the command 03h and a single data
   line, which every serial flash chip has. A loader for the faster commands of your chip may
   replace it; the build stores the checksum. */

.syntax unified
.cpu cortex-m0plus
.thumb

#define PROGRAM 0x10000100 /* the vector table: initial stack pointer, reset handler */
#define VTOR 0xE000ED08    /* address of the vector table */

/* The serial interface of the flash, and its registers. */
#define SSI 0x18000000
#define CTRLR0 0x00
#define CTRLR1 0x04
#define SSIENR 0x08
#define SER 0x10
#define BAUDR 0x14
#define SPI_CTRLR0 0xF4

/* The clock of the flash is that of the system divided by this, an even number: 31 MHz at 125 MHz.
   Some chips can't answer 03h beyond 33 MHz. */
#define CLOCK_DIVIDER 4
/* Frames of 32 bits (31 << 16), one data line, command and address followed by data (3 << 8). */
#define FRAMES (31 << 16) | (3 << 8)
/* Each access sends the command 03h (<< 24) of 8 bits (2 << 8) and an address of 24 bits (6 times
   four bits, << 2), all on one line. */
#define ACCESS (0x03 << 24) | (2 << 8) | (6 << 2)

.section .boot2, "ax", %progbits
.global boot_stage2
.type boot_stage2, %function
.thumb_func
boot_stage2:
  /* The interface can only be set up while it is off. */
  ldr r0, =SSI
  movs r1, #0
  str r1, [r0, #SSIENR]
  movs r2, #CLOCK_DIVIDER
  str r2, [r0, #BAUDR]
  ldr r2, =FRAMES
  str r2, [r0, #CTRLR0]
  str r1, [r0, #CTRLR1] /* one frame for each access */
  ldr r2, =ACCESS
  ldr r3, =SSI + SPI_CTRLR0
  str r2, [r3]
  movs r1, #1
  str r1, [r0, #SER] /* the only chip that is connected */
  str r1, [r0, #SSIENR]

  ldr r0, =PROGRAM
  ldr r1, =VTOR
  str r0, [r1]
  ldmia r0!, {r1, r2}
  msr msp, r1
  bx r2

  .ltorg
  .org 252
  .word 0 /* the checksum */
.size boot_stage2, . - boot_stage2
