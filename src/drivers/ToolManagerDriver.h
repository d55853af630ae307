#pragma once

#include <cstdint>
#include <string>

#include "platform/automation/DispatchDriver.h"

namespace tarn {

// Late-bound proxy of the tool manager, the component that runs translators, linkers and all other
// project tools. May be used without an attached component; each call then fails and returns 0 or
// an empty string. The build worker and the main thread may call it concurrently.
class CToolManagerDriver : public COleDispatchDriver {
 public:
  static constexpr const char* kProgId = "TarnToolManager.ToolManager";

  std::int32_t InitTools(TextArgument applicationPath, TextArgument dataPath, std::int32_t frame);
  // Runs one tool and returns when it has finished; nonzero if it succeeded. `files` are quoted
  // paths (in double quotes), joined by commas; `options` are the option values of the node;
  // `messageFile` is the path where the tool writes its messages, or null.
  std::int32_t RunTool(TextArgument tool, TextArgument files, TextArgument options,
                       TextArgument messageFile);
  // Returns an element whose children are the commands for files with that extension (including the
  // dot).
  std::string GetToolsForExtension(TextArgument extension);

  // The functions below are optional for a component; they return an empty string if it doesn't
  // support them.
  //
  // Returns a hash of the command lines that `RunTool()` would start, without launchers.
  std::string GetCommandHash(TextArgument tool, TextArgument files, TextArgument options);
  // Returns a value that changes with the tool's definition and with the programs that it would
  // start.
  std::string GetToolFingerprint(TextArgument tool);
  // Reloads changed definitions. Returns nonzero if there were any.
  std::int32_t RefreshTools();
  // Sets further folders with definitions, one per line. Returns 1 if this changes them.
  std::int32_t SetDefinitionFolders(TextArgument folders);
  // Returns those of `candidates` that the tool would read. All lists have the format of `files` in
  // `RunTool()`. Returns an empty string if the component doesn't support this.
  std::string GetUsedFiles(TextArgument tool, TextArgument files, TextArgument options,
                           TextArgument candidates);
  // Returns everything that the run would access because of its options, in the format of
  // JoinFileTexts, with the kind of access in place of a path: identifiers of requests (see
  // TrustRequest), "program", "write" and "maybe" (paths). Returns an empty string if the component
  // doesn't support this.
  std::string GetAccess(TextArgument tool, TextArgument files, TextArgument options);
  // Same without code and programs. Returns GetAccess() if the component doesn't support this.
  std::string GetRunFiles(TextArgument tool, TextArgument files, TextArgument options);

  // Early runs, optional as well: a component without them returns 0 from each function, and every
  // tool runs when RunTool() requests it.
  //
  // Returns the number of tools that may run at the same time; less than 2 if there are no early
  // runs.
  std::int32_t GetJobs();
  // Starts a run that RunTool() will request later, with the same arguments and in the same order
  // as the runs that were started so far. Returns 0 if the run can't start early.
  std::int32_t PrepareTool(TextArgument tool, TextArgument files, TextArgument options);
  // Notifies the frame of the start of an early run and waits for its end. Returns nonzero if
  // RunTool() will return its result, and 0 if it will run the tool.
  std::int32_t AwaitTool(TextArgument tool, TextArgument files, TextArgument options);
  // Stops the early runs that RunTool() did not request, and removes their outputs.
  std::int32_t DropTools();
};

}  // namespace tarn
