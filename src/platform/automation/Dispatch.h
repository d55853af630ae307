#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/automation/Variant.h"

namespace tarn {

using DispatchId = std::int32_t;

// How a dispatch call ended.
enum class DispatchStatus {
  Ok,
  NoObject,        // the driver is not attached
  UnknownMember,   // no method of that name or id
  WrongCount,      // too few or too many arguments
  WrongType,       // an argument of another type than the method takes
  NotImplemented,  // the method is known and does nothing yet
  Failed,          // the call did not reach the object's work
};

struct [[nodiscard]] DispatchResult {
  DispatchStatus status = DispatchStatus::Ok;
  std::string text;   // what went wrong, for a person; empty when Ok
  int argument = -1;  // index of the argument that it went wrong at, or -1

  explicit operator bool() const { return status == DispatchStatus::Ok; }
};

// What an argument or a result is. An unsigned number travels as a long with the same bits.
enum class ValueType { None, Long, UnsignedLong, Text, Object };

// What one method of an object looks like, for callers that find methods at run time.
struct MethodInfo {
  std::string_view name;
  DispatchId id = 0;
  std::vector<std::string_view> arguments;  // names, in order
  std::vector<ValueType> types = {};        // of the arguments
  ValueType result = ValueType::None;
};

// An automation object: counted, called by number. No exception crosses Invoke. Objects belong to
// the thread that made them unless they say otherwise.
class IDispatch {
 public:
  virtual std::uint32_t AddRef() = 0;
  virtual std::uint32_t Release() = 0;
  // Names compare without regard to case.
  virtual DispatchResult GetIDsOfNames(std::string_view name, DispatchId& id) = 0;
  virtual DispatchResult Invoke(DispatchId id, std::span<const Variant> arguments,
                                Variant& result) = 0;
  // All methods in the order of their table.
  virtual std::vector<MethodInfo> GetMethods() = 0;

 protected:
  virtual ~IDispatch() = default;
};

// Makes objects of one class.
class IClassFactory {
 public:
  virtual ~IClassFactory() = default;
  // A new object with one reference; null when it cannot be made.
  virtual DispatchPtr CreateInstance() = 0;
  // Keeps the library loaded also while nothing that it made lives, until it was unlocked as often
  // as it was locked. Nothing to do for one that doesn't say when it may be unloaded.
  virtual void LockServer(bool lock) { (void)lock; }
};

}  // namespace tarn
