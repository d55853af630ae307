#define LEVEL 2
