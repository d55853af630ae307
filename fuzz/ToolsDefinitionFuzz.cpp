#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "components/tools/CommandBuilder.h"
#include "components/tools/MessageReader.h"
#include "components/tools/ToolDefinitionReader.h"

// Reads any definition file and creates the command lines of all its tools.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tarn;
  const std::string text(reinterpret_cast<const char*>(data), size);
  const tools::ReadDefinitions read = tools::ReadDefinitionFiles({{"f", text}});
  OptionValues values("C");
  values.Put("", "C", "D", "a;b c;../d");
  values.Put("", "C", "E", "-a 'b c' \"");
  values.Put("", "Build", "OutputFile", "out/a.o");
  tools::ToolInvocation job{{"/p/a.c", "/p/b c.c"}, &values, "/p", "wrap"};
  for (const auto& tool : read.tools) {
    if (tool->steps.empty()) std::abort();
    const tools::ToolMessage message =
        tools::MessageReader(tool->messages, "/p").Read("a.c:3:1: error: x");
    if (message.text.empty()) std::abort();
    const tools::ToolPlan plan = tools::MakePlan(*tool, job);
    if (plan.commands.size() > tool->steps.size()) std::abort();
    for (const tools::ToolCommand& command : plan.commands) {
      if (command.launched > command.arguments.size()) std::abort();
    }
  }
  return 0;
}
