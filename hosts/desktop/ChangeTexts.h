#pragma once

#include <QString>

#include "hosts/core/ChangeLabel.h"

namespace tarn::host {

// Returns a project change in the user's language: "Add main.c".
QString ChangeText(const ChangeLabel& label);

}  // namespace tarn::host
