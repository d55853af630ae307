#pragma once

#include <atomic>
#include <cstdint>
#include <initializer_list>
#include <mutex>
#include <string>
#include <string_view>

#include "platform/automation/ClassRegistry.h"
#include "platform/automation/Dispatch.h"

namespace tarn {

// Late-bound client of one automation object, which it holds and whose methods it calls by number.
// A failed call, including one without an object, returns the zero of the requested type;
// LastResult() has the reason. The object stays alive during a call, even if the call detaches or
// destroys the driver.
//
// Two threads may call concurrently if the object allows it. Attach and release must come from one
// thread, while no other thread is entering a call.
class COleDispatchDriver {
 public:
  COleDispatchDriver() = default;
  COleDispatchDriver(const COleDispatchDriver&) = delete;
  COleDispatchDriver& operator=(const COleDispatchDriver&) = delete;
  virtual ~COleDispatchDriver() { ReleaseDispatch(); }

  // Creates an object of the class and releases the previous one. Returns false, with the reason in
  // LastResult(), if there is no such class or it created no object.
  bool CreateDispatch(ClassRegistry& classes, std::string_view progId);
  // Attaches `object`. If `takeReference` is false, the caller keeps it alive.
  void AttachDispatch(IDispatch* object, bool takeReference);
  // Detaches the object and releases it if the driver holds a reference.
  void ReleaseDispatch();
  // Borrowed; null if nothing is attached.
  IDispatch* GetDispatch() const { return object_.load(std::memory_order_acquire); }

  // Call a method and return its result, or ignore it; see above for errors.
  std::int32_t InvokeLong(DispatchId id, std::initializer_list<Variant> arguments);
  std::string InvokeText(DispatchId id, std::initializer_list<Variant> arguments);
  void InvokeHelper(DispatchId id, std::initializer_list<Variant> arguments);
  // For an optional method. Returns an empty string if this object does not have it.
  std::string InvokeTextByName(std::string_view method, std::initializer_list<Variant> arguments);
  // Outcome of the last call, on any thread.
  DispatchResult LastResult() const;

 private:
  Variant Call(DispatchId id, std::initializer_list<Variant> arguments);
  void Remember(DispatchResult outcome);
  void RememberKind(DispatchId id, const Variant& result, std::string_view wanted);

  std::atomic<IDispatch*> object_ = nullptr;
  bool ownsReference_ = false;
  // Successful calls access only this flag.
  std::atomic<bool> lastFailed_ = false;
  mutable std::mutex failureLock_;
  DispatchResult lastFailure_;
};

}  // namespace tarn
