#pragma once

#include <QString>
#include <functional>

class QMenu;
class QWidget;

namespace tarn::host {

// Creates a menu of recent projects; projects that no longer exist are disabled. `parent` owns it.
QMenu* MakeRecentMenu(QWidget& parent, const std::function<void(const QString& path)>& onChosen);

}  // namespace tarn::host
