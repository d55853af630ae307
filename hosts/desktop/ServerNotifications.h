#pragma once

#include <QCoreApplication>
#include <QObject>
#include <QString>
#include <functional>
#include <string>

#include "hosts/core/HostWindow.h"
#include "platform/files/FileSystem.h"

class QLabel;
class QStatusBar;

namespace tarn::host {

// Shows notifications of the server in the status bar: the current node, application and
// configuration, outdated and newly created files, help files and time stamps of messages.
//
// Handles these messages of the frame during its lifetime; borrows all arguments.
class ServerNotifications : public QObject {
  Q_DECLARE_TR_FUNCTIONS(ServerNotifications)

 public:
  ServerNotifications(HostWindow& mainFrame, FileSystem& fileSystem, QStatusBar& statusBar);
  ~ServerNotifications() override;

  // Returns the label of the current node, used for nodes without a file; may be empty.
  std::function<std::string()> queryLabel;
  // Called after each message about the node or the application, because enabled commands may have
  // changed; may be empty.
  std::function<void()> onSelectionChanged;
  // Opens a help file in an editor; may be empty. Other files are opened by the desktop.
  std::function<void(const std::string& path)> openText;
  // Returns true during a build; may be empty. The status bar then shows its progress, and outdated
  // files are not reported.
  std::function<bool()> isBuilding;
  // Call this for a different project: clears what is known of the previous one's applications.
  void Clear();

 private:
  void SetHandlers();
  void SetHandler(std::uint32_t number, std::function<void(const HostMessageEvent&)> show);
  void ShowHelp(const std::string& path);
  void ShowSelection();

  HostWindow& frame_;
  FileSystem& files_;
  QStatusBar& bar_;
  QLabel* const selection_;
  QString node_;
  QString application_;
  QString applicationFile_;
  QString configuration_;
};

}  // namespace tarn::host
