#include "hosts/desktop/DesktopSettings.h"

#include "platform/paths/Paths.h"
#include "platform/settings/Settings.h"
#include "widgets/qt/QtText.h"

namespace tarn::host {

DesktopSettings::DesktopSettings()
    : QSettings(ToQt(JoinPath(SettingsFolders::FromEnvironment().user, "desktop.ini")),
                QSettings::IniFormat) {}

}  // namespace tarn::host
