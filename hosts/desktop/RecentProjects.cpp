#include "hosts/desktop/RecentProjects.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#include "hosts/desktop/DesktopSettings.h"
#include "widgets/qt/QtText.h"

namespace tarn::host {

namespace {

constexpr qsizetype kMost = 10;
constexpr const char* kListKey = "recent/projects";
constexpr const char* kNewFolderKey = "recent/newProjectFolder";

// Hashed, because a path may contain characters that are invalid in settings keys.
QString EditorsKey(const QString& path) {
  const QByteArray hash = QCryptographicHash::hash(path.toUtf8(), QCryptographicHash::Sha1);
  return "editors/" + QString::fromLatin1(hash.toHex());
}

void Store(DesktopSettings& settings, const QStringList& list) {
  if (list.isEmpty()) {
    settings.remove(kListKey);
  } else {
    settings.setValue(kListKey, list);
  }
}

}  // namespace

QStringList RecentProjects::List() {
  QStringList list = DesktopSettings().value(kListKey).toStringList();
  list.removeIf([](const QString& path) { return !QFileInfo::exists(path); });
  return list.mid(0, kMost);
}

void RecentProjects::Note(const std::string& path) {
  DesktopSettings settings;
  QStringList list = settings.value(kListKey).toStringList();
  list.removeAll(ToQt(path));
  list.prepend(ToQt(path));
  while (list.size() > kMost) settings.remove(EditorsKey(list.takeLast()));
  Store(settings, list);
}

void RecentProjects::Remove(const QString& path) {
  DesktopSettings settings;
  QStringList list = settings.value(kListKey).toStringList();
  list.removeAll(path);
  settings.remove(EditorsKey(path));
  Store(settings, list);
}

void RecentProjects::Clear() {
  DesktopSettings settings;
  settings.remove(kListKey);
  settings.remove("editors");
}

QStringList RecentProjects::EditorsOf(const std::string& path) {
  return DesktopSettings().value(EditorsKey(ToQt(path))).toStringList();
}

void RecentProjects::KeepEditors(const std::string& path, const QStringList& editors) {
  DesktopSettings().setValue(EditorsKey(ToQt(path)), editors);
}

QString RecentProjects::GetNewFolder() {
  const QString last = DesktopSettings().value(kNewFolderKey).toString();
  if (!last.isEmpty() && QFileInfo(last).isDir()) return last;
  const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
  return (QFileInfo(documents).isDir() ? documents : QDir::homePath()) + "/Tarn";
}

// If the project has a folder of the same name, the next project is placed next to that folder.
void RecentProjects::RecordNew(const std::string& path) {
  const QFileInfo file(ToQt(path));
  QDir folder = file.dir();
  if (folder.dirName() == file.completeBaseName()) folder.cdUp();
  DesktopSettings().setValue(kNewFolderKey, folder.path());
}

}  // namespace tarn::host
