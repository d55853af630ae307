/* Tells the boot ROM of the RP2350 that the flash has a program: a block in its first 4 KB, which
   the linker script puts after the vector table.

   This file belongs to your project. The boot ROM connects the flash to the address space by
   itself, takes the stack pointer and the reset handler from the vector table, and starts the
   program. */

#include <stdint.h>

__attribute__((section(".image_def"), used)) const uint32_t image_definition[] = {
    0xFFFFDED3, /* start of a block */
    0x10210142, /* type of the image, one word: a program for the secure state of the Arm cores */
    0x000001FF, /* end of the items, which take one word */
    0x00000000, /* no further block */
    0xAB123579, /* end of the block */
};
