#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tarn {

// The outer form of a build state file: a first line with the form's version and the project file
// that it belongs to, then blocks, each with its length and checksum. Blocks are only ever added at
// the end. The checksum of a block continues that of the one before, so a file that was cut,
// changed or put together from two is good up to the first block that isn't as it was written.

enum class StateVerdict {
  Good,
  Cut,           // good up to a place, damaged after it
  Damaged,       // not a state file, or its first line was changed
  OtherVersion,  // written by a program that uses another form
  Foreign,       // belongs to another project file
  Unreadable,    // there, but the system or a symbolic link keeps it from being read
};

// `projectFileName` is the name without folder: a project may move with its state.
std::string StateHead(std::string_view projectFileName);
std::string StateBlock(std::string_view body, std::uint64_t& chain);

// Splits a state file. On Good, Next returns the blocks in order.
class StateReader {
 public:
  StateReader(std::string_view bytes, std::string_view projectFileName);

  StateVerdict GetVerdict() const { return verdict_; }
  // The body of the next good block, borrowed from the bytes; false after the last.
  bool Next(std::string_view& body);
  // Length of the head and the blocks returned so far, and the checksum that the next one
  // continues.
  std::size_t GetLength() const { return length_; }
  std::uint64_t GetChain() const { return chain_; }

 private:
  std::string_view bytes_;
  StateVerdict verdict_ = StateVerdict::Damaged;
  std::size_t length_ = 0;
  std::uint64_t chain_ = 0;
};

// A 64-bit checksum that differs whenever one run of eight bytes differs. Against accidents, not
// against an attacker.
std::uint64_t StateChecksum(std::string_view bytes, std::uint64_t seed = 0);

// Sixteen hexadecimal digits, and back; false unless there are exactly those.
std::string ToHex(std::uint64_t number);
bool FromHex(std::string_view digits, std::uint64_t& number);

// A string on one line, and back: line feeds and percent signs are written as %0A and %25. Parsing
// returns false if a percent sign stands before anything else.
void AppendLineText(std::string& out, std::string_view text);
bool ParseLineText(std::string_view line, std::string& text);

}  // namespace tarn
