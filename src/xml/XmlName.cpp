#include "xml/XmlName.h"

#include <array>
#include <cstring>
#include <mutex>
#include <new>
#include <unordered_map>

namespace tarn {
namespace {

// Bounds of what stays in memory for good, whatever a text holds.
constexpr std::size_t kMaxSharedLength = 64;
constexpr std::size_t kMaxSharedNames = 4096;

constexpr std::size_t kCacheSize = 256;

const XmlName* NewName(std::string_view text, bool shared) {
  void* memory = ::operator new(sizeof(XmlName) + text.size() + 1);
  auto* name = new (memory) XmlName{static_cast<std::uint32_t>(text.size()), shared};
  char* bytes = reinterpret_cast<char*>(name + 1);
  std::memcpy(bytes, text.data(), text.size());
  bytes[text.size()] = '\0';
  return name;
}

class NameTable {
 public:
  // Null when the name isn't there and can't be added.
  const XmlName* Find(std::string_view text) {
    const std::lock_guard lock(mutex);
    if (const auto found = names.find(text); found != names.end()) return found->second;
    if (names.size() >= kMaxSharedNames) return nullptr;
    const XmlName* name = NewName(text, true);
    names.emplace(name->View(), name);
    return name;
  }

 private:
  std::mutex mutex;
  std::unordered_map<std::string_view, const XmlName*> names;
};

// Never destroyed: nodes of static duration may outlive every other static object.
NameTable& Table() {
  static NameTable* table = new NameTable;
  return *table;
}

// Few bytes tell the names of one kind of file apart; two that share a slot only cost the lock.
std::size_t CacheSlot(std::string_view text) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const std::size_t last = text.size() - 1;
  return (text.size() + byte(0) * 7u + byte(last / 2) * 31u + byte(last) * 131u) % kCacheSize;
}

}  // namespace

const XmlName* AcquireName(std::string_view text) {
  // The names that this thread met last, so that the lock is rarely taken.
  thread_local std::array<const XmlName*, kCacheSize> cache{};
  if (text.empty()) return EmptyName();
  if (text.size() <= kMaxSharedLength) {
    const XmlName*& cached = cache[CacheSlot(text)];
    if (cached && cached->View() == text) return cached;
    text = text.substr(0, text.find('\0'));
    if (text.empty()) return EmptyName();
    if (const XmlName* name = Table().Find(text)) return cached = name;
  }
  return NewName(text.substr(0, text.find('\0')), false);
}

const XmlName* CopyName(const XmlName* name) {
  return name->shared ? name : NewName(name->View(), false);
}

void ReleaseName(const XmlName* name) {
  if (!name->shared) ::operator delete(const_cast<XmlName*>(name));
}

const XmlName* EmptyName() {
  static const XmlName* empty = NewName("", true);
  return empty;
}

}  // namespace tarn
