// Dispatch table of the component: its methods by number.
#include <tarn/methods.h>

#include "components/options/PropertyManager.h"

namespace tarn::options {

const DispatchTable<PropertyManager>& PropertyManager::Table() {
  using P = PropertyManager;
  static const DispatchTable<PropertyManager> table({
      Method<&P::ReadDefsFromFile>("ReadDefsFromFile", TARN_OPT_READ_DEFS_FROM_FILE,
                                   {"set", "file"}),
      Method<&P::ReadConfigFromFile>("ReadConfigFromFile", TARN_OPT_READ_CONFIG_FROM_FILE,
                                     {"config", "set", "section", "property", "file"}),
      Method<&P::ReadValuesFromText>("ReadValuesFromText", TARN_OPT_READ_VALUES_FROM_TEXT,
                                     {"text"}),
      Method<&P::GetPropertyValue>("GetPropertyValue", TARN_OPT_GET_PROPERTY_VALUE,
                                   {"set", "section", "property"}),
      Method<&P::SetPropertyValue>("SetPropertyValue", TARN_OPT_SET_PROPERTY_VALUE,
                                   {"set", "section", "property", "value"}),
      Method<&P::HideProperty>("HideProperty", TARN_OPT_HIDE_PROPERTY,
                               {"set", "section", "property", "hide"}),
      Method<&P::EnableProperty>("EnableProperty", TARN_OPT_ENABLE_PROPERTY,
                                 {"set", "section", "property", "enable"}),
      Method<&P::HideSection>("HideSection", TARN_OPT_HIDE_SECTION, {"set", "section", "hide"}),
      Method<&P::HideSet>("HideSet", TARN_OPT_HIDE_SET, {"set", "hide"}),
      Method<&P::GetConfigText>("GetConfigText", TARN_OPT_GET_CONFIG_TEXT,
                                {"config", "set", "section", "property"}),
      Method<&P::ShowOptions>("ShowOptions", TARN_OPT_SHOW_OPTIONS, {"frame"}),
      Method<&P::GetPropertyWindow>("GetPropertyWindow", TARN_OPT_GET_PROPERTY_WINDOW, {}),
      Method<&P::ClearValues>("ClearValues", TARN_OPT_CLEAR_VALUES, {}),
      Method<&P::GetChangedProperty>("GetChangedProperty", TARN_OPT_GET_CHANGED_PROPERTY, {}),
      Method<&P::BeginUpdate>("BeginUpdate", TARN_OPT_BEGIN_UPDATE, {}),
      Method<&P::EndUpdate>("EndUpdate", TARN_OPT_END_UPDATE, {}),
      Method<&P::GetValuesAsText>("GetValuesAsText", TARN_OPT_GET_VALUES_AS_TEXT,
                                  {"set", "section", "property"}),
      Method<&P::InitOptions>("InitOptions", TARN_OPT_INIT_OPTIONS,
                              {"application", "data", "frame", "mode"}),
      Method<&P::BeginChildLevel>("BeginChildLevel", TARN_OPT_BEGIN_CHILD_LEVEL, {}),
      Method<&P::GetNewConfigName>("GetNewConfigName", TARN_OPT_GET_NEW_CONFIG_NAME, {}),
      Method<&P::SetCurrentConfig>("SetCurrentConfig", TARN_OPT_SET_CURRENT_CONFIG, {"config"}),
      Method<&P::GetPropertyStringValue>("GetPropertyStringValue",
                                         TARN_OPT_GET_PROPERTY_STRING_VALUE,
                                         {"set", "section", "property"}),
      Method<&P::GetPropState>("GetPropState", TARN_OPT_GET_PROP_STATE, {}),
      Method<&P::SetPropState>("SetPropState", TARN_OPT_SET_PROP_STATE, {"state"}),
      Method<&P::ApplyOptions>("ApplyOptions", TARN_OPT_APPLY_OPTIONS, {"config", "text"}),
      Method<&P::ProjectClosing>("ProjectClosing", TARN_OPT_PROJECT_CLOSING, {}),
      Method<&P::EndParentLevel>("EndParentLevel", TARN_OPT_END_PARENT_LEVEL, {}),
      Method<&P::ListProperties>("ListProperties", TARN_OPT_LIST_PROPERTIES, {"set"}),
      Method<&P::CheckValue>("CheckValue", TARN_OPT_CHECK_VALUE,
                             {"set", "section", "property", "value"}),
      Method<&P::GetDefinitionErrors>("GetDefinitionErrors", TARN_OPT_GET_DEFINITION_ERRORS, {}),
      Method<&P::Undo>("Undo", TARN_OPT_UNDO, {}),
      Method<&P::Redo>("Redo", TARN_OPT_REDO, {}),
      Method<&P::SetChangedProperty>("SetChangedProperty", TARN_OPT_SET_CHANGED_PROPERTY,
                                     {"set", "section", "property", "value"}),
      Method<&P::SetNewConfigName>("SetNewConfigName", TARN_OPT_SET_NEW_CONFIG_NAME, {"name"}),
      Method<&P::GetOrigin>("GetOrigin", TARN_OPT_GET_ORIGIN, {"set", "section", "property"}),
      Method<&P::ListConfigurations>("ListConfigurations", TARN_OPT_LIST_CONFIGURATIONS, {}),
      Method<&P::ResetChangedProperty>("ResetChangedProperty", TARN_OPT_RESET_CHANGED_PROPERTY,
                                       {"set", "section", "property"}),
      Method<&P::GetUndoProperty>("GetUndoProperty", TARN_OPT_GET_UNDO_PROPERTY, {}),
      Method<&P::GetRedoProperty>("GetRedoProperty", TARN_OPT_GET_REDO_PROPERTY, {}),
      Method<&P::GetSwitchCount>("GetSwitchCount", TARN_OPT_GET_SWITCH_COUNT, {}),
      Method<&P::RefreshDefinitions>("RefreshDefinitions", TARN_OPT_REFRESH_DEFINITIONS, {}),
      Method<&P::SetDefinitionFolders>("SetDefinitionFolders", TARN_OPT_SET_DEFINITION_FOLDERS,
                                       {"folders"}),
      Method<&P::GetDefinitionProblem>("GetDefinitionProblem", TARN_OPT_GET_DEFINITION_PROBLEM, {}),
  });
  return table;
}

}  // namespace tarn::options
