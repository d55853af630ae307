/* What the C library expects of the board: output, heap and exit. Works with newlib and picolibc,
   on Arm and RISC-V.

   This file belongs to your project. Define stdout_write() in one of your sources to send what
   printf() and puts() write to a serial port. */

#include <stddef.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <sys/types.h>

/* Of a function that your sources may replace. Used: link-time optimisation doesn't see the calls
   that come from the C library. */
#define HOOK __attribute__((weak, used))

extern char __heap_start[], __heap_end[];

#ifdef SEMIHOSTING

/* Calls of the debugger or simulator that runs the program. */
enum { SYS_WRITEC = 0x03, SYS_EXIT_EXTENDED = 0x20 };
enum { STOPPED_APPLICATION_EXIT = 0x20026 };

static void semihosting_call(int operation, const void* argument) {
#if defined(__riscv)
  register long a0 __asm("a0") = operation;
  register const void* a1 __asm("a1") = argument;
  /* The three instructions must be on one page and not compressed. */
  __asm volatile(
      ".option push\n .option norvc\n .balign 16\n"
      " slli zero, zero, 0x1f\n ebreak\n srai zero, zero, 7\n .option pop\n"
      : "+r"(a0)
      : "r"(a1)
      : "memory");
#else
  register int r0 __asm("r0") = operation;
  register const void* r1 __asm("r1") = argument;
  __asm volatile("bkpt 0xAB" : "+r"(r0) : "r"(r1) : "memory");
#endif
}

#endif

/* Output of the program. Without a port of its own it goes to the simulator, if there is one. */
HOOK void stdout_write(const char* data, size_t size) {
#ifdef SEMIHOSTING
  for (size_t i = 0; i < size; ++i) semihosting_call(SYS_WRITEC, &data[i]);
#else
  (void)data;
  (void)size;
#endif
}

__attribute__((noreturn)) HOOK void _exit(int code) {
#ifdef SEMIHOSTING
  const intptr_t report[2] = {STOPPED_APPLICATION_EXIT, code};
  semihosting_call(SYS_EXIT_EXTENDED, report);
#endif
  (void)code;
  for (;;) __asm volatile("");
}

#ifdef __PICOLIBC__
#define GETPID getpid
#define KILL kill

static int put(char c, FILE* file) {
  (void)file;
  stdout_write(&c, 1);
  return (unsigned char)c;
}

static FILE console = FDEV_SETUP_STREAM(put, NULL, NULL, _FDEV_SETUP_WRITE);
HOOK FILE* const stdin = &console;
HOOK FILE* const stdout = &console;
HOOK FILE* const stderr = &console;

#else
#define GETPID _getpid
#define KILL _kill

/* Memory for malloc(): what is between the variables and the stack. */
HOOK void* _sbrk(ptrdiff_t size) {
  static char* top = __heap_start;
  char* const block = top;
  if (size > __heap_end - top || size < __heap_start - top) return (void*)-1;
  top += size;
  return block;
}

HOOK int _write(int file, const char* data, int size) {
  (void)file;
  stdout_write(data, (size_t)size);
  return size;
}

HOOK int _read(int file, char* data, int size) {
  (void)file, (void)data, (void)size;
  return 0;
}

HOOK int _fstat(int file, struct stat* status) {
  (void)file;
  status->st_mode = S_IFCHR;
  return 0;
}

HOOK int _isatty(int file) {
  (void)file;
  return 1;
}

HOOK int _close(int file) {
  (void)file;
  return -1;
}

HOOK int _lseek(int file, int offset, int from) {
  (void)file, (void)offset, (void)from;
  return 0;
}

#endif

/* Called by abort(). */
HOOK int GETPID(void) {
  return 1;
}

HOOK int KILL(int process, int signal) {
  (void)process;
  _exit(128 + signal);
}

/* Called by newlib around main; constructors and destructors have tables of their own. */
HOOK void _init(void) {}
HOOK void _fini(void) {}

#if defined(__riscv) || defined(__clang__)

/* new and delete in C++, for compilers without a C++ library. */
#if __SIZEOF_SIZE_T__ == 8
#define NAME_WITH_SIZE(start) start "m"
#else
#define NAME_WITH_SIZE(start) start "j"
#endif

void* operator_new(size_t size) __asm(NAME_WITH_SIZE("_Znw"));
void* operator_new_array(size_t size) __asm(NAME_WITH_SIZE("_Zna"));
void operator_delete(void* block) __asm("_ZdlPv");
void operator_delete_array(void* block) __asm("_ZdaPv");
void operator_delete_sized(void* block, size_t size) __asm(NAME_WITH_SIZE("_ZdlPv"));
void operator_delete_array_sized(void* block, size_t size) __asm(NAME_WITH_SIZE("_ZdaPv"));

HOOK void* operator_new(size_t size) {
  void* const block = malloc(size != 0 ? size : 1);
  if (block == NULL) abort();
  return block;
}

HOOK void* operator_new_array(size_t size) {
  return operator_new(size);
}

HOOK void operator_delete(void* block) {
  free(block);
}

HOOK void operator_delete_array(void* block) {
  free(block);
}

HOOK void operator_delete_sized(void* block, size_t size) {
  (void)size;
  free(block);
}

HOOK void operator_delete_array_sized(void* block, size_t size) {
  (void)size;
  free(block);
}

#endif
