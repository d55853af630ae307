#pragma once

#include <string_view>

namespace tarn::host {

// Returns true if a path or one of its parent folders matches the pattern, both relative to the
// same folder. * and ? match within a component, ** any number of components; a slash at the end is
// ignored. A pattern without a slash in it matches a component at any depth, one that starts with a
// slash only at the top. Upper and lower case differ.
bool FitsPathPattern(std::string_view path, std::string_view pattern);

}  // namespace tarn::host
