#pragma once

#include <QCoreApplication>
#include <QString>
#include <QWidget>
#include <functional>
#include <vector>

#include "hosts/desktop/Examples.h"

class QVBoxLayout;

namespace tarn::host {

// The page shown while no file is open: ways to open or create a project.
class WelcomePage : public QWidget {
  Q_DECLARE_TR_FUNCTIONS(WelcomePage)

 public:
  // `pictureFolder` contains the installed icons and has a trailing separator.
  WelcomePage(std::vector<Example> shippedExamples, const QString& pictureFolder, QWidget* parent);

  // Refreshes the list of recent projects; called each time the page is shown.
  void FillRecent();

  // Called when the user chooses an entry of the page.
  std::function<void()> onOpen;
  std::function<void()> onNew;
  std::function<void(const Example& example)> onExample;
  std::function<void(const QString& path)> onRecent;

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  void AddStart(QVBoxLayout& column);
  QIcon Picture(const char* name) const;

  std::vector<Example> examples_;
  QString pictures_;
  QVBoxLayout* recent_ = nullptr;
};

}  // namespace tarn::host
