#include "patterns/PatternLead.h"

#include <cstring>
#include <utility>
#include <vector>

namespace tarn {
namespace {

// Larger sets hardly distinguish a start from any other position.
constexpr int kMostBytes = 128;

// Breadth-first exploration of all beginnings of a match, byte by byte.
class LeadFinder {
 public:
  LeadFinder(const PatternSteps& patternSteps, std::string_view programBytes)
      : steps(patternSteps), code(programBytes), places{{steps.data(), 0}} {}

  // Adds all possible values of the next byte to `bytes`. Returns false if a match may already have
  // ended.
  bool Next(ByteSet& bytes) {
    seen.assign(steps.size(), 0);
    after.clear();
    while (!places.empty()) {
      const Place place = places.back();
      places.pop_back();
      if (place.taken == 0 && WasSeen(place.step)) continue;
      if (place.step->kind == PatternStep::End) return false;
      Follow(place, bytes);
    }
    places.swap(after);
    return true;
  }

 private:
  // A step, and the number of bytes of its literal that were consumed.
  struct Place {
    const PatternStep* step;
    std::uint32_t taken;
  };

  bool WasSeen(const PatternStep* step) {
    const auto number = static_cast<std::size_t>(step - steps.data());
    return std::exchange(seen[number], 1) != 0;
  }

  void Follow(const Place& place, ByteSet& bytes) {
    const PatternStep& step = *place.step;
    switch (step.kind) {
      case PatternStep::Literal: {
        bytes.Add(code[step.literal + place.taken]);
        const std::uint32_t taken = place.taken + 1;
        after.push_back(taken < step.length ? Place{place.step, taken} : Place{step.next, 0});
        break;
      }
      case PatternStep::Take:
        bytes |= step.bytes;
        after.push_back({step.next, 0});
        break;
      case PatternStep::Star:
        bytes |= step.bytes;
        after.push_back({place.step, 0});
        places.push_back({step.next, 0});
        break;
      case PatternStep::Split:
        places.push_back({step.other, 0});
        places.push_back({step.next, 0});
        break;
      default:
        places.push_back({step.next, 0});
    }
  }

  const PatternSteps& steps;
  std::string_view code;
  std::vector<Place> places;
  std::vector<Place> after;
  std::vector<char> seen;
};

// Returns an estimate of how often the bytes occur in tool output.
int Frequency(const ByteSet& bytes) {
  constexpr ByteSet kFrequent(" abcdefghijklmnopqrstuvwxyz");
  constexpr ByteSet kSometimes("ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789.-_/");
  return bytes.Count() + 9 * (bytes & kFrequent).Count() + 2 * (bytes & kSometimes).Count();
}

}  // namespace

PatternLead::PatternLead(const PatternSteps& steps, std::string_view code) {
  LeadFinder finder(steps, code);
  int lowest = 0;
  for (; length < kMost; ++length) {
    ByteSet& bytes = sets[length];
    if (!finder.Next(bytes)) break;
    const int count = bytes.Count();
    if (count > kMostBytes) break;
    const int frequency = Frequency(bytes);
    if (length == 0 || frequency < lowest) {
      lowest = frequency;
      rarest = static_cast<std::ptrdiff_t>(length);
      rarestByte = count == 1 ? bytes.First() : '\0';
    }
  }
}

const char* PatternLead::FindStart(const char* at, const char* end) const {
  if (length == 0) return at;
  const ByteSet& bytes = sets[static_cast<std::size_t>(rarest)];
  for (; end - at > rarest; ++at) {
    const char* found = at + rarest;
    if (rarestByte != '\0') {
      const auto rest = static_cast<std::size_t>(end - found);
      found = static_cast<const char*>(std::memchr(found, rarestByte, rest));
      if (!found) return nullptr;
    } else {
      while (found != end && !bytes.Has(*found)) ++found;
      if (found == end) return nullptr;
    }
    at = found - rarest;
    if (MayStartAt(at)) return at;
  }
  return nullptr;
}

}  // namespace tarn
