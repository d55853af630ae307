#include "hosts/core/SessionDamage.h"

#include <algorithm>

#include "platform/paths/Paths.h"
#include "platform/text/Text.h"

namespace tarn::host {

namespace {

// Returns true if the call changes the current node.
bool ChangesCurrentNode(std::string_view method, std::span<const Variant> arguments) {
  if (EqualNoCase(method, "RemoveItem")) return !arguments.empty() && !arguments[0].AsText();
  return EqualNoCase(method, "SavePropertyValue") || EqualNoCase(method, "ResetPropertyValue");
}

}  // namespace

void SessionDamage::SetProject(const std::string& path) {
  project_ = path;
  isLeft_ = false;
}

void SessionDamage::ProtectProject() {
  const bool isAccepted = acceptsAll_ || project_ == accepted_;
  inspector_.ProtectDamaged(!isAccepted || HasUnread(Get()));
}

bool SessionDamage::IsHeld() {
  const std::vector<DamageEntry> damage = Get();
  const bool isOpen = !project_.empty() && !isLeft_;
  const bool isAccepted = acceptsAll_ || (isOpen && project_ == accepted_);
  return isAccepted ? HasUnread(damage) : !damage.empty();
}

void SessionDamage::Accept() {
  accepted_ = project_;
  inspector_.ProtectDamaged(HasUnread(Get()));
}

void SessionDamage::AcceptAll() {
  acceptsAll_ = true;
  inspector_.ProtectDamaged(HasUnread(Get()));
}

bool SessionDamage::RefusesChange() {
  if (!IsHeld()) return false;
  hasRefused_ = true;
  return true;
}

std::string SessionDamage::CheckCall(std::string_view method, std::span<const Variant> arguments) {
  const bool isChange = ChangesProject(method, arguments) || ReplacesFile(method, arguments);
  if (isChange && RefusesChange()) return kDamageRefusal;
  // Selection methods return the same result whether or not they found a node.
  if (!ChangesCurrentNode(method, arguments)) return {};
  const std::string missed = inspector_.GetMissedSelection();
  return missed.empty()
             ? std::string()
             : std::string(method) + ": there is no node " + missed +
                   " to select, and a different one is still current. Select a node first.";
}

// Returns true if the call creates a new project over the open one, or over a damaged file of it.
bool SessionDamage::ReplacesFile(std::string_view method, std::span<const Variant> arguments) {
  const bool isNamed = !arguments.empty() && arguments[0].AsText().has_value();
  if (!EqualNoCase(method, "ProjectNew") || !isNamed) return false;
  const std::string file = files_.Canonical(ToNativeSeparators(*arguments[0].AsText()));
  const auto isThis = [&](const std::string& path) {
    return EqualNoCase(files_.Canonical(path), file);
  };
  const std::vector<DamageEntry> damage = Get();
  return isThis(project_) || std::any_of(damage.begin(), damage.end(),
                                         [&](const auto& each) { return isThis(each.file); });
}

}  // namespace tarn::host
