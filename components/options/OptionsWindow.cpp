// Support for the options window: which options are shown and enabled, changes by the user, and
// undo.
#include <utility>

#include "components/options/PropertyManager.h"
#include "platform/text/Text.h"

namespace tarn::options {

namespace {

std::string KeyOf(std::string_view set, std::string_view section, std::string_view property) {
  return FoldCase(set) + "." + FoldCase(section) + "." + FoldCase(property);
}

bool IsOn(const std::unordered_map<std::string, bool>& switches, const std::string& key) {
  const auto found = switches.find(key);
  return found != switches.end() && found->second;
}

}  // namespace

std::int32_t PropertyManager::Switch(std::unordered_map<std::string, bool>& switches,
                                     std::string key, bool on) {
  bool& present = switches[std::move(key)];
  if (std::exchange(present, on) != on) {
    ++switchCount_;
    if (window_) window_->RefillSoon();
  }
  return 1;
}

std::int32_t PropertyManager::HideProperty(const char* set, const char* section,
                                           const char* property, std::int32_t hide) {
  return Switch(hidden_, KeyOf(OrEmpty(set), OrEmpty(section), OrEmpty(property)), hide != 0);
}

std::int32_t PropertyManager::EnableProperty(const char* set, const char* section,
                                             const char* property, std::int32_t enable) {
  return Switch(disabled_, KeyOf(OrEmpty(set), OrEmpty(section), OrEmpty(property)), enable == 0);
}

std::int32_t PropertyManager::HideSection(const char* set, const char* section, std::int32_t hide) {
  return Switch(hidden_, KeyOf(OrEmpty(set), OrEmpty(section), {}), hide != 0);
}

std::int32_t PropertyManager::HideSet(const char* set, std::int32_t hide) {
  return Switch(hidden_, KeyOf(OrEmpty(set), {}, {}), hide != 0);
}

PropertyState PropertyManager::StateOf(const std::string& set, const std::string& section,
                                       const PropertyDefinition& property) {
  const bool isHidden = IsOn(hidden_, KeyOf(set, {}, {})) ||
                        IsOn(hidden_, KeyOf(set, section, {})) ||
                        IsOn(hidden_, KeyOf(set, section, property.name));
  const bool isDisabled = IsOn(disabled_, KeyOf(set, section, property.name));
  return {!isHidden && values_.Holds(property.shown),
          !isDisabled && values_.Holds(property.enabled)};
}

// Does nothing for a host that has not requested the window: it displays options itself.
std::int32_t PropertyManager::ShowOptions(std::int32_t) {
  if (!window_) return 0;
  window_->Refill();
  window_->ShowWindow(true);
  window_->SetFocus();
  return 1;
}

std::int32_t PropertyManager::GetPropertyWindow() {
  if (!window_) {
    window_ = std::make_unique<PlainOptionsWindow>(*this, frame_);
    window_->SetControlText("Options");
    window_->Create(kStylePopup, {}, nullptr, 0);
  }
  return window_->GetHandle();
}

void PropertyManager::BeginUpdate() {
  ++updates_;
}

void PropertyManager::EndUpdate() {
  // Callers may release without a hold, so the count must not become negative.
  if (updates_ > 0) --updates_;
  if (window_ && updates_ == 0) window_->RefillSoon();
}

std::string PropertyManager::GetPropState() {
  return propState_;
}

void PropertyManager::SetPropState(const char* state) {
  propState_ = OrEmpty(state);
}

std::string PropertyManager::GetNewConfigName() {
  return newConfigName_;
}

void PropertyManager::SetNewConfigName(const char* name) {
  newConfigName_ = OrEmpty(name);
}

std::string PropertyManager::GetChangedProperty() {
  return changedProperty_;
}

// Includes the configuration, so that a change can't be undone in a different one.
std::string PropertyManager::NodeKey() {
  return FoldCase(values_.GetConfig()) + "\n" + values_.Place();
}

std::int32_t PropertyManager::ChangeByUser(const char* set, const char* section,
                                           const char* property, std::optional<std::string> value) {
  // While nodes are being published, the node held may differ from the one the user sees.
  if (updates_ > 0 || OrEmpty(property).empty()) return 0;
  ValueChange change{NodeKey(),
                     set == nullptr || *set == '\0' ? values_.OwnSet() : set,
                     OrEmpty(section),
                     OrEmpty(property),
                     {},
                     std::move(value)};
  std::string before;
  if (values_.GetOwn(change.set, change.section, change.property, before)) change.before = before;
  TakeOver(change, change.after);
  undo_.Add(std::move(change));
  return 1;
}

std::int32_t PropertyManager::SetChangedProperty(const char* set, const char* section,
                                                 const char* property, const char* value) {
  return ChangeByUser(set, section, property, OrEmpty(value));
}

std::int32_t PropertyManager::ResetChangedProperty(const char* set, const char* section,
                                                   const char* property) {
  return ChangeByUser(set, section, property, {});
}

void PropertyManager::TakeOver(const ValueChange& change, const std::optional<std::string>& value) {
  if (value) {
    values_.SetValue(change.set, change.section, change.property, *value);
  } else {
    values_.RemoveValue(change.set, change.section, change.property);
  }
  changedProperty_ = change.Key();
}

std::string PropertyManager::Undo() {
  const ValueChange* change = updates_ > 0 ? nullptr : undo_.Undo(NodeKey());
  if (change == nullptr) return {};
  TakeOver(*change, change->before);
  return change->Key();
}

std::string PropertyManager::Redo() {
  const ValueChange* change = updates_ > 0 ? nullptr : undo_.Redo(NodeKey());
  if (change == nullptr) return {};
  TakeOver(*change, change->after);
  return change->Key();
}

std::string PropertyManager::GetUndoProperty() {
  const ValueChange* change = undo_.NextUndo(NodeKey());
  return change == nullptr ? std::string() : change->Key();
}

std::string PropertyManager::GetRedoProperty() {
  const ValueChange* change = undo_.NextRedo(NodeKey());
  return change == nullptr ? std::string() : change->Key();
}

}  // namespace tarn::options
