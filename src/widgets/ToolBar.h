#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "widgets/ImageList.h"
#include "widgets/Menu.h"
#include "widgets/Wnd.h"

namespace tarn {

class ToolBarPeer : public WindowPeer {
 public:
  // Buttons or images have changed.
  virtual void OnButtonsChanged() {}
  // State or text of one button has changed.
  virtual void OnButtonChanged(std::size_t /*index*/) {}
  // Height that the buttons need at this width, and rectangle of a button; nullopt to let the bar
  // compute them.
  virtual std::optional<int> HeightFor(int /*width*/) { return std::nullopt; }
  virtual std::optional<Rect> ButtonRect(std::size_t /*index*/) { return std::nullopt; }
};

// A row of buttons that wraps if the width is too small. A button sends kMsgCommand with its number
// to the owner; one with a menu sends the chosen command.
class CToolBar : public CWnd {
 public:
  struct Button {
    int id = 0;
    std::string text;
    int image = -1;  // number of an image in the bar's list; negative: none
    bool isSeparator = false;
    bool isDropDown = false;
    bool isEnabled = true;
    bool isChecked = false;
    bool isRadio = false;  // drawn as one of several alternatives while checked
    friend bool operator==(const Button&, const Button&) = default;
  };

  // Creates the menu each time it is to be shown; null for none.
  using MenuMaker = std::function<std::unique_ptr<CMenu>()>;
  // Sets text and state of a button, which it identifies by number; other changes are ignored.
  using Updater = std::function<void(Button&)>;

  // Replaces the images of all buttons.
  void SetImages(CImageList newImages);
  // Null if the bar has no images.
  const CImageList* GetImages() const { return images_ ? &*images_ : nullptr; }

  // Append a button. An `image` that is not in the list shows the label instead; otherwise the
  // label is the tooltip.
  void AddButton(int buttonId, std::string label, int image);
  void AddDropDown(int buttonId, std::string label, int image, MenuMaker makeMenu);
  void AddSeparator();
  const std::vector<Button>& GetButtons() const { return buttons_; }

  // Called for every button whenever the loop is idle.
  void SetUpdater(Updater newUpdater) { updater_ = std::move(newUpdater); }

  // Height that the bar needs to show all buttons at this width, including further rows.
  int GetHeightFor(int width);
  // Rectangle in client coordinates; empty if the index is out of range.
  Rect GetButtonRect(std::size_t index);

  // --- Called by the toolkit; no-ops for a disabled or missing button ---

  // The user pressed a button: sends its command to the owner.
  void NotifyButton(int buttonId);
  // The user opens the menu of a button, which is shown below it.
  void NotifyDropDown(int buttonId);

 protected:
  // Updates all buttons through the updater.
  void OnIdle() override;
  std::unique_ptr<WindowPeer> MakePeer(WindowToolkit& toolkit) final;

 private:
  ToolBarPeer* Drawing() { return static_cast<ToolBarPeer*>(GetPeer()); }
  void Add(Button button, MenuMaker makeMenu);
  // Returns the index of an enabled button; nullopt if there is none.
  std::optional<std::size_t> FindEnabled(int buttonId) const;
  std::vector<Rect> Layout(int width) const;

  std::optional<CImageList> images_;
  std::vector<Button> buttons_;
  std::vector<MenuMaker> menus_;  // one per button; most are empty
  Updater updater_;
};

}  // namespace tarn
