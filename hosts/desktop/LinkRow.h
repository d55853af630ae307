#pragma once

#include <QAbstractButton>
#include <QString>

namespace tarn::host {

// A line to click: a picture, what it does, and below that a smaller remark, which takes as many
// lines as it needs. A path there is cut in its middle instead and stands in the tip.
class LinkRow : public QAbstractButton {
 public:
  enum class Remark { Text, Path };

  LinkRow(const QIcon& picture, const QString& label, const QString& below, Remark kindOfRemark,
          QWidget* parent);

  QSize sizeHint() const override;
  int heightForWidth(int width) const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  bool event(QEvent* event) override;

 private:
  QFont RemarkFont() const;

  QString remark;
  const Remark kind;
};

}  // namespace tarn::host
