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
  const std::size_t mask = places_.size() - 1;
  std::size_t place = static_cast<std::size_t>(hash) & mask;
  while (const Known* known = places_[place]) {
    if (known->hash == hash && std::string_view(known->Path(), known->length) == path) break;
    place = (place + 1) & mask;
  }
  return place;
}

FileTimes::Known* FileTimes::Store::Find(std::string_view path) const {
  return places_[PlaceOf(path, HashBytes(path))];
}

FileTimes::Known& FileTimes::Store::FindOrAdd(std::string_view path) {
  const std::uint64_t hash = HashBytes(path);
  Known*& place = places_[PlaceOf(path, hash)];
  if (place != nullptr) return *place;
  void* piece = memory_.allocate(sizeof(Known) + path.size() + 1, alignof(Known));
  Known* const added = new (piece) Known{{}, hash, path.size()};
  char* const text = reinterpret_cast<char*>(added + 1);
  *std::copy(path.begin(), path.end(), text) = '\0';
  place = added;
  if (++count_ * 2 > places_.size()) Grow();
  return *added;
}

void FileTimes::Store::Grow() {
  std::vector<Known*> old(places_.size() * 4);
  old.swap(places_);
  const std::size_t mask = places_.size() - 1;
  for (Known* known : old) {
    if (known == nullptr) continue;
    std::size_t place = static_cast<std::size_t>(known->hash) & mask;
    while (places_[place] != nullptr) place = (place + 1) & mask;
    places_[place] = known;
  }
}

const FileTimes::Look* FileTimes::Find(std::string_view path) const {
  const Known* known = store_->Find(path);
  return known != nullptr && known->look.IsKnown() ? &known->look : nullptr;
}

const FileTimes::Look& FileTimes::Get(std::string_view path) {
  Known& known = store_->FindOrAdd(path);
  if (!known.look.IsKnown()) known.look = KnownLook(files_.Examine(known.Path()));
  return known.look;
}

void FileTimes::Take(const Inquiry& inquiry) {
  if (inquiry.store_ != store_) return;
  for (std::size_t i = 0; i < inquiry.asked_.size(); ++i) {
    Look& look = inquiry.asked_[i]->look;
    look.state = Look::State::Open;
    if (i < inquiry.found_.size()) look = KnownLook(inquiry.found_[i]);
  }
}

void FileTimes::Forget() {
  ++epoch_;
  if (!store_->IsEmpty()) store_ = std::make_shared<Store>();
}

const FileTimes::Look& FileTimes::Inquiry::Add(FileTimes& times, std::string_view path) {
  Known& known = times.store_->FindOrAdd(path);
  if (known.look.state == Look::State::Open) {
    known.look.state = Look::State::Asked;
    store_ = times.store_;
    asked_.push_back(&known);
  }
  return known.look;
}

void FileTimes::Inquiry::Examine(FileSystem& fileSystem,
                                 std::chrono::steady_clock::time_point deadline) {
  std::vector<const char*> paths;
  paths.reserve(asked_.size());
  for (const Known* each : asked_) paths.push_back(each->Path());
  found_ = fileSystem.ExamineMany(paths, deadline);
}

}  // namespace tarn
