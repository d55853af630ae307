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

  EditorTabs& editors_;
  QLabel* place_ = nullptr;
  QLabel* indentation_ = nullptr;
  QLabel* lineEnds_ = nullptr;
  QLabel* encoding_ = nullptr;
  QMetaObject::Connection followed_;
};

}  // namespace tarn::host
