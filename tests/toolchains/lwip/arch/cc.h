#ifndef ARCH_CC_H
#define ARCH_CC_H

#include <stdio.h>
#include <stdlib.h>

#define LWIP_PLATFORM_DIAG(message) \
  do {                              \
    printf message;                 \
  } while (0)
#define LWIP_PLATFORM_ASSERT(message) \
  do {                                \
    puts(message);                    \
    exit(2);                          \
  } while (0)
#define LWIP_RAND() ((unsigned)rand())

#endif
