#pragma once

#include <QFileSystemWatcher>
#include <QStringList>
#include <QTimer>
#include <functional>

namespace tarn::host {

// Notifies of changed files, with a delay after the last change, because most programs write a file
// in several steps or replace it.
class FileWatch : public QObject {
 public:
  explicit FileWatch(QObject* parent);

  // Replaces the list of watched files; they need not exist.
  void SetFiles(const QStringList& paths);
  std::function<void()> onChanged;

 private:
  void Renew();

  QFileSystemWatcher watcher_;
  QStringList wanted_;
  QTimer pause_;
};

}  // namespace tarn::host
