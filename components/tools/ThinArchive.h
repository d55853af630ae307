#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tarn::tools {

// Returns the names of the members of a thin archive, which does not contain the members
// themselves: without duplicates and relative to the archive's folder. Returns nothing for any
// other file. For a damaged archive, returns the members before the damage.
std::vector<std::string> ReadThinArchive(std::string_view bytes);

}  // namespace tarn::tools
