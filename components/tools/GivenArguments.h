#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "components/tools/CommandBuilder.h"

namespace tarn::tools {

// The arguments of a command in the form in which they reach the programs that interpret them.
struct GivenArguments {
  // Without the arguments of a launcher. "-Wl,a,b", "-Wl-a,b" and "-Xlinker a" are replaced with
  // the arguments they pass on, and "@file" with the words in the file if it can be read and was
  // not named before.
  std::vector<std::string> words;
  // For each word, the letter of the program that the compiler passes it on to: "a"ssembler,
  // "l"inker or "p"reprocessor. A space if the compiler itself interprets it.
  std::string receivers;
  std::vector<std::string> responseFiles;  // absolute, without duplicates, including nested ones
};

GivenArguments ExpandArguments(const ToolCommand& command, FileSystem* disk);

// Returns the longest flag that is a prefix of the word, or nullptr.
const std::string* FindFlag(const std::vector<std::string>& flags, std::string_view word);

// Returns true if the pattern that fits the argument at this index most closely is not an
// exception. The value of a flag takes part in the comparison even if it is the next argument.
bool FitsPattern(const ArgumentPatterns& patterns, const std::vector<std::string>& words,
                 std::size_t at);

// A value of a flag in a list of arguments.
struct FlagValue {
  std::size_t flag = 0;  // index in the list of flags
  std::string value;
};

// Like ValuesOf, but also returns the flag of each value. If a word starts with several flags, the
// longest one wins.
std::vector<FlagValue> FlagValuesOf(const std::vector<std::string>& flags,
                                    const std::vector<std::string>& words);

// Returns the values of the flags in order. The value of a flag with one dash is the rest of the
// word or the next word; that of a flag with two dashes follows "=" or is the next word.
std::vector<std::string> ValuesOf(const std::vector<std::string>& flags,
                                  const std::vector<std::string>& words);

// Returns true if these arguments make a compiler defer assembling to the link (link-time
// optimization).
bool LeavesCodeToTheLink(const ToolDefinition& tool, const std::vector<std::string>& words);

}  // namespace tarn::tools
