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
  void SetMargins(Size newMargins) { margins = newMargins; }
  Size GetMargins() const { return margins; }
  void SetLineSpace(int space) { lineSpace = space; }
  int GetLineSpace() const { return lineSpace; }
  // Number of a frame style that the toolkit defines.
  void SetFrameStyle(int newStyle) { frameStyle = newStyle; }
  int GetFrameStyle() const { return frameStyle; }
  // The text below the title is the window text.
  const std::string& GetTitle() const { return title; }

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

  Size margins{1, 1};
  int lineSpace = 1;
  int frameStyle = 0;
  std::string title;
  std::chrono::milliseconds duration{0};
};

}  // namespace tarn
