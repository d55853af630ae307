#pragma once

#include <QCoreApplication>
#include <QTimer>
#include <QWidget>

#include "hosts/desktop/TextSearch.h"

class QLabel;
class QLineEdit;
class QToolButton;

namespace tarn::host {

class CodeEditor;
class EditorTabs;

// Find and replace in the current editor. Hidden until needed; Escape hides it. Borrows the tabs.
class FindBar : public QWidget {
  Q_DECLARE_TR_FUNCTIONS(FindBar)

 public:
  FindBar(EditorTabs& editorTabs, QWidget* parent);

  // Opens the bar and searches for the editor's selection.
  void Open(bool withReplacement);
  void Close();
  // Selects the next or previous hit relative to the selection, wrapping around.
  void Find(bool isForward);

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  QToolButton* AddSwitch(const QString& text, const QString& tip);
  void Follow();
  // Searches for at most `most` hits.
  void Search(qsizetype most);
  void ShowCount();
  void Replace();
  void ReplaceAll();

  EditorTabs& editors_;
  QLineEdit* pattern_ = nullptr;
  QLineEdit* replacement_ = nullptr;
  QWidget* replaceRow_ = nullptr;
  QToolButton* matchCase_ = nullptr;
  QToolButton* wholeWord_ = nullptr;
  QToolButton* expression_ = nullptr;
  QLabel* count_ = nullptr;
  QTimer later_;  // delays the search while the user is typing
  QMetaObject::Connection followed_;
  QMetaObject::Connection followedPlace_;
  SearchResult result_;
};

}  // namespace tarn::host
