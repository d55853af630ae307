#include "hosts/desktop/FileWatch.h"

#include <QFileInfo>

namespace tarn::host {

namespace {

constexpr int kPauseMs = 150;

}  // namespace

FileWatch::FileWatch(QObject* parent) : QObject(parent) {
  pause.setSingleShot(true);
  connect(&watcher, &QFileSystemWatcher::fileChanged, this, [this] { pause.start(kPauseMs); });
  connect(&pause, &QTimer::timeout, this, [this] {
    Renew();
    if (onChanged) onChanged();
  });
}

void FileWatch::SetFiles(const QStringList& paths) {
  wanted = paths;
  QStringList gone;
  for (const QString& path : watcher.files()) {
    if (!wanted.contains(path)) gone += path;
  }
  if (!gone.isEmpty()) watcher.removePaths(gone);
  Renew();
}

// Watches files again that were replaced, because the watcher loses them.
void FileWatch::Renew() {
  const QStringList watched = watcher.files();
  for (const QString& path : wanted) {
    if (!watched.contains(path) && QFileInfo::exists(path)) watcher.addPath(path);
  }
}

}  // namespace tarn::host
