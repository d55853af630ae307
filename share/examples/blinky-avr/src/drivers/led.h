#ifndef DRIVERS_LED_H
#define DRIVERS_LED_H

#include <stdbool.h>

/* Makes the pin an output with the LED off. */
void led_init(void);

void led_toggle(void);

/* What the pin shows now. */
bool led_is_on(void);

#endif
