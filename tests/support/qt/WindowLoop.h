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

// Presses a button of the next message box; the test fails if none appears.
inline void PressInNextBox(QMessageBox::StandardButton button) {
  QTimer::singleShot(0, [button] {
    auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    ASSERT_NE(box, nullptr);
    box->button(button)->click();
  });
}

}  // namespace tarn::testing
