#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tarn::host {

// What a state file of this program says about itself in its first line: the version of its form,
// the length and the checksum of what follows, and the project file that it belongs to. A file is
// taken as a whole or not at all, so that a cut or damaged one can only cost a rebuild.

// Of what follows the first line, when all of it is as it was written.
enum class StateVerdict {
  Good,
  Damaged,       // cut, changed, or no state file at all
  OtherVersion,  // written by a program that uses another form
  Foreign,       // belongs to another project file
};

struct StateBody {
  StateVerdict verdict = StateVerdict::Damaged;
  std::string_view text;  // borrowed from the bytes; empty unless Good
};

// `projectFileName` is the name without folder: a project may move with its state.
std::string WrapState(std::string_view projectFileName, std::string_view body);
StateBody UnwrapState(std::string_view bytes, std::string_view projectFileName);

// 64 bits that differ whenever one run of eight bytes differs. For accidents, not for enemies.
std::uint64_t StateChecksum(std::string_view bytes);

// Sixteen hexadecimal digits, and back; false unless exactly that stands there.
std::string ToHex(std::uint64_t number);
bool FromHex(std::string_view digits, std::uint64_t& number);

// A text on one line, and back: line feeds and percent signs are written as %0A and %25.
// Parsing gives false when a percent sign stands in front of anything else.
void AppendLineText(std::string& out, std::string_view text);
bool ParseLineText(std::string_view line, std::string& text);

}  // namespace tarn::host
