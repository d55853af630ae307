#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tarn {

// Returns the names that the user may have meant by the misspelled `word`, the nearest first: a few
// letters wrong, missing, added or swapped, or a prefix of the name. Case-insensitive. Compares by
// edit distance, at a cost of O(length of the word x total length of the names).
std::vector<std::string> FindNearNames(std::string_view word,
                                       const std::vector<std::string>& names);

// Returns ` Did you mean "a" or "b"?` with its leading space, or an empty string.
std::string SuggestionText(std::string_view word, const std::vector<std::string>& names);

// Returns " Did you mean "a" or "b"?" for these names; an empty string if there are none.
std::string ProposalText(const std::vector<std::string>& names);

}  // namespace tarn
