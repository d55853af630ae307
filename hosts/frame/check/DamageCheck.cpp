#include "hosts/frame/check/CheckScope.h"
#include "hosts/frame/check/ProjectCheck.h"

namespace tarn::host {

// Positions at which a file of the project lost content when it was read, as far as the session
// knows of them.
void ProjectCheck::CheckDamage() {
  const auto addAll = [this](auto& source) {
    if constexpr (requires { source.GetDamage(); }) {
      for (const auto& each : source.GetDamage()) {
        Finding& finding = scope->Add(FindingKind::Damage);
        finding.file = each.file;
        finding.line = each.line;
        finding.detail = each.text;
      }
    }
  };
  addAll(session);
}

}  // namespace tarn::host
