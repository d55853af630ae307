#pragma once

#include <QCoreApplication>

#include "hosts/core/BuildSession.h"

class QWidget;

namespace tarn::host {

class Banner;

// Shows what was lost of a project when it was read, and asks the user before such a project is
// built or its files are written. Until the user agrees, both are refused.
//
// Borrows everything; `window` is where it asks. On the frame's thread.
class DamageNotice {
  Q_DECLARE_TR_FUNCTIONS(DamageNotice)

 public:
  DamageNotice(QWidget& parentWindow, BuildSession& buildSession, Banner& damageBanner);

  // Shows or hides the banner for the project that is open now.
  void Follow();
  // Returns true if the project may be built and written. Asks if it has damage.
  bool MayGoOn();
  // For a project that is about to close with changes: also offers to drop them. False for Cancel.
  bool MayClose();

 private:
  // The first position, and how many there are.
  static QString Describe(const std::vector<DamageEntry>& damage);
  void Accept();

  QWidget& window;
  BuildSession& session;
  Banner& banner;
};

}  // namespace tarn::host
