#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tarn::tools {

// The paths of a list in which each stands between quotes and commas stand between them; a comma
// inside quotes belongs to its path, and a name without quotes is taken too. Separators are those
// of this machine. Empty entries are left out.
std::vector<std::string> SplitFileList(std::string_view list);

// The entries of an option value: separated by ";", blanks around them taken off, none empty.
std::vector<std::string> SplitOptionList(std::string_view list);

// The words of a command line as a user writes it: blanks separate, quotes of both kinds hold
// together, a backslash protects a quote, a backslash or a blank. Nothing is expanded.
std::vector<std::string> SplitWords(std::string_view line);

// The words as a person reads them: those with blanks or quotes in them stand between quotes.
std::string JoinWords(const std::vector<std::string>& words);

}  // namespace tarn::tools
