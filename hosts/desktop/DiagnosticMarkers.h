#pragma once

#include <QTimer>
#include <cstddef>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "hosts/core/ProblemList.h"
#include "hosts/desktop/AnnotationLayout.h"

namespace tarn::host {

class CodeEditor;
class EditorTabs;

// Shows the problems of the last build in the editors of their files, including editors opened
// later. Borrows both arguments; registers a callback with the editors during its lifetime.
class DiagnosticMarkers {
 public:
  DiagnosticMarkers(ProblemList& problemList, EditorTabs& editorTabs);
  ~DiagnosticMarkers();

  // Sets the base folder of relative paths in the log.
  void SetFolder(std::string projectFolder) { folder_ = std::move(projectFolder); }
  // Shows the problems logged since the last call; a large log is processed in steps between other
  // events.
  void Refresh();

 private:
  using Problems = std::vector<LineProblem>;

  // Shows the problems in `from` that refer to the editor's file.
  void Show(const std::map<std::string, Problems>& from, CodeEditor& editor) const;

  ProblemList& list_;
  EditorTabs& editors_;
  std::map<std::string, Problems> known_;  // by file name as in the log
  std::string folder_;
  std::size_t followed_ = 0;  // number of processed list entries
  int logNumber_ = 0;
  QTimer later_;
};

}  // namespace tarn::host
