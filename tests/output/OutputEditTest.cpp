#include "output/OutputEdit.h"

#include <tarn/commands.h>

#include <gtest/gtest.h>

#include <functional>

#include "output/BuildOutput.h"
#include "support/MemoryFileSystem.h"
#include "support/RecordingToolkit.h"
#include "widgets/HostMessages.h"
#include "xml/XmlNode.h"

namespace tarn {
namespace {

using Lines = std::vector<std::string>;

std::string TextAt(std::intptr_t address) {
  return reinterpret_cast<const char*>(address);
}

// Main frame of the host; records the messages that it receives as lines.
struct Host : WindowTarget {
  Host() : window(RegisterWindow(*this)) {}
  ~Host() { UnregisterWindow(window); }

  std::intptr_t OnWindowMessage(std::uint32_t message, std::intptr_t wParam,
                                std::intptr_t lParam) override {
    switch (message) {
      case kMsgOpenFileAtLine:
        lines.push_back("open " + TextAt(wParam) + " " + std::to_string(lParam));
        break;
      case kMsgShowHelp:
        lines.push_back("help " + TextAt(wParam) + " " + std::to_string(lParam));
        break;
      case kMsgShowTimeStamps:
        lines.push_back("time " + std::to_string(wParam) + " " + std::to_string(lParam));
        break;
      case kMsgShowPopupMenu: {
        const auto* point = reinterpret_cast<const Point*>(wParam);
        lines.push_back("menu " + TextAt(lParam) + " " + std::to_string(point->x) + "," +
                        std::to_string(point->y));
        break;
      }
      default:
        lines.push_back("message " + std::to_string(message));
    }
    if (then) then();
    return 0;
  }
  Lines Take() { return std::exchange(lines, {}); }

  const WindowHandle window;
  Lines lines;
  std::function<void()> then;
};

struct OutputEditTest : ::testing::Test {
  OutputEditTest() {
    disk.AddFile("/help/a b.html", "");
    view->Create(kStyleChild, {0, 0, 305, 100}, nullptr, 0);
  }
  void Add(const std::string& element) {
    CXmlNode node;
    node.Load(element, g_xmlParseInfo);
    view->AddMessage(node);
  }
  // Position of the first character of the line's text, after the space at the start of every line.
  void Mouse(MouseAction action, MouseButton button, int line = 0) {
    view->GetEdit().NotifyMouse({action, button, {8, 16 * line}, false, false});
  }
  void Click() {
    Mouse(MouseAction::Press, MouseButton::Left);
    Mouse(MouseAction::Release, MouseButton::Left);
  }

