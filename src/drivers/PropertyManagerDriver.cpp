#include "drivers/PropertyManagerDriver.h"

#include <tarn/methods.h>

namespace tarn {

// The calls that publish nodes borrow their arguments: they are made some twenty times per node,
// and the component calls nothing of the project meanwhile.

std::int32_t CPropertyManagerDriver::InitOptions(TextArgument application, TextArgument data,
                                                 std::int32_t frame, std::int32_t mode) {
  return InvokeLong(TARN_OPT_INIT_OPTIONS, {application, data, frame, mode});
}

std::int32_t CPropertyManagerDriver::ReadDefsFromFile(TextArgument set, TextArgument file) {
  return InvokeLong(TARN_OPT_READ_DEFS_FROM_FILE, {Variant::Borrow(set), Variant::Borrow(file)});
}

std::int32_t CPropertyManagerDriver::ReadConfigFromFile(TextArgument config, TextArgument set,
                                                        TextArgument section, TextArgument property,
                                                        TextArgument file) {
  return InvokeLong(TARN_OPT_READ_CONFIG_FROM_FILE, {config, set, section, property, file});
}

std::int32_t CPropertyManagerDriver::ReadValuesFromText(TextArgument text) {
  return InvokeLong(TARN_OPT_READ_VALUES_FROM_TEXT, {Variant::Borrow(text)});
}

std::string CPropertyManagerDriver::GetPropertyValue(TextArgument set, TextArgument section,
                                                     TextArgument property) {
  return InvokeText(TARN_OPT_GET_PROPERTY_VALUE,
                    {Variant::Borrow(set), Variant::Borrow(section), Variant::Borrow(property)});
}

std::int32_t CPropertyManagerDriver::SetPropertyValue(TextArgument set, TextArgument section,
                                                      TextArgument property, TextArgument value) {
  return InvokeLong(TARN_OPT_SET_PROPERTY_VALUE,
                    {Variant::Borrow(set), Variant::Borrow(section), Variant::Borrow(property),
                     Variant::Borrow(value)});
}

std::string CPropertyManagerDriver::GetPropertyStringValue(TextArgument set, TextArgument section,
                                                           TextArgument property) {
  return InvokeText(TARN_OPT_GET_PROPERTY_STRING_VALUE, {set, section, property});
}

std::int32_t CPropertyManagerDriver::HideProperty(TextArgument set, TextArgument section,
                                                  TextArgument property, std::int32_t hide) {
  return InvokeLong(TARN_OPT_HIDE_PROPERTY, {set, section, property, hide});
}

std::int32_t CPropertyManagerDriver::EnableProperty(TextArgument set, TextArgument section,
                                                    TextArgument property, std::int32_t enable) {
  return InvokeLong(TARN_OPT_ENABLE_PROPERTY, {set, section, property, enable});
}

std::int32_t CPropertyManagerDriver::HideSection(TextArgument set, TextArgument section,
                                                 std::int32_t hide) {
  return InvokeLong(TARN_OPT_HIDE_SECTION, {set, section, hide});
}

std::int32_t CPropertyManagerDriver::HideSet(TextArgument set, std::int32_t hide) {
  return InvokeLong(TARN_OPT_HIDE_SET, {set, hide});
}

std::string CPropertyManagerDriver::GetConfigText(TextArgument config, TextArgument set,
                                                  TextArgument section, TextArgument property) {
  return InvokeText(TARN_OPT_GET_CONFIG_TEXT, {config, set, section, property});
}

std::int32_t CPropertyManagerDriver::ShowOptions(std::int32_t frame) {
  return InvokeLong(TARN_OPT_SHOW_OPTIONS, {frame});
}

std::int32_t CPropertyManagerDriver::GetPropertyWindow() {
  return InvokeLong(TARN_OPT_GET_PROPERTY_WINDOW, {});
}

void CPropertyManagerDriver::ClearValues() {
  InvokeHelper(TARN_OPT_CLEAR_VALUES, {});
}

std::string CPropertyManagerDriver::GetChangedProperty() {
  return InvokeText(TARN_OPT_GET_CHANGED_PROPERTY, {});
}

void CPropertyManagerDriver::BeginUpdate() {
  InvokeHelper(TARN_OPT_BEGIN_UPDATE, {});
}

void CPropertyManagerDriver::EndUpdate() {
  InvokeHelper(TARN_OPT_END_UPDATE, {});
}

std::string CPropertyManagerDriver::GetValuesAsText(TextArgument set, TextArgument section,
                                                    TextArgument property) {
  return InvokeText(TARN_OPT_GET_VALUES_AS_TEXT,
                    {Variant::Borrow(set), Variant::Borrow(section), Variant::Borrow(property)});
}

void CPropertyManagerDriver::EndParentLevel() {
  InvokeHelper(TARN_OPT_END_PARENT_LEVEL, {});
}

void CPropertyManagerDriver::BeginChildLevel() {
  InvokeHelper(TARN_OPT_BEGIN_CHILD_LEVEL, {});
}

std::int32_t CPropertyManagerDriver::SetDefinitionFolders(TextArgument folders) {
  return InvokeLong(TARN_OPT_SET_DEFINITION_FOLDERS, {folders});
}

std::int32_t CPropertyManagerDriver::RefreshDefinitions() {
  return InvokeLong(TARN_OPT_REFRESH_DEFINITIONS, {});
}

std::string CPropertyManagerDriver::GetNewConfigName() {
  return InvokeText(TARN_OPT_GET_NEW_CONFIG_NAME, {});
}

void CPropertyManagerDriver::SetCurrentConfig(TextArgument config) {
  InvokeHelper(TARN_OPT_SET_CURRENT_CONFIG, {Variant::Borrow(config)});
}

std::string CPropertyManagerDriver::GetPropState() {
  return InvokeText(TARN_OPT_GET_PROP_STATE, {});
}

void CPropertyManagerDriver::SetPropState(TextArgument state) {
  InvokeHelper(TARN_OPT_SET_PROP_STATE, {state});
}

std::int32_t CPropertyManagerDriver::ApplyOptions(TextArgument config, TextArgument xml) {
  return InvokeLong(TARN_OPT_APPLY_OPTIONS, {Variant::Borrow(config), Variant::Borrow(xml)});
}

void CPropertyManagerDriver::ProjectClosing() {
  InvokeHelper(TARN_OPT_PROJECT_CLOSING, {});
}

}  // namespace tarn
