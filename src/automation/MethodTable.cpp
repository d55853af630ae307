// Dispatch interface. Hosts rely on names, ids and argument names, so these must not change.

#include "automation/ProjectManager.h"

namespace tarn {

const DispatchTable<CProjectManager>& CProjectManager::Table() {
  using M = CProjectManager;
  static const DispatchTable<CProjectManager> table({
      Method<&M::ProjectOpen>("ProjectOpen", 1, {"projectPath"}),
      Method<&M::ProjectClose>("ProjectClose", 2, {}),
      Method<&M::ProjectSave>("ProjectSave", 3, {}),
      Method<&M::GetProjectWindow>("GetProjectWindow", 4, {}),
      Method<&M::GetPropertyWindow>("GetPropertyWindow", 5, {}),
      Method<&M::GetOutputWindow>("GetOutputWindow", 6, {}),
      Method<&M::Command>("Command", 7, {"Command"}),
      Method<&M::Init>("Init", 8, {"applicationPath", "dataPath", "mainframeHandle"}),
      Method<&M::ReadDefsFromFile>("ReadDefsFromFile", 9, {"setname", "filepath"}),
      Method<&M::ReadConfigFromFile>(
          "ReadConfigFromFile", 10,
          {"configname", "setname", "sectionname", "propertyname", "filepath"}),
      Method<&M::GetPropertyValue>("GetPropertyValue", 11,
                                   {"setname", "sectionname", "propertyname"}),
      Method<&M::SetPropertyValue>("SetPropertyValue", 12,
                                   {"setname", "sectionname", "propertyname", "value"}),
      Method<&M::ReadRegistryValue>("ReadRegistryValue", 13, {"keyName", "strName"}),
      Method<&M::ReadIniValue>("ReadIniValue", 14, {"sectionname", "keyName", "inipath"}),
      Method<&M::UpdateCurNodeConfig>("UpdateCurNodeConfig", 15, {"setname", "filepath"}),
      Method<&M::GetCurConfig>("GetCurConfig", 16, {}),
      Method<&M::InitToolManager>("InitToolManager", 17, {"toolmanager"}),
      Method<&M::EpilogCommand>("EpilogCommand", 18, {"Command"}),
      Method<&M::PrologCommand>("PrologCommand", 19, {"Command"}),
      Method<&M::ProjectBuild>("ProjectBuild", 20, {}),
      Method<&M::Clean>("Clean", 21, {}),
      Method<&M::GetReportWindow>("GetReportWindow", 22, {}),
      Method<&M::SelectApplication>("SelectApplication", 23, {"filepath"}),
      Method<&M::WriteIniValue>("WriteIniValue", 24, {"sectioname", "keyName", "value", "inipath"}),
      Method<&M::GetSelectedDBI>("GetSelectedDBI", 25, {}),
      Method<&M::GetSelectedApplication>("GetSelectedApplication", 26, {}),
      Method<&M::AddExistingItem>("AddExistingItem", 27, {"itempath", "itemtype"}),
      Method<&M::AddNewItem>("AddNewItem", 28, {"itempath", "itemtype"}),
      Method<&M::RemoveItem>("RemoveItem", 29, {"itemname"}),
      Method<&M::EnableProperty>("EnableProperty", 30,
                                 {"setname", "sectionname", "propertyname", "enable"}),
      Method<&M::EnableCommand>("EnableCommand", 31, {"message"}),
      Method<&M::ProjectNew>("ProjectNew", 32, {"projectPath"}),
      Method<&M::SetBuildInfo>("SetBuildInfo", 33, {"filepath", "xmlinfo"}),
      Method<&M::SavePropertyValue>("SavePropertyValue", 34,
                                    {"setname", "sectionname", "propertyname", "value"}),
      Method<&M::GetDynamicCommands>("GetDynamicCommands", 35, {"commandId"}),
      Method<&M::GetSymbolInfo>("GetSymbolInfo", 36, {"symbolname"}),
      Method<&M::ReportMessage>("ReportMessage", 37, {"msg"}),
      Method<&M::HideProperty>("HideProperty", 38, {"set", "section", "property", "tohide"}),
      Method<&M::ResetPropertyValue>("ResetPropertyValue", 39,
                                     {"setname", "sectionname", "propertyname"}),
      Method<&M::GetPropertyStringValue>("GetPropertyStringValue", 40,
                                         {"setname", "sectionname", "propertyname"}),
      Method<&M::GetSelectedApplicationsList>("GetSelectedApplicationsList", 41, {"sepcar"}),
      Method<&M::GetSelectedFilesList>("GetSelectedFilesList", 42, {"sepcar"}),
      Method<&M::SelectNode>("SelectNode", 43, {"path"}),
      Method<&M::ExecuteScript>("ExecuteScript", 44, {"scriptpath"}),
  });
  return table;
}

}  // namespace tarn
