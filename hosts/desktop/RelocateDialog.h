#pragma once

#include <QCoreApplication>
#include <QDialog>
#include <QTimer>
#include <string>
#include <vector>

#include "hosts/core/Relocation.h"

class QDialogButtonBox;
class QLabel;
class QLineEdit;
class QTreeWidget;
class QTreeWidgetItem;

namespace tarn::host {

// Shows the missing files of a project and their probable new paths: the user chooses the folder to
// search, excludes wrong matches, and selects one of several candidates. The search runs in steps,
// so that the window stays responsive even for a large folder. After the dialog was accepted,
// GetTexts() returns the corrected files of the project. Borrows the relocation.
class RelocateDialog : public QDialog {
  Q_DECLARE_TR_FUNCTIONS(RelocateDialog)

 public:
  // `projectFolder` is searched first; paths inside are shown relative to it.
  RelocateDialog(Relocation& moves, const std::string& projectFolder, QWidget* parent);

  // The corrected files; empty unless the dialog was accepted.
  const std::vector<FileText>& GetTexts() const { return texts_; }

 private:
  void AddWidgets();
  void Search(const std::string& folder);
  void ContinueSearch();
  void Update();
  void Fill();
  void AddRow(const MovedPath& moved);
  void AddChoice(QTreeWidgetItem& item, const MovedPath& moved);
  void OnChecked(QTreeWidgetItem* item);
  void Choose(const std::string& oldPath, const std::string& newPath);
  void Finish();
  QString Shown(const std::string& path) const;

  Relocation& moves_;
  std::string projectFolder_;
  QLineEdit* folder_ = nullptr;
  QTreeWidget* list_ = nullptr;
  QLabel* summary_ = nullptr;
  QDialogButtonBox* buttons_ = nullptr;
  QTimer timer_;
  int rowHeight_ = 0;  // pixels
  bool isFilling_ = false;
  std::vector<FileText> texts_;
};

}  // namespace tarn::host
