/* Preloaded into a program, lets it start as many threads as FEW_THREADS says; for all others there
 * is no room. */

#define _GNU_SOURCE
#include <dlfcn.h>
#include <errno.h>
#include <pthread.h>
#include <stdatomic.h>
#include <stdlib.h>

int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*start)(void*),
                   void* argument) {
  static atomic_int started;
  int (*real)(pthread_t*, const pthread_attr_t*, void* (*)(void*), void*);
  *(void**)&real = dlsym(RTLD_NEXT, "pthread_create");
  const char* most = getenv("FEW_THREADS");
  if (most != NULL && started++ >= atoi(most)) return EAGAIN;
  return real(thread, attributes, start, argument);
}
