// Dispatch table of the component: its methods by number.
#include "components/options/PropertyManager.h"

namespace tarn::options {

const DispatchTable<PropertyManager>& PropertyManager::Table() {
  using P = PropertyManager;
  static const DispatchTable<PropertyManager> table({
      Method<&P::ReadDefsFromFile>("ReadDefsFromFile", 1, {"set", "file"}),
      Method<&P::ReadConfigFromFile>("ReadConfigFromFile", 2,
                                     {"config", "set", "section", "property", "file"}),
      Method<&P::ReadValuesFromText>("ReadValuesFromText", 4, {"text"}),
      Method<&P::GetPropertyValue>("GetPropertyValue", 5, {"set", "section", "property"}),
      Method<&P::SetPropertyValue>("SetPropertyValue", 6, {"set", "section", "property", "value"}),
      Method<&P::HideProperty>("HideProperty", 7, {"set", "section", "property", "hide"}),
      Method<&P::EnableProperty>("EnableProperty", 8, {"set", "section", "property", "enable"}),
      Method<&P::HideSection>("HideSection", 9, {"set", "section", "hide"}),
      Method<&P::HideSet>("HideSet", 11, {"set", "hide"}),
      Method<&P::GetConfigText>("GetConfigText", 14, {"config", "set", "section", "property"}),
      Method<&P::ShowOptions>("ShowOptions", 15, {"frame"}),
      Method<&P::GetPropertyWindow>("GetPropertyWindow", 17, {}),
      Method<&P::ClearValues>("ClearValues", 18, {}),
      Method<&P::GetChangedProperty>("GetChangedProperty", 19, {}),
      Method<&P::BeginUpdate>("BeginUpdate", 20, {}),
      Method<&P::EndUpdate>("EndUpdate", 21, {}),
      Method<&P::GetValuesAsText>("GetValuesAsText", 22, {"set", "section", "property"}),
      Method<&P::InitOptions>("InitOptions", 23, {"application", "data", "frame", "mode"}),
      Method<&P::BeginChildLevel>("BeginChildLevel", 24, {}),
      Method<&P::GetNewConfigName>("GetNewConfigName", 25, {}),
      Method<&P::SetCurrentConfig>("SetCurrentConfig", 26, {"config"}),
      Method<&P::GetPropertyStringValue>("GetPropertyStringValue", 27,
                                         {"set", "section", "property"}),
      Method<&P::GetPropState>("GetPropState", 28, {}),
      Method<&P::SetPropState>("SetPropState", 29, {"state"}),
      Method<&P::ApplyOptions>("ApplyOptions", 30, {"config", "text"}),
      Method<&P::ProjectClosing>("ProjectClosing", 31, {}),
      Method<&P::EndParentLevel>("EndParentLevel", 32, {}),
      Method<&P::ListProperties>("ListProperties", 100, {"set"}),
      Method<&P::CheckValue>("CheckValue", 101, {"set", "section", "property", "value"}),
      Method<&P::GetDefinitionErrors>("GetDefinitionErrors", 102, {}),
      Method<&P::Undo>("Undo", 103, {}),
      Method<&P::Redo>("Redo", 104, {}),
      Method<&P::SetChangedProperty>("SetChangedProperty", 105,
                                     {"set", "section", "property", "value"}),
      Method<&P::SetNewConfigName>("SetNewConfigName", 106, {"name"}),
      Method<&P::GetOrigin>("GetOrigin", 107, {"set", "section", "property"}),
      Method<&P::ListConfigurations>("ListConfigurations", 108, {}),
      Method<&P::ResetChangedProperty>("ResetChangedProperty", 109, {"set", "section", "property"}),
      Method<&P::GetUndoProperty>("GetUndoProperty", 110, {}),
      Method<&P::GetRedoProperty>("GetRedoProperty", 111, {}),
      Method<&P::GetSwitchCount>("GetSwitchCount", 112, {}),
      Method<&P::RefreshDefinitions>("RefreshDefinitions", 113, {}),
      Method<&P::GetDefinitionProblem>("GetDefinitionProblem", 120, {}),
  });
  return table;
}

}  // namespace tarn::options
