#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace tarn {

// A text argument of a tree operation: a plain character pointer, which may be null, or a string
// or view that lives for the call. Null is kept apart: a look-up by null finds nothing, a null
// text to store counts as empty.
class XmlArg {
 public:
  XmlArg(const char* text) : view(text ? std::string_view(text) : std::string_view()) {}
  XmlArg(std::string_view text) : view(text.data() ? text : std::string_view("")) {}
  template <class String>
  requires requires(const String& s) { s.c_str(); }
  XmlArg(const String& text) : view(text.data(), text.size()) {}

  bool IsNull() const { return view.data() == nullptr; }
  std::string_view View() const { return view; }

 private:
  std::string_view view;
};

// The immutable name of elements and attributes. A document repeats few names very often, so
// nearly every name is *shared*: it lies once in a table of the process and is never freed. The
// table takes a bounded number of short names; a name that does not get in belongs to the one node
// or attribute that uses it. The terminated text stands directly behind this head.
struct XmlName {
  std::uint32_t length;
  bool shared;
  bool regular;  // a name by the rules of XML, which the parser doesn't insist on

  const char* Text() const { return reinterpret_cast<const char*>(this + 1); }
  std::string_view View() const { return {Text(), length}; }
};

// The name for a text; a zero byte ends the text. Any thread; the caller owns the result and gives
// it back with ReleaseName.
const XmlName* AcquireName(std::string_view text);
// A second owner's name with the same text.
const XmlName* CopyName(const XmlName* name);
void ReleaseName(const XmlName* name);
const XmlName* EmptyName();

// The shared names that one thread met last, so that the lock of the table is rarely taken.
class XmlNameCache {
 public:
  static XmlNameCache& OfThisThread();

  // As AcquireName.
  const XmlName* Acquire(std::string_view text) {
    if (text.empty()) return EmptyName();
    const XmlName*& slot = slots[SlotOf(text)];
    if (slot && slot->View() == text) return slot;
    return AcquireInto(slot, text);
  }

 private:
  static constexpr std::size_t kSize = 256;

  // Few bytes tell the names of one kind of file apart; two that share a slot only cost the lock.
  static std::size_t SlotOf(std::string_view text) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const std::size_t last = text.size() - 1;
    return (text.size() + byte(0) * 7u + byte(last / 2) * 31u + byte(last) * 131u) % kSize;
  }
  static const XmlName* AcquireInto(const XmlName*& slot, std::string_view text);

  std::array<const XmlName*, kSize> slots{};
};

}  // namespace tarn
