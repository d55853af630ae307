#include "hosts/desktop/ServerNotices.h"

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
constexpr std::uint32_t kAnswered[] = {
    kMsgApplicationActivated, kMsgApplicationKnown, kMsgCurrentNodeChanged, kMsgOutputInvalid,
    kMsgProjectCreated,       kMsgCreationEnded,    kMsgShowHelp,           kMsgShowTimeStamps,
};

QString NameOf(const std::string& path) {
  return QFileInfo(ToQt(path)).fileName();
}

// Shown as text in an editor; all other types are opened by the desktop.
bool IsText(const QString& path) {
  const QString extension = QFileInfo(path).suffix().toLower();
  return extension.isEmpty() || extension == "txt" || extension == "md";
}

}  // namespace

ServerNotices::ServerNotices(MainFrame& mainFrame, FileSystem& fileSystem, QStatusBar& statusBar)
    : frame(mainFrame), files(fileSystem), bar(statusBar), selection(new QLabel(&statusBar)) {
  selection->setAccessibleName(tr("Current selection"));
  bar.addPermanentWidget(selection);
  AnswerMessages();
}

ServerNotices::~ServerNotices() {
  for (const std::uint32_t number : kAnswered) frame.Answer(number, {});
}

void ServerNotices::Answer(std::uint32_t number, std::function<void(const HostEvent&)> show) {
  frame.Answer(number, [show = std::move(show)](const HostEvent& event) {
    show(event);
    return std::intptr_t{1};
  });
}

void ServerNotices::AnswerMessages() {
  for (const std::uint32_t number : {kMsgApplicationActivated, kMsgApplicationKnown}) {
    Answer(number, [this, number](const HostEvent& event) {
      // There is a message for each application of a project; the first one is active until
      // reported otherwise.
      if (number == kMsgApplicationKnown && !application.isEmpty()) return;
      application = QFileInfo(ToQt(event.text)).completeBaseName();
      applicationFile = NameOf(event.text);
      configuration = ToQt(event.detail);
      ShowSelection();
    });
  }
  Answer(kMsgCurrentNodeChanged, [this](const HostEvent& event) {
    node = NameOf(event.text);
    if (node.isEmpty() && askLabel) node = ToQt(askLabel());
    ShowSelection();
  });
  Answer(kMsgOutputInvalid, [this](const HostEvent& event) {
    if (!event.text.empty() && !(isBuilding && isBuilding())) {
      bar.showMessage(tr("%1 is out of date").arg(NameOf(event.text)), kNoticeMs);
    }
  });
  Answer(kMsgProjectCreated, [this](const HostEvent& event) {
    bar.showMessage(tr("%1 has been created").arg(ToQt(event.text)), kNoticeMs);
  });
  Answer(kMsgCreationEnded, [this](const HostEvent&) {
    bar.showMessage(tr("The new application is ready to be built"), kNoticeMs);
  });
  Answer(kMsgShowHelp, [this](const HostEvent& event) {
    // Deferred: the sender is one of the server's windows in the middle of a click.
    QTimer::singleShot(0, this, [this, path = event.text] { ShowHelp(path); });
  });
  Answer(kMsgShowTimeStamps, [this](const HostEvent& event) {
    const auto high = static_cast<std::uint32_t>(event.wParam);
    const auto low = static_cast<std::uint32_t>(event.lParam);
    bar.showMessage(tr("Time stamp %1").arg(qulonglong{high} << 32 | low), kNoticeMs);
  });
}

// Opens only local files: a URL in a tool's message must not be followed.
void ServerNotices::ShowHelp(const std::string& path) {
  const QFileInfo file(ToQt(files.NameOnDisk(path)));
  if (IsText(file.filePath()) && openText) {
    openText(path);
  } else if (!file.exists() ||
             !QDesktopServices::openUrl(QUrl::fromLocalFile(file.absoluteFilePath()))) {
    bar.showMessage(tr("The help file %1 can't be shown").arg(file.filePath()), kNoticeMs);
  }
}

void ServerNotices::Forget() {
  node.clear();
  application.clear();
  applicationFile.clear();
  configuration.clear();
  ShowSelection();
}

void ServerNotices::ShowSelection() {
  QStringList parts;
  if (!node.isEmpty() && node != applicationFile) parts += node;
  if (!application.isEmpty()) parts += tr("%1 (%2)").arg(application, configuration);
  selection->setText(parts.join(QStringLiteral("  \u2022  ")));
  if (onSelectionChanged) onSelectionChanged();
}

}  // namespace tarn::host
