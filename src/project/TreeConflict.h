#pragma once

#include <string>

namespace tarn {

// A position in a file that two sides changed differently. Our side's version is kept.
struct TreeConflict {
  std::string place;  // labels below the root, joined with "/"
  std::string what;
};

}  // namespace tarn
