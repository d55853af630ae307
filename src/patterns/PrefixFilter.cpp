#include "patterns/PrefixFilter.h"

#include <cstring>
#include <utility>
#include <vector>

namespace tarn {
namespace {

// Larger sets hardly distinguish a start from any other position.
constexpr int kMostBytes = 128;

// Breadth-first exploration of all beginnings of a match, byte by byte.
class PrefixFinder {
 public:
  PrefixFinder(const PatternProgram& patternProgram, std::string_view programBytes)
      : steps_(patternProgram), code_(programBytes), places_{{steps_.data(), 0}} {}

  // Adds all possible values of the next byte to `bytes`. Returns false if a match may already have
  // ended.
  bool Next(ByteSet& bytes) {
    seen_.assign(steps_.size(), 0);
    after_.clear();
    while (!places_.empty()) {
      const Place place = places_.back();
      places_.pop_back();
      if (place.taken == 0 && WasSeen(place.step)) continue;
      if (place.step->kind == PatternInstruction::End) return false;
      Follow(place, bytes);
    }
    places_.swap(after_);
    return true;
  }

 private:
  // A step, and the number of bytes of its literal that were consumed.
  struct Place {
    const PatternInstruction* step;
    std::uint32_t taken;
  };

  bool WasSeen(const PatternInstruction* step) {
    const auto number = static_cast<std::size_t>(step - steps_.data());
    return std::exchange(seen_[number], 1) != 0;
  }

  void Follow(const Place& place, ByteSet& bytes) {
    const PatternInstruction& step = *place.step;
    switch (step.kind) {
      case PatternInstruction::Literal: {
        bytes.Add(code_[step.literal + place.taken]);
        const std::uint32_t taken = place.taken + 1;
        after_.push_back(taken < step.length ? Place{place.step, taken} : Place{step.next, 0});
        break;
      }
      case PatternInstruction::MatchByte:
        bytes |= step.bytes;
        after_.push_back({step.next, 0});
        break;
      case PatternInstruction::Star:
        bytes |= step.bytes;
        after_.push_back({place.step, 0});
        places_.push_back({step.next, 0});
        break;
      case PatternInstruction::Split:
        places_.push_back({step.other, 0});
        places_.push_back({step.next, 0});
        break;
      default:
        places_.push_back({step.next, 0});
    }
  }

  const PatternProgram& steps_;
  std::string_view code_;
  std::vector<Place> places_;
  std::vector<Place> after_;
  std::vector<char> seen_;
};

// Returns an estimate of how often the bytes occur in tool output.
int Frequency(const ByteSet& bytes) {
  constexpr ByteSet kFrequent(" abcdefghijklmnopqrstuvwxyz");
  constexpr ByteSet kSometimes("ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789.-_/");
  return bytes.Count() + 9 * (bytes & kFrequent).Count() + 2 * (bytes & kSometimes).Count();
}

}  // namespace

PrefixFilter::PrefixFilter(const PatternProgram& steps, std::string_view code) {
  PrefixFinder finder(steps, code);
  int lowest = 0;
  for (; length_ < kMost; ++length_) {
    ByteSet& bytes = sets_[length_];
    if (!finder.Next(bytes)) break;
    const int count = bytes.Count();
    if (count > kMostBytes) break;
    const int frequency = Frequency(bytes);
    if (length_ == 0 || frequency < lowest) {
      lowest = frequency;
      rarest_ = static_cast<std::ptrdiff_t>(length_);
      rarestByte_ = count == 1 ? bytes.First() : '\0';
    }
  }
}

const char* PrefixFilter::FindStart(const char* at, const char* end) const {
  if (length_ == 0) return at;
  const ByteSet& bytes = sets_[static_cast<std::size_t>(rarest_)];
  for (; end - at > rarest_; ++at) {
    const char* found = at + rarest_;
    if (rarestByte_ != '\0') {
      const auto rest = static_cast<std::size_t>(end - found);
      found = static_cast<const char*>(std::memchr(found, rarestByte_, rest));
      if (!found) return nullptr;
    } else {
      while (found != end && !bytes.Has(*found)) ++found;
      if (found == end) return nullptr;
    }
    at = found - rarest_;
    if (MayStartAt(at)) return at;
  }
  return nullptr;
}

}  // namespace tarn
