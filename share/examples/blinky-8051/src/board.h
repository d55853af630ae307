#ifndef BOARD_H
#define BOARD_H

#include <mcs51/8052.h>

/* An 8052 with the 11.0592 MHz crystal that divides down to the usual baud rates without error.
   The clock comes from the project's options as F_CPU. The LED hangs between the supply and port 1,
   pin 0, so a low pin lights it. */
#define BOARD_CYCLES_PER_SECOND (F_CPU / 12)
#define BOARD_BAUD 9600UL
#define BOARD_LED P1_0

#endif
