#pragma once

#include <QCoreApplication>
#include <functional>
#include <string>
#include <vector>

#include "hosts/core/BuildSession.h"

class QWidget;

namespace tarn::host {

class Banner;

// Shows operations that were refused to a build because the project's folder is not trusted, and
// lets the user trust it.
//
// Borrows everything; `window` is the parent of the message shown if the decision can't be stored.
// Main thread only.
class TrustNotice {
  Q_DECLARE_TR_FUNCTIONS(TrustNotice)

 public:
  TrustNotice(QWidget& parentWindow, BuildSession& buildSession, Banner& trustBanner);

  // Call this after a build: shows the banner if anything was refused, and hides it otherwise.
  void Follow();
  // Call this for a different project: shows the banner if definitions of the project are ignored,
  // and hides it otherwise.
  void FollowProject();
  void Hide();
  // Called when the user has trusted the folder, so the refused operation can be repeated. May be
  // empty.
  std::function<void()> onTrusted;

 private:
  static QString DescribeRequest(const TrustRequest& request);
  void Trust();

  QWidget& window_;
  BuildSession& session_;
  Banner& banner_;
  std::string folder_;       // shown in the banner
  bool isForBuild_ = false;  // the banner shows what a build was refused
};

}  // namespace tarn::host
