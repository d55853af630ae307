#pragma once

#include <QMainWindow>
#include <memory>
#include <string>

#include "hosts/frame/BuildSession.h"
#include "hosts/frame/MainFrame.h"
#include "platform/files/FileSystem.h"

namespace tarn::host {

// The main window: a server with its windows in docks around the editors.
class IdeWindow : public QMainWindow {
 public:
  explicit IdeWindow(FileSystem& fileSystem);
  ~IdeWindow() override;

  // Makes the server and takes its windows in. False when the installation is broken, which the
  // user has been told.
  bool Start();
  void OpenProject(const std::string& path);

 private:
  void AddDock(const HostEvent& announcement);

  MainFrame frame;
  std::unique_ptr<BuildSession> session;
};

}  // namespace tarn::host
