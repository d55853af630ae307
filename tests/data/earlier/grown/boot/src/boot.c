#include "level.h"
#ifndef BOOT
#error BOOT
#endif
int main(void) { return LEVEL - 2; }
