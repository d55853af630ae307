#include "builder/FileTimes.h"

#include <algorithm>
#include <new>

#include "platform/text/Hash.h"

namespace tarn {

namespace {

FileTimes::Look KnownLook(const std::optional<FileStatus>& status) {
  return {FileTimes::Look::State::Known, status.has_value(), status.value_or(FileStatus())};
}

}  // namespace

std::size_t FileTimes::Store::PlaceOf(std::string_view path, std::uint64_t hash) const {
  const std::size_t mask = places.size() - 1;
  std::size_t place = static_cast<std::size_t>(hash) & mask;
  while (const Known* known = places[place]) {
    if (known->hash == hash && std::string_view(known->Path(), known->length) == path) break;
    place = (place + 1) & mask;
  }
  return place;
}

FileTimes::Known* FileTimes::Store::Find(std::string_view path) const {
  return places[PlaceOf(path, HashBytes(path))];
}

FileTimes::Known& FileTimes::Store::FindOrAdd(std::string_view path) {
  const std::uint64_t hash = HashBytes(path);
  Known*& place = places[PlaceOf(path, hash)];
  if (place != nullptr) return *place;
  void* piece = memory.allocate(sizeof(Known) + path.size() + 1, alignof(Known));
  Known* const added = new (piece) Known{{}, hash, path.size()};
  char* const text = reinterpret_cast<char*>(added + 1);
  *std::copy(path.begin(), path.end(), text) = '\0';
  place = added;
  if (++count * 2 > places.size()) Grow();
  return *added;
}

void FileTimes::Store::Grow() {
  std::vector<Known*> old(places.size() * 4);
  old.swap(places);
  const std::size_t mask = places.size() - 1;
  for (Known* known : old) {
    if (known == nullptr) continue;
    std::size_t place = static_cast<std::size_t>(known->hash) & mask;
    while (places[place] != nullptr) place = (place + 1) & mask;
    places[place] = known;
  }
}

const FileTimes::Look* FileTimes::Find(std::string_view path) const {
  const Known* known = store->Find(path);
  return known != nullptr && known->look.IsKnown() ? &known->look : nullptr;
}

const FileTimes::Look& FileTimes::Get(std::string_view path) {
  Known& known = store->FindOrAdd(path);
  if (!known.look.IsKnown()) known.look = KnownLook(files.Examine(known.Path()));
  return known.look;
}

void FileTimes::Take(const Inquiry& inquiry) {
  if (inquiry.store != store) return;
  for (std::size_t i = 0; i < inquiry.asked.size(); ++i) {
    Look& look = inquiry.asked[i]->look;
    look.state = Look::State::Open;
    if (i < inquiry.found.size()) look = KnownLook(inquiry.found[i]);
  }
}

void FileTimes::Forget() {
  ++epoch;
  if (!store->IsEmpty()) store = std::make_shared<Store>();
}

const FileTimes::Look& FileTimes::Inquiry::Add(FileTimes& times, std::string_view path) {
  Known& known = times.store->FindOrAdd(path);
  if (known.look.state == Look::State::Open) {
    known.look.state = Look::State::Asked;
    store = times.store;
    asked.push_back(&known);
  }
  return known.look;
}

void FileTimes::Inquiry::Examine(FileSystem& fileSystem,
                                 std::chrono::steady_clock::time_point deadline) {
  std::vector<const char*> paths;
  paths.reserve(asked.size());
  for (const Known* each : asked) paths.push_back(each->Path());
  found = fileSystem.ExamineMany(paths, deadline);
}

}  // namespace tarn
