#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <memory_resource>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/files/FileSystem.h"

namespace tarn {

// Cache of file modification times since the last Invalidate, so that a build of an up-to-date tree
// queries each file once, however many nodes depend on it. Everything that may have changed a file
// (a tool run, a deletion, the end of a walk) must invalidate the cache, or forget the file if no
// other can have changed.
//
// Open-addressing hash table whose entries are allocated from an arena. Belongs to one thread; only
// StatBatch::Examine may run on a different one.
class MtimeCache {
 public:
  // Seconds since 1970; nullopt if the file can't be queried.
  using Time = std::optional<std::int64_t>;

  // Cached state of one file. The address is stable until the next Invalidate.
  struct Entry {
    enum class State : std::uint8_t { Open, Requested, Known };
    State state = State::Open;
    bool exists = false;
    FileStatus status;  // if it exists

    bool IsKnown() const { return state == State::Known; }
    Time GetTime() const { return exists ? Time(status.modifiedSeconds) : std::nullopt; }
  };

  class StatBatch;

  explicit MtimeCache(FileSystem& fileSystem) : files_(fileSystem) {}

  // Returns the state of the file, querying the disk if it is not cached.
  const Entry& Get(std::string_view path);
  // Same without accessing the disk; returns nullptr if the state is not cached.
  const Entry* Find(std::string_view path) const;

  // Stores the results of a batch; files without a result may be requested again. Does nothing
  // if the cache was invalidated after the requests were made, because a file may have changed
  // after it was queried.
  void SetResults(const StatBatch& batch);

  // Invalidates the whole cache.
  void Invalidate();
  // Changes with each Invalidate.
  std::uint64_t GetEpoch() const { return epoch_; }
  // Forgets the state of a file, and of all files of the same name, because a path through a link
  // may be the same file. No batch may be unfinished. The first call takes time for each file.
  void Forget(std::string_view path);
  // Changes with each Invalidate and each Forget.
  std::uint64_t GetChangeCount() const { return changes_; }

 private:
  // A cache entry, allocated together with its null-terminated path.
  struct Slot {
    Entry entry;
    std::uint64_t hash = 0;
    std::size_t length = 0;
    Slot* sameName = nullptr;  // next file of the same name, see FilesNamed

    const char* Path() const { return reinterpret_cast<const char*>(this + 1); }
  };
  // Storage of all entries, which are freed together. Batches share ownership.
  class Store {
   public:
    Store() : slots_(256) {}
    bool IsEmpty() const { return count_ == 0; }
    Slot* Find(std::string_view path) const;
    // Returns the entry for the path; creates one in state Open if there is none.
    Slot& FindOrAdd(std::string_view path);
    // Returns the first of the files with the same last component, ignoring case; may be null.
    Slot* FilesNamed(std::string_view path);

   private:
    // Linear probing: the slot of the path, or the free slot where it belongs.
    std::size_t SlotOf(std::string_view path, std::uint64_t hash) const;
    void Grow();
    void AddByName(Slot& slot);

    std::pmr::monotonic_buffer_resource memory_;
    std::vector<Slot*> slots_;  // size is a power of two; load factor at most 1/2
    std::size_t count_ = 0;
    std::unordered_map<std::uint64_t, Slot*> byName_;  // by hash; empty until FilesNamed
  };

  FileSystem& files_;
  std::shared_ptr<Store> store_ = std::make_shared<Store>();
  std::uint64_t epoch_ = 1;
  std::uint64_t changes_ = 1;
};

// A batch of files to be queried together, on a thread chosen by the caller.
class MtimeCache::StatBatch {
 public:
  // Adds the file unless it has been requested since the last Invalidate, in this batch or another.
  // Returns the entry that will have the result. Call it on the thread of `times`.
  const Entry& Add(MtimeCache& times, std::string_view path);
  bool IsEmpty() const { return requested_.empty(); }
  // Queries at least one file, and more until the deadline. May be called on any thread as long as
  // no other thread uses the batch.
  void Examine(FileSystem& fileSystem, std::chrono::steady_clock::time_point deadline);

 private:
  friend class MtimeCache;

  std::shared_ptr<Store> store_;
  std::vector<Slot*> requested_;
  std::vector<std::optional<FileStatus>> found_;  // results so far, in the order of `requested`
};

}  // namespace tarn
