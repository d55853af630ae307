#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <memory_resource>
#include <optional>
#include <string_view>
#include <vector>

#include "platform/files/FileSystem.h"

namespace tarn {

// Modification times of files as examined since the last Forget, so that a walk over an
// up-to-date tree examines each file once, however many nodes depend on it. Whoever may have
// changed a file (a tool that ran, a deletion, the end of a walk) makes it forget everything.
//
// Belongs to one thread; an Inquiry may be answered on another.
class FileTimes {
 public:
  // Seconds since 1970; nothing when the file cannot be examined.
  using Time = std::optional<std::int64_t>;

  // What is known of one file. Stays where it is until the next Forget.
  struct Look {
    enum class State : std::uint8_t { Open, Asked, Known };
    State state = State::Open;
    bool exists = false;
    FileStatus status;  // if it exists

    bool IsKnown() const { return state == State::Known; }
    Time GetTime() const { return exists ? Time(status.modifiedSeconds) : std::nullopt; }
  };

  class Inquiry;

  explicit FileTimes(FileSystem& fileSystem) : files(fileSystem) {}

  const Look& Get(std::string_view path);
  // Returns the same without looking at the disk; null if it would have to look.
  const Look* Find(std::string_view path) const;

  // The answers become known, and what has none can be asked for anew. Nothing happens when
  // everything was forgotten since the questions were put: whoever made it forget may have changed
  // a file behind the look at it.
  void Take(const Inquiry& inquiry);

  void Forget();
  // Changes with each Forget.
  std::uint64_t GetEpoch() const { return epoch; }

 private:
  // A file and what is known of it, in one piece with its terminated path.
  struct Known {
    Look look;
    std::uint64_t hash = 0;
    std::size_t length = 0;

    const char* Path() const { return reinterpret_cast<const char*>(this + 1); }
  };
  // All at once, since all is forgotten at once. An inquiry keeps what it needs alive.
  class Store {
   public:
    Store() : places(256) {}
    bool IsEmpty() const { return count == 0; }
    Known* Find(std::string_view path) const;
    // Makes one that isn't known at all when there is none.
    Known& FindOrAdd(std::string_view path);

   private:
    std::size_t PlaceOf(std::string_view path, std::uint64_t hash) const;
    void Grow();

    std::pmr::monotonic_buffer_resource memory;
    std::vector<Known*> places;  // a power of two, at most half of them taken
    std::size_t count = 0;
  };

  FileSystem& files;
  std::shared_ptr<Store> store = std::make_shared<Store>();
  std::uint64_t epoch = 1;
};

// Files whose times are wanted, to be looked at in one go, wherever there is time for it.
class FileTimes::Inquiry {
 public:
  // Adds the file unless somebody asked for it since the last Forget, be it in another inquiry, and
  // gives the place of the answer. On the thread of `times`.
  const Look& Add(FileTimes& times, std::string_view path);
  bool IsEmpty() const { return asked.empty(); }
  // Looks at one file at least, and at further ones until the time is up. On any thread, while no
  // other uses the inquiry.
  void Examine(FileSystem& fileSystem, std::chrono::steady_clock::time_point deadline);

 private:
  friend class FileTimes;

  std::shared_ptr<Store> store;
  std::vector<Known*> asked;
  std::vector<std::optional<FileStatus>> found;  // as far as examined, in the order of `asked`
};

}  // namespace tarn
