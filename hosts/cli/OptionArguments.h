#pragma once

#include <string>

namespace tarn::host {

// The values that only the commands below `tarn options` have.
struct OptionArguments {
  std::string key;    // SECTION.NAME or SET.SECTION.NAME
  std::string value;  // of options set; may be empty
};

}  // namespace tarn::host
