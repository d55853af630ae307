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
  DispatchPtr(const DispatchPtr& other) : DispatchPtr(other.object_) {}
  DispatchPtr(DispatchPtr&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  DispatchPtr& operator=(DispatchPtr other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  ~DispatchPtr();

  // Takes over a reference that the caller already holds.
  static DispatchPtr Adopt(IDispatch* referenced);

  IDispatch* Get() const { return object_; }
  IDispatch* operator->() const { return object_; }
  explicit operator bool() const { return object_ != nullptr; }
  // Releases the reference.
  void Reset() { *this = DispatchPtr(); }

 private:
  IDispatch* object_ = nullptr;
};

// An 8-bit string that can be null; null and empty are different arguments.
using NullableText = std::optional<std::string>;

// A string argument of a call. Borrows the characters, so use it only for parameters. A null
// pointer stays null; any other string, including an empty view, is not null.
class TextArgument {
 public:
  TextArgument(std::nullptr_t) {}
  TextArgument(const char* text) : view_(text ? text : ""), isNull_(text == nullptr) {}
  TextArgument(std::string_view text) : view_(text), isNull_(false), isTerminated_(false) {}
  TextArgument(const std::string& text) : view_(text), isNull_(false) {}
  TextArgument(const NullableText& text)
      : view_(text ? std::string_view(*text) : ""), isNull_(!text) {}

  bool IsNull() const { return isNull_; }
  // Returns true if a zero byte follows the characters.
  bool IsTerminated() const { return isTerminated_; }
  // Empty for a null string.
  std::string_view View() const { return view_; }

 private:
  std::string_view view_ = "";
  bool isNull_ = true;
  bool isTerminated_ = true;
};

// A value at the dispatch boundary: empty, a signed 32-bit number, a string or an object.
class Variant {
 public:
  // Empty is the result of a method without a result, and an omitted argument.
  enum class Kind { Empty, Long, Text, Object };

  Variant() = default;
  Variant(std::int32_t value) : kind_(Kind::Long), number_(value) {}
  Variant(std::string value) : kind_(Kind::Text), text_(std::move(value)) {}
  Variant(const char* value) : Variant(TextArgument(value)) {}
  Variant(std::string_view value) : Variant(TextArgument(value)) {}
  Variant(NullableText value) : kind_(Kind::Text), text_(std::move(value)) {}
  Variant(TextArgument value);
  Variant(DispatchPtr value) : kind_(Kind::Object), object_(std::move(value)) {}
  Variant(const Variant& other);
  Variant(Variant&&) noexcept = default;
  Variant& operator=(const Variant& other) { return *this = Variant(other); }
  Variant& operator=(Variant&&) noexcept = default;
  ~Variant() = default;

  // Returns a string argument for a call that can't change or free the characters. Borrows them
  // if they are zero-terminated.
  static Variant Borrow(TextArgument value);

  Kind GetKind() const { return kind_; }
  // Value of the kind that the name says; for any other kind 0, a null string or no object.
  std::int32_t AsLong() const { return number_; }
  const NullableText& AsText() const;
  NullableText& AsText() {
    static_cast<void>(std::as_const(*this).AsText());
    return text_;
  }
  // Same as a zero-terminated string, which is not copied; nullptr for a null string.
  const char* AsCText() const {
    if (borrowed_.data() != nullptr) return borrowed_.data();
    return text_ ? text_->c_str() : nullptr;
  }
  const DispatchPtr& AsObject() const { return object_; }

 private:
  Kind kind_ = Kind::Empty;
  std::int32_t number_ = 0;
  DispatchPtr object_;
  mutable NullableText text_;
  mutable std::string_view borrowed_;  // until AsText() copies it to `text_`; zero-terminated
};

}  // namespace tarn
