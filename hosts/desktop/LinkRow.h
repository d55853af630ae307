#pragma once

#include <QAbstractButton>
#include <QString>

namespace tarn::host {

// A line to click: a picture, what it does, and below that a smaller remark. A text that is too
// long is cut in its middle and stands in the tip.
class LinkRow : public QAbstractButton {
 public:
  LinkRow(const QIcon& picture, const QString& label, const QString& remark, QWidget* parent);

  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  bool event(QEvent* event) override;

 private:
  QFont RemarkFont() const;

  QString remark;
};

}  // namespace tarn::host
