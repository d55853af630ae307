#include "widgets/qt/LoopBridge.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QEvent>
#include <algorithm>

#include "widgets/Wnd.h"

namespace tarn {

namespace {

constexpr qint64 kLongestPieceMs = 8;
// Minimum refresh rate of toolbar states, and roughly the maximum.
constexpr qint64 kIdlePeriodMs = 100;

QEvent::Type WakeEvent() {
  static const auto type = static_cast<QEvent::Type>(QEvent::registerEventType());
  return type;
}

}  // namespace

LoopBridge::LoopBridge() : loop(MessageLoop::ForCurrentThread()) {
  serveTimer.setSingleShot(true);
  serveTimer.setTimerType(Qt::PreciseTimer);
  idleTimer.setSingleShot(true);
  sinceIdle.start();
  connect(&serveTimer, &QTimer::timeout, this, [this] { Serve(); });
  connect(&idleTimer, &QTimer::timeout, this, [this] { OnIdle(); });
  connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, this,
          [this] { OnAboutToBlock(); });
  loop->SetWakeHandler([this] {
    if (!isWakePending.exchange(true)) {
      QCoreApplication::postEvent(this, new QEvent(WakeEvent()));
    }
  });
  serveTimer.start(0);
}

LoopBridge::~LoopBridge() {
  loop->SetWakeHandler({});
}

bool LoopBridge::event(QEvent* event) {
  if (event->type() != WakeEvent()) return QObject::event(event);
  isWakePending = false;
  Serve();
  return true;
}

void LoopBridge::Serve() {
  QElapsedTimer piece;
  piece.start();
  while (loop->Pump()) {
    // Continue after other pending events: a posted event would be processed before them.
    if (piece.elapsed() < kLongestPieceMs) continue;
    serveTimer.start(0);
    return;
  }
  if (const auto next = loop->UntilNextTimer()) {
    serveTimer.start(*next);
  } else {
    serveTimer.stop();
  }
}

void LoopBridge::OnAboutToBlock() {
  if (isIdleOver) {
    isIdleOver = false;
  } else if (!idleTimer.isActive()) {
    idleTimer.start(static_cast<int>(std::max<qint64>(0, kIdlePeriodMs - sinceIdle.elapsed())));
  }
}

void LoopBridge::OnIdle() {
  RunIdle();
  sinceIdle.restart();
  isIdleOver = true;
}

}  // namespace tarn
