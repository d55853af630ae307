#include "hosts/desktop/ServerNotifications.h"

#include <QDesktopServices>
#include <QFileInfo>
#include <QLabel>
#include <QStatusBar>
#include <QTimer>
#include <QUrl>

#include "widgets/qt/QtText.h"

namespace tarn::host {

namespace {

constexpr int kNoticeMs = 8000;
constexpr std::uint32_t kNoticeMessages[] = {
    kMsgApplicationActivated, kMsgApplicationKnown, kMsgCurrentNodeChanged, kMsgOutputInvalid,
    kMsgProjectCreated,       kMsgCreationEnded,    kMsgShowHelp,           kMsgShowTimeStamps,
};

QString ShortNameOf(const std::string& path) {
  return QFileInfo(ToQt(path)).fileName();
}

// Shown as text in an editor; all other types are opened by the desktop.
bool IsText(const QString& path) {
  const QString extension = QFileInfo(path).suffix().toLower();
  return extension.isEmpty() || extension == "txt" || extension == "md";
}

}  // namespace

ServerNotifications::ServerNotifications(HostWindow& mainFrame, FileSystem& fileSystem,
                                         QStatusBar& statusBar)
    : frame_(mainFrame), files_(fileSystem), bar_(statusBar), selection_(new QLabel(&statusBar)) {
  selection_->setAccessibleName(tr("Current selection"));
  bar_.addPermanentWidget(selection_);
  SetHandlers();
}

ServerNotifications::~ServerNotifications() {
  for (const std::uint32_t number : kNoticeMessages) frame_.SetHandler(number, {});
}

void ServerNotifications::SetHandler(std::uint32_t number,
                                     std::function<void(const HostMessageEvent&)> show) {
  frame_.SetHandler(number, [show = std::move(show)](const HostMessageEvent& event) {
    show(event);
    return std::intptr_t{1};
  });
}

void ServerNotifications::SetHandlers() {
  for (const std::uint32_t number : {kMsgApplicationActivated, kMsgApplicationKnown}) {
    SetHandler(number, [this, number](const HostMessageEvent& event) {
      // There is a message for each application of a project; the first one is active until
      // reported otherwise.
      if (number == kMsgApplicationKnown && !application_.isEmpty()) return;
      application_ = QFileInfo(ToQt(event.text)).completeBaseName();
      applicationFile_ = ShortNameOf(event.text);
      configuration_ = ToQt(event.detail);
      ShowSelection();
    });
  }
  SetHandler(kMsgCurrentNodeChanged, [this](const HostMessageEvent& event) {
    node_ = ShortNameOf(event.text);
    if (node_.isEmpty() && queryLabel) node_ = ToQt(queryLabel());
    ShowSelection();
  });
  SetHandler(kMsgOutputInvalid, [this](const HostMessageEvent& event) {
    if (!event.text.empty() && !(isBuilding && isBuilding())) {
      bar_.showMessage(tr("%1 is out of date").arg(ShortNameOf(event.text)), kNoticeMs);
    }
  });
  SetHandler(kMsgProjectCreated, [this](const HostMessageEvent& event) {
    bar_.showMessage(tr("%1 has been created").arg(ToQt(event.text)), kNoticeMs);
  });
  SetHandler(kMsgCreationEnded, [this](const HostMessageEvent&) {
    bar_.showMessage(tr("The new application is ready to be built"), kNoticeMs);
  });
  SetHandler(kMsgShowHelp, [this](const HostMessageEvent& event) {
    // Deferred: the sender is one of the server's windows in the middle of a click.
    QTimer::singleShot(0, this, [this, path = event.text] { ShowHelp(path); });
  });
  SetHandler(kMsgShowTimeStamps, [this](const HostMessageEvent& event) {
    const auto high = static_cast<std::uint32_t>(event.wParam);
    const auto low = static_cast<std::uint32_t>(event.lParam);
    bar_.showMessage(tr("Time stamp %1").arg(qulonglong{high} << 32 | low), kNoticeMs);
  });
}

// Opens only local files: a URL in a tool's message must not be followed.
void ServerNotifications::ShowHelp(const std::string& path) {
  const QFileInfo file(ToQt(files_.NameOnDisk(path)));
  if (IsText(file.filePath()) && openText) {
    openText(path);
  } else if (!file.exists() ||
             !QDesktopServices::openUrl(QUrl::fromLocalFile(file.absoluteFilePath()))) {
    bar_.showMessage(tr("The help file %1 can't be shown").arg(file.filePath()), kNoticeMs);
  }
}

void ServerNotifications::Clear() {
  node_.clear();
  application_.clear();
  applicationFile_.clear();
  configuration_.clear();
  ShowSelection();
}

void ServerNotifications::ShowSelection() {
  QStringList parts;
  if (!node_.isEmpty() && node_ != applicationFile_) parts += node_;
  if (!application_.isEmpty()) parts += tr("%1 (%2)").arg(application_, configuration_);
  selection_->setText(parts.join(QStringLiteral("  \u2022  ")));
  if (onSelectionChanged) onSelectionChanged();
}

}  // namespace tarn::host
