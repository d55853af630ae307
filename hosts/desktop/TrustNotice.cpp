#include "hosts/desktop/TrustNotice.h"

#include <QMessageBox>
#include <utility>

#include "hosts/desktop/Banner.h"
#include "platform/paths/Paths.h"
#include "widgets/qt/QtText.h"

namespace tarn::host {

TrustNotice::TrustNotice(QWidget& parentWindow, BuildSession& buildSession, Banner& trustBanner)
    : window_(parentWindow), session_(buildSession), banner_(trustBanner) {
  banner_.onFirst = [this] { Trust(); };
  banner_.onSecond = [this] { Hide(); };
}

QString TrustNotice::DescribeRequest(const TrustRequest& request) {
  const std::pair<TrustRequestKind, QString> texts[] = {
      {TrustRequestKind::Launcher, tr("This project wants to run the launcher %1.")},
      {TrustRequestKind::Tool, tr("This project wants to run the tool %1.")},
      {TrustRequestKind::Script, tr("This project wants to run the script %1.")},
      {TrustRequestKind::CodeArgument,
       tr("This project wants to run its own code through the argument %1.")},
      {TrustRequestKind::Argument, tr("This project wants to run a tool with the argument %1.")},
      {TrustRequestKind::StrayArgument,
       tr("This project wants to run a tool with the argument %1, which writes files of other "
          "names.")},
      {TrustRequestKind::NamelessArgument, tr("This project wants to run a tool with the argument "
                                              "%1, which writes a file of an unknown "
                                              "name.")},
      {TrustRequestKind::CommandFile, tr("This project wants to run commands from the file %1.")},
      {TrustRequestKind::Write, tr("This project wants to write %1.")},
      {TrustRequestKind::Delete, tr("This project wants to delete %1.")},
  };
  const QString subject = ToQt(request.subject);
  for (const auto& [kind, text] : texts) {
    if (kind == request.kind) return text.arg(subject);
  }
  return tr("This project wants to run %1.").arg(subject);
}

void TrustNotice::Follow() {
  const std::vector<TrustRequest> wishes = session_.Trust().TakeRequests();
  if (wishes.empty()) {
    Hide();
    return;
  }
  folder_ = FolderOf(session_.GetProjectPath());
  isForBuild_ = true;
  const int more = static_cast<int>(wishes.size()) - 1;
  const QString rest = more > 0 ? tr(" %n more request(s) in the log.", nullptr, more) : "";
  banner_.Tell(DescribeRequest(wishes.front()) + rest + ' ' +
               tr("Do you trust the folder %1?").arg(ToQt(folder_)));
}

void TrustNotice::FollowProject() {
  Hide();
  const std::vector<std::string> ignored = session_.GetIgnoredDefinitions();
  if (ignored.empty()) return;
  folder_ = FolderOf(session_.GetProjectPath());
  isForBuild_ = false;
  banner_.Tell(tr("The definitions of this project are ignored: %1.").arg(ToQt(ignored.front())) +
               ' ' + tr("Do you trust the folder %1?").arg(ToQt(folder_)));
}

void TrustNotice::Hide() {
  banner_.hide();
  folder_.clear();
}

void TrustNotice::Trust() {
  const Status added = session_.Trust().Trust(folder_);
  Hide();
  if (added) {
    if (isForBuild_ && onTrusted) onTrusted();
    return;
  }
  const Error& error = added.GetError();
  QMessageBox::warning(
      &window_, tr("Tarn"),
      tr("The answer can't be saved: %1: %2").arg(ToQt(error.place), ToQt(error.text)));
}

}  // namespace tarn::host
