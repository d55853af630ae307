#pragma once

#include <string>

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

}  // namespace tarn::host
