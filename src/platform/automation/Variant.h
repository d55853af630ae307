#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <variant>

namespace tarn {

class IDispatch;

// A counted reference to an automation object.
class DispatchPtr {
 public:
  DispatchPtr() = default;
  // Takes a further reference.
  explicit DispatchPtr(IDispatch* object);
  DispatchPtr(const DispatchPtr& other) : DispatchPtr(other.object) {}
  DispatchPtr(DispatchPtr&& other) noexcept : object(std::exchange(other.object, nullptr)) {}
  DispatchPtr& operator=(DispatchPtr other) noexcept {
    std::swap(object, other.object);
    return *this;
  }
  ~DispatchPtr();

  // Takes over a reference that the caller already holds.
  static DispatchPtr Adopt(IDispatch* object);

  IDispatch* Get() const { return object; }
  IDispatch* operator->() const { return object; }
  explicit operator bool() const { return object != nullptr; }
  void Reset() { *this = DispatchPtr(); }

 private:
  IDispatch* object = nullptr;
};

// An 8-bit text that can be null; null and empty are different arguments.
using NullableText = std::optional<std::string>;

// A value at the dispatch boundary: empty, a signed 32-bit number, a text or an object.
class Variant {
 public:
  enum class Kind { Empty, Long, Text, Object };

  Variant() = default;
  Variant(std::int32_t number) : value(number) {}
  Variant(std::string text) : value(NullableText(std::move(text))) {}
  Variant(const char* text) : value(text ? NullableText(text) : NullableText()) {}
  Variant(NullableText text) : value(std::move(text)) {}
  Variant(DispatchPtr object) : value(std::move(object)) {}

  Kind GetKind() const { return static_cast<Kind>(value.index()); }
  // Only for the kind that the name says.
  std::int32_t AsLong() const { return std::get<std::int32_t>(value); }
  const NullableText& AsText() const { return std::get<NullableText>(value); }
  NullableText& AsText() { return std::get<NullableText>(value); }
  const DispatchPtr& AsObject() const { return std::get<DispatchPtr>(value); }

 private:
  std::variant<std::monostate, std::int32_t, NullableText, DispatchPtr> value;
};

}  // namespace tarn
