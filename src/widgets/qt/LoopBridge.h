#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <atomic>
#include <memory>

#include "widgets/MessageLoop.h"

namespace tarn {

// Runs the message loop of the creating thread from the toolkit's event loop: in short time slices,
// so that user input and painting are processed in between, and with idle processing when there is
// nothing else to do. Works inside the toolkit's nested loops (menus, dialogs) as well.
class LoopBridge : public QObject {
 public:
  LoopBridge();
  ~LoopBridge() override;

 protected:
  bool event(QEvent* event) override;

 private:
  // Pumps the loop for one time slice and schedules the next one.
  void Serve();
  // The toolkit's loop has no more events: schedules the idle processing.
  void OnAboutToBlock();
  void OnIdle();

  std::shared_ptr<MessageLoop> loop_;
  std::atomic<bool> isWakePending_ = false;
  QTimer serveTimer_;
  QTimer idleTimer_;
  QElapsedTimer sinceIdle_;
  bool isIdleOver_ = false;  // the next loop iteration was caused by the idle processing itself
};

}  // namespace tarn
