#pragma once

#include <QFileSystemWatcher>
#include <QStringList>
#include <QTimer>
#include <functional>

namespace tarn::host {

// Tells that files on the disk may have changed, some time after the last change: most programs
// write a file in several steps, or put another in its place.
class FileWatch : public QObject {
 public:
  explicit FileWatch(QObject* parent);

  void SetFiles(const QStringList& paths);
  std::function<void()> onChanged;

 private:
  void Renew();

  QFileSystemWatcher watcher;
  QStringList wanted;
  QTimer pause;
};

}  // namespace tarn::host
