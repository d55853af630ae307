#include "output/OutputWindow.h"

#include "platform/text/Text.h"
#include "widgets/HostMessages.h"

namespace tarn {

namespace {

constexpr int kBrowserId = 100;
constexpr std::string_view kPlaceMark = "err://";
constexpr std::string_view kNowhereMark = "lnk://";
// Minimum offset of the colon before the line, to skip the colon of a drive.
constexpr std::size_t kAfterDrive = 3;

void SendPlace(WindowHandle host, std::string_view place) {
  const std::size_t colon = place.find(':', kAfterDrive);
  const std::string file(place.substr(0, colon));
  const std::string line(colon == place.npos ? std::string_view() : place.substr(colon + 1));
  SendWindowMessage(host, kMsgOpenFileAtLine, reinterpret_cast<std::intptr_t>(file.c_str()),
                    ParseDecimal(line.c_str()));
}

}  // namespace

COutputWindow::COutputWindow(WindowHandle host) : hostWindow_(host) {
  browser_.SetNavigationHandler(
      [this](const std::string& address) { return MayNavigate(address); });
}

COutputWindow::~COutputWindow() {
  DestroyWindow();
}

bool COutputWindow::OnCreate() {
  return browser_.Create(kStyleChild | kStyleVisible, {}, this, kBrowserId);
}

void COutputWindow::OnSize(Size size) {
  browser_.MoveWindow({0, 0, size.width, size.height});
}

bool COutputWindow::MayNavigate(const std::string& address) const {
  if (StartsWithNoCase(address, kPlaceMark)) {
    SendPlace(hostWindow_, std::string_view(address).substr(kPlaceMark.size()));
    return false;
  }
  return !StartsWithNoCase(address, kNowhereMark);
}

}  // namespace tarn
