#include "hosts/core/SessionTrust.h"

#include "platform/text/Text.h"

namespace tarn::host {

SessionTrust::SessionTrust(FileSystem& fileSystem, InspectorDriver& inspectorDriver,
                           const std::string& stateFolder)
    : inspector_(inspectorDriver), list_(fileSystem, stateFolder) {}

void SessionTrust::TrustAll() {
  trustsAll_ = true;
  Refresh();
}

void SessionTrust::Refresh() {
  std::string lines;
  if (trustsAll_) {
    lines = "/\n";
  } else if (const auto list = list_.Read()) {
    for (const std::string& each : *list) lines += each + "\n";
  }
  inspector_.SetTrustedFolders(lines);
}

Status SessionTrust::Trust(const std::string& folder) {
  Status added = list_.Add(folder);
  Refresh();
  inspector_.RefreshDefinitions();
  return added;
}

bool SessionTrust::IsTrusted(const std::string& folder) const {
  return trustsAll_ || !list_.Find(folder).empty();
}

std::vector<TrustRequest> SessionTrust::TakeRequests() {
  std::vector<TrustRequest> requests;
  const std::string lines = inspector_.TakeRefusedWishes();
  for (const std::string_view line : Split(lines, '\n')) {
    if (auto request = ParseTrustRequest(line)) requests.push_back(std::move(*request));
  }
  return requests;
}

std::vector<std::string> SessionTrust::TakeRefused() {
  std::vector<std::string> wishes;
  for (const TrustRequest& each : TakeRequests()) wishes.push_back(Describe(each));
  return wishes;
}

std::string DescribeWishes(const std::vector<std::string>& wishes) {
  std::string text;
  for (const std::string& each : wishes) {
    text += (text.empty() ? "" : " ") + ("The project wants to " + each) + ".";
  }
  return text;
}

}  // namespace tarn::host
