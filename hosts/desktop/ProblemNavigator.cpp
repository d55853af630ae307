#include "hosts/desktop/ProblemNavigator.h"

#include <QKeySequence>
#include <QMenu>
#include <QStatusBar>
#include <ctime>

#include "platform/qt/QtText.h"

namespace tarn::host {

namespace {

// Long enough to read a message of a compiler; the outcome of the build is below it.
constexpr int kMessageMs = 15000;

}  // namespace

ProblemNavigator::ProblemNavigator(FileSystem& fileSystem, QStatusBar& statusBar)
    : problems(fileSystem), bar(statusBar) {}

void ProblemNavigator::AddActions(QMenu& menu) {
  menu.addAction(tr("&Next problem"), Qt::Key_F4, this, [this] { Step(true); });
  menu.addAction(tr("&Previous problem"), Qt::SHIFT | Qt::Key_F4, this, [this] { Step(false); });
}

void ProblemNavigator::GoTo(const std::string& file, int line) {
  problems.GoTo(file, line, std::time(nullptr));
}

void ProblemNavigator::Step(bool isForward) {
  const std::int64_t now = std::time(nullptr);
  const auto place = isForward ? problems.Next(now) : problems.Previous(now);
  if (!place) {
    bar.showMessage(tr("The last build has no errors and no warnings"), kMessageMs);
    return;
  }
  if (open) open(place->problem.file, place->problem.line);
  const QString text =
      place->problem.kind == LogKind::Error ? tr("Error %1 of %2: %3") : tr("Warning %1 of %2: %3");
  bar.showMessage(
      text.arg(place->number).arg(place->count).arg(ToQt(place->problem.message).simplified()),
      kMessageMs);
}

}  // namespace tarn::host
