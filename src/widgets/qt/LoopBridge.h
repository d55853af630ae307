#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <atomic>
#include <memory>

#include "widgets/MessageLoop.h"

namespace tarn {

// Serves the windows' loop of the thread that makes it from the toolkit's loop: in short pieces, so
// that the user's actions and painting come between, and the windows' idle work when there is
// nothing else to do. The toolkit's loops inside of events (menus, dialogs) serve it as well.
class LoopBridge : public QObject {
 public:
  LoopBridge();
  ~LoopBridge() override;

 protected:
  bool event(QEvent* event) override;

 private:
  void Serve();
  void OnAboutToBlock();
  void OnIdle();

  std::shared_ptr<MessageLoop> loop;
  std::atomic<bool> isWakePending = false;
  QTimer serveTimer;
  QTimer idleTimer;
  QElapsedTimer sinceIdle;
  bool isIdleOver = false;  // what the loop does next was caused by the idle work itself
};

}  // namespace tarn
