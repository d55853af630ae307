#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tarn {

// Container format of a build state file: a header line with the format version and the name of the
// project file, then blocks, each with its length and checksum. Blocks are only appended. Each
// block's checksum is seeded with the previous one's, so a file that was truncated, changed or
// spliced from two is valid up to the first corrupt block.

enum class StateVerdict {
  Good,
  Cut,           // valid up to some offset, damaged after it
  Damaged,       // not a state file, or its header was changed
  OtherVersion,  // written by a program that uses a different format
  Foreign,       // belongs to a different project file
  Unreadable,    // exists, but permissions or a symbolic link prevent reading it
};

// `projectFileName` has no folder, so that a project can be moved with its state.
std::string StateHead(std::string_view projectFileName);
// Returns a block ready to be appended, and updates the chained checksum.
std::string StateBlock(std::string_view body, std::uint64_t& chain);

// Parses a state file. If the verdict is Good, Next returns the blocks in order.
class StateReader {
 public:
  StateReader(std::string_view bytes, std::string_view projectFileName);

  StateVerdict GetVerdict() const { return verdict_; }
  // Returns the body of the next valid block, borrowed from the bytes; false after the last.
  bool Next(std::string_view& body);
  // Length of the header and the blocks returned so far, and the checksum that seeds the next
  // block.
  std::size_t GetLength() const { return length_; }
  std::uint64_t GetChain() const { return chain_; }

 private:
  std::string_view bytes_;
  StateVerdict verdict_ = StateVerdict::Damaged;
  std::size_t length_ = 0;
  std::uint64_t chain_ = 0;
};

// 64-bit checksum that detects every change within a single run of eight bytes. Protects against
// accidents, not against attackers.
std::uint64_t StateChecksum(std::string_view bytes, std::uint64_t seed = 0);

// Converts to and from exactly sixteen hexadecimal digits. FromHex returns false for anything else.
std::string ToHex(std::uint64_t number);
bool FromHex(std::string_view digits, std::uint64_t& number);

// Encodes a string on one line and decodes it: line feeds and percent signs are written as %0A and
// %25. Decoding returns false if any other sequence follows a percent sign.
void AppendLineText(std::string& out, std::string_view text);
bool ParseLineText(std::string_view line, std::string& text);

}  // namespace tarn
