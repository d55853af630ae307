#pragma once

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QMessageBox>
#include <QTimer>
#include <functional>

namespace tarn::testing {

// Runs the toolkit's loop until `done` returns true. Returns false on timeout.
inline bool RunUntil(const std::function<bool()>& done, int limitMs = 60000) {
  QEventLoop loop;
  QElapsedTimer time;
  time.start();
  QTimer poll;
  QObject::connect(&poll, &QTimer::timeout, &loop, [&] {
    if (done() || time.elapsed() > limitMs) loop.quit();
  });
  poll.start(1);
  loop.exec();
  return done();
}

// Calls `act` once with the next modal dialog of this type, whenever it is shown. The test fails if
// it waits for the dialog in vain.
template <class Dialog>
void InNextDialog(std::function<void(Dialog&)> act, int limitMs = 60000) {
  auto* const poll = new QTimer(qApp);
  QElapsedTimer time;
  time.start();
  QObject::connect(poll, &QTimer::timeout, poll, [=] {
    auto* const dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget());
    const bool isShown = dialog != nullptr && dialog->isVisible();
    if (!isShown && time.elapsed() < limitMs) return;
    poll->stop();
    poll->deleteLater();
    ASSERT_TRUE(isShown) << "no dialog was shown";
    act(*dialog);
  });
  poll->start(1);
}

// Presses a button of the next message box.
inline void PressInNextBox(QMessageBox::StandardButton button) {
  InNextDialog<QMessageBox>([button](QMessageBox& box) { box.button(button)->click(); });
}

}  // namespace tarn::testing
