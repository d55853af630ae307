#pragma once

#include <string>
#include <vector>

namespace tarn {
class CXmlNode;
}

namespace tarn::host {

enum class NameFit { None, Similar, Same };

// Returns how well `name`, as a user or another build system writes it, fits the description of a
// target. Letter case, blanks and punctuation are ignored, as in "bluepill" for "Blue Pill", and
// each of its aliases is as good as its name. Similar is a name without its first word, the maker
// of a board: "uno" for "Arduino Uno".
NameFit FitTargetName(const CXmlNode& target, const std::string& name);

// Returns the names of at most three targets that `name` may have been meant for: near misses of
// names and aliases, else names that contain it, else those that it begins with, such as
// "STM32F103C8" for "stm32f103c8t6tr". Letter case, blanks and punctuation are ignored.
std::vector<std::string> FindNearTargets(const std::vector<const CXmlNode*>& targets,
                                         const std::string& name);

}  // namespace tarn::host
