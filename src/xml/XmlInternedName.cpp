#include "xml/XmlInternedName.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <mutex>
#include <new>
#include <unordered_map>

namespace tarn {
namespace {

// Bounds of the memory that is never freed, regardless of the input.
constexpr std::size_t kMaxSharedLength = 64;
constexpr std::size_t kMaxSharedNames = 4096;

bool IsNameStart(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == ':' || (c & 0x80);
}

bool IsRegular(std::string_view text) {
  if (text.empty() || !IsNameStart(text.front())) return false;
  return std::all_of(text.begin(), text.end(), [](char c) {
    return IsNameStart(c) || (c >= '0' && c <= '9') || c == '-' || c == '.';
  });
}

const XmlInternedName* NewName(std::string_view text, bool shared) {
  void* memory = ::operator new(sizeof(XmlInternedName) + text.size() + 1);
  auto* name = new (memory)
      XmlInternedName{static_cast<std::uint32_t>(text.size()), shared, IsRegular(text)};
  char* bytes = reinterpret_cast<char*>(name + 1);
  std::memcpy(bytes, text.data(), text.size());
  bytes[text.size()] = '\0';
  return name;
}

class NameTable {
 public:
  // Returns nullptr if the name isn't in the table and can't be added.
  const XmlInternedName* Find(std::string_view text) {
    const std::lock_guard lock(mutex_);
    if (const auto found = names_.find(text); found != names_.end()) return found->second;
    if (names_.size() >= kMaxSharedNames) return nullptr;
    const XmlInternedName* name = NewName(text, true);
    names_.emplace(name->View(), name);
    return name;
  }

 private:
  std::mutex mutex_;
  std::unordered_map<std::string_view, const XmlInternedName*> names_;
};

// Never destroyed: nodes with static storage duration may outlive every other static object.
NameTable& Table() {
  static NameTable* table = new NameTable;
  return *table;
}

struct EmptyXmlName {
  XmlInternedName head{0, true, false};
  char text[1] = "";
};
constinit const EmptyXmlName kEmptyName;
static_assert(offsetof(EmptyXmlName, text) == sizeof(XmlInternedName));

}  // namespace

XmlNameCache& XmlNameCache::OfThisThread() {
  thread_local constinit XmlNameCache cache;
  return cache;
}

const XmlInternedName* XmlNameCache::AcquireInto(const XmlInternedName*& slot,
                                                 std::string_view text) {
  text = text.substr(0, text.find('\0'));
  if (text.empty()) return EmptyName();
  if (text.size() <= kMaxSharedLength) {
    if (const XmlInternedName* name = Table().Find(text)) return slot = name;
  }
  return NewName(text, false);
}

const XmlInternedName* AcquireName(std::string_view text) {
  return XmlNameCache::OfThisThread().Acquire(text);
}

const XmlInternedName* CopyName(const XmlInternedName* name) {
  return name->shared ? name : NewName(name->View(), false);
}

void ReleaseName(const XmlInternedName* name) {
  if (!name->shared) ::operator delete(const_cast<XmlInternedName*>(name));
}

const XmlInternedName* EmptyName() {
  return &kEmptyName.head;
}

}  // namespace tarn
