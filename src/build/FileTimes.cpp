#include "build/FileTimes.h"

#include <algorithm>

#include "platform/text/Hash.h"

namespace tarn {

namespace {

FileTimes::Time TimeOf(const std::optional<FileStatus>& status) {
  return status ? FileTimes::Time(status->modifiedSeconds) : std::nullopt;
}

}  // namespace

std::size_t FileTimes::TextHash::operator()(std::string_view text) const {
  return static_cast<std::size_t>(HashBytes(text));
}

FileTimes::Known& FileTimes::PlaceOf(std::string_view path) {
  const auto there = store->entries.find(path);
  if (there != store->entries.end()) return *there;
  auto* copy = static_cast<char*>(store->memory.allocate(path.size() + 1, 1));
  *std::copy(path.begin(), path.end(), copy) = '\0';
  return *store->entries.try_emplace(std::string_view(copy, path.size())).first;
}

const FileTimes::Time* FileTimes::Find(const char* path) const {
  const auto entry = store->entries.find(path);
  return entry != store->entries.end() && entry->second.IsKnown() ? &entry->second.time : nullptr;
}

FileTimes::Time FileTimes::Get(const char* path) {
  Look& look = PlaceOf(path).second;
  if (!look.IsKnown()) look = {Look::State::Known, TimeOf(files.Examine(path))};
  return look.time;
}

void FileTimes::Take(const Inquiry& inquiry) {
  if (inquiry.store != store) return;
  for (std::size_t i = 0; i < inquiry.asked.size(); ++i) {
    Look& look = inquiry.asked[i]->second;
    look.state = Look::State::Open;
    if (i < inquiry.found.size()) look = {Look::State::Known, TimeOf(inquiry.found[i])};
  }
}

void FileTimes::Forget() {
  ++epoch;
  if (!store->entries.empty()) store = std::make_shared<Store>();
}

const FileTimes::Look& FileTimes::Inquiry::Add(FileTimes& times, const char* path) {
  Known& place = times.PlaceOf(path);
  if (place.second.state == Look::State::Open) {
    place.second.state = Look::State::Asked;
    store = times.store;
    asked.push_back(&place);
  }
  return place.second;
}

void FileTimes::Inquiry::Examine(FileSystem& files,
                                 std::chrono::steady_clock::time_point deadline) {
  std::vector<const char*> paths;
  paths.reserve(asked.size());
  for (const Known* each : asked) paths.push_back(each->first.data());
  found = files.ExamineMany(paths, deadline);
}

}  // namespace tarn
