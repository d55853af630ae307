#ifndef BOARD_H
#define BOARD_H

#include <avr/io.h>

/* An ATmega328P with its 16 MHz crystal and the usual LED at port B, pin 5 (high is on). The clock
   comes from the project's options as F_CPU. */
#define BOARD_LED_DDR DDRB
#define BOARD_LED_PORT PORTB
#define BOARD_LED_PIN_INPUT PINB
#define BOARD_LED_BIT PB5

/* The rate that terminals expect. From 16 MHz it comes out 2.1 % fast, which receivers take, while
   the C library warns of anything above 2 %. 57600 would be within 1 %. */
#define BOARD_BAUD 115200UL

#endif