  test::RecordingToolkit toolkit;
  testing::MemoryFileSystem disk;
  Host host;
  std::unique_ptr<COutputEdit> view = std::make_unique<COutputEdit>(disk, host.window);
};

TEST_F(OutputEditTest, AClickTellsTheHostWhatTheLinkStandsFor) {
  const struct {
    const char* element;
    Lines sent;
  } rows[] = {
      {R"(<message Icon="2" Description="e" File="C:\a b\c.c" Line="12"/>)",
       {R"(open C:\a b\c.c -12)"}},
      {R"(<message Icon="2" Description="e" File="a.c" Line="0x10"/>)", {"open a.c -16"}},
      {R"(<message Icon="1" Description="w" File="a.c" Line=""/>)", {"open a.c 0"}},
      {R"(<message Icon="1" Description="w" File="a.c"/>)", {"open a.c 0"}},
      {R"(<message Icon="1" Description="w" File="" Line="3"/>)", {"open  -3"}},
      {R"(<message Icon="1" Description="w" Line="3"/>)", {}},
      {R"(<message Icon="2" Description="e"/>)", {}},
      {R"(<message Icon="2" Description="}e{" File="}{" Line="2"/>)", {"open }{ -2"}},
      {R"(<message Icon="3" Description="n" File="a.c" Line="4" Help="/help/a b.html"/>)",
       {"open a.c -4"}},
      {R"(<message Description="a.c:4: note: n" File="a.c" Line="4"/>)", {"open a.c -4"}},
      {R"(<message Icon="2" Description="e" File="a.c" Line="4" Help="/help/a b.html"/>)",
       {"help /help/a b.html 0", "open a.c -4"}},
      {R"(<message Icon="2" Description="e" File="a.c" Line="4" Help="/help/none"/>)",
       {"open a.c -4"}},
      {R"(<message Icon="2" Description="e" Help="/help/a b.html" TimeL="5" TimeH="6"/>)",
       {"help /help/a b.html 0", "time 6 5"}},
      {R"(<message Icon="2" Description="e" TimeL="5"/>)", {"time 0 5"}},
      {R"(<message Icon="2" Description="e" TimeL="0" TimeH="0" File="a"/>)", {"open a 0"}},
      {R"(<message Icon="2" Description="e" ChannelName="c" TimeH="-1"/>)", {"time -1 0"}},
      {R"(<message Icon="0" Description="p" File="a.c" Line="4"/>)", {}},
      {R"(<message Icon="5" Description="h" File="a.c" Line="4"/>)", {}},
      {R"(<Output>o</Output>)", {}},
  };
  for (const auto& row : rows) {
    Add(row.element);
    Click();
    EXPECT_EQ(host.Take(), row.sent) << row.element;
    view->Clear();
  }
}

TEST_F(OutputEditTest, OnlyTheReleaseOfTheLeftButtonIsAClick) {
  Add(R"(<message Icon="2" Description="e" File="a.c" Line="1"/>)");
  for (const MouseAction action :
       {MouseAction::Press, MouseAction::Move, MouseAction::DoubleClick}) {
    Mouse(action, MouseButton::Left);
  }
  Mouse(MouseAction::Release, MouseButton::Right);
  Mouse(MouseAction::Release, MouseButton::Left, 1);
  EXPECT_EQ(host.Take(), Lines{});
  Mouse(MouseAction::Release, MouseButton::Left);
  EXPECT_EQ(host.Take(), Lines{"open a.c -1"});
}

TEST_F(OutputEditTest, TheHostMayEndTheViewInTheMiddleOfAClick) {
  Add(R"(<message Icon="2" Description="e" File="a" Help="/help/a b.html" TimeL="5"/>)");
  host.then = [this] { view.reset(); };
  Mouse(MouseAction::Release, MouseButton::Left);
  EXPECT_EQ(host.Take(), Lines{"help /help/a b.html 0"});
}

TEST_F(OutputEditTest, CommandsAndMenuOfTheView) {
  Add(R"(<message Icon="0" Description="one two"/>)");
  view->GetEdit().NotifySelected({1, 4});
  SendWindowMessage(view->GetHandle(), kMsgCommand, TARN_CMD_COPY, 0);
  SendWindowMessage(view->GetHandle(), kMsgCommand, TARN_CMD_CUT_LOG, 0);
  EXPECT_EQ(toolkit.TakeLines(), (Lines{"clipboard one", "clipboard one"}));
  EXPECT_EQ(view->GetEdit().GetText(), "  two \n\n");
  SendWindowMessage(view->GetHandle(), kMsgCommand, TARN_CMD_CLEAR_LOG, 0);
  EXPECT_EQ(view->GetEdit().GetText(), "\n");
  EXPECT_EQ(SendWindowMessage(view->GetHandle(), kMsgCommand, TARN_CMD_CUT_LOG + 1, 0), 0);
  view->GetEdit().NotifyContextMenu({30, 40});
  EXPECT_EQ(host.Take(), Lines{"menu 4004 30,40"});
}

TEST_F(OutputEditTest, TheTextFillsTheWindowBesideItsMargin) {
  EXPECT_EQ(view->GetEdit().GetRect(), (Rect{5, 0, 305, 100}));
  EXPECT_EQ(view->GetChildren()[0]->GetRect(), (Rect{0, 0, 5, 100}));
  view->NotifyResized({2, 30});
  EXPECT_TRUE(view->GetEdit().GetRect().IsEmpty());
  EXPECT_EQ(view->GetEdit().GetFont(), (Font{"Courier New", 175, false, false}));
  COutputEdit unborn(disk, 0);
  unborn.AddMessage(*CXmlNode::CreateNode("message"));
  unborn.Clear();
  EXPECT_EQ(unborn.GetEdit().GetText(), "\n");
}

// All ways for a string to reach the view, each followed by another line.
TEST_F(OutputEditTest, NoTextHidesTheLinesAfterIt) {
  std::string megabyte(1 << 20, 'x');
  megabyte.front() = '{';
  megabyte.back() = '}';
  std::string control = "a";
  for (char c = 1; c < 32; ++c) control += c;
  std::string expected;
  CBuildOutput hub(disk);
  hub.SetViews(view.get(), nullptr);
  for (const std::string& text :
       {std::string("{"), std::string("}"), std::string("}}}}}} {{{"), std::string("\\"),
        std::string("\\par \\b }} \\par }"), std::string("{\\rtf1 {\\field "),
        std::string("a\r\nb"), control + "\x7F", std::string("\xFF\xC3"), std::string(),
        megabyte}) {
    std::string shown = text;
    for (char& c : shown) c = (c >= 0 && c < 32 && c != '\t') || c == 127 ? ' ' : c;
    for (const char* icon : {"0", "1", "2", "3", "5"}) {
      CXmlNode node;
      node.SetName("message");
      node.SetAttrValue("Icon", icon);
      node.SetAttrValue("Description", text);
      if (icon[0] < '5') {
        node.SetAttrValue("File", text);
        node.SetAttrValue("Help", text);
      }
      view->AddMessage(node);
      if (icon[0] == '5')
        expected += "  \n" + shown + " \n";
      else
        expected += " " + shown + " \n";
    }
    hub.AddOutput("next");
    expected += " next \n";
  }
  EXPECT_TRUE(view->GetEdit().GetText() == expected + "\n");
  hub.ResetLog();
  EXPECT_EQ(view->GetEdit().GetText(), "\n");
}

}  // namespace
}  // namespace tarn
