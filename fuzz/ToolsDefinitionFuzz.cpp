#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "components/tools/CommandBuilder.h"
#include "components/tools/DefinitionReader.h"

// Any definition file, and the command lines of every tool that it gives.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tarn;
  tools::ReadDefinitions read;
  tools::ReadDefinitionFile(std::string(reinterpret_cast<const char*>(data), size), "f", read);
  OptionValues values("C");
  values.Put("", "C", "D", "a;b c;../d");
  values.Put("", "C", "E", "-a 'b c' \"");
  values.Put("", "Build", "OutputFile", "out/a.o");
  tools::ToolJob job{{"/p/a.c", "/p/b c.c"}, &values, "/p", "wrap"};
  for (const auto& tool : read.tools) {
    if (tool->steps.empty()) std::abort();
    const tools::ToolPlan plan = tools::MakePlan(*tool, job);
    if (plan.commands.size() > tool->steps.size()) std::abort();
    for (const tools::ToolCommand& command : plan.commands) {
      if (command.launched > command.arguments.size()) std::abort();
    }
  }
  return 0;
}
