#include "drivers/ToolManagerDriver.h"

namespace tarn {

namespace {

// Dispatch ids of the tool manager.
enum : DispatchId {
  kRunTool = 2,
  kInitTools = 3,
  kGetToolsForExtension = 9,
  kGetUsedFiles = 107,
  kRefreshTools = 108,
  kGetAccess = 114,
};

}  // namespace

std::int32_t CToolManagerDriver::InitTools(TextArgument applicationPath, TextArgument dataPath,
                                           std::int32_t frame) {
  return InvokeLong(kInitTools, {applicationPath, dataPath, frame});
}

std::int32_t CToolManagerDriver::RunTool(TextArgument tool, TextArgument files,
                                         TextArgument options, TextArgument messageFile) {
  return InvokeLong(kRunTool, {tool, files, options, messageFile});
}

std::string CToolManagerDriver::GetToolsForExtension(TextArgument extension) {
  return InvokeText(kGetToolsForExtension, {extension});
}

std::string CToolManagerDriver::GetCommandHash(TextArgument tool, TextArgument files,
                                               TextArgument options) {
  return InvokeTextByName("GetCommandHash", {tool, files, options});
}

std::string CToolManagerDriver::GetToolFingerprint(TextArgument tool) {
  return InvokeTextByName("GetToolFingerprint", {tool});
}

std::int32_t CToolManagerDriver::RefreshTools() {
  return InvokeLong(kRefreshTools, {});
}

std::string CToolManagerDriver::GetUsedFiles(TextArgument tool, TextArgument files,
                                             TextArgument options, TextArgument candidates) {
  return InvokeText(kGetUsedFiles, {tool, files, options, candidates});
}

std::string CToolManagerDriver::GetAccess(TextArgument tool, TextArgument files,
                                          TextArgument options) {
  return InvokeText(kGetAccess, {tool, files, options});
}

}  // namespace tarn
