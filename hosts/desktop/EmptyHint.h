#pragma once

#include <QString>

class QAbstractItemView;

namespace tarn::host {

// Shows a text in place of the rows of a view while it has none.
void AddEmptyHint(QAbstractItemView& view, const QString& text);

}  // namespace tarn::host
