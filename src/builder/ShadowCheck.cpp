#include "builder/ShadowCheck.h"

#include <algorithm>
#include <span>

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

constexpr std::string_view kPrecompiled = ".gch";

// Converts a macro option (NAME, NAME=VALUE or NAME(x)=VALUE) to a source line.
std::string DefinitionLine(std::string_view option) {
  const std::size_t equal = option.find('=');
  const std::string_view value = equal == option.npos ? "1" : option.substr(equal + 1);
  return "#define " + std::string(option.substr(0, equal)) + ' ' + std::string(value) + '\n';
}

}  // namespace

ShadowCheck::Searched ShadowCheck::SearchedBy(const BuildRecord& record) const {
  Searched searched;
  for (std::string& entry : SplitQuotedList(store_.Text(record.search))) {
    if (entry.starts_with('?')) {
      searched.files.push_back(entry.substr(1));
    } else if (entry.starts_with('#')) {
      const std::string option = ReplaceAll(entry.substr(1), "%22", "\"");
      searched.macros += DefinitionLine(ReplaceAll(option, "%25", "%"));
    } else {
      searched.folders.push_back(std::move(entry));
    }
  }
  return searched;
}

// Returns the folders in search order, that of the source first.
ShadowCheck::Strings ShadowCheck::FoldersOf(const BuildRecord& record, Strings named) const {
  Strings folders;
  for (std::size_t i = 0; i + record.programs < record.inputs.size(); ++i) {
    AddOnce(folders, FolderOf(std::string(store_.PathOf(record.inputs[i]))));
  }
  for (std::string& folder : named) AddOnce(folders, std::move(folder));
  return folders;
}

// Returns the names in the files that were read, and those that macros or options may have
// produced: the path of each file below the folders that the command names.
ShadowCheck::Strings ShadowCheck::NamesOf(const BuildRecord& record, const Searched& searched,
                                          Candidates& found) {
  Strings names;
  std::unordered_set<std::string> known;
  const auto add = [&](std::string_view name) {
    if (known.emplace(name).second) names.push_back(PathOfName(name));
  };
  for (std::size_t i = 0; i + record.programs < record.inputs.size(); ++i) {
    for (const std::string& name : Scan(record.inputs[i]).includes) add(name);
    if (i < record.sources) continue;
    const std::string_view path = store_.PathOf(record.inputs[i]);
    for (const std::string& folder : searched.folders) {
      const std::string start = AddSeparator(folder);
      if (path.starts_with(start)) add(path.substr(start.size()));
    }
  }
  for (const std::string& name : TestedBy(record, searched, found)) add(name);
  return names;
}

ShadowCheck::Strings ShadowCheck::TestedBy(const BuildRecord& record, const Searched& searched,
                                           Candidates& found) {
  const std::span files = std::span(record.inputs).first(record.inputs.size() - record.programs);
  const auto tester = std::find_if(files.begin(), files.end(), [this](BuildRecord::Number each) {
    return Scan(each).hasComputedTest;
  });
  if (tester == files.end() && !HasComputedTest(searched.macros)) return {};
  const MacroScan given = ScanMacros(searched.macros);
  std::vector<const MacroScan*> scans{&given};
  for (const BuildRecord::Number each : files) scans.push_back(&ScanMacrosOf(each));
  TestedNames tested = FindTestedNames(scans);
  if (tested.isIncomplete) {
    found.unknownTest = store_.PathOf(tester == files.end() ? files.front() : *tester);
  }
  return std::move(tested.names);
}

ShadowCheck::SourceScan& ShadowCheck::Scan(BuildRecord::Number version) {
  const auto [place, isNew] = scans_.try_emplace(version);
  if (isNew) {
    const auto text = files_.ReadWholeFile(std::string(store_.PathOf(version)));
    if (text) place->second.includes = FindIncludes(*text);
    if (text) place->second.hasComputedTest = HasComputedTest(*text);
  }
  return place->second;
}

const MacroScan& ShadowCheck::ScanMacrosOf(BuildRecord::Number version) {
  SourceScan& scan = Scan(version);
  if (scan.macros == nullptr) {
    const auto text = files_.ReadWholeFile(std::string(store_.PathOf(version)));
    scan.macros = std::make_unique<MacroScan>(text ? ScanMacros(*text) : MacroScan());
  }
  return *scan.macros;
}

// Lists a folder, again only if its status has changed.
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
    for (const FolderEntry& entry : *entries) {
      known->names.insert(entry.name);
      known->hasPrecompiled |= entry.name.ends_with(kPrecompiled);
    }
  }
  return &*known;
}

