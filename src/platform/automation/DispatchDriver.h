#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

#include "platform/automation/ClassRegistry.h"
#include "platform/automation/Dispatch.h"

namespace tarn {

// A late-bound caller: holds an automation object and calls it by number. A failed call, also one
// without an object, gives the zero of the wanted type and is told by LastResult.
class COleDispatchDriver {
 public:
  COleDispatchDriver() = default;
  COleDispatchDriver(const COleDispatchDriver&) = delete;
  COleDispatchDriver& operator=(const COleDispatchDriver&) = delete;
  virtual ~COleDispatchDriver() { ReleaseDispatch(); }

  // Makes an object of the class; false when there is no such class or it made none.
  bool CreateDispatch(ClassRegistry& classes, std::string_view progId);
  // Holds `object` from now on; without `takeReference` the caller keeps it alive.
  void AttachDispatch(IDispatch* object, bool takeReference);
  void ReleaseDispatch();
  IDispatch* GetDispatch() const { return object; }

  std::int32_t InvokeLong(DispatchId id, std::initializer_list<Variant> arguments);
  std::string InvokeText(DispatchId id, std::initializer_list<Variant> arguments);
  void InvokeHelper(DispatchId id, std::initializer_list<Variant> arguments);
  const DispatchResult& LastResult() const { return lastResult; }

 private:
  Variant Call(DispatchId id, std::initializer_list<Variant> arguments);

  IDispatch* object = nullptr;
  bool ownsReference = false;
  DispatchResult lastResult;
};

}  // namespace tarn
