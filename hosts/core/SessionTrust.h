#pragma once

#include <string>
#include <vector>

#include "hosts/core/ServerDrivers.h"
#include "hosts/core/TrustedFolders.h"
#include "platform/files/TrustRequest.h"

namespace tarn::host {

// The permissions of a session's server for trusted projects, and the requests that it has refused
// for others. The server checks the open project against the list of folders that it received last.
class SessionTrust {
 public:
  SessionTrust(FileSystem& fileSystem, InspectorDriver& inspectorDriver,
               const std::string& stateFolder);

  // Trusts every project for this session.
  void TrustAll();
  // Reloads the user's list, which other programs may have changed, and passes it to the server. If
  // it can't be read, nothing is trusted.
  void Refresh();
  // Adds the folder to the user's list and passes the list to the server, which then reads the
  // definitions of a project in it.
  Status Trust(const std::string& folder);
  bool IsTrusted(const std::string& folder) const;
  // Returns the requests refused since the last call.
  std::vector<TrustRequest> TakeRequests();
  // Like TakeRequests(), but returns words that follow "The project wants to ": "write /x/y".
  std::vector<std::string> TakeRefused();

  TrustedFolders& List() { return list_; }

 private:
  InspectorDriver& inspector_;
  TrustedFolders list_;
  bool trustsAll_ = false;
};

// Returns a sentence for each request: "The project wants to write /x/y."
std::string DescribeWishes(const std::vector<std::string>& wishes);

}  // namespace tarn::host
