#include "builder/PipeCheck.h"

#include <unordered_set>
#include <utility>

#include "patterns/IncludeScan.h"
#include "platform/paths/Paths.h"

namespace tarn {

PipeCheck::Kind PipeCheck::KindOf(const std::string& path) {
  const auto [place, isNew] = kinds_.try_emplace(path, Kind::Missing);
  if (!isNew) return place->second;
  if (files_.Examine(path)) {
    place->second = Kind::Regular;
  } else if (!files_.IsFolder(path)) {
    const Result<std::string> text = files_.ReadWholeFile(path);
    const bool isUnusable = !text && text.GetError().code == ErrorCode::NotAFile;
    if (isUnusable) place->second = Kind::Unusable;
  }
  return place->second;
}

const std::vector<std::string>& PipeCheck::IncludesOf(const std::string& path) {
  const auto [place, isNew] = includes_.try_emplace(path);
  if (!isNew) return place->second;
  if (const Result<std::string> text = files_.ReadWholeFile(path)) {
    place->second = FindIncludes(*text);
  }
  return place->second;
}

std::string PipeCheck::Find(const std::string& source, const std::vector<std::string>& folders) {
  std::vector<std::string> open{source};
  std::unordered_set<std::string> seen{source};
  while (!open.empty()) {
    const std::string file = std::move(open.back());
    open.pop_back();
    std::vector<std::string> searched{FolderOf(file)};
    searched.insert(searched.end(), folders.begin(), folders.end());
    for (const std::string& written : IncludesOf(file)) {
      const std::string name = ToNativeSeparators(PathOfName(written));
      for (const std::string& folder : searched) {
        std::string path = files_.Canonical(IsRelativePath(name) ? JoinPath(folder, name) : name);
        const Kind kind = KindOf(path);
        if (kind == Kind::Missing) continue;
        if (kind == Kind::Unusable) return path;
        if (seen.insert(path).second) open.push_back(std::move(path));
        break;
      }
    }
  }
  return {};
}

}  // namespace tarn
