/* Start-up code of a Cortex-M: the vector table, and what happens between reset and main.

   This file belongs to your project. Any function named Something_Handler or IRQn_Handler in your
   sources takes the place of the one here; the number of interrupts is INTERRUPTS, and the
   addresses come from the linker script. */

#include <stdint.h>

/* Interrupts of the device, rounded up to a multiple of ten, at most 240. */
#ifndef INTERRUPTS
#if defined(__ARM_ARCH_6M__)
#define INTERRUPTS 32
#else
#define INTERRUPTS 100
#endif
#endif

extern uint32_t __data_start[], __data_end[], __data_load[];
extern uint32_t __bss_start[], __bss_end[];
extern uint32_t __stack_top[];
extern char __tls_base[];
extern void (*const __preinit_array_start[])(void), (*const __preinit_array_end[])(void);
extern void (*const __init_array_start[])(void), (*const __init_array_end[])(void);

int main(void);
void exit(int) __attribute__((noreturn));

/* Called before the variables have their values, for clocks and memories that have to be switched
   on first. */
__attribute__((weak)) void SystemInit(void) {}

/* Sets the base of the thread-local variables; only in C libraries that have some. */
__attribute__((weak)) void _set_tls(void* base);

/* Owner of the destructors of global objects in C++. */
__attribute__((weak)) void* __dso_handle = 0;

static void run_all(void (*const* from)(void), void (*const* to)(void)) {
  while (from != to) (*from++)();
}

static void enable_fpu(void) {
#if defined(__ARM_FP) && !defined(__SOFTFP__)
  volatile uint32_t* const cpacr = (volatile uint32_t*)0xE000ED88;
  *cpacr |= 0xFu << 20;
  __asm volatile("dsb\n isb" ::: "memory");
#endif
}

/* Copies and clears memory word by word. The volatile targets stop the compiler from making these
   loops calls of memcpy and memset. */
static void init_variables(void) {
  const uint32_t* from = __data_load;
  for (volatile uint32_t* to = __data_start; to < __data_end; ++to) *to = *from++;
  for (volatile uint32_t* to = __bss_start; to < __bss_end; ++to) *to = 0;
}

__attribute__((noreturn, used)) void Reset_Handler(void);

/* A fault or an interrupt that nothing handles. Stops here, where a debugger finds it. */
__attribute__((used)) void Default_Handler(void) {
#ifdef SEMIHOSTING
  /* In a simulator, ends the run. */
  void _exit(int) __attribute__((noreturn));
  _exit(254);
#else
  for (;;) __asm volatile("");
#endif
}

#define HANDLER(name) void name(void) __attribute__((weak, alias("Default_Handler")));
HANDLER(NMI_Handler)
HANDLER(HardFault_Handler)
HANDLER(MemManage_Handler)
HANDLER(BusFault_Handler)
HANDLER(UsageFault_Handler)
HANDLER(SecureFault_Handler)
HANDLER(SVC_Handler)
HANDLER(DebugMon_Handler)
HANDLER(PendSV_Handler)
HANDLER(SysTick_Handler)

/* clang-format off */

