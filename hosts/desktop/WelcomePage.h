#pragma once

#include <QCoreApplication>
#include <QString>
#include <QWidget>
#include <functional>
#include <vector>

#include "hosts/desktop/Examples.h"

class QVBoxLayout;

namespace tarn::host {

// What stands in place of the editors while no file is open: ways to a project.
class WelcomePage : public QWidget {
  Q_DECLARE_TR_FUNCTIONS(WelcomePage)

 public:
  // The pictures come from a folder of the installation, with a separator at its end.
  WelcomePage(std::vector<Example> shippedExamples, const QString& pictureFolder, QWidget* parent);

  // Shows the projects that are there now; done whenever the page comes up.
  void FillRecent();

  std::function<void()> onOpen;
  std::function<void()> onNew;
  std::function<void(const Example& example)> onExample;
  std::function<void(const QString& path)> onRecent;

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  void AddStart(QVBoxLayout& column);
  QIcon Picture(const char* name) const;

  std::vector<Example> examples;
  QString pictures;
  QVBoxLayout* recent = nullptr;
};

}  // namespace tarn::host
