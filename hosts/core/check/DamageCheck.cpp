#include "hosts/core/check/CheckScope.h"
#include "hosts/core/check/ProjectCheck.h"

namespace tarn::host {

// Reports the positions at which a file of the project lost content when it was read.
void ProjectCheck::CheckDamage() {
  for (const DamageEntry& each : session_.GetDamage()) {
    Finding& finding = scope_->Add(FindingKind::Damage);
    finding.file = each.file;
    finding.line = each.line;
    finding.detail = each.text;
  }
}

}  // namespace tarn::host
