#include "builder/MtimeCache.h"

#include <algorithm>
#include <new>
#include <utility>

#include "platform/paths/Paths.h"
#include "platform/text/Hash.h"
#include "platform/text/Text.h"

namespace tarn {

namespace {

MtimeCache::Entry KnownEntry(const std::optional<FileStatus>& status) {
  return {MtimeCache::Entry::State::Known, status.has_value(), status.value_or(FileStatus())};
}

std::uint64_t HashName(std::string_view path) {
  return HashBytes(FoldCase(FileNameOf(path)));
}

}  // namespace

std::size_t MtimeCache::Store::SlotOf(std::string_view path, std::uint64_t hash) const {
  const std::size_t mask = slots_.size() - 1;
  std::size_t slot = static_cast<std::size_t>(hash) & mask;
  while (const Slot* known = slots_[slot]) {
    if (known->hash == hash && std::string_view(known->Path(), known->length) == path) break;
    slot = (slot + 1) & mask;
  }
  return slot;
}

MtimeCache::Slot* MtimeCache::Store::Find(std::string_view path) const {
  return slots_[SlotOf(path, HashBytes(path))];
}

MtimeCache::Slot& MtimeCache::Store::FindOrAdd(std::string_view path) {
  const std::uint64_t hash = HashBytes(path);
  Slot*& slot = slots_[SlotOf(path, hash)];
  if (slot != nullptr) return *slot;
  void* memory = memory_.allocate(sizeof(Slot) + path.size() + 1, alignof(Slot));
  Slot* const added = new (memory) Slot{{}, hash, path.size()};
  char* const text = reinterpret_cast<char*>(added + 1);
  *std::copy(path.begin(), path.end(), text) = '\0';
  slot = added;
  if (!byName_.empty()) AddByName(*added);
  if (++count_ * 2 > slots_.size()) Grow();
  return *added;
}

void MtimeCache::Store::AddByName(Slot& slot) {
  Slot*& first = byName_[HashName(slot.Path())];
  slot.sameName = std::exchange(first, &slot);
}

MtimeCache::Slot* MtimeCache::Store::FilesNamed(std::string_view path) {
  if (byName_.empty()) {
    for (Slot* const each : slots_) {
      if (each != nullptr) AddByName(*each);
    }
  }
  const auto found = byName_.find(HashName(path));
  return found == byName_.end() ? nullptr : found->second;
}

void MtimeCache::Store::Grow() {
  std::vector<Slot*> old(slots_.size() * 4);
  old.swap(slots_);
  const std::size_t mask = slots_.size() - 1;
  for (Slot* known : old) {
    if (known == nullptr) continue;
    std::size_t slot = static_cast<std::size_t>(known->hash) & mask;
    while (slots_[slot] != nullptr) slot = (slot + 1) & mask;
    slots_[slot] = known;
  }
}

const MtimeCache::Entry* MtimeCache::Find(std::string_view path) const {
  const Slot* known = store_->Find(path);
  return known != nullptr && known->entry.IsKnown() ? &known->entry : nullptr;
}

const MtimeCache::Entry& MtimeCache::Get(std::string_view path) {
  Slot& known = store_->FindOrAdd(path);
  if (!known.entry.IsKnown()) known.entry = KnownEntry(files_.Examine(known.Path()));
  return known.entry;
}

void MtimeCache::SetResults(const StatBatch& batch) {
  if (batch.store_ != store_) return;
  for (std::size_t i = 0; i < batch.requested_.size(); ++i) {
    Entry& entry = batch.requested_[i]->entry;
    entry.state = Entry::State::Open;
    if (i < batch.found_.size()) entry = KnownEntry(batch.found_[i]);
  }
}

void MtimeCache::Forget(std::string_view path) {
  ++changes_;
  for (Slot* each = store_->FilesNamed(path); each != nullptr; each = each->sameName) {
    each->entry = {};
  }
}

void MtimeCache::Invalidate() {
  ++epoch_;
  ++changes_;
  if (!store_->IsEmpty()) store_ = std::make_shared<Store>();
}

const MtimeCache::Entry& MtimeCache::StatBatch::Add(MtimeCache& times, std::string_view path) {
  Slot& known = times.store_->FindOrAdd(path);
  if (known.entry.state == Entry::State::Open) {
    known.entry.state = Entry::State::Requested;
    store_ = times.store_;
    requested_.push_back(&known);
  }
  return known.entry;
}

void MtimeCache::StatBatch::Examine(FileSystem& fileSystem,
                                    std::chrono::steady_clock::time_point deadline) {
  std::vector<const char*> paths;
  paths.reserve(requested_.size());
  for (const Slot* each : requested_) paths.push_back(each->Path());
  found_ = fileSystem.ExamineMany(paths, deadline);
}

}  // namespace tarn
