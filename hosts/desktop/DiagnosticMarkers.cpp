#include "hosts/desktop/DiagnosticMarkers.h"

#include <QFileInfo>
#include <ctime>

#include "hosts/desktop/CodeEditor.h"
#include "hosts/desktop/EditorTabs.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "widgets/qt/QtText.h"

namespace tarn::host {

DiagnosticMarkers::DiagnosticMarkers(ProblemList& problemList, EditorTabs& editorTabs)
    : list_(problemList), editors_(editorTabs) {
  editors_.onOpened = [this](CodeEditor& editor) { Show(known_, editor); };
  later_.setSingleShot(true);
  later_.callOnTimeout(&later_, [this] { Refresh(); });
}

DiagnosticMarkers::~DiagnosticMarkers() {
  editors_.onOpened = {};
}

void DiagnosticMarkers::Refresh() {
  if (list_.Follow(std::time(nullptr), ProblemList::kPiece)) later_.start(0);
  if (list_.GetLogNumber() != logNumber_) {
    logNumber_ = list_.GetLogNumber();
    known_.clear();
    followed_ = 0;
    for (int index = 0; index < editors_.count(); ++index) editors_.At(index)->Problems().Clear();
  }
  std::map<std::string, Problems> news;
  for (; followed_ < list_.GetAll().size(); ++followed_) {
    const LogEntry& entry = list_.GetAll()[followed_];
    if (entry.line <= 0) continue;
    news[entry.file].push_back(
        {entry.line - 1, entry.kind == LogKind::Error, ToQt(entry.message).simplified()});
  }
  if (news.empty()) return;
  for (int index = 0; index < editors_.count(); ++index) Show(news, *editors_.At(index));
  for (auto& [file, problems] : news) {
    Problems& all = known_[file];
    all.insert(all.end(), problems.begin(), problems.end());
  }
}

// Only files with the same name can be identical, so few files have to be checked on disk.
void DiagnosticMarkers::Show(const std::map<std::string, Problems>& from,
                             CodeEditor& editor) const {
  const std::string name = FileNameOf(editor.GetPath());
  const QFileInfo shown(ToQt(editor.GetPath()));
  for (const auto& [file, problems] : from) {
    if (!EqualNoCase(FileNameOf(file), name)) continue;
    const std::string place = IsRelativePath(file) ? JoinPath(folder_, file) : file;
    if (QFileInfo(ToQt(place)) == shown) editor.Problems().Add(problems);
  }
}

}  // namespace tarn::host
