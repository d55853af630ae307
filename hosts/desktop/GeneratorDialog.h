#pragma once

#include <QCoreApplication>
#include <QDialog>
#include <string>

#include "hosts/core/FileTypes.h"
#include "hosts/core/GeneratedSource.h"

class QCheckBox;
class QComboBox;
class QFormLayout;
class QLabel;
class QLineEdit;

namespace tarn::host {

// Asks for a file from which a build makes another, and for the tool that makes it. OK checks the
// request, and shows what is wrong with it; after the dialog was accepted, GetRequest() has no
// problem. Borrows the arguments.
class GeneratorDialog : public QDialog {
  Q_DECLARE_TR_FUNCTIONS(GeneratorDialog)

 public:
  GeneratorDialog(NewGenerator& newGenerator, FileTypes& fileTypes, QWidget* parent);

  GeneratorRequest GetRequest() const;

 private:
  void AddWidgets();
  QWidget* MakeInputRow();
  QWidget* MakeProblemRow();
  void Browse();
  // Follows a change of the file or the tool.
  void Update();
  void TryFinish();
  QString TextOf(GeneratorProblem problem) const;
  QString Shown(const std::string& path) const;

  NewGenerator& generator_;
  FileTypes& types_;
  QFormLayout* form_ = nullptr;
  QLineEdit* input_ = nullptr;
  QComboBox* tool_ = nullptr;
  QLineEdit* output_ = nullptr;
  QLineEdit* commands_ = nullptr;
  QCheckBox* adds_ = nullptr;
  QWidget* problemRow_ = nullptr;
  QLabel* problem_ = nullptr;
  bool isToolChosen_ = false;  // by the user, as opposed to the default for the file
  bool isAddsChosen_ = false;
};

}  // namespace tarn::host
