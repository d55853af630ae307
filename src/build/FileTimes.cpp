#include "build/FileTimes.h"

#include <algorithm>
#include <string>

#include "platform/text/Hash.h"

namespace tarn {

namespace {

FileTimes::Time TimeOf(FileSystem& files, const std::string& path) {
  const std::optional<FileStatus> status = files.Examine(path);
  return status ? FileTimes::Time(status->modifiedSeconds) : std::nullopt;
}

}  // namespace

std::size_t FileTimes::TextHash::operator()(std::string_view text) const {
  return static_cast<std::size_t>(HashBytes(text));
}

FileTimes::Known& FileTimes::Insert(std::string_view path) {
  auto* copy = static_cast<char*>(store->memory.allocate(path.size() + 1, 1));
  std::copy(path.begin(), path.end(), copy);
  return *store->entries.try_emplace(std::string_view(copy, path.size())).first;
}

const FileTimes::Time* FileTimes::Find(const char* path) const {
  const auto entry = store->entries.find(path);
  return entry != store->entries.end() && entry->second.isKnown ? &entry->second.time : nullptr;
}

FileTimes::Time FileTimes::Get(const char* path) {
  const auto there = store->entries.find(path);
  if (there != store->entries.end() && there->second.isKnown) return there->second.time;
  Entry& entry = there != store->entries.end() ? there->second : Insert(path).second;
  entry = {true, TimeOf(files, path)};
  return entry.time;
}

void FileTimes::Take(const Inquiry& inquiry) {
  if (inquiry.store != store) return;
  for (std::size_t i = 0; i < inquiry.found.size(); ++i) {
    inquiry.asked[i]->second = {true, inquiry.found[i]};
  }
  for (std::size_t i = inquiry.found.size(); i < inquiry.asked.size(); ++i) {
    store->entries.erase(inquiry.asked[i]->first);
  }
}

void FileTimes::Forget() {
  ++epoch;
  if (!store->entries.empty()) store = std::make_shared<Store>();
}

bool FileTimes::Inquiry::Add(FileTimes& times, const char* path) {
  if (times.store->entries.contains(path)) return false;
  store = times.store;
  asked.push_back(&times.Insert(path));
  return true;
}

void FileTimes::Inquiry::Examine(FileSystem& files,
                                 std::chrono::steady_clock::time_point deadline) {
  found.reserve(asked.size());
  std::string path;
  for (const Known* each : asked) {
    path = each->first;
    found.push_back(TimeOf(files, path));
    if (std::chrono::steady_clock::now() >= deadline) break;
  }
}

}  // namespace tarn
