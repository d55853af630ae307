#pragma once

#include <QCoreApplication>
#include <QDialog>
#include <functional>

#include "hosts/desktop/Journal.h"
#include "platform/files/FileSystem.h"

class QTreeWidget;

namespace tarn::host {

// Lists the content of a journal and asks the user what to do with it. Closing the dialog leaves
// the journal unchanged.
class RecoveryDialog : public QDialog {
  Q_DECLARE_TR_FUNCTIONS(RecoveryDialog)

 public:
  RecoveryDialog(const JournalReading& reading, FileSystem& fileSystem, QWidget* parent);

  // Exactly one of these is called, once; afterwards the dialog is deleted.
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