// Returns true if the file exists. Adds its folder to `watched`, or if that is missing the deepest
// existing folder above it, whose status changes when the next one is created. A dangling link is
// itself watched and always checked again, because its target may be created anywhere.
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

ShadowCheck::Candidates ShadowCheck::FindCandidates(const BuildRecord& record) {
  Candidates found;
  const Searched searched = SearchedBy(record);
  for (const std::string& file : searched.files) {
    if (IsThere(file, found.watched)) AddOnce(found.files, file);
  }
  if (searched.folders.empty()) return found;
  const Strings names = NamesOf(record, searched, found);
  const Strings folders = FoldersOf(record, searched.folders);
  const auto look = [&](const std::string& path) {
    if (IsThere(path, found.watched)) AddOnce(found.files, path);
    AddPrecompiled(path, found);
  };
  for (const std::string& name : names) {
    if (!IsRelativePath(name)) look(files_.Canonical(ToNativeSeparators(name)));
  }
  for (const std::string& folder : folders) {
    for (const std::string& name : names) {
      if (IsRelativePath(name)) look(files_.Canonical(JoinPath(folder, ToNativeSeparators(name))));
    }
  }
  // Excludes files that were read. An option may have named them.
  for (std::size_t i = 0; i + record.programs < record.inputs.size(); ++i) {
    const std::string path(store_.PathOf(record.inputs[i]));
    if (i >= record.sources && IsThere(path, found.watched)) AddPrecompiled(path, found);
    std::erase(found.files, path);
  }
  return found;
}

// Requires that the header's folder has been listed.
void ShadowCheck::AddPrecompiled(const std::string& header, Candidates& found) {
  const auto listing = listings_.find(FolderOf(header));
  if (listing == listings_.end() || !listing->second || !listing->second->hasPrecompiled) return;
  const std::string path = header + std::string(kPrecompiled);
  if (IsThere(path, found.watched)) AddOnce(found.precompiled, path);
  const Listing* const variants = files_.IsFolder(path) ? List(path) : nullptr;
  if (variants == nullptr) return;
  found.watched.insert(path);
  for (const std::string& name : variants->names) {
    std::string variant = JoinPath(path, name);
    if (files_.Examine(variant)) AddOnce(found.precompiled, std::move(variant));
  }
}

// Returns the set of folders as they were during the search. A folder that is just changing gets an
// unsettled version, so that it is listed again next time.
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

void ShadowCheck::Complete(BuildRecord& record, const AddVersion& addInput,
                           const std::function<bool(const std::string&)>& mayBeNew) {
  if (store_.Text(record.search).empty()) return;
  Candidates found = FindCandidates(record);
  for (const std::string& path : found.precompiled) {
    record.inputs.push_back(addInput(path));
    ++record.programs;
    record.passedOver.push_back(store_.Intern(path));
  }
  for (const std::string& path : found.files) {
    record.passedOver.push_back(store_.Intern(path));
    if (!mayBeNew(path)) continue;
    record.inputs.push_back(store_.AddVersion(path, FileVersion::Unsettled(), 0));
    ++record.programs;
  }
  // Never has a settled version, so the search is repeated each time.
  if (!found.unknownTest.empty()) found.watched.insert(found.unknownTest);
  record.folders = AddFolderSet(found.watched);
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

StaleVerdict ShadowCheck::Find(std::size_t position) {
  const BuildRecord& record = store_.Get(position);
  if (AreUnchanged(record)) return {};
  Candidates found = FindCandidates(record);
  if (!found.unknownTest.empty()) return {StaleReason::UnknownTest, std::move(found.unknownTest)};
  found.files.insert(found.files.end(), found.precompiled.begin(), found.precompiled.end());
  for (const std::string& path : found.files) {
    const bool isKnown =
        std::any_of(record.passedOver.begin(), record.passedOver.end(),
                    [&](BuildRecord::Number each) { return store_.Text(each) == path; });
    if (!isKnown) return {StaleReason::Shadowed, path};
  }
  // Its existence may have been tested.
  for (const BuildRecord::Number each : record.passedOver) {
    std::string path(store_.Text(each));
    if (!Contains(found.files, path)) return {StaleReason::Shadowed, std::move(path)};
  }
  store_.SetFolders(position, AddFolderSet(found.watched));
  return {};
}

void ShadowCheck::Clear() {
  listings_.clear();
  scans_.clear();
  isSame_.clear();
}

}  // namespace tarn
