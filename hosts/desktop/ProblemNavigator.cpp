#include "hosts/desktop/ProblemNavigator.h"

#include <QKeySequence>
#include <QMenu>
#include <QStatusBar>
#include <QTimer>
#include <ctime>
#include <utility>

#include "widgets/qt/QtText.h"

namespace tarn::host {

namespace {

// Long enough to read a compiler's message; it covers the result of the build.
constexpr int kMessageMs = 15000;

}  // namespace

ProblemNavigator::ProblemNavigator(FileSystem& fileSystem, QStatusBar& statusBar)
    : problems_(fileSystem), bar_(statusBar) {}

void ProblemNavigator::AddActions(QMenu& menu) {
  menu.addAction(tr("&Next problem"), Qt::Key_F4, this,
                 [this] { WhenRead([this] { Step(true); }); });
  menu.addAction(tr("&Previous problem"), Qt::SHIFT | Qt::Key_F4, this,
                 [this] { WhenRead([this] { Step(false); }); });
}

// Reads the log in steps between other events, then runs the action.
void ProblemNavigator::WhenRead(std::function<void()> action) {
  if (!problems_.Follow(std::time(nullptr), ProblemList::kPiece)) return action();
  QTimer::singleShot(0, this,
                     [this, action = std::move(action)]() mutable { WhenRead(std::move(action)); });
}

void ProblemNavigator::GoTo(const std::string& file, int line) {
  WhenRead([this, file, line] { problems_.GoTo(file, line, std::time(nullptr)); });
}

void ProblemNavigator::Step(bool isForward) {
  const std::int64_t now = std::time(nullptr);
  const auto place = isForward ? problems_.Next(now) : problems_.Previous(now);
  if (!place) {
    bar_.showMessage(tr("The last build had no errors or warnings"), kMessageMs);
    return;
  }
  if (open) open(place->problem.file, place->problem.line);
  const QString text =
      place->problem.kind == LogKind::Error ? tr("Error %1 of %2: %3") : tr("Warning %1 of %2: %3");
  bar_.showMessage(
      text.arg(place->number).arg(place->count).arg(ToQt(place->problem.message).simplified()),
      kMessageMs);
}

}  // namespace tarn::host
