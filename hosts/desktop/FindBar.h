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

// Finds and replaces in the editor that is in view. Hidden until it is asked for; Escape hides it.
// Borrows the tabs.
class FindBar : public QWidget {
  Q_DECLARE_TR_FUNCTIONS(FindBar)

 public:
  FindBar(EditorTabs& editorTabs, QWidget* parent);

  // With what is selected in the editor as the text to look for.
  void Open(bool withReplacement);
  void Close();
  // The one behind or in front of the selection, around the text's ends.
  void Find(bool isForward);

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  QToolButton* AddSwitch(const QString& text, const QString& tip);
  void Follow();
  // For so many places at most.
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
  QTimer later;  // a change of the text is looked at when the user pauses
  QMetaObject::Connection followed;
  QMetaObject::Connection followedPlace;
  SearchResult result;
};

}  // namespace tarn::host
