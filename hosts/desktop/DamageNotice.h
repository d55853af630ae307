#pragma once

#include <QCoreApplication>

#include "hosts/core/BuildSession.h"

class QWidget;

namespace tarn::host {

class Banner;

// Shows damage of the open project, and asks the user for consent before such a project is built or
// saved. Without consent, both are refused.
//
// Borrows everything; `window` is the parent of dialogs. Main thread only.
class DamageNotice {
  Q_DECLARE_TR_FUNCTIONS(DamageNotice)

 public:
  DamageNotice(QWidget& parentWindow, BuildSession& buildSession, Banner& damageBanner);

  // Shows or hides the banner according to the open project.
  void Follow();
  // Returns true if the project may be built and saved. Asks the user if it is damaged.
  bool MayGoOn();
  // Call this before a project with changes is closed: also offers to discard them. Returns false
  // if the user cancels.
  bool MayClose();

 private:
  // Returns a text with the first position and the number of positions.
  static QString Describe(const std::vector<DamageEntry>& damage);
  void Accept();

  QWidget& window_;
  BuildSession& session_;
  Banner& banner_;
};

}  // namespace tarn::host
