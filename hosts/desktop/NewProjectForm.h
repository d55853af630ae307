#pragma once

#include <QCoreApplication>
#include <QObject>
#include <QString>
#include <string>

#include "platform/files/FileSystem.h"
#include "widgets/PropertySheet.h"

class QDialog;
class QLineEdit;

namespace tarn::host {

// Extends the wizard for a new application while it is shown: a search field above the
// microcontrollers, and for a new project a folder that is named after it until the user edits it.
// Owned by the dialog.
class NewProjectForm : public QObject {
  Q_DECLARE_TR_FUNCTIONS(NewProjectForm)

 public:
  // No-op for other sheets. `pictureFolder` contains the icons and has a trailing separator. If
  // `newFolder` is not empty, only a new project can be created although one is open, and this is
  // the folder that is proposed for it.
  static void Extend(const CPropertySheet& sheet, QDialog& dialog, const QString& pictureFolder,
                     const std::string& newFolder);
  // Returns why the wizard should not be finished; an empty string if it can be. `tools` is the
  // list of the tool component.
  static std::string FindProblem(const CPropertySheet& sheet, FileSystem& files,
                                 const std::string& tools);

 private:
  NewProjectForm(const CPropertySheet& shownSheet, QDialog& dialog);

  void AddSearch(const QString& pictureFolder);
  void FollowName();
  void ProposeLocation();

  const CPropertySheet& sheet_;
  QLineEdit* name_ = nullptr;
  std::string base_;      // folder of the projects
  std::string proposed_;  // last proposed location
};

}  // namespace tarn::host
