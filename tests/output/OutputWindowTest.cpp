#include "output/OutputWindow.h"

#include <gtest/gtest.h>

#include <functional>

#include "widgets/HostMessages.h"

namespace tarn {
namespace {

struct FileHost : WindowTarget {
  FileHost() : window(RegisterWindow(*this)) {}
  ~FileHost() { UnregisterWindow(window); }
  std::intptr_t OnWindowMessage(std::uint32_t message, std::intptr_t wParam,
                                std::intptr_t lParam) override {
    if (message == kMsgOpenFileAtLine) {
      seen = std::string(reinterpret_cast<const char*>(wParam)) + "|" + std::to_string(lParam);
    }
    if (then) then();
    return 0;
  }
  const WindowHandle window;
  std::string seen;
  std::function<void()> then;
};

TEST(OutputWindowTest, LinksOfThePageReachTheHost) {
  const struct {
    const char* address;
    bool isAllowed;
    const char* seen;
  } rows[] = {
      {"err://C:\\a b\\c.c:12", false, "C:\\a b\\c.c|12"},
      {"ERR:///src/main.c:7:3", false, "/src/main.c|7"},
      {"err://abc:4", false, "abc|4"},
      {"err://a:4", false, "a:4|0"},
      {"err://", false, "|0"},
      {"err://main.c", false, "main.c|0"},
      {"err://main.c:x", false, "main.c|0"},
      {"Lnk://anything", false, ""},
      {"err:/main.c:1", true, ""},
      {"file:///log.xml", true, ""},
      {"", true, ""},
  };
  FileHost host;
  COutputWindow window(host.window);
  window.Create(0, {0, 0, 300, 200}, nullptr, 0);
  EXPECT_EQ(window.FindChild(100), &window.GetBrowser());
  EXPECT_EQ(window.GetBrowser().GetRect(), (Rect{0, 0, 300, 200}));
  for (const auto& row : rows) {
    host.seen.clear();
    EXPECT_EQ(window.GetBrowser().NotifyNavigating(row.address), row.isAllowed) << row.address;
    EXPECT_EQ(host.seen, row.seen) << row.address;
  }
  window.GetBrowser().Navigate("file:///log.xml");
  window.GetBrowser().Navigate("lnk://x");
  EXPECT_EQ(window.GetBrowser().GetAddress(), "file:///log.xml");
}

TEST(OutputWindowTest, TheHostMayEndTheWindowInTheMiddleOfALink) {
  FileHost host;
  auto window = std::make_unique<COutputWindow>(host.window);
  window->Create(0, {}, nullptr, 0);
  host.then = [&window] { window.reset(); };
  EXPECT_FALSE(window->GetBrowser().NotifyNavigating("err://main.c:1"));
  EXPECT_EQ(window, nullptr);
}

}  // namespace
}  // namespace tarn
