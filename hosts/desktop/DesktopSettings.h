#pragma once

#include <QSettings>

namespace tarn::host {

// Per-user settings of the desktop program, in a separate file of the user's settings folder.
// Content that can't be read is treated as missing.
class DesktopSettings : public QSettings {
 public:
  DesktopSettings();
};

}  // namespace tarn::host
