// Reasons why a build doesn't build the whole project, for hosts that must not report such a build
// as successful.

#include <tarn/methods.h>

#include "automation/BuildGaps.h"
#include "automation/ProjectInspector.h"
#include "automation/ProjectManager.h"
#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn {

namespace {

// Optional methods of the components, in addition to those that the server itself calls.

std::unique_ptr<CXmlNode> ListGaps(CProjectModel& model) {
  CToolManagerDriver* tools = model.Services().toolManager;
  return ListBuildGaps(model, [tools](const std::string& tool) {
    return tools == nullptr || tools->InvokeLong(TARN_TOOL_HAS_TOOL, {tool}) != 0 ||
           !tools->LastResult();
  });
}

}  // namespace

std::string ProjectInspector::GetBuildGaps() {
  CProjectModel* model = Model();
  return model == nullptr ? std::string() : ListGaps(*model)->ToString(g_xmlDisplayOptions);
}

std::string ProjectInspector::GetBuildProblem() {
  CProjectModel* model = Model();
  if (model == nullptr) return {};
  const auto list = ListGaps(*model);
  const CXmlNode* fatal = list->FindDescendantByAttr("IsFatal", "Yes");
  if (fatal == nullptr) return {};
  const std::string reason = OrEmpty(fatal->GetAttrValue("Reason"));
  const std::string type = OrEmpty(fatal->GetAttrValue("Type"));
  std::string text = OrEmpty(fatal->GetAttrValue("Header")) + " can't be built: ";
  if (reason == "no-tool") return text + "it has no tool";
  if (reason == "no-file") return text + "it names no file";
  if (reason == "no-application") return text + "it is in no application";
  if (reason == "unknown-tool") return text + "its tool " + type + " isn't defined";
  return text + "its type " + type + " isn't defined";
}

std::string ProjectInspector::GetInstallationProblem() {
  const CProjectModel* model = Model();
  if (model == nullptr) return {};
  const Installation& installation =
      static_cast<CProjectManager*>(manager_.Get())->GetInstallation();
  if (!installation.GetProblem().empty()) return installation.GetProblem();
  if (!model->Services().output->GetMessageProblem().empty())
    return model->Services().output->GetMessageProblem();
  const std::string types = DescribeMissingTypes(model->Types());
  return types.empty() ? FindDefinitionProblem(model->Services())
                       : model->Services().configFilePath + ": " + types;
}

}  // namespace tarn
