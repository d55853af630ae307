#include "hosts/desktop/DamageNotice.h"

#include <QMessageBox>

#include "hosts/desktop/Banner.h"
#include "platform/paths/Paths.h"
#include "widgets/qt/QtText.h"

namespace tarn::host {

DamageNotice::DamageNotice(QWidget& parentWindow, BuildSession& buildSession, Banner& damageBanner)
    : window_(parentWindow), session_(buildSession), banner_(damageBanner) {
  banner_.onFirst = [this] { Accept(); };
  banner_.onSecond = [this] { banner_.hide(); };
}

QString DamageNotice::Describe(const std::vector<DamageEntry>& damage) {
  const DamageEntry& first = damage.front();
  const QString place = ToQt(DescribeDamage(first, FileNameOf(first.file)));
  const int more = static_cast<int>(damage.size()) - 1;
  const QString places = more > 0 ? tr("%1, and %n more", nullptr, more).arg(place) : place;
  return tr("The project was only partially read: %1").arg(places);
}

void DamageNotice::Follow() {
  const std::vector<DamageEntry> damage = session_.GetDamage();
  if (damage.empty() || !session_.IsDamageHeld()) {
    banner_.hide();
    return;
  }
  banner_.Tell(Describe(damage));
}

void DamageNotice::Accept() {
  session_.Damage().Accept();
  banner_.hide();
}

bool DamageNotice::MayGoOn() {
  if (!session_.IsDamageHeld()) return true;
  if (HasUnread(session_.GetDamage())) {
    QMessageBox::warning(&window_, tr("Tarn"), Describe(session_.GetDamage()));
    return false;
  }
  const QString question = tr("%1\n\nBuild or save it without the unread parts? Before a file is "
                              "overwritten, it is copied to a file with .bak appended to its name.")
                               .arg(Describe(session_.GetDamage()));
  if (QMessageBox::question(&window_, tr("Tarn"), question) != QMessageBox::Yes) return false;
  Accept();
  return true;
}

bool DamageNotice::MayClose() {
  if (!session_.IsDamageHeld()) return true;
  const QString question = tr("%1\n\nSave the project's changes without the unread parts?")
                               .arg(Describe(session_.GetDamage()));
  const auto answer = QMessageBox::question(
      &window_, tr("Tarn"), question,
      QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, QMessageBox::Cancel);
  if (answer == QMessageBox::Save) Accept();
  return answer == QMessageBox::Save || answer == QMessageBox::Discard;
}

}  // namespace tarn::host
