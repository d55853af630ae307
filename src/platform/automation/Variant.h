#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace tarn {

class IDispatch;

// A counted reference to an automation object.
class DispatchPtr {
 public:
  DispatchPtr() = default;
  // Adds a reference.
  explicit DispatchPtr(IDispatch* referenced);
  DispatchPtr(const DispatchPtr& other) : DispatchPtr(other.object) {}
  DispatchPtr(DispatchPtr&& other) noexcept : object(std::exchange(other.object, nullptr)) {}
  DispatchPtr& operator=(DispatchPtr other) noexcept {
    std::swap(object, other.object);
    return *this;
  }
  ~DispatchPtr();

  // Takes over a reference that the caller already holds.
  static DispatchPtr Adopt(IDispatch* referenced);

  IDispatch* Get() const { return object; }
  IDispatch* operator->() const { return object; }
  explicit operator bool() const { return object != nullptr; }
  // Releases the reference.
  void Reset() { *this = DispatchPtr(); }

 private:
  IDispatch* object = nullptr;
};

// An 8-bit string that can be null; null and empty are different arguments.
using NullableText = std::optional<std::string>;

// A string argument of a call. Borrows the characters, so use it only for parameters. A null
// pointer stays null; any other string, including an empty view, is not null.
class TextArgument {
 public:
  TextArgument(std::nullptr_t) {}
  TextArgument(const char* text) : view(text ? text : ""), isNull(text == nullptr) {}
  TextArgument(std::string_view text) : view(text), isNull(false) {}
  TextArgument(const std::string& text) : view(text), isNull(false) {}
  TextArgument(const NullableText& text) : view(text ? *text : std::string_view()), isNull(!text) {}

  bool IsNull() const { return isNull; }
  // Empty for a null string.
  std::string_view View() const { return view; }

 private:
  std::string_view view;
  bool isNull = true;
};

// A value at the dispatch boundary: empty, a signed 32-bit number, a string or an object.
class Variant {
 public:
  // Empty is the result of a method without a result, and an omitted argument.
  enum class Kind { Empty, Long, Text, Object };

  Variant() = default;
  Variant(std::int32_t value) : kind(Kind::Long), number(value) {}
  Variant(std::string value) : kind(Kind::Text), text(std::move(value)) {}
  Variant(const char* value) : Variant(TextArgument(value)) {}
  Variant(std::string_view value) : Variant(TextArgument(value)) {}
  Variant(NullableText value) : kind(Kind::Text), text(std::move(value)) {}
  Variant(TextArgument value);
  Variant(DispatchPtr value) : kind(Kind::Object), object(std::move(value)) {}

  Kind GetKind() const { return kind; }
  // Value of the kind that the name says; for any other kind 0, a null string or no object.
  std::int32_t AsLong() const { return number; }
  const NullableText& AsText() const { return text; }
  NullableText& AsText() { return text; }
  const DispatchPtr& AsObject() const { return object; }

 private:
  Kind kind = Kind::Empty;
  std::int32_t number = 0;
  DispatchPtr object;
  NullableText text;
};

}  // namespace tarn
