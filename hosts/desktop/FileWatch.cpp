#include "hosts/desktop/FileWatch.h"

#include <QFileInfo>

namespace tarn::host {

namespace {

constexpr int kChangeDelayMs = 150;

}  // namespace

FileWatch::FileWatch(QObject* parent) : QObject(parent) {
  pause_.setSingleShot(true);
  connect(&watcher_, &QFileSystemWatcher::fileChanged, this,
          [this] { pause_.start(kChangeDelayMs); });
  connect(&pause_, &QTimer::timeout, this, [this] {
    Renew();
    if (onChanged) onChanged();
  });
}

void FileWatch::SetFiles(const QStringList& paths) {
  wanted_ = paths;
  QStringList gone;
  for (const QString& path : watcher_.files()) {
    if (!wanted_.contains(path)) gone += path;
  }
  if (!gone.isEmpty()) watcher_.removePaths(gone);
  Renew();
}

// Watches files again that were replaced, because the watcher loses them.
void FileWatch::Renew() {
  const QStringList watched = watcher_.files();
  for (const QString& path : wanted_) {
    if (!watched.contains(path) && QFileInfo::exists(path)) watcher_.addPath(path);
  }
}

}  // namespace tarn::host
