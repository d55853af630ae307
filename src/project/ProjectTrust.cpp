#include "project/ProjectTrust.h"

#include <algorithm>

#include "platform/files/ProjectFolder.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"

namespace tarn {

void ProjectTrust::SetProject(const std::string& path) {
  project_ = path;
  Judge();
}

void ProjectTrust::LimitTo(std::vector<std::string> folders) {
  trusted_ = std::move(folders);
  Judge();
}

bool ProjectTrust::Lists(const std::string& project) const {
  const std::string folder = AddSeparator(files_.ResolveLinks(FolderOf(project)));
  return std::any_of(trusted_->begin(), trusted_->end(), [&](const std::string& each) {
    return folder.starts_with(AddSeparator(each));
  });
}

bool ProjectTrust::RefusesWrite(const std::string& path) const {
  return IsWithheld() && !ProjectFolder(files_, project_).Holds(path);
}

bool ProjectTrust::RefusesProgram(const std::string& path) const {
  return IsWithheld() && ProjectFolder(files_, project_).Holds(path);
}

TrustRequest ProjectTrust::RequestFor(TrustRequestKind kind, const std::string& path) const {
  const std::string wayOut = ProjectFolder(files_, project_).DescribeWayOut(path);
  return {kind, path + (wayOut.empty() ? "" : " (" + wayOut + ")")};
}

void ProjectTrust::Refuse(const TrustRequest& request) {
  if (std::find(refused_.begin(), refused_.end(), request) == refused_.end()) {
    refused_.push_back(request);
  }
}

}  // namespace tarn
