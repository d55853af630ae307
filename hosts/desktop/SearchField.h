#pragma once

#include <QLineEdit>

namespace tarn::host {

// A field whose purpose is written in it while it is empty, in a tone that can be read on any
// palette: the desktop's own for that is often too faint.
class SearchField : public QLineEdit {
 public:
  SearchField(const QString& purpose, QWidget* parent);

 protected:
  void changeEvent(QEvent* event) override;

 private:
  void SetTone();
};

}  // namespace tarn::host
