// Dispatch interface. Hosts rely on names, ids and argument names, so these must not change.

#include <tarn/methods.h>

#include "automation/ProjectManager.h"
#include "xml/XmlNode.h"

namespace tarn {

const DispatchTable<CProjectManager>& CProjectManager::Table() {
  using M = CProjectManager;
  static const DispatchTable<CProjectManager> table({
      Method<&M::ProjectOpen>("ProjectOpen", TARN_PM_PROJECT_OPEN, {"projectPath"}),
      Method<&M::ProjectClose>("ProjectClose", TARN_PM_PROJECT_CLOSE, {}),
      Method<&M::ProjectSave>("ProjectSave", TARN_PM_PROJECT_SAVE, {}),
      Method<&M::GetProjectWindow>("GetProjectWindow", TARN_PM_GET_PROJECT_WINDOW, {}),
      Method<&M::GetPropertyWindow>("GetPropertyWindow", TARN_PM_GET_PROPERTY_WINDOW, {}),
      Method<&M::GetOutputWindow>("GetOutputWindow", TARN_PM_GET_OUTPUT_WINDOW, {}),
      Method<&M::Command>("Command", TARN_PM_COMMAND, {"Command"}),
      Method<&M::Init>("Init", TARN_PM_INIT, {"applicationPath", "dataPath", "mainframeHandle"}),
      Method<&M::ReadDefsFromFile>("ReadDefsFromFile", TARN_PM_READ_DEFS_FROM_FILE,
                                   {"setname", "filepath"}),
      Method<&M::ReadConfigFromFile>(
          "ReadConfigFromFile", TARN_PM_READ_CONFIG_FROM_FILE,
          {"configname", "setname", "sectionname", "propertyname", "filepath"}),
      Method<&M::GetPropertyValue>("GetPropertyValue", TARN_PM_GET_PROPERTY_VALUE,
                                   {"setname", "sectionname", "propertyname"}),
      Method<&M::SetPropertyValue>("SetPropertyValue", TARN_PM_SET_PROPERTY_VALUE,
                                   {"setname", "sectionname", "propertyname", "value"}),
      Method<&M::ReadRegistryValue>("ReadRegistryValue", TARN_PM_READ_REGISTRY_VALUE,
                                    {"keyName", "strName"}),
      Method<&M::ReadIniValue>("ReadIniValue", TARN_PM_READ_INI_VALUE,
                               {"sectionname", "keyName", "inipath"}),
      Method<&M::UpdateCurNodeConfig>("UpdateCurNodeConfig", TARN_PM_UPDATE_CUR_NODE_CONFIG,
                                      {"setname", "filepath"}),
      Method<&M::GetCurConfig>("GetCurConfig", TARN_PM_GET_CUR_CONFIG, {}),
      Method<&M::InitToolManager>("InitToolManager", TARN_PM_INIT_TOOL_MANAGER, {"toolmanager"}),
      Method<&M::EpilogCommand>("EpilogCommand", TARN_PM_EPILOG_COMMAND, {"Command"}),
      Method<&M::PrologCommand>("PrologCommand", TARN_PM_PROLOG_COMMAND, {"Command"}),
      Method<&M::ProjectBuild>("ProjectBuild", TARN_PM_PROJECT_BUILD, {}),
      Method<&M::Clean>("Clean", TARN_PM_CLEAN, {}),
      Method<&M::GetReportWindow>("GetReportWindow", TARN_PM_GET_REPORT_WINDOW, {}),
      Method<&M::SelectApplication>("SelectApplication", TARN_PM_SELECT_APPLICATION, {"filepath"}),
      Method<&M::WriteIniValue>("WriteIniValue", TARN_PM_WRITE_INI_VALUE,
                                {"sectioname", "keyName", "value", "inipath"}),
      Method<&M::GetSelectedDBI>("GetSelectedDBI", TARN_PM_GET_SELECTED_DBI, {}),
      Method<&M::GetSelectedApplication>("GetSelectedApplication", TARN_PM_GET_SELECTED_APPLICATION,
                                         {}),
      Method<&M::AddExistingItem>("AddExistingItem", TARN_PM_ADD_EXISTING_ITEM,
                                  {"itempath", "itemtype"}),
      Method<&M::AddNewItem>("AddNewItem", TARN_PM_ADD_NEW_ITEM, {"itempath", "itemtype"}),
      Method<&M::RemoveItem>("RemoveItem", TARN_PM_REMOVE_ITEM, {"itemname"}),
      Method<&M::EnableProperty>("EnableProperty", TARN_PM_ENABLE_PROPERTY,
                                 {"setname", "sectionname", "propertyname", "enable"}),
      Method<&M::EnableCommand>("EnableCommand", TARN_PM_ENABLE_COMMAND, {"message"}),
      Method<&M::ProjectNew>("ProjectNew", TARN_PM_PROJECT_NEW, {"projectPath"}),
      Method<&M::SetBuildInfo>("SetBuildInfo", TARN_PM_SET_BUILD_INFO, {"filepath", "xmlinfo"}),
      Method<&M::SavePropertyValue>("SavePropertyValue", TARN_PM_SAVE_PROPERTY_VALUE,
                                    {"setname", "sectionname", "propertyname", "value"}),
      Method<&M::GetDynamicCommands>("GetDynamicCommands", TARN_PM_GET_DYNAMIC_COMMANDS,
                                     {"commandId"}),
      Method<&M::GetSymbolInfo>("GetSymbolInfo", TARN_PM_GET_SYMBOL_INFO, {"symbolname"}),
      Method<&M::ReportMessage>("ReportMessage", TARN_PM_REPORT_MESSAGE, {"msg"}),
      Method<&M::HideProperty>("HideProperty", TARN_PM_HIDE_PROPERTY,
                               {"set", "section", "property", "tohide"}),
      Method<&M::ResetPropertyValue>("ResetPropertyValue", TARN_PM_RESET_PROPERTY_VALUE,
                                     {"setname", "sectionname", "propertyname"}),
      Method<&M::GetPropertyStringValue>("GetPropertyStringValue",
                                         TARN_PM_GET_PROPERTY_STRING_VALUE,
                                         {"setname", "sectionname", "propertyname"}),
      Method<&M::GetSelectedApplicationsList>("GetSelectedApplicationsList",
                                              TARN_PM_GET_SELECTED_APPLICATIONS_LIST, {"sepcar"}),
      Method<&M::GetSelectedFilesList>("GetSelectedFilesList", TARN_PM_GET_SELECTED_FILES_LIST,
                                       {"sepcar"}),
      Method<&M::SelectNode>("SelectNode", TARN_PM_SELECT_NODE, {"path"}),
      Method<&M::ExecuteScript>("ExecuteScript", TARN_PM_EXECUTE_SCRIPT, {"scriptpath"}),
  });
  return table;
}

}  // namespace tarn
