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
  // Buttons or the pictures are others now.
  virtual void OnButtonsChanged() {}
  // The state or the text of one is another.
  virtual void OnButtonChanged(std::size_t /*index*/) {}
  // The height that the buttons take at this width, and where one of them stands; nothing for a
  // peer that leaves both to the bar.
  virtual std::optional<int> HeightFor(int /*width*/) { return std::nullopt; }
  virtual std::optional<Rect> ButtonRect(std::size_t /*index*/) { return std::nullopt; }
};

// A row of buttons, which breaks into several where the width does not do. A button sends
// kMsgCommand with its number to the owner; one with a menu sends what is chosen there.
class CToolBar : public CWnd {
 public:
  struct Button {
    int id = 0;
    std::string text;
    int image = -1;  // number in the bar's pictures; below 0: none
    bool isSeparator = false;
    bool isDropDown = false;
    bool isEnabled = true;
    bool isChecked = false;
    bool isRadio = false;  // looks like one choice of several while it is checked
    friend bool operator==(const Button&, const Button&) = default;
  };

  // Makes a menu for each time that it is to be shown; null for none.
  using MenuMaker = std::function<std::unique_ptr<CMenu>()>;
  // Sets the text and the states of a button, which is told apart by its number; what else it
  // changes is ignored.
  using Updater = std::function<void(Button&)>;

  void SetImages(CImageList newImages);
  // Null for none.
  const CImageList* GetImages() const { return images ? &*images : nullptr; }

  void AddButton(int buttonId, std::string label, int image);
  void AddDropDown(int buttonId, std::string label, int image, MenuMaker makeMenu);
  void AddSeparator();
  const std::vector<Button>& GetButtons() const { return buttons; }

  // Asked about every button whenever there is nothing else to do.
  void SetUpdater(Updater newUpdater) { updater = std::move(newUpdater); }

  int GetHeightFor(int width);
  // In client coordinates; empty for no such button.
  Rect GetButtonRect(std::size_t index);

  // --- From the toolkit; a button that is disabled or not there does nothing ---

  void NotifyButton(int buttonId);
  // The user wants the menu of a button, which is shown below it.
  void NotifyDropDown(int buttonId);

 protected:
  void OnIdle() override;
  std::unique_ptr<WindowPeer> MakePeer(WindowToolkit& toolkit) final;

 private:
  ToolBarPeer* Drawing() { return static_cast<ToolBarPeer*>(GetPeer()); }
  void Add(Button button, MenuMaker makeMenu);
  // The index of an enabled button; nothing for none.
  std::optional<std::size_t> FindEnabled(int buttonId) const;
  std::vector<Rect> Layout(int width) const;

  std::optional<CImageList> images;
  std::vector<Button> buttons;
  std::vector<MenuMaker> menus;  // one per button; most are empty
  Updater updater;
};

}  // namespace tarn
