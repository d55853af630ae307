#include "build/ShadowCheck.h"

#include <algorithm>

#include "patterns/IncludeScan.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"

namespace tarn {

namespace {

bool Contains(const std::vector<std::string>& list, const std::string& text) {
  return std::find(list.begin(), list.end(), text) != list.end();
}

void AddOnce(std::vector<std::string>& list, std::string text) {
  if (!text.empty() && !Contains(list, text)) list.push_back(std::move(text));
}

}  // namespace

ShadowCheck::Searched ShadowCheck::SearchedBy(const BuildRecord& record) const {
  Searched searched;
  for (std::string& entry : SplitQuotedList(store_.Text(record.search))) {
    if (entry.starts_with('?')) {
      searched.files.push_back(entry.substr(1));
    } else {
      searched.folders.push_back(std::move(entry));
    }
  }
  return searched;
}

// In the order in which they are searched: that of the source first.
ShadowCheck::Strings ShadowCheck::FoldersOf(const BuildRecord& record, Strings named) const {
  Strings folders;
  for (std::size_t i = 0; i + record.programs < record.inputs.size(); ++i) {
    AddOnce(folders, FolderOf(std::string(store_.PathOf(record.inputs[i]))));
  }
  for (std::string& folder : named) AddOnce(folders, std::move(folder));
  return folders;
}

// Names in the files that were read, and those that a macro or an option can have yielded: the path
// of each file below the folders that the command names.
ShadowCheck::Strings ShadowCheck::NamesOf(const BuildRecord& record, const Strings& named) {
  Strings names;
  std::unordered_set<std::string> known;
  const auto add = [&](std::string_view name) {
    if (known.emplace(name).second) names.emplace_back(name);
  };
  for (std::size_t i = 0; i + record.programs < record.inputs.size(); ++i) {
    for (const std::string& name : IncludesOf(record.inputs[i])) add(name);
    if (i < record.sources) continue;
    const std::string_view path = store_.PathOf(record.inputs[i]);
    for (const std::string& folder : named) {
      const std::string start = AddSeparator(folder);
      if (path.starts_with(start)) add(path.substr(start.size()));
    }
  }
  return names;
}

const ShadowCheck::Strings& ShadowCheck::IncludesOf(BuildRecord::Number version) {
  const auto [place, isNew] = includes_.try_emplace(version);
  if (isNew) {
    const auto text = files_.ReadWholeFile(std::string(store_.PathOf(version)));
    if (text) place->second = FindIncludes(*text);
  }
  return place->second;
}

// A folder is read again only if its status changed since.
const ShadowCheck::Listing* ShadowCheck::List(const std::string& folder) {
  std::optional<Listing>& known = listings_[folder];
  const std::optional<FileStatus> now = files_.ExamineFolder(folder);
  if (!now) return known.reset(), nullptr;
  const bool isCurrent = known && known->isSettled && IsSameVersion(known->status, *now) &&
                         known->status.changed == now->changed;
  if (isCurrent) return &*known;
  known.emplace();
  known->status = *now;
  known->isSettled = now->changed < files_.Clock();
  const auto entries = files_.ListFolder(folder);
  if (entries) {
    for (const FolderEntry& entry : *entries) known->names.insert(entry.name);
  }
  return &*known;
}

// Watches the folder of the file, or the deepest one above it that there is: that one changes when
// the next is made. A link that leads nowhere is watched itself, and looked at every time: what it
// leads to may be made anywhere.
bool ShadowCheck::IsThere(const std::string& path, std::unordered_set<std::string>& watched) {
  const std::string folder = FolderOf(path);
  if (folder.empty() || folder == path) return false;
  const bool isListed = watched.contains(folder) && listings_[folder];
  const Listing* const listing = isListed ? &*listings_[folder] : List(folder);
  if (listing == nullptr) {
    IsThere(folder, watched);
    return false;
  }
  watched.insert(folder);
  if (!listing->names.contains(FileNameOf(path))) return false;
  if (files_.Examine(path)) return true;
  if (!files_.IsFolder(path)) watched.insert(path);
  return false;
}

ShadowCheck::Strings ShadowCheck::FindCandidates(const BuildRecord& record,
                                                 std::unordered_set<std::string>& watched) {
  Strings candidates;
  const Searched searched = SearchedBy(record);
  for (const std::string& file : searched.files) {
    if (IsThere(file, watched)) AddOnce(candidates, file);
  }
  if (searched.folders.empty()) return candidates;
  const Strings names = NamesOf(record, searched.folders);
  for (const std::string& folder : FoldersOf(record, searched.folders)) {
    for (const std::string& name : names) {
      if (!IsRelativePath(name)) continue;
      const std::string path = files_.Canonical(JoinPath(folder, ToNativeSeparators(name)));
      if (IsThere(path, watched)) AddOnce(candidates, path);
    }
  }
  // What was read is no candidate.
  for (std::size_t i = 0; i + record.programs < record.inputs.size(); ++i) {
    std::erase(candidates, store_.PathOf(record.inputs[i]));
  }
  return candidates;
}

// As they were when the names were looked for. A folder that changes just now is not known for
// good: it is looked into again the next time.
BuildRecord::Number ShadowCheck::AddFolderSet(const std::unordered_set<std::string>& watched) {
  std::vector<BuildRecord::Number> versions;
  for (const std::string& folder : watched) {
    const auto known = listings_.find(folder);
    const bool isSettled = known != listings_.end() && known->second && known->second->isSettled;
    versions.push_back(
        store_.AddVersion(folder, isSettled ? known->second->status : FileVersion::Unsettled(), 0));
  }
  return store_.AddFolders(std::move(versions));
}

void ShadowCheck::Complete(BuildRecord& record,
                           const std::function<bool(const std::string&)>& mayBeNew) {
  if (store_.Text(record.search).empty()) return;
  std::unordered_set<std::string> watched;
  for (const std::string& path : FindCandidates(record, watched)) {
    record.passedOver.push_back(store_.Intern(path));
    if (!mayBeNew(path)) continue;
    record.inputs.push_back(store_.AddVersion(path, FileVersion::Unsettled(), 0));
    ++record.programs;
  }
  record.folders = AddFolderSet(watched);
}

bool ShadowCheck::AreUnchanged(const BuildRecord& record) {
  const auto [place, isNew] = isSame_.try_emplace(record.folders, true);
  if (!isNew) return place->second;
  for (const BuildRecord::Number each : store_.Folders(record.folders)) {
    const auto now = files_.ExamineFolder(std::string(store_.PathOf(each)));
    place->second = place->second && now && store_.Version(each).IsSettled() &&
                    store_.Version(each).IsCertainly(*now);
  }
  return place->second;
}

std::string ShadowCheck::Find(std::size_t position) {
  const BuildRecord& record = store_.Get(position);
  if (AreUnchanged(record)) return {};
  std::unordered_set<std::string> watched;
  const Strings candidates = FindCandidates(record, watched);
  for (const std::string& path : candidates) {
    const bool isKnown =
        std::any_of(record.passedOver.begin(), record.passedOver.end(),
                    [&](BuildRecord::Number each) { return store_.Text(each) == path; });
    if (!isKnown) return path;
  }
  // It may have been tested for.
  for (const BuildRecord::Number each : record.passedOver) {
    std::string path(store_.Text(each));
    if (!Contains(candidates, path)) return path;
  }
  store_.SetFolders(position, AddFolderSet(watched));
  return {};
}

void ShadowCheck::Clear() {
  listings_.clear();
  includes_.clear();
  isSame_.clear();
}

}  // namespace tarn
