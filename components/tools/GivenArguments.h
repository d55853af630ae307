#pragma once

#include <string>
#include <vector>

#include "components/tools/CommandBuilder.h"

namespace tarn::tools {

// The arguments of a command in the form in which they reach the programs that act on them.
struct GivenArguments {
  // "-Wl,a,b" and "-Xlinker a" are replaced by what they pass on, "@file" by the words in the file.
  // The arguments of a launcher are left out.
  std::vector<std::string> words;
  std::vector<std::string> responseFiles;  // absolute, each once, also those that others name
};

GivenArguments ExpandArguments(const ToolCommand& command, FileSystem* disk);

struct FlagValue {
  std::size_t flag = 0;  // its position in the list of flags
  std::string value;
};

// Like ValuesOf, with the flag of each value. Of several flags that a word begins with the longest
// one counts.
std::vector<FlagValue> FlagValuesOf(const std::vector<std::string>& flags,
                                    const std::vector<std::string>& words);

// Returns the values of the flags in order. A flag with one dash is followed by its value in the
// same word or in the next one, a flag with two dashes by "=" and the value or by the next word.
std::vector<std::string> ValuesOf(const std::vector<std::string>& flags,
                                  const std::vector<std::string>& words);

// Returns whether such arguments make a compiler leave the assembler's code to the link.
bool LeavesCodeToTheLink(const ToolDefinition& tool, const std::vector<std::string>& words);

}  // namespace tarn::tools
