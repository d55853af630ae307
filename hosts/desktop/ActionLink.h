#pragma once

#include <QAbstractButton>
#include <QString>

namespace tarn::host {

// A clickable row: an icon, a label, and below it a remark in smaller print, which wraps to as many
// lines as needed. A path as remark is elided in the middle instead and shown in full in the tool
// tip.
class ActionLink : public QAbstractButton {
 public:
  enum class Remark { Text, Path };

  ActionLink(const QIcon& picture, const QString& label, const QString& below, Remark kindOfRemark,
             QWidget* parent);

  QSize sizeHint() const override;
  int heightForWidth(int width) const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  bool event(QEvent* event) override;

 private:
  QFont RemarkFont() const;

  QString remark_;
  const Remark kind_;
};

}  // namespace tarn::host
