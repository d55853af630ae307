#pragma once

#include <cstdint>
#include <string>

#include "platform/automation/DispatchDriver.h"

namespace tarn {

// The late-bound caller of the tool manager: the component that runs translators, linkers and all
// other project tools. Exists whether a component is attached or not; without one each call fails
// and gives 0 or an empty text. The build's worker and the host's thread may call at once.
class CToolManagerDriver : public COleDispatchDriver {
 public:
  static constexpr const char* kProgId = "TarnToolManager.ToolManager";

  std::int32_t InitTools(TextArgument applicationPath, TextArgument dataPath, std::int32_t frame);
  // Runs one tool and returns at its end; not 0 when it succeeded. `files` are paths in double
  // quotes, joined by commas; `options` the option values of the node; `messageFile` where the tool
  // leaves its messages, or null.
  std::int32_t RunTool(TextArgument tool, TextArgument files, TextArgument options,
                       TextArgument messageFile);
  // An element whose children are the commands for files of that extension (with its dot).
  std::string GetToolsForExtension(TextArgument extension);

  // What a component may offer beyond that; an empty string from one that doesn't.
  // A hash of the command lines that RunTool would start, launchers left out.
  std::string GetCommandHash(TextArgument tool, TextArgument files, TextArgument options);
  // Changes with the tool's definition and with the programs that it would start.
  std::string GetToolFingerprint(TextArgument tool);
  // Reads changed definitions again; not 0 if there were any.
  std::int32_t RefreshTools();
  // Those of the candidates that the tool would read, all lists like `files` of RunTool. Empty for
  // components that don't tell.
  std::string GetUsedFiles(TextArgument tool, TextArgument files, TextArgument options,
                           TextArgument candidates);
  // What the run would reach for because of its options, as JoinFileTexts writes files, with its
  // kind for a path: "code" (in words that follow "run"), "program", "write" and "maybe" (paths).
  // Empty for components that don't tell.
  std::string GetAccess(TextArgument tool, TextArgument files, TextArgument options);
};

}  // namespace tarn
