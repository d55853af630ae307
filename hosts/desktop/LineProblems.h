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

// The errors and warnings that an editor shows: a symbol beside the line, a wave below it. They
// stay with their lines while the user edits. Belongs to the editor that it is given.
class LineProblems : public QObject {
 public:
  explicit LineProblems(QsciScintilla& shownIn);

  // One beyond the end goes to the last line.
  void Add(const std::vector<LineProblem>& more);
  void Clear();
  // Those that are shown; what shows them is gone.
  std::vector<LineProblem> Take();
  // Draws them for the palette and the resolution of the editor.
  void Colour();
  // What the messages at a place of the editor say, as rich text; empty where there are none.
  QString TextAt(QPoint place) const;
  const std::vector<LineProblem>& GetAll() const { return problems; }

 private:
  void OnModified(int position, int kind, int linesAdded);
  void Mark(const LineProblem& problem);
  int LineAt(QPoint place) const;

  QsciScintilla& editor;
  std::vector<LineProblem> problems;  // in any order
};

}  // namespace tarn::host
