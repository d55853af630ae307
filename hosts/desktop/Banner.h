#pragma once

#include <QFrame>
#include <functional>

class QBoxLayout;
class QLabel;
class QPushButton;

namespace tarn::host {

// A message bar with two buttons, shown above the widget that it refers to. Never takes the focus
// and is not modal.
class Banner : public QFrame {
 public:
  // The first button performs the action, the second one dismisses the message.
  Banner(const QString& first, const QString& second, QWidget* parent);

  void Tell(const QString& said);
  // Shows links between the text and `after`; a click calls onLink.
  void ShowWithLinks(const QString& said, const QStringList& links, const QString& after);
  // Enables or disables the first button; `reason` is shown as its tool tip.
  void SetReady(bool isReady, const QString& reason);

  std::function<void()> onFirst;
  std::function<void()> onSecond;
  std::function<void(int index)> onLink;  // index of the link, from 0

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  QLabel* label_ = nullptr;
  QPushButton* accept_ = nullptr;
  QBoxLayout* parts_ = nullptr;  // text and buttons
};

}  // namespace tarn::host
