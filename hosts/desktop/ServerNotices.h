#pragma once

#include <QCoreApplication>
#include <QObject>
#include <QString>
#include <functional>
#include <string>

#include "hosts/core/MainFrame.h"
#include "platform/files/FileSystem.h"

class QLabel;
class QStatusBar;

namespace tarn::host {

// Shows what the server tells in passing: which node, application and configuration the commands
// work on, what has become out of date, what was created, help files and time stamps of messages.
//
// Answers these messages of the frame while it lives; borrows all that it is given.
class ServerNotices : public QObject {
  Q_DECLARE_TR_FUNCTIONS(ServerNotices)

 public:
  ServerNotices(MainFrame& mainFrame, FileSystem& fileSystem, QStatusBar& statusBar);
  ~ServerNotices() override;

  // The label of the current node, if set: what belongs to no file is told without a name.
  std::function<std::string()> askLabel;
  // Behind each message about the node or the application, if set: commands may be enabled now.
  std::function<void()> onSelectionChanged;
  // A help file that is to be read here, if set; others go to the desktop.
  std::function<void(const std::string& path)> openText;
  // While this says so, if set, the bar shows how a build goes, and what that makes out of date
  // isn't told.
  std::function<bool()> isBuilding;
  // Another project: nothing is known of its applications yet.
  void Forget();

 private:
  void AnswerMessages();
  void Answer(std::uint32_t number, std::function<void(const HostEvent&)> show);
  void ShowHelp(const std::string& path);
  void ShowSelection();

  MainFrame& frame;
  FileSystem& files;
  QStatusBar& bar;
  QLabel* const selection;
  QString node;
  QString application;
  QString applicationFile;
  QString configuration;
};

}  // namespace tarn::host
