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

QString WordFor(BuildEnd end, const CommandRunner& runner) {
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
  if (!runner.IsWaiting()) return StatusProgress::tr("Building...");
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
      runner(commands),
      text(new QLabel(tr("Ready"), this)),
      outcome(new QToolButton(this)),
      bar(new QProgressBar(this)),
      clock(new QLabel(this)),
      stop(new QToolButton(this)) {
  // A long path is elided instead of widening the window.
  text->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  text->setTextFormat(Qt::PlainText);
  outcome->setObjectName("buildOutcome");
  outcome->setAutoRaise(true);
  outcome->setToolTip(tr("Show the build log"));
  connect(outcome, &QToolButton::clicked, this, [this] {
    if (onShowLog) onShowLog();
  });
  bar->setFixedWidth(kBarWidth);
  bar->setTextVisible(false);
  bar->setMaximumHeight(fontMetrics().height());
  bar->setAccessibleName(tr("Build progress"));
  clock->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  clock->setMinimumWidth(fontMetrics().horizontalAdvance("000:00"));
  stop->setObjectName("stopBuild");
  stop->setText(tr("Stop"));
  stop->setAutoRaise(true);
  stop->setToolTip(tr("Stop the build"));
  connect(stop, &QToolButton::clicked, this, [this] {
    runner.Stop();
    ShowRunning();
  });
  auto* const row = new QHBoxLayout(this);
  row->setContentsMargins(6, 0, 0, 0);
  row->addWidget(outcome);
  row->addWidget(text, 1);
  for (QWidget* const each :
       {static_cast<QWidget*>(bar), static_cast<QWidget*>(clock), static_cast<QWidget*>(stop)}) {
    row->addWidget(each);
  }
  ShowIdle(true);
  outcome->hide();
  connect(&ticker, &QTimer::timeout, this, [this] { ShowRunning(); });
}

void StatusProgress::Begin(const QString& projectFolder) {
  folder = projectFolder;
  outcome->hide();
  ShowIdle(false);
  ShowRunning();
  ticker.start(kTickMs);
}

void StatusProgress::End(BuildEnd end) {
  ticker.stop();
  ShowIdle(true);
  text->clear();
  const BuildProgress& progress = *runner.GetProgress();
  const QString counts = CountText(progress.GetErrors(), progress.GetWarnings());
  const double seconds = static_cast<double>(progress.GetElapsed().count()) / 1000.0;
  QString word = WordFor(end, runner);
  if (!counts.isEmpty()) word = tr("%1: %2").arg(word, counts);
  outcome->setText(tr("%1 (%2 s)").arg(word, locale().toString(seconds, 'f', 1)));
  outcome->show();
}

void StatusProgress::Say(const QString& message) {
  outcome->hide();
  text->setText(message);
}

void StatusProgress::ShowRunning() {
  const BuildProgress& progress = *runner.GetProgress();
  const auto seconds = progress.GetElapsed().count() / 1000;
  clock->setText(QString("%1:%2").arg(seconds / 60).arg(seconds % 60, 2, 10, QChar('0')));
  stop->setEnabled(!runner.IsStopping());
  if (runner.IsStopping()) {
    text->setText(tr("Stopping the build..."));
    return;
  }
  const int number = progress.GetNumber();
  const int total = progress.GetTotal();
  // With an unknown total the bar only indicates activity.
  bar->setRange(0, total);
  bar->setValue(number > 0 ? number - 1 : 0);
  if (number == 0) {
    text->setText(TextOfStart(runner));
    return;
  }
  QString name = ToQt(progress.GetSubject());
  if (!folder.isEmpty() && name.startsWith(folder + '/')) name.remove(0, folder.size() + 1);
  const QString place = total > 0 ? tr("Building %1 of %2").arg(number).arg(total)
                                  : tr("Building file %1").arg(number);
  text->setText(text->fontMetrics().elidedText(tr("%1: %2").arg(place, name), Qt::ElideMiddle,
                                               text->width()));
}

void StatusProgress::ShowIdle(bool isIdle) {
  for (QWidget* const each :
       {static_cast<QWidget*>(bar), static_cast<QWidget*>(clock), static_cast<QWidget*>(stop)}) {
    each->setVisible(!isIdle);
  }
}

}  // namespace tarn::host
