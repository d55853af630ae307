#include "hosts/desktop/ProblemMarks.h"

#include <QFileInfo>
#include <ctime>

#include "hosts/desktop/CodeEditor.h"
#include "hosts/desktop/EditorTabs.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "widgets/qt/QtText.h"

namespace tarn::host {

ProblemMarks::ProblemMarks(ProblemList& problemList, EditorTabs& editorTabs)
    : list(problemList), editors(editorTabs) {
  editors.onOpened = [this](CodeEditor& editor) { Show(known, editor); };
  later.setSingleShot(true);
  later.callOnTimeout(&later, [this] { Refresh(); });
}

ProblemMarks::~ProblemMarks() {
  editors.onOpened = {};
}

void ProblemMarks::Refresh() {
  if (list.Follow(std::time(nullptr), ProblemList::kPiece)) later.start(0);
  if (list.GetLogNumber() != logNumber) {
    logNumber = list.GetLogNumber();
    known.clear();
    followed = 0;
    for (int index = 0; index < editors.count(); ++index) editors.At(index)->Problems().Clear();
  }
  std::map<std::string, Problems> news;
  for (; followed < list.GetAll().size(); ++followed) {
    const LogEntry& entry = list.GetAll()[followed];
    if (entry.line <= 0) continue;
    news[entry.file].push_back(
        {entry.line - 1, entry.kind == LogKind::Error, ToQt(entry.message).simplified()});
  }
  if (news.empty()) return;
  for (int index = 0; index < editors.count(); ++index) Show(news, *editors.At(index));
  for (auto& [file, problems] : news) {
    Problems& all = known[file];
    all.insert(all.end(), problems.begin(), problems.end());
  }
}

// Only files with the same name can be identical, so few files have to be checked on disk.
void ProblemMarks::Show(const std::map<std::string, Problems>& from, CodeEditor& editor) const {
  const std::string name = FileNameOf(editor.GetPath());
  const QFileInfo shown(ToQt(editor.GetPath()));
  for (const auto& [file, problems] : from) {
    if (!EqualNoCase(FileNameOf(file), name)) continue;
    const std::string place = IsRelativePath(file) ? JoinPath(folder, file) : file;
    if (QFileInfo(ToQt(place)) == shown) editor.Problems().Add(problems);
  }
}

}  // namespace tarn::host
