#include "drivers/PropertyManagerDriver.h"

namespace tarn {

namespace {

// Dispatch ids of the property manager.
enum : DispatchId {
  kReadDefsFromFile = 1,
  kReadConfigFromFile = 2,
  kReadValuesFromText = 4,
  kGetPropertyValue = 5,
  kSetPropertyValue = 6,
  kHideProperty = 7,
  kEnableProperty = 8,
  kHideSection = 9,
  kHideSet = 11,
  kGetConfigText = 14,
  kShowOptions = 15,
  kGetPropertyWindow = 17,
  kClearValues = 18,
  kGetChangedProperty = 19,
  kBeginUpdate = 20,
  kEndUpdate = 21,
  kGetValuesAsText = 22,
  kInitOptions = 23,
  kBeginChildLevel = 24,
  kGetNewConfigName = 25,
  kSetCurrentConfig = 26,
  kGetPropertyStringValue = 27,
  kGetPropState = 28,
  kSetPropState = 29,
  kApplyOptions = 30,
  kProjectClosing = 31,
  kEndParentLevel = 32,
  kRefreshDefinitions = 113,
};

}  // namespace

std::int32_t CPropertyManagerDriver::InitOptions(TextArgument application, TextArgument data,
                                                 std::int32_t frame, std::int32_t mode) {
  return InvokeLong(kInitOptions, {application, data, frame, mode});
}

std::int32_t CPropertyManagerDriver::ReadDefsFromFile(TextArgument set, TextArgument file) {
  return InvokeLong(kReadDefsFromFile, {set, file});
}

std::int32_t CPropertyManagerDriver::ReadConfigFromFile(TextArgument config, TextArgument set,
                                                        TextArgument section, TextArgument property,
                                                        TextArgument file) {
  return InvokeLong(kReadConfigFromFile, {config, set, section, property, file});
}

std::int32_t CPropertyManagerDriver::ReadValuesFromText(TextArgument text) {
  return InvokeLong(kReadValuesFromText, {text});
}

std::string CPropertyManagerDriver::GetPropertyValue(TextArgument set, TextArgument section,
                                                     TextArgument property) {
  return InvokeText(kGetPropertyValue, {set, section, property});
}

std::int32_t CPropertyManagerDriver::SetPropertyValue(TextArgument set, TextArgument section,
                                                      TextArgument property, TextArgument value) {
  return InvokeLong(kSetPropertyValue, {set, section, property, value});
}

std::string CPropertyManagerDriver::GetPropertyStringValue(TextArgument set, TextArgument section,
                                                           TextArgument property) {
  return InvokeText(kGetPropertyStringValue, {set, section, property});
}

std::int32_t CPropertyManagerDriver::HideProperty(TextArgument set, TextArgument section,
                                                  TextArgument property, std::int32_t hide) {
  return InvokeLong(kHideProperty, {set, section, property, hide});
}

std::int32_t CPropertyManagerDriver::EnableProperty(TextArgument set, TextArgument section,
                                                    TextArgument property, std::int32_t enable) {
  return InvokeLong(kEnableProperty, {set, section, property, enable});
}

std::int32_t CPropertyManagerDriver::HideSection(TextArgument set, TextArgument section,
                                                 std::int32_t hide) {
  return InvokeLong(kHideSection, {set, section, hide});
}

std::int32_t CPropertyManagerDriver::HideSet(TextArgument set, std::int32_t hide) {
  return InvokeLong(kHideSet, {set, hide});
}

std::string CPropertyManagerDriver::GetConfigText(TextArgument config, TextArgument set,
                                                  TextArgument section, TextArgument property) {
  return InvokeText(kGetConfigText, {config, set, section, property});
}

std::int32_t CPropertyManagerDriver::ShowOptions(std::int32_t frame) {
  return InvokeLong(kShowOptions, {frame});
}

std::int32_t CPropertyManagerDriver::GetPropertyWindow() {
  return InvokeLong(kGetPropertyWindow, {});
}

void CPropertyManagerDriver::ClearValues() {
  InvokeHelper(kClearValues, {});
}

std::string CPropertyManagerDriver::GetChangedProperty() {
  return InvokeText(kGetChangedProperty, {});
}

void CPropertyManagerDriver::BeginUpdate() {
  InvokeHelper(kBeginUpdate, {});
}

void CPropertyManagerDriver::EndUpdate() {
  InvokeHelper(kEndUpdate, {});
}

std::string CPropertyManagerDriver::GetValuesAsText(TextArgument set, TextArgument section,
                                                    TextArgument property) {
  return InvokeText(kGetValuesAsText, {set, section, property});
}

void CPropertyManagerDriver::EndParentLevel() {
  InvokeHelper(kEndParentLevel, {});
}

void CPropertyManagerDriver::BeginChildLevel() {
  InvokeHelper(kBeginChildLevel, {});
}

std::int32_t CPropertyManagerDriver::RefreshDefinitions() {
  return InvokeLong(kRefreshDefinitions, {});
}

std::string CPropertyManagerDriver::GetNewConfigName() {
  return InvokeText(kGetNewConfigName, {});
}

void CPropertyManagerDriver::SetCurrentConfig(TextArgument config) {
  InvokeHelper(kSetCurrentConfig, {config});
}

std::string CPropertyManagerDriver::GetPropState() {
  return InvokeText(kGetPropState, {});
}

void CPropertyManagerDriver::SetPropState(TextArgument state) {
  InvokeHelper(kSetPropState, {state});
}

std::int32_t CPropertyManagerDriver::ApplyOptions(TextArgument config, TextArgument xml) {
  return InvokeLong(kApplyOptions, {config, xml});
}

void CPropertyManagerDriver::ProjectClosing() {
  InvokeHelper(kProjectClosing, {});
}

}  // namespace tarn
