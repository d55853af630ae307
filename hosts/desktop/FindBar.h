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

  EditorTabs& editors;
  QLineEdit* pattern = nullptr;
  QLineEdit* replacement = nullptr;
  QWidget* replaceRow = nullptr;
  QToolButton* matchCase = nullptr;
  QToolButton* wholeWord = nullptr;
  QToolButton* expression = nullptr;
  QLabel* count = nullptr;
  QTimer later;  // delays the search while the user is typing
  QMetaObject::Connection followed;
  QMetaObject::Connection followedPlace;
  SearchResult result;
};

}  // namespace tarn::host
