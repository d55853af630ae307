#include "hosts/desktop/IdeWindow.h"

#include <QDockWidget>
#include <QMessageBox>

#include "hosts/frame/LogEntry.h"
#include "platform/qt/QtText.h"
#include "platform/qt/WidgetPeer.h"

namespace tarn::host {

namespace {

constexpr int kProjectWindow = 4003;

}  // namespace

IdeWindow::IdeWindow(FileSystem& fileSystem)
    : session(std::make_unique<BuildSession>(frame, fileSystem,
                                             HostFolders::FromEnvironment(fileSystem))) {
  frame.Answer(kMsgAnnounceWindow, [this](const HostEvent& event) {
    AddDock(event);
    return std::intptr_t{1};
  });
}

IdeWindow::~IdeWindow() = default;

bool IdeWindow::Start() {
  if (const Status started = session->Start(); !started) {
    QMessageBox::critical(this, "Tarn", ToQt(started.GetError().text));
    return false;
  }
  session->Manager().GetProjectWindow();
  session->Manager().GetOutputWindow();
  return true;
}

void IdeWindow::OpenProject(const std::string& path) {
  if (const Status opened = session->Open(path); !opened) {
    QMessageBox::warning(this, "Tarn", ToQt(opened.GetError().text));
  }
}

void IdeWindow::AddDock(const HostEvent& announcement) {
  const auto* const window = reinterpret_cast<const CWnd*>(announcement.wParam);
  QWidget* const widget = WidgetOf(*window);
  if (widget == nullptr) return;
  const auto element = ParseXml(announcement.detail);
  const QString id = ToQt(AttributeOf(element.get(), "ID"));
  auto* const dock = new QDockWidget(ToQt(AttributeOf(element.get(), "Title")), this);
  dock->setObjectName("dock" + id);
  dock->setWidget(widget);
  addDockWidget(id.toInt() == kProjectWindow ? Qt::LeftDockWidgetArea : Qt::BottomDockWidgetArea,
                dock);
}

}  // namespace tarn::host
