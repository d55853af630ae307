#include "platform/text/Suggest.h"

#include <algorithm>
#include <utility>

#include "platform/text/Text.h"

namespace tarn {

namespace {

constexpr std::size_t kMostNames = 3;

// Damerau-Levenshtein distance (optimal string alignment): the number of letters to change, add,
// remove or swap with their neighbour. Dynamic programming, O(a x b) time and memory.
std::size_t EditDistance(std::string_view a, std::string_view b) {
  std::vector<std::vector<std::size_t>> cost(a.size() + 1, std::vector<std::size_t>(b.size() + 1));
  for (std::size_t i = 0; i <= a.size(); ++i) {
    for (std::size_t j = 0; j <= b.size(); ++j) {
      if (i == 0 || j == 0) {
        cost[i][j] = i + j;
        continue;
      }
      const std::size_t change = a[i - 1] == b[j - 1] ? 0 : 1;
      cost[i][j] = std::min({cost[i - 1][j] + 1, cost[i][j - 1] + 1, cost[i - 1][j - 1] + change});
      const bool swapped = i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1];
      if (swapped) cost[i][j] = std::min(cost[i][j], cost[i - 2][j - 2] + 1);
    }
  }
  return cost[a.size()][b.size()];
}

}  // namespace

std::vector<std::string> FindNearNames(std::string_view word,
                                       const std::vector<std::string>& names) {
  const std::string wanted = FoldCase(word);
  std::vector<std::pair<std::size_t, std::string>> near;
  for (const std::string& name : names) {
    const std::string folded = FoldCase(name);
    const std::size_t allowed = std::min<std::size_t>(2, (wanted.size() + 1) / 2);
    const bool isBeginning = wanted.size() >= 2 && folded.starts_with(wanted);
    const std::size_t longer = std::max(wanted.size(), folded.size());
    if (!isBeginning && longer - std::min(wanted.size(), folded.size()) > allowed) continue;
    const std::size_t distance = isBeginning ? 0 : EditDistance(wanted, folded);
    if (distance <= allowed || isBeginning) near.emplace_back(distance, name);
  }
  std::stable_sort(near.begin(), near.end(),
                   [](const auto& a, const auto& b) { return a.first < b.first; });
  std::vector<std::string> found;
  for (const auto& [distance, name] : near) {
    const bool isNear = distance <= near.front().first + 1;
    if (isNear && found.size() < kMostNames) found.push_back(name);
  }
  return found;
}

std::string SuggestionText(std::string_view word, const std::vector<std::string>& names) {
  return ProposalText(FindNearNames(word, names));
}

std::string ProposalText(const std::vector<std::string>& near) {
  if (near.empty()) return {};
  std::string text = " Did you mean ";
  for (std::size_t i = 0; i < near.size(); ++i) {
    if (i > 0) text += i + 1 == near.size() ? " or " : ", ";
    text += '"' + near[i] + '"';
  }
  return text + "?";
}

}  // namespace tarn
