#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace tarn {

// String argument of a tree operation: a character pointer, which may be null, or a string or view
// that is valid during the call. Null differs from empty in lookups, where it finds nothing; a null
// string to store is treated as empty.
class XmlArg {
 public:
  XmlArg(const char* text) : view_(text ? std::string_view(text) : std::string_view()) {}
  XmlArg(std::string_view text) : view_(text.data() ? text : std::string_view("")) {}
  template <class String>
  requires requires(const String& s) { s.c_str(); }
  XmlArg(const String& text) : view_(text.data(), text.size()) {}

  bool IsNull() const { return view_.data() == nullptr; }
  std::string_view View() const { return view_; }

 private:
  std::string_view view_;
};

// Immutable name of elements and attributes, with string interning: a document repeats a few names
// very often, so nearly every name is *shared*, that is, stored once in a process-wide table and
// never freed. The table accepts a limited number of short names; a name that isn't accepted is
// owned by the one node or attribute that uses it. The zero-terminated string is stored directly
// after this header.
struct XmlInternedName {
  std::uint32_t length;
  bool shared;
  bool regular;  // conforms to the XML rules for names, which the parser doesn't enforce

  const char* Text() const { return reinterpret_cast<const char*>(this + 1); }
  std::string_view View() const { return {Text(), length}; }
};

// Returns the name for `text`, which ends at the first zero byte. May be called on any thread. The
// caller owns the result and must pass it to `ReleaseName()`.
const XmlInternedName* AcquireName(std::string_view text);
// Returns a name with the same string for a second owner.
const XmlInternedName* CopyName(const XmlInternedName* name);
void ReleaseName(const XmlInternedName* name);
const XmlInternedName* EmptyName();

// Per-thread, direct-mapped cache of recently used shared names. Avoids locking the process-wide
// table for nearly every name.
class XmlNameCache {
 public:
  static XmlNameCache& OfThisThread();

  // Like `AcquireName()`, without the lock on a cache hit.
  const XmlInternedName* Acquire(std::string_view text) {
    if (text.empty()) return EmptyName();
    const XmlInternedName*& slot = slots_[SlotOf(text)];
    if (slot && slot->View() == text) return slot;
    return AcquireInto(slot, text);
  }

 private:
  static constexpr std::size_t kSize = 256;

  // A few bytes distinguish the names of one kind of file; two names that share a slot only cost
  // the lock.
  static std::size_t SlotOf(std::string_view text) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const std::size_t last = text.size() - 1;
    return (text.size() + byte(0) * 7u + byte(last / 2) * 31u + byte(last) * 131u) % kSize;
  }
  static const XmlInternedName* AcquireInto(const XmlInternedName*& slot, std::string_view text);

  std::array<const XmlInternedName*, kSize> slots_{};
};

}  // namespace tarn
