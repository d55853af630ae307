#pragma once

#include <QCoreApplication>
#include <QDialog>
#include <functional>

#include "hosts/desktop/Journal.h"
#include "platform/files/FileSystem.h"

class QTreeWidget;

namespace tarn::host {

// Lists what a journal holds, and asks what is to become of it. Closing the dialog leaves the
// journal as it is.
class RecoveryDialog : public QDialog {
  Q_DECLARE_TR_FUNCTIONS(RecoveryDialog)

 public:
  RecoveryDialog(const JournalReading& reading, FileSystem& fileSystem, QWidget* parent);

  // Called once; later the dialog is gone.
  std::function<void()> onRestore;
  std::function<void()> onDiscard;
  std::function<void()> onLater;

 private:
  void Fill(QTreeWidget& list, const JournalReading& reading);
  static void AddRow(QTreeWidget& list, const std::string& path, const QString& what);
  QString Describe(const UnsavedText& text) const;
  void Choose(const std::function<void()>& choice);

  FileSystem& files_;
};

}  // namespace tarn::host
