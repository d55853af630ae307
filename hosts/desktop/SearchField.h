#pragma once

#include <QLineEdit>

namespace tarn::host {

// Search field with placeholder text in a colour that is readable on any palette; the desktop's
// default is often too faint.
class SearchField : public QLineEdit {
 public:
  SearchField(const QString& purpose, QWidget* parent);

 protected:
  void changeEvent(QEvent* event) override;

 private:
  void SetTone();
};

}  // namespace tarn::host
