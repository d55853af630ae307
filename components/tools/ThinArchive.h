#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tarn::tools {

// Returns the names of the members of a thin archive, which holds no content of theirs; each once,
// relative to the archive's folder. Empty for everything else. A damaged archive yields the members
// before the damage.
std::vector<std::string> ReadThinArchive(std::string_view bytes);

}  // namespace tarn::tools
