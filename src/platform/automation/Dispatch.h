#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/automation/Variant.h"

namespace tarn {

// Number of a method, unique within the object's class.
using DispatchId = std::int32_t;

// Outcome of a dispatch call.
enum class DispatchStatus {
  Ok,
  NoObject,        // the driver is not attached
  UnknownMember,   // no method of that name or id
  WrongCount,      // too few or too many arguments
  WrongType,       // an argument has a different type than the method expects
  NotImplemented,  // the method exists but is not implemented yet
  Failed,          // the call could not be completed, for example after an exception
};

// Outcome of a call with its error details. Converts to true on success.
struct [[nodiscard]] DispatchResult {
  DispatchStatus status = DispatchStatus::Ok;
  std::string text;   // error message for the user; empty if Ok
  int argument = -1;  // index of the offending argument, or -1

  explicit operator bool() const { return status == DispatchStatus::Ok; }
};

// Type of an argument or a result. Unsigned numbers are passed as a long with the same bits.
enum class ValueType { None, Long, UnsignedLong, Text, Object };

// Signature of one method, for callers that discover methods at run time.
struct MethodInfo {
  std::string_view name;
  DispatchId id = 0;
  std::vector<std::string_view> arguments;  // names, in order
  std::vector<ValueType> types = {};        // types of the arguments
  ValueType result = ValueType::None;
};

// A reference-counted automation object whose methods are called by number. Invoke never throws.
// Objects belong to the thread that created them unless documented otherwise.
class IDispatch {
 public:
  // Add and remove a reference; return the new count. The last Release destroys the object.
  virtual std::uint32_t AddRef() = 0;
  virtual std::uint32_t Release() = 0;
  // Looks up the number of a method; names are case-insensitive.
  virtual DispatchResult GetIDsOfNames(std::string_view name, DispatchId& id) = 0;
  // Calls a method. `result` is always overwritten, with an empty value on error or if the method
  // has no result. Arguments are borrowed during the call.
  virtual DispatchResult Invoke(DispatchId id, std::span<const Variant> arguments,
                                Variant& result) = 0;
  // Returns all methods in the order of their table.
  virtual std::vector<MethodInfo> GetMethods() = 0;

 protected:
  virtual ~IDispatch() = default;
};

// Creates objects of one class.
class IClassFactory {
 public:
  virtual ~IClassFactory() = default;
  // Returns a new object with one reference, or null on error.
  virtual DispatchPtr CreateInstance() = 0;
  // Keeps the library loaded even while it has no live object, until each lock has been matched by
  // an unlock. The default does nothing, for libraries that don't support unloading.
  virtual void LockServer(bool lock) { (void)lock; }
};

}  // namespace tarn
