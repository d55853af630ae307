#include "project/ProjectTrust.h"

#include <algorithm>
#include <unordered_map>

#include "platform/files/ProjectFolder.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"

namespace tarn {

namespace {

template <class Test>
const std::string* FindFirst(const std::vector<std::string>& list, const Test& test) {
  const auto found = std::find_if(list.begin(), list.end(), test);
  return found == list.end() ? nullptr : &*found;
}

}  // namespace

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

const std::string* ProjectTrust::FindRefusedWrite(const std::vector<std::string>& paths) const {
  if (!IsWithheld()) return nullptr;
  const ProjectFolder project(files_, project_);
  std::unordered_map<std::string, bool> folders;
  const auto isRefused = [&](const std::string& path) {
    const auto [folder, isNew] = folders.try_emplace(FolderOf(path));
    if (isNew) folder->second = project.Holds(folder->first);
    // A path may lead out of its folder, or be that of the project's folder.
    const bool isCertain = folder->second && !path.ends_with("..") && !files_.ExamineLink(path);
    return !isCertain && !project.Holds(path);
  };
  return FindFirst(paths, isRefused);
}

const std::string* ProjectTrust::FindRefusedProgram(const std::vector<std::string>& paths) const {
  if (!IsWithheld()) return nullptr;
  const ProjectFolder project(files_, project_);
  return FindFirst(paths, [&](const std::string& path) { return project.Holds(path); });
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
