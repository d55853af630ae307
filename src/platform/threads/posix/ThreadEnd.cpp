#include "platform/threads/ThreadEnd.h"

#include <pthread.h>

#include <cstdlib>
#include <memory>
#include <utility>

namespace tarn {

namespace {

struct Entry {
  void (*function)();
  Entry* next;  // the one registered before, which is called later
};

constinit thread_local Entry* lastEntry = nullptr;

void CallAll(void*) {
  while (lastEntry != nullptr) {
    const std::unique_ptr<Entry> entry(lastEntry);
    lastEntry = entry->next;
    entry->function();
  }
}

// The destructor of a key's value runs at the end of each thread that has set one, but not at exit.
pthread_key_t MakeKey() {
  pthread_key_t key{};
  pthread_key_create(&key, CallAll);
  std::atexit([] { CallAll(nullptr); });
  return key;
}

}  // namespace

void AtThreadEnd(void (*function)()) {
  static const pthread_key_t key = MakeKey();
  lastEntry = std::make_unique<Entry>(Entry{function, lastEntry}).release();
  pthread_setspecific(key, &lastEntry);
}

}  // namespace tarn
