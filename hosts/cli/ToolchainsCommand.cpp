#include <algorithm>
#include <nlohmann/json.hpp>

#include "hosts/cli/Commands.h"
#include "hosts/cli/DisplayText.h"
#include "hosts/core/Toolchains.h"

namespace tarn::host {

namespace {

std::string DescribeToolchain(const Toolchain& each) {
  if (!each.path.empty()) {
    return each.path + (each.version.empty() ? "" : "  " + each.version);
  }
  const std::string where = each.folder.empty() ? "not in PATH" : "not in " + each.folder;
  return each.program + " is " + where + (each.hint.empty() ? "" : ". " + each.hint);
}

void PrintToolchains(CommandContext& context, const std::vector<Toolchain>& toolchains) {
  Console& out = context.Out();
  std::size_t width = 0;
  for (const Toolchain& each : toolchains) {
    width = std::max(width, ColumnsOf(Printable(each.name)));
  }
  for (const Toolchain& each : toolchains) {
    out.PrintLine(Padded(Printable(each.name), width) + "  " + Printable(DescribeToolchain(each)));
  }
}

nlohmann::json ToolchainsToJson(const std::vector<Toolchain>& toolchains) {
  nlohmann::json list = nlohmann::json::array();
  for (const Toolchain& each : toolchains) {
    list.push_back({{"name", each.name},
                    {"program", each.program},
                    {"path", each.path},
                    {"version", each.version},
                    {"variable", each.variable},
                    {"folder", each.folder},
                    {"hint", each.hint}});
  }
  return list;
}

int RunToolchains(CommandContext& context) {
  if (const int code = context.StartSession(); code != kExitDone) return code;
  std::vector<Toolchain> toolchains = FindToolchains(context.Session().Tools().ListTools());
  for (Toolchain& each : toolchains) FindVersion(ProcessLauncher::Native(), each);
  if (context.Asked().json) {
    PrintJson(context, ToolchainsToJson(toolchains));
  } else {
    PrintToolchains(context, toolchains);
  }
  return kExitDone;
}

}  // namespace

CommandSpec ToolchainsCommand() {
  return {
      .name = "toolchains",
      .group = CommandGroup::Settings,
      .help = "List the compilers, their versions, and how to get missing ones",
      .run = RunToolchains,
  };
}

}  // namespace tarn::host
