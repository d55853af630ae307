#pragma once

#include <chrono>
#include <string>

#include "widgets/Wnd.h"

namespace tarn {

// A tooltip: a small window next to the cursor with a title and a text of any number of lines,
// which disappears after a timeout.
class CTipWindow : public CWnd {
 public:
  CTipWindow() = default;
  ~CTipWindow() override { DestroyWindow(); }

  // Created hidden, as a popup over another window.
  bool Create(CWnd* over);

  // Distances between border and text, and between two lines. Take effect at the next ShowTip().
  void SetMargins(Size newMargins) { margins_ = newMargins; }
  Size GetMargins() const { return margins_; }
  void SetLineSpace(int space) { lineSpace_ = space; }
  int GetLineSpace() const { return lineSpace_; }
  // Number of a frame style that the toolkit defines.
  void SetFrameStyle(int newStyle) { frameStyle_ = newStyle; }
  int GetFrameStyle() const { return frameStyle_; }
  // The text below the title is the window text.
  const std::string& GetTitle() const { return title_; }

  // Shows the tip at a point of the parent after `delay`, for `duration`; zero means without a
  // timeout.
  void ShowTip(std::string newTitle, const std::string& newText, Point point,
               std::chrono::milliseconds delay, std::chrono::milliseconds duration);
  // Also cancels a pending ShowTip().
  void Hide();

 protected:
  void OnTimer(int timerId) override;
  std::unique_ptr<WindowPeer> MakePeer(WindowToolkit& toolkit) override;

 private:
  void Appear();
  Size Measure() const;

  Size margins_{1, 1};
  int lineSpace_ = 1;
  int frameStyle_ = 0;
  std::string title_;
  std::chrono::milliseconds duration_{0};
};

}  // namespace tarn
