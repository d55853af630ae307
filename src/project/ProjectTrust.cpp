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

std::string ProjectTrust::WishFor(const char* verb, const std::string& path) const {
  const std::string wayOut = ProjectFolder(files_, project_).DescribeWayOut(path);
  return std::string(verb) + " " + path + (wayOut.empty() ? "" : " (" + wayOut + ")");
}

// Requests are passed on as lines, so line feeds are escaped.
void ProjectTrust::Refuse(const std::string& text) {
  const std::string wish = ReplaceAll(text, "\n", "\\x0a");
  if (std::find(refused_.begin(), refused_.end(), wish) == refused_.end()) {
    refused_.push_back(wish);
  }
}

}  // namespace tarn
