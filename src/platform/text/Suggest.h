#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tarn {

// The names that somebody may have meant who wrote `word`, the nearest first: a few letters wrong,
// missing, too many or swapped, or the beginning of a name. Case plays no part.
std::vector<std::string> FindNearNames(std::string_view word,
                                       const std::vector<std::string>& names);

// ` Did you mean "a" or "b"?` with its leading blank, or nothing.
std::string SuggestionText(std::string_view word, const std::vector<std::string>& names);

}  // namespace tarn
