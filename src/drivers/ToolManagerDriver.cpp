#include "drivers/ToolManagerDriver.h"

#include <tarn/methods.h>

namespace tarn {

std::int32_t CToolManagerDriver::InitTools(TextArgument applicationPath, TextArgument dataPath,
                                           std::int32_t frame) {
  return InvokeLong(TARN_TOOL_INIT_TOOLS, {applicationPath, dataPath, frame});
}

std::int32_t CToolManagerDriver::RunTool(TextArgument tool, TextArgument files,
                                         TextArgument options, TextArgument messageFile) {
  return InvokeLong(TARN_TOOL_RUN_TOOL, {tool, files, options, messageFile});
}

std::string CToolManagerDriver::GetToolsForExtension(TextArgument extension) {
  return InvokeText(TARN_TOOL_GET_TOOLS_FOR_EXTENSION, {extension});
}

std::string CToolManagerDriver::GetCommandHash(TextArgument tool, TextArgument files,
                                               TextArgument options) {
  return InvokeTextByName("GetCommandHash", {tool, files, options});
}

std::string CToolManagerDriver::GetToolFingerprint(TextArgument tool) {
  return InvokeTextByName("GetToolFingerprint", {tool});
}

std::int32_t CToolManagerDriver::SetDefinitionFolders(TextArgument folders) {
  return InvokeLong(TARN_TOOL_SET_DEFINITION_FOLDERS, {folders});
}

std::int32_t CToolManagerDriver::RefreshTools() {
  return InvokeLong(TARN_TOOL_REFRESH_TOOLS, {});
}

std::string CToolManagerDriver::GetUsedFiles(TextArgument tool, TextArgument files,
                                             TextArgument options, TextArgument candidates) {
  return InvokeText(TARN_TOOL_GET_USED_FILES, {tool, files, options, candidates});
}

std::string CToolManagerDriver::GetAccess(TextArgument tool, TextArgument files,
                                          TextArgument options) {
  return InvokeText(TARN_TOOL_GET_ACCESS, {tool, files, options});
}

std::string CToolManagerDriver::GetRunFiles(TextArgument tool, TextArgument files,
                                            TextArgument options) {
  std::string found = InvokeText(TARN_TOOL_GET_RUN_FILES, {tool, files, options});
  return found.empty() ? GetAccess(tool, files, options) : found;
}

std::int32_t CToolManagerDriver::GetJobs() {
  return InvokeLong(TARN_TOOL_GET_JOBS, {});
}

std::int32_t CToolManagerDriver::PrepareTool(TextArgument tool, TextArgument files,
                                             TextArgument options) {
  return InvokeLong(TARN_TOOL_PREPARE_TOOL, {tool, files, options});
}

std::int32_t CToolManagerDriver::AwaitTool(TextArgument tool, TextArgument files,
                                           TextArgument options) {
  return InvokeLong(TARN_TOOL_AWAIT_TOOL, {tool, files, options});
}

std::int32_t CToolManagerDriver::DropTools() {
  return InvokeLong(TARN_TOOL_DROP_TOOLS, {});
}

}  // namespace tarn
