// In place of DebugSymbols.cpp where the library that reads debug information is missing.

#include "components/tools/DebugSymbols.h"

namespace tarn::tools {

GlobalSymbols ReadDebugSymbols(std::string&, const std::string&) {
  return {{}, "this build of Tarn can't read debug information", true};
}

}  // namespace tarn::tools
