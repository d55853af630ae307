#include "project/ProjectTrust.h"

#include <algorithm>

#include "platform/files/Destination.h"
#include "platform/paths/Paths.h"

namespace tarn {

void ProjectTrust::SetFolder(const std::string& folder) {
  folder_ = folder;
  Judge();
}

void ProjectTrust::LimitTo(std::vector<std::string> folders) {
  trusted_ = std::move(folders);
  Judge();
}

void ProjectTrust::Judge() {
  isGiven_ = false;
  if (!trusted_ || folder_.empty()) return;
  const std::string folder = AddSeparator(files_.ResolveLinks(folder_));
  isGiven_ = std::any_of(trusted_->begin(), trusted_->end(), [&](const std::string& each) {
    return folder.starts_with(AddSeparator(each));
  });
}

bool ProjectTrust::RefusesWrite(const std::string& path) const {
  return IsWithheld() && !LeadsInto(files_, folder_, path);
}

bool ProjectTrust::RefusesProgram(const std::string& path) const {
  return IsWithheld() && LeadsInto(files_, folder_, path);
}

void ProjectTrust::Refuse(const std::string& wish) {
  if (std::find(refused_.begin(), refused_.end(), wish) == refused_.end()) {
    refused_.push_back(wish);
  }
}

}  // namespace tarn
