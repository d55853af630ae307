#pragma once

#include <QMargins>
#include <QString>
#include <QWidget>
#include <vector>

#include "widgets/TipWindow.h"
#include "widgets/qt/WidgetPeer.h"

namespace tarn {

// The title in bold, and the lines below it, of which long ones are wrapped. Asks the tip itself
// whenever it paints.
class TipWidget : public QWidget {
 public:
  explicit TipWidget(const CTipWindow& shownTip) : tip(shownTip), handle(shownTip.GetHandle()) {}

  // All of it, wrapped so that it fits into `room`.
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

  const CTipWindow& tip;
  const WindowHandle handle;
};

// Shows a tip over its parent, on the screen that the place is on. The mouse goes through it.
class QtTipPeer : public WidgetPeer<WindowPeer, TipWidget> {
 public:
  explicit QtTipPeer(CTipWindow& shownTip);

  void OnMoved() override;
  void OnShown() override;

 private:
  const CTipWindow& tip;
};

}  // namespace tarn
