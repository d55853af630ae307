#pragma once

#include <QPoint>
#include <QString>
#include <vector>

#include "hosts/desktop/Scintilla.h"

namespace tarn::host {

struct LineProblem {
  int line = 0;  // from 0
  bool isError = false;
  QString message;
};

// Displays errors and warnings in an editor: a symbol in the margin, a wavy underline in the text.
// They move with their lines while the user edits. Owned by the editor.
class AnnotationLayout : public QObject {
 public:
  explicit AnnotationLayout(QsciScintilla& shownIn);

  // Adds problems; one beyond the end is shown in the last line.
  void Add(const std::vector<LineProblem>& more);
  void Clear();
  // Removes the problems and returns them; their display is already gone.
  std::vector<LineProblem> Take();
  // Draws the markers for the editor's palette and resolution.
  void Colour();
  // Returns the messages at a position of the editor as rich text; an empty string if there are
  // none.
  QString TextAt(QPoint place) const;
  const std::vector<LineProblem>& GetAll() const { return problems_; }

 private:
  void OnModified(int position, int kind, int linesAdded);
  void Mark(const LineProblem& problem);
  int LineAt(QPoint place) const;

  QsciScintilla& editor_;
  std::vector<LineProblem> problems_;  // unsorted
};

}  // namespace tarn::host
