// The input is a definition file, stored options and a values string. The component must accept all
// three, and what it writes must read back as the same values.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "components/options/PropertyManager.h"
#include "components/values/OptionValues.h"
#include "support/MemoryFileSystem.h"

namespace {

constexpr const char* kFile = "/c/projectmanager.config";

void Require(bool holds) {
  if (!holds) std::abort();
}

void ReadEverything(tarn::options::PropertyManager& manager, const std::string& input) {
  manager.ReadDefsFromFile("", kFile);
  manager.ListProperties("");
  manager.GetDefinitionErrors();
  manager.SetCurrentConfig("Debug");
  manager.ReadValuesFromText(input.c_str());
  manager.EndParentLevel();
  manager.BeginChildLevel();
  manager.ReadDefsFromFile("C", kFile);
  manager.SetPropertyValue("C", "General", "Header", input.c_str());
  manager.SetPropertyValue("C", "A", "B", input.c_str());
  manager.ApplyOptions("Debug", input.c_str());
  manager.GetPropertyValue("", "A", "B");
  manager.CheckValue("C", "A", "B", input.c_str());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string input = std::string(reinterpret_cast<const char*>(data), size).c_str();
  tarn::testing::MemoryFileSystem disk;
  disk.AddFile(kFile, input);
  tarn::options::PropertyManager manager(disk);
  ReadEverything(manager, input);

  const std::string text = manager.GetValuesAsText("", "", "");
  Require(text.find_first_of("]\r\n\xA7") == std::string::npos);
  const tarn::OptionValues values = tarn::OptionValues::FromText(text);
  const std::string* header = values.Find("C", "General", "Header");
  Require(header != nullptr);
  manager.ClearValues();
  manager.ReadValuesFromText(text.c_str());
  Require(manager.GetPropertyValue("C", "General", "Header") == *header);
  Require(manager.GetValuesAsText("", "", "") == text);
  return 0;
}
