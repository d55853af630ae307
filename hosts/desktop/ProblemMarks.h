#pragma once

#include <QTimer>
#include <cstddef>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "hosts/core/ProblemList.h"
#include "hosts/desktop/LineProblems.h"

namespace tarn::host {

class CodeEditor;
class EditorTabs;

// Shows the problems of the last build in the editors of their files, in those that are opened
// later as well. Borrows both; the editors tell it of new ones while it lives.
class ProblemMarks {
 public:
  ProblemMarks(ProblemList& problemList, EditorTabs& editorTabs);
  ~ProblemMarks();

  // What files in the log are relative to.
  void SetFolder(std::string projectFolder) { folder = std::move(projectFolder); }
  // Shows what the log has since the last call; much of it in pieces, between other events.
  void Refresh();

 private:
  using Problems = std::vector<LineProblem>;

  // Those of `from` that are about the file.
  void Show(const std::map<std::string, Problems>& from, CodeEditor& editor) const;

  ProblemList& list;
  EditorTabs& editors;
  std::map<std::string, Problems> known;  // by the file as the log names it
  std::string folder;
  std::size_t followed = 0;  // so many of the list are known
  int logNumber = 0;
  QTimer later;
};

}  // namespace tarn::host
