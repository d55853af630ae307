#pragma once

#include <QCoreApplication>
#include <functional>
#include <string>
#include <vector>

#include "hosts/core/BuildSession.h"

class QWidget;

namespace tarn::host {

class Banner;

// Shows what a build was refused since the project's folder is not trusted, and lets the user trust
// it.
//
// Borrows everything; `window` is where it reports that the answer can't be stored. On the main
// thread.
class TrustNotice {
  Q_DECLARE_TR_FUNCTIONS(TrustNotice)

 public:
  TrustNotice(QWidget& parentWindow, BuildSession& buildSession, Banner& trustBanner);

  // After a build: shows the banner if anything was refused, and hides it otherwise.
  void Follow();
  // For another project.
  void Hide();
  // The user trusts the folder now: what was refused can go on. May be empty.
  std::function<void()> onTrusted;

 private:
  static QString Describe(const std::string& wish);
  void Trust();

  QWidget& window_;
  BuildSession& session_;
  Banner& banner_;
  std::string folder_;  // that the banner is about
};

}  // namespace tarn::host
