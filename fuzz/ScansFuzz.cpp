#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <set>

#include "components/tools/CarriedOptions.h"
#include "components/tools/FileList.h"
#include "components/tools/GivenArguments.h"
#include "components/tools/ThinArchive.h"
#include "patterns/IncludeScan.h"
#include "patterns/TestedNames.h"

namespace {

// Checks names that are looked up on disk: not empty, unique, and not longer than the input.
void CheckNames(const std::vector<std::string>& names, std::size_t size) {
  std::set<std::string> seen;
  for (const std::string& name : names) {
    if (name.empty() || name.size() > size || !seen.insert(name).second) std::abort();
  }
}

}  // namespace

// The input is a source, a linker script and arguments, all of which come from untrusted authors.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  CheckNames(tarn::FindIncludes(text), size);
  const tarn::ScriptNames script = tarn::FindScriptNames(text);
  CheckNames(script.inputs, size);
  CheckNames(script.folders, size);
  if (tarn::HasComputedTest(text)) {
    const tarn::MacroScan scan = tarn::ScanMacros(text);
    const tarn::MacroScan* const scans[] = {&scan};
    static_cast<void>(tarn::FindTestedNames(scans));
  }
  CheckNames(tarn::tools::ReadThinArchive(text), size);
  tarn::tools::CarriedOptions carried;
  tarn::tools::ReadCarriedOptions({{".gnu.lto_", ".opts"}}, text, carried);
  tarn::tools::ToolCommand command;
  command.arguments = tarn::tools::SplitWords(text);
  const auto given = tarn::tools::ExpandArguments(command, nullptr);
  std::size_t length = 0;
  for (const std::string& word : given.words) length += word.size();
  if (length > size) std::abort();
  for (const std::string& value : tarn::tools::ValuesOf({"-I", "--sysroot"}, given.words)) {
    if (value.empty()) std::abort();
  }
  return 0;
}
