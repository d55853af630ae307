#pragma once

#include <string>
#include <vector>

#include "hosts/core/ServerDrivers.h"
#include "hosts/core/TrustedFolders.h"

namespace tarn::host {

// What a session's server may do for projects that the user trusts, and what it has refused to
// others. The server judges the project that is open by the folders that it was last given.
class SessionTrust {
 public:
  SessionTrust(FileSystem& fileSystem, InspectorDriver& inspectorDriver,
               const std::string& stateFolder);

  // Every project is trusted for this session.
  void TrustAll();
  // Hands the user's list over, which other programs may have changed. Without it nothing is
  // trusted.
  void Refresh();
  // Adds the folder to the user's list, and hands that over.
  Status Trust(const std::string& folder);
  bool IsTrusted(const std::string& folder) const;
  // What was refused since the last call: "write /x/y".
  std::vector<std::string> TakeRefused();

  TrustedFolders& List() { return list_; }

 private:
  InspectorDriver& inspector_;
  TrustedFolders list_;
  bool trustsAll_ = false;
};

// A sentence for each wish: "The project wants to write /x/y."
std::string DescribeWishes(const std::vector<std::string>& wishes);

}  // namespace tarn::host
