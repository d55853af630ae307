#include "hosts/desktop/DamageNotice.h"

#include <QMessageBox>

#include "hosts/desktop/Banner.h"
#include "platform/paths/Paths.h"
#include "widgets/qt/QtText.h"

namespace tarn::host {

DamageNotice::DamageNotice(QWidget& parentWindow, BuildSession& buildSession, Banner& damageBanner)
    : window(parentWindow), session(buildSession), banner(damageBanner) {
  banner.onFirst = [this] { Accept(); };
  banner.onSecond = [this] { banner.hide(); };
}

QString DamageNotice::Describe(const std::vector<DamageEntry>& damage) {
  const DamageEntry& first = damage.front();
  const QString place = ToQt(DescribeDamage(first, FileNameOf(first.file)));
  const int more = static_cast<int>(damage.size()) - 1;
  const QString places = more > 0 ? tr("%1, and %n more", nullptr, more).arg(place) : place;
  return tr("The project was only partially read: %1").arg(places);
}

void DamageNotice::Follow() {
  const std::vector<DamageEntry> damage = session.GetDamage();
  if (damage.empty() || !session.IsDamageHeld()) {
    banner.hide();
    return;
  }
  banner.Tell(Describe(damage));
}

void DamageNotice::Accept() {
  session.Damage().Accept();
  banner.hide();
}

bool DamageNotice::MayGoOn() {
  if (!session.IsDamageHeld()) return true;
  if (HasUnread(session.GetDamage())) {
    QMessageBox::warning(&window, tr("Tarn"), Describe(session.GetDamage()));
    return false;
  }
  const QString question = tr("%1\n\nBuild or save it without the unread parts? Before a file is "
                              "overwritten, it is copied to a file with .bak appended to its name.")
                               .arg(Describe(session.GetDamage()));
  if (QMessageBox::question(&window, tr("Tarn"), question) != QMessageBox::Yes) return false;
  Accept();
  return true;
}

bool DamageNotice::MayClose() {
  if (!session.IsDamageHeld()) return true;
  const QString question = tr("%1\n\nSave the project's changes without the unread parts?")
                               .arg(Describe(session.GetDamage()));
  const auto answer = QMessageBox::question(
      &window, tr("Tarn"), question, QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel,
      QMessageBox::Cancel);
  if (answer == QMessageBox::Save) Accept();
  return answer == QMessageBox::Save || answer == QMessageBox::Discard;
}

}  // namespace tarn::host
