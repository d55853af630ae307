#pragma once

#include <chrono>
#include <string>

#include "widgets/Wnd.h"

namespace tarn {

// A small window that describes something beside the cursor: a title, a text of any number of
// lines, and a time after which it goes by itself.
class CTipWindow : public CWnd {
 public:
  CTipWindow() = default;
  ~CTipWindow() override { DestroyWindow(); }

  // Made hidden, as a window of its own over another.
  bool Create(CWnd* over);

  // Between the edge and the texts; between two lines. Both count from the next ShowTip on.
  void SetMargins(Size newMargins) { margins = newMargins; }
  Size GetMargins() const { return margins; }
  void SetLineSpace(int space) { lineSpace = space; }
  int GetLineSpace() const { return lineSpace; }
  // A number out of a toolkit's list of frames.
  void SetFrameStyle(int newStyle) { frameStyle = newStyle; }
  int GetFrameStyle() const { return frameStyle; }
  // The text below it is that of the window.
  const std::string& GetTitle() const { return title; }

  // Shows it at a point of the parent after `delay`, for `duration`; zero is for ever.
  void ShowTip(std::string newTitle, const std::string& newText, Point point,
               std::chrono::milliseconds delay, std::chrono::milliseconds duration);
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
