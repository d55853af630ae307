#pragma once

#include <QString>

#include "hosts/core/ChangeLabel.h"

namespace tarn::host {

// What a change of the project did, in the user's language: "Add main.c".
QString ChangeText(const ChangeLabel& label);

}  // namespace tarn::host
