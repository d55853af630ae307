#pragma once

#include <memory>
#include <utility>

#include "platform/threads/ThreadEnd.h"

namespace tarn {

// One object of type `T` for each thread that uses it, with the lifetime that AtThreadEnd()
// defines: created at the first use, destroyed at the end of the thread. Replaces thread_local
// objects with a destructor. `T` should be a type of one source, since it identifies the object.
template <class T>
class PerThread {
 public:
  // Returns the object of the calling thread. Creates another one if it was destroyed.
  static T& Get() {
    if (object == nullptr) {
      auto made = std::make_unique<T>();
      AtThreadEnd([] { delete std::exchange(object, nullptr); });
      object = made.release();
    }
    return *object;
  }

 private:
  static constinit thread_local inline T* object = nullptr;
};

}  // namespace tarn
