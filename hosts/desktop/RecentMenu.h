#pragma once

#include <QString>
#include <functional>

class QMenu;
class QWidget;

namespace tarn::host {

// A menu of the projects that were open last; those that are gone can't be chosen. `parent` owns
// it.
QMenu* MakeRecentMenu(QWidget& parent, const std::function<void(const QString& path)>& onChosen);

}  // namespace tarn::host
