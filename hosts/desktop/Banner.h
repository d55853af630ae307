#pragma once

#include <QFrame>
#include <functional>

class QLabel;
class QPushButton;

namespace tarn::host {

// A line above what it is about, with two ways to go on. It takes no focus and waits for nobody.
class Banner : public QFrame {
 public:
  // The first button does what changes something, the second leaves all as it is.
  Banner(const QString& first, const QString& second, QWidget* parent);

  void Tell(const QString& said);
  // With links between the text and `after`, which onLink follows.
  void TellWithLinks(const QString& said, const QStringList& links, const QString& after);
  // Whether the first button can be pressed; the reason why not is its tip.
  void SetReady(bool isReady, const QString& reason);

  std::function<void()> onFirst;
  std::function<void()> onSecond;
  std::function<void(int index)> onLink;  // of the link, from 0

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QLabel* label = nullptr;
  QPushButton* accept = nullptr;
};

}  // namespace tarn::host