/* Ten interrupts each, as declarations and as entries of the table. */
#define IRQ(n) IRQ##n##_Handler
#define DECLARE(t)                                                                          \
  HANDLER(IRQ(t##0)) HANDLER(IRQ(t##1)) HANDLER(IRQ(t##2)) HANDLER(IRQ(t##3)) HANDLER(IRQ(t##4)) \
  HANDLER(IRQ(t##5)) HANDLER(IRQ(t##6)) HANDLER(IRQ(t##7)) HANDLER(IRQ(t##8)) HANDLER(IRQ(t##9))
#define ENTER(t)                                                                       \
  IRQ(t##0), IRQ(t##1), IRQ(t##2), IRQ(t##3), IRQ(t##4), IRQ(t##5), IRQ(t##6), IRQ(t##7), \
      IRQ(t##8), IRQ(t##9),

/* Expands to X(tens) for all interrupts. */
#if INTERRUPTS > 10
#define UP_TO_20(X) X(1)
#else
#define UP_TO_20(X)
#endif
#if INTERRUPTS > 20
#define UP_TO_40(X) X(2) X(3)
#else
#define UP_TO_40(X)
#endif
#if INTERRUPTS > 40
#define UP_TO_60(X) X(4) X(5)
#else
#define UP_TO_60(X)
#endif
#if INTERRUPTS > 60
#define UP_TO_100(X) X(6) X(7) X(8) X(9)
#else
#define UP_TO_100(X)
#endif
#if INTERRUPTS > 100
#define UP_TO_160(X) X(10) X(11) X(12) X(13) X(14) X(15)
#else
#define UP_TO_160(X)
#endif
#if INTERRUPTS > 160
#define UP_TO_240(X) X(16) X(17) X(18) X(19) X(20) X(21) X(22) X(23)
#else
#define UP_TO_240(X)
#endif
#define ALL(X) X() UP_TO_20(X) UP_TO_40(X) UP_TO_60(X) UP_TO_100(X) UP_TO_160(X) UP_TO_240(X)

ALL(DECLARE)

typedef void (*vector)(void);

#define VECTORS                                                                              \
  {(vector)__stack_top, Reset_Handler,       NMI_Handler,        HardFault_Handler,          \
   MemManage_Handler,   BusFault_Handler,    UsageFault_Handler, SecureFault_Handler,        \
   0,                   0,                   0,                  SVC_Handler,                \
   DebugMon_Handler,    0,                   PendSV_Handler,     SysTick_Handler,            \
   ALL(ENTER)}

/* clang-format on */

#if defined(FLASH_HEADER_XMC1000)
/* The vector table is in the ROM. Exception n goes to address 4 * n of the RAM, whose instructions
   load the address of the handler from the table after them and jump to it:
   ldr r0, [pc, #...]; mov pc, r0. */
#define VECTOR_COUNT (sizeof((const vector[])VECTORS) / sizeof(vector))
#define VENEER (0x46874800u + VECTOR_COUNT - 1)

__attribute__((section(".ram_vectors"), used)) struct {
  uint32_t veneers[VECTOR_COUNT];
  vector handlers[VECTOR_COUNT];
} ram_vectors = {{[0 ... VECTOR_COUNT - 1] = VENEER}, VECTORS};

/* Where the boot ROM finds the stack, the entry and two settings of the clock, CLK_VAL1 and
   CLK_VAL2. With bit 31 it leaves the clock as it is after reset. */
__attribute__((section(".vectors"), used)) const vector vectors[] = {
    (vector)__stack_top, Reset_Handler, 0, 0, (vector)0x80000000, (vector)0x80000000};
#else
__attribute__((section(".vectors"), used)) const vector vectors[] = VECTORS;
#endif

#if defined(FLASH_HEADER_KINETIS)
/* The configuration field, at 0x400: a key, the protection of the flash (FPROT), the security
   (FSEC), the start (FOPT) and the protection of EEPROM and data flash. FSEC must stay 0xFE, unless
   the device is to be locked. */
__attribute__((section(".flash_config"), used)) const uint8_t flash_config[16] = {
    0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFE, 0xFF, 0xFF, 0xFF};
#elif defined(FLASH_HEADER_RENESAS_RA)
/* The option-setting memory, at 0x400: OFS0, OFS1 and the areas that the security MPU protects, as
   in an erased device. */
__attribute__((section(".flash_config"), used))
const uint8_t flash_config[64] = {[0 ... 63] = 0xFF};
#endif

void Reset_Handler(void) {
  /* The table may be anywhere, as after a boot loader. Cores without this register ignore it. */
  *(volatile uintptr_t*)0xE000ED08 = (uintptr_t)vectors;
  enable_fpu();
  SystemInit();
  init_variables();
  if (_set_tls) _set_tls(__tls_base);
  run_all(__preinit_array_start, __preinit_array_end);
  run_all(__init_array_start, __init_array_end);
#ifdef SEMIHOSTING
  exit(main());
#else
  main();
  for (;;) __asm volatile("wfi");
#endif
}
