/* Start-up code of a RISC-V microcontroller: what happens between reset and main, and traps.

   This file belongs to your project. A function of your sources with the name of one of the
   handlers takes its place; the addresses come from the linker script. */

#include <stdint.h>

extern uintptr_t __data_start[], __data_end[], __data_load[];
extern uintptr_t __bss_start[], __bss_end[];
extern char __tls_base[];
extern void (*const __preinit_array_start[])(void), (*const __preinit_array_end[])(void);
extern void (*const __init_array_start[])(void), (*const __init_array_end[])(void);

int main(void);
void exit(int) __attribute__((noreturn));
void _exit(int) __attribute__((noreturn));

/* Called before the variables have their values, for clocks and memories that have to be switched
   on first. */
__attribute__((weak)) void SystemInit(void) {}

/* Owner of the destructors of global objects in C++. */
__attribute__((weak)) void* __dso_handle = 0;

/* A trap that nothing handles. Stops here, where a debugger finds it. */
__attribute__((used)) void Default_Handler(void) {
#ifdef SEMIHOSTING
  /* In a simulator, ends the run. */
  _exit(254);
#else
  for (;;) __asm volatile("");
#endif
}

#define HANDLER(name) void name(void) __attribute__((weak, alias("Default_Handler")));
HANDLER(Exception_Handler)
HANDLER(MachineSoftware_Handler)
HANDLER(MachineTimer_Handler)
HANDLER(MachineExternal_Handler)
HANDLER(OtherInterrupt_Handler)

__attribute__((interrupt("machine"), used, aligned(4))) static void on_trap(void) {
  intptr_t cause;
  __asm volatile("csrr %0, mcause" : "=r"(cause));
  if (cause >= 0) {
    Exception_Handler();
    return;
  }
  switch (cause & 0xFFF) {
    case 3:
      MachineSoftware_Handler();
      break;
    case 7:
      MachineTimer_Handler();
      break;
    case 11:
      MachineExternal_Handler();
      break;
    default:
      OtherInterrupt_Handler();
  }
}

static void run_all(void (*const* from)(void), void (*const* to)(void)) {
  while (from != to) (*from++)();
}

/* Copies and clears memory word by word. The volatile targets stop the compiler from making these
   loops calls of memcpy and memset. */
static void init_variables(void) {
  const uintptr_t* from = __data_load;
  for (volatile uintptr_t* to = __data_start; to < __data_end; ++to) *to = *from++;
  for (volatile uintptr_t* to = __bss_start; to < __bss_end; ++to) *to = 0;
}

__attribute__((noreturn, used)) static void run(void) {
  __asm volatile("csrw mtvec, %0" : : "r"(&on_trap));
#if defined(__riscv_flen)
  /* Switches the floating-point unit on. */
  __asm volatile("csrs mstatus, %0" : : "r"(1 << 13));
#endif
  SystemInit();
  init_variables();
  __asm volatile("mv tp, %0" : : "r"(__tls_base));
  run_all(__preinit_array_start, __preinit_array_end);
  run_all(__init_array_start, __init_array_end);
#ifdef SEMIHOSTING
  exit(main());
#else
  main();
  for (;;) __asm volatile("wfi");
#endif
}

/* The first instructions. Cores other than the first one wait forever. */
__attribute__((naked, noreturn, used, section(".start"))) void _start(void) {
  __asm volatile(
      ".option push\n"
      ".option norelax\n"
      "la gp, __global_pointer$\n"
      ".option pop\n"
      "la sp, __stack_top\n"
      "csrw mie, zero\n"
      "csrr a0, mhartid\n"
      "beqz a0, 2f\n"
      "1: wfi\n"
      "j 1b\n"
      "2: tail %0\n"
      :
      : "i"(run));
}
