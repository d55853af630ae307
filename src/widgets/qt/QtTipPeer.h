#pragma once

#include <QMargins>
#include <QString>
#include <QWidget>
#include <vector>

#include "widgets/TipWindow.h"
#include "widgets/qt/WidgetPeer.h"

namespace tarn {

// Draws the title in bold and the wrapped text below it. Reads the tip's state whenever it paints.
class TipWidget : public QWidget {
 public:
  explicit TipWidget(const CTipWindow& shownTip) : tip_(shownTip), handle_(shownTip.GetHandle()) {}

  // Size of the whole content, wrapped to fit into `room`.
  QSize SizeIn(QSize room) const;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  struct Line {
    QString text;
    QFont font;
  };
  std::vector<Line> Lines() const;
  QMargins Margins() const;

  const CTipWindow& tip_;
  const WindowHandle handle_;
};

// Shows a tip over its parent, limited to the screen that contains its position. Transparent for
// mouse events.
class QtTipPeer : public WidgetPeer<WindowPeer, TipWidget> {
 public:
  explicit QtTipPeer(CTipWindow& shownTip);

  void OnMoved() override;
  void OnShown() override;

 private:
  const CTipWindow& tip_;
};

}  // namespace tarn
