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

// A late-bound caller: holds an automation object and calls it by number. A failed call, also one
// without an object, gives the zero of the wanted type and is told by LastResult. The object stays
// alive during a call, whatever the call does to the driver.
//
// Two threads may call at once when the object allows it; attaching and releasing is for one
// thread, while no other is on its way into a call.
class COleDispatchDriver {
 public:
  COleDispatchDriver() = default;
  COleDispatchDriver(const COleDispatchDriver&) = delete;
  COleDispatchDriver& operator=(const COleDispatchDriver&) = delete;
  virtual ~COleDispatchDriver() { ReleaseDispatch(); }

  // Makes an object of the class and lets go of an earlier one; false, with the reason in
  // LastResult, when there is no such class or it made none.
  bool CreateDispatch(ClassRegistry& classes, std::string_view progId);
  // Holds `object` from now on; without `takeReference` the caller keeps it alive.
  void AttachDispatch(IDispatch* object, bool takeReference);
  void ReleaseDispatch();
  // Borrowed; null when nothing is attached.
  IDispatch* GetDispatch() const { return object.load(std::memory_order_acquire); }

  std::int32_t InvokeLong(DispatchId id, std::initializer_list<Variant> arguments);
  std::string InvokeText(DispatchId id, std::initializer_list<Variant> arguments);
  void InvokeHelper(DispatchId id, std::initializer_list<Variant> arguments);
  // For a method that not every object of the class has; an empty string if this one has none.
  std::string InvokeTextByName(std::string_view method, std::initializer_list<Variant> arguments);
  // How the last call ended, of whichever thread.
  DispatchResult LastResult() const;

 private:
  Variant Call(DispatchId id, std::initializer_list<Variant> arguments);
  void Remember(DispatchResult outcome);
  void RememberKind(DispatchId id, const Variant& result, std::string_view wanted);

  std::atomic<IDispatch*> object = nullptr;
  bool ownsReference = false;
  // Calls that succeed touch the mark alone.
  std::atomic<bool> lastFailed = false;
  mutable std::mutex failureLock;
  DispatchResult lastFailure;
};

}  // namespace tarn
