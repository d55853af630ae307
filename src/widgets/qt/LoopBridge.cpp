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

LoopBridge::LoopBridge() : loop_(MessageLoop::ForCurrentThread()) {
  serveTimer_.setSingleShot(true);
  serveTimer_.setTimerType(Qt::PreciseTimer);
  idleTimer_.setSingleShot(true);
  sinceIdle_.start();
  connect(&serveTimer_, &QTimer::timeout, this, [this] { Serve(); });
  connect(&idleTimer_, &QTimer::timeout, this, [this] { OnIdle(); });
  connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, this,
          [this] { OnAboutToBlock(); });
  loop_->SetWakeHandler([this] {
    if (!isWakePending_.exchange(true)) {
      QCoreApplication::postEvent(this, new QEvent(WakeEvent()));
    }
  });
  serveTimer_.start(0);
}

LoopBridge::~LoopBridge() {
  loop_->SetWakeHandler({});
}

bool LoopBridge::event(QEvent* event) {
  if (event->type() != WakeEvent()) return QObject::event(event);
  isWakePending_ = false;
  Serve();
  return true;
}

void LoopBridge::Serve() {
  QElapsedTimer piece;
  piece.start();
  while (loop_->Pump()) {
    // Continue after other pending events: a posted event would be processed before them.
    if (piece.elapsed() < kLongestPieceMs) continue;
    serveTimer_.start(0);
    return;
  }
  if (const auto next = loop_->UntilNextTimer()) {
    serveTimer_.start(*next);
  } else {
    serveTimer_.stop();
  }
}

void LoopBridge::OnAboutToBlock() {
  if (isIdleOver_) {
    isIdleOver_ = false;
  } else if (!idleTimer_.isActive()) {
    idleTimer_.start(static_cast<int>(std::max<qint64>(0, kIdlePeriodMs - sinceIdle_.elapsed())));
  }
}

void LoopBridge::OnIdle() {
  RunIdle();
  sinceIdle_.restart();
  isIdleOver_ = true;
}

}  // namespace tarn
