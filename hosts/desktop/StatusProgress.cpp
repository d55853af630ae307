#include "hosts/desktop/StatusProgress.h"

#include <QDir>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QToolButton>

#include "widgets/qt/QtText.h"

namespace tarn::host {

namespace {

// A build may start hundreds of tools per second, too fast to be read.
constexpr int kTickMs = 100;
constexpr int kBarWidth = 160;
// A remaining time is shown in full seconds and ends at 0:01.
constexpr std::chrono::milliseconds kRoundedUp(999);

// Returns the outcome of a tool that was run by itself.
QString WordForTool(BuildEnd end, const QString& title) {
  switch (end) {
    case BuildEnd::Succeeded:
      return StatusProgress::tr("%1: finished").arg(title);
    case BuildEnd::Stopped:
      return StatusProgress::tr("%1: stopped").arg(title);
    case BuildEnd::Refused:
      return StatusProgress::tr("%1: not started").arg(title);
    case BuildEnd::Failed:
      break;
  }
  return StatusProgress::tr("%1: failed").arg(title);
}

QString WordFor(BuildEnd end, const CommandRunner& runner) {
  if (!runner.GetToolTitle().empty()) return WordForTool(end, Translated(runner.GetToolTitle()));
  switch (end) {
    case BuildEnd::Succeeded:
      if (runner.IsCleaning()) return StatusProgress::tr("Cleaned");
      return runner.GetProgress()->GetNumber() == 0 ? StatusProgress::tr("Nothing to do")
                                                    : StatusProgress::tr("Build succeeded");
    case BuildEnd::Stopped:
      return StatusProgress::tr("Build stopped");
    case BuildEnd::Refused:
      return StatusProgress::tr("Build not started");
    case BuildEnd::Failed:
      break;
  }
  return StatusProgress::tr("Build failed");
}

// Returns the text for a build that is not processing a file yet.
QString TextOfStart(const CommandRunner& runner) {
  const QString holder = runner.GetLockHolder();
  const QString title = Translated(runner.GetToolTitle());
  if (!runner.IsWaiting()) {
    return title.isEmpty() ? StatusProgress::tr("Building...")
                           : StatusProgress::tr("%1: running...").arg(title);
  }
  if (holder.isEmpty()) return StatusProgress::tr("Waiting for the project's options...");
  return StatusProgress::tr("Waiting for another build of this project (%1)").arg(holder);
}

QString CountText(int errors, int warnings) {
  QStringList parts;
  if (errors > 0) parts += StatusProgress::tr("%n error(s)", nullptr, errors);
  if (warnings > 0) parts += StatusProgress::tr("%n warning(s)", nullptr, warnings);
  return parts.join(", ");
}

}  // namespace

StatusProgress::StatusProgress(CommandRunner& commands, QWidget* parent)
    : QWidget(parent),
      runner_(commands),
      text_(new QLabel(tr("Ready"), this)),
      outcome_(new QToolButton(this)),
      bar_(new QProgressBar(this)),
      clock_(new QLabel(this)),
      stop_(new QToolButton(this)) {
  // A long path is elided instead of widening the window.
  text_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  text_->setTextFormat(Qt::PlainText);
  outcome_->setObjectName("buildOutcome");
  outcome_->setAutoRaise(true);
  outcome_->setToolTip(tr("Show the build log"));
  connect(outcome_, &QToolButton::clicked, this, [this] {
    if (onShowLog) onShowLog();
  });
  bar_->setFixedWidth(kBarWidth);
  bar_->setTextVisible(false);
  bar_->setMaximumHeight(fontMetrics().height());
  bar_->setAccessibleName(tr("Build progress"));
  clock_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  clock_->setMinimumWidth(fontMetrics().horizontalAdvance("000:00"));
  stop_->setObjectName("stopBuild");
  stop_->setText(tr("Stop"));
  stop_->setAutoRaise(true);
  stop_->setToolTip(tr("Stop the build"));
  connect(stop_, &QToolButton::clicked, this, [this] {
    runner_.Stop();
    ShowRunning();
  });
  auto* const row = new QHBoxLayout(this);
  row->setContentsMargins(6, 0, 0, 0);
  row->addWidget(outcome_);
  row->addWidget(text_, 1);
  for (QWidget* const each :
       {static_cast<QWidget*>(bar_), static_cast<QWidget*>(clock_), static_cast<QWidget*>(stop_)}) {
    row->addWidget(each);
  }
  ShowIdle(true);
  outcome_->hide();
  connect(&ticker_, &QTimer::timeout, this, [this] { ShowRunning(); });
}

void StatusProgress::Begin(const QString& projectFolder) {
  folder_ = projectFolder;
  outcome_->hide();
  ShowIdle(false);
  ShowRunning();
  ticker_.start(kTickMs);
}

void StatusProgress::End(BuildEnd end) {
  ticker_.stop();
  ShowIdle(true);
  text_->clear();
  text_->setToolTip({});
  const BuildProgress& progress = *runner_.GetProgress();
  const QString counts = CountText(progress.GetErrors(), progress.GetWarnings());
  const double seconds = static_cast<double>(progress.GetElapsed().count()) / 1000.0;
  QString word = WordFor(end, runner_);
  if (!counts.isEmpty()) word = tr("%1: %2").arg(word, counts);
  outcome_->setText(tr("%1 (%2 s)").arg(word, locale().toString(seconds, 'f', 1)));
  outcome_->show();
}

void StatusProgress::Say(const QString& message) {
  outcome_->hide();
  text_->setText(message);
}

void StatusProgress::ShowRunning() {
  runner_.PollProgress();
  const BuildProgress& progress = *runner_.GetProgress();
  ShowTimes(progress);
  stop_->setEnabled(!runner_.IsStopping());
  if (runner_.IsStopping()) {
    text_->setText(runner_.GetToolTitle().empty() ? tr("Stopping the build...")
                                                  : tr("Stopping..."));
    return;
  }
  const int number = progress.GetNumber();
  const int total = progress.GetTotal();
  // With an unknown total the bar only indicates activity.
  bar_->setRange(0, total);
  bar_->setValue(progress.GetRetired());
  if (number == 0 || !runner_.GetToolTitle().empty()) {
    text_->setText(TextOfStart(runner_));
    return;
  }
  const std::vector<BuildProgress::Running> running = progress.GetRunning();
  QString place = total > 0 ? tr("Building %1 of %2").arg(number).arg(total)
                            : tr("Building file %1").arg(number);
  if (running.size() > 1) place += tr(", %1 running").arg(running.size());
  const std::string file =
      running.empty() ? progress.GetSubject() : SubjectOf(running.front().start);
  text_->setText(text_->fontMetrics().elidedText(tr("%1: %2").arg(place, ShortName(file)),
                                                 Qt::ElideMiddle, text_->width()));
}

// Shows the elapsed time, and the running files with theirs in the tooltip.
void StatusProgress::ShowTimes(const BuildProgress& progress) {
  const auto now = BuildProgress::Clock::now();
  const auto clock = [](std::chrono::milliseconds time) {
    const auto seconds = time.count() / 1000;
    return QString("%1:%2").arg(seconds / 60).arg(seconds % 60, 2, 10, QChar('0'));
  };
  QString text = clock(progress.GetElapsed());
  const auto remaining = progress.GetRemaining(now);
  if (remaining) text = tr("%1, %2 left").arg(text, clock(*remaining + kRoundedUp));
  clock_->setText(text);
  constexpr std::size_t kMostShown = 20;
  QStringList files;
  for (const BuildProgress::Running& each : progress.GetRunning()) {
    if (files.size() == kMostShown) break;
    const auto time = std::chrono::duration_cast<std::chrono::milliseconds>(now - each.started);
    files += tr("%1 s  %2")
                 .arg(locale().toString(static_cast<double>(time.count()) / 1000.0, 'f', 1),
                      ShortName(SubjectOf(each.start)).toHtmlEscaped());
  }
  for (QWidget* const each : {static_cast<QWidget*>(text_), static_cast<QWidget*>(bar_)}) {
    each->setToolTip(files.isEmpty() ? QString()
                                     : "<p style='white-space:pre'>" + files.join("<br>") + "</p>");
  }
}

QString StatusProgress::ShortName(const std::string& file) const {
  QString name = ToQt(file);
  if (!folder_.isEmpty() && name.startsWith(folder_ + '/')) name.remove(0, folder_.size() + 1);
  return name;
}

void StatusProgress::ShowIdle(bool isIdle) {
  for (QWidget* const each :
       {static_cast<QWidget*>(bar_), static_cast<QWidget*>(clock_), static_cast<QWidget*>(stop_)}) {
    each->setVisible(!isIdle);
  }
}

}  // namespace tarn::host
