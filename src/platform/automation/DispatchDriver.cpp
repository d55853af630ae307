#include "platform/automation/DispatchDriver.h"

#include <exception>
#include <utility>

namespace tarn {

bool COleDispatchDriver::CreateDispatch(ClassRegistry& classes, std::string_view progId) {
  std::string error;
  const DispatchPtr made = classes.CreateInstance(progId, &error);
  if (!made) {
    ReleaseDispatch();
    Remember({DispatchStatus::NoObject, std::move(error), -1});
    return false;
  }
  AttachDispatch(made.Get(), true);
  Remember({});
  return true;
}

void COleDispatchDriver::AttachDispatch(IDispatch* attached, bool takeReference) {
  if (attached != nullptr && takeReference) attached->AddRef();
  ReleaseDispatch();
  ownsReference_ = attached != nullptr && takeReference;
  object_.store(attached, std::memory_order_release);
}

void COleDispatchDriver::ReleaseDispatch() {
  IDispatch* released = object_.exchange(nullptr, std::memory_order_acq_rel);
  if (std::exchange(ownsReference_, false)) released->Release();
}

std::int32_t COleDispatchDriver::InvokeLong(DispatchId id,
                                            std::initializer_list<Variant> arguments) {
  const Variant result = Call(id, arguments);
  if (result.GetKind() == Variant::Kind::Long) return result.AsLong();
  RememberKind(id, result, "a number");
  return 0;
}

std::string COleDispatchDriver::InvokeText(DispatchId id,
                                           std::initializer_list<Variant> arguments) {
  Variant result = Call(id, arguments);
  if (result.GetKind() == Variant::Kind::Text) {
    return result.AsText() ? std::move(*result.AsText()) : std::string();
  }
  RememberKind(id, result, "a string");
  return {};
}

void COleDispatchDriver::InvokeHelper(DispatchId id, std::initializer_list<Variant> arguments) {
  Call(id, arguments);
}

std::string COleDispatchDriver::InvokeTextByName(std::string_view method,
                                                 std::initializer_list<Variant> arguments) {
  const DispatchPtr target(GetDispatch());
  DispatchId id = 0;
  if (!target || !target->GetIDsOfNames(method, id)) return {};
  return InvokeText(id, arguments);
}

DispatchResult COleDispatchDriver::LastResult() const {
  if (!lastFailed_.load(std::memory_order_acquire)) return {};
  const std::lock_guard guard(failureLock_);
  return lastFailure_;
}

Variant COleDispatchDriver::Call(DispatchId id, std::initializer_list<Variant> arguments) {
  const DispatchPtr target(GetDispatch());
  if (!target) {
    Remember({DispatchStatus::NoObject, "no object is attached", -1});
    return {};
  }
  Variant result;
  DispatchResult outcome;
  try {
    outcome = target->Invoke(id, {arguments.begin(), arguments.size()}, result);
  } catch (const std::exception& failure) {
    outcome = {DispatchStatus::Failed, failure.what(), -1};
  } catch (...) {
    outcome = {DispatchStatus::Failed, "the object threw an exception", -1};
  }
  const bool succeeded = static_cast<bool>(outcome);
  Remember(std::move(outcome));
  return succeeded ? std::move(result) : Variant();
}

void COleDispatchDriver::Remember(DispatchResult outcome) {
  if (outcome) {
    // Written only on a change, so that concurrent calls don't contend for the cache line.
    if (lastFailed_.load(std::memory_order_relaxed)) lastFailed_ = false;
    return;
  }
  const std::lock_guard guard(failureLock_);
  lastFailure_ = std::move(outcome);
  lastFailed_.store(true, std::memory_order_release);
}

// An object may return nothing; a result of another type means that client and object disagree
// about the method.
void COleDispatchDriver::RememberKind(DispatchId id, const Variant& result,
                                      std::string_view wanted) {
  if (result.GetKind() == Variant::Kind::Empty) return;
  Remember({DispatchStatus::WrongType,
            "the result of method " + std::to_string(id) + " is not " + std::string(wanted), -1});
}

}  // namespace tarn
