#pragma once

#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>
#include <functional>

namespace tarn::testing {

// Runs the toolkit's loop until `done` holds; false when that takes too long.
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

}  // namespace tarn::testing
