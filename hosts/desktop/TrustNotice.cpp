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

QString TrustNotice::Describe(const std::string& wish) {
  const std::pair<const char*, QString> texts[] = {
      {"run the launcher ", tr("This project wants to run the launcher %1.")},
      {"run the tool ", tr("This project wants to run the tool %1.")},
      {"run the script ", tr("This project wants to run the script %1.")},
      {"run code with the argument ",
       tr("This project wants to run its own code through the argument %1.")},
      {"run ", tr("This project wants to run %1.")},
      {"write ", tr("This project wants to write %1.")},
      {"delete ", tr("This project wants to delete %1.")},
  };
  for (const auto& [start, text] : texts) {
    if (wish.starts_with(start)) return text.arg(ToQt(wish.substr(std::string(start).size())));
  }
  return ToQt(wish);
}

void TrustNotice::Follow() {
  const std::vector<std::string> wishes = session_.Trust().TakeRefused();
  if (wishes.empty()) {
    Hide();
    return;
  }
  folder_ = FolderOf(session_.GetProjectPath());
  const int more = static_cast<int>(wishes.size()) - 1;
  const QString rest = more > 0 ? tr(" %n more request(s) in the log.", nullptr, more) : "";
  banner_.Tell(Describe(wishes.front()) + rest + ' ' +
               tr("Do you trust the folder %1?").arg(ToQt(folder_)));
}

void TrustNotice::Hide() {
  banner_.hide();
  folder_.clear();
}

void TrustNotice::Trust() {
  const Status added = session_.Trust().Trust(folder_);
  Hide();
  if (added) {
    if (onTrusted) onTrusted();
    return;
  }
  const Error& error = added.GetError();
  QMessageBox::warning(
      &window_, tr("Tarn"),
      tr("The answer can't be saved: %1: %2").arg(ToQt(error.place), ToQt(error.text)));
}

}  // namespace tarn::host
