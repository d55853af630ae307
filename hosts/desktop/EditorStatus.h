#pragma once

#include <QCoreApplication>
#include <QWidget>

class QLabel;

namespace tarn::host {

class EditorTabs;

// Status bar fields for the current editor: position, indentation, line endings, encoding. Borrows
// the tabs.
class EditorStatus : public QWidget {
  Q_DECLARE_TR_FUNCTIONS(EditorStatus)

 public:
  EditorStatus(EditorTabs& editorTabs, QWidget* parent);

 private:
  void Follow();
  void Show();

  EditorTabs& editors;
  QLabel* place = nullptr;
  QLabel* indentation = nullptr;
  QLabel* lineEnds = nullptr;
  QLabel* encoding = nullptr;
  QMetaObject::Connection followed;
};

}  // namespace tarn::host
