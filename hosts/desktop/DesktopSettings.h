#pragma once

#include <QSettings>

namespace tarn::host {

// What the window keeps of this user between two runs: a file of its own in the user's settings
// folder. A file that can't be read counts as empty, as far as it can't.
class DesktopSettings : public QSettings {
 public:
  DesktopSettings();
};

}  // namespace tarn::host
