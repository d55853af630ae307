#include "hosts/core/Relocation.h"

#include <algorithm>

#include "hosts/core/AttributeEdits.h"
#include "hosts/core/LogEntry.h"
#include "platform/files/RelativeName.h"
#include "platform/files/SameName.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "xml/XmlDamage.h"
#include "xml/XmlNode.h"

namespace tarn::host {

// A file of the project. Its relative paths were relative to `oldFolder` and are now relative to
// `newFolder`.
struct Relocation::Document {
  std::string path;
  std::string text;
  CXmlNode root;
  std::string oldFolder;
  std::string newFolder;
};

namespace {

std::vector<std::string_view> Components(std::string_view path) {
  std::vector<std::string_view> names = Split(path, kSeparator);
  std::erase(names, std::string_view());
  return names;
}

// Returns the number of trailing path components that are equal, ignoring letter case.
std::size_t CountCommonEnd(std::string_view one, std::string_view other) {
  const auto a = Components(one);
  const auto b = Components(other);
  const auto ends =
      std::mismatch(a.rbegin(), a.rend(), b.rbegin(), b.rend(),
                    [](std::string_view x, std::string_view y) { return EqualNoCase(x, y); });
  return static_cast<std::size_t>(ends.first - a.rbegin());
}

bool IsPart(const CXmlNode& node, const char* name) {
  return node.NameView() == name;
}

// Calls `take` with the path of each node below `node`, except for those in applications with their
// own file.
template <class Take>
void ForEachPath(const CXmlNode& node, const Take& take) {
  for (const CXmlNode* child : node.GetChildren()) {
    const bool isOther = IsPart(*child, "Dependencies") || IsPart(*child, "Options") ||
                         child->GetType() != XmlElement;
    if (isOther || !GetAttribute(child, "Extern").empty()) continue;
    const std::string path = GetAttribute(child, "Path");
    if (!path.empty()) take(path);
    ForEachPath(*child, take);
  }
}

template <class Take>
void ForEachOption(const CXmlNode& node, const Take& take) {
  for (const CXmlNode* child : node.GetChildren()) {
    const std::string value = GetAttribute(child, "Value");
    if (IsPart(*child, "Property") && !value.empty()) take(value);
    ForEachOption(*child, take);
  }
}

std::string JoinList(const std::vector<std::string>& parts) {
  std::string text;
  for (const std::string& each : parts) text += (&each == parts.data() ? "" : ";") + each;
  return text;
}

// Writes a path in the style of `model`, a value of the same option: relative or absolute, with its
// separators. `relative` is empty if only the absolute path is possible.
std::string WriteLike(const std::string& model, const std::string& absolute,
                      const std::string& relative) {
  if (!IsRelativePath(model) || relative.empty()) return absolute;
  std::string written = relative;
  if (!model.starts_with('.') && written.starts_with(".\\")) written.erase(0, 2);
  return model.find('\\') == model.npos ? ReplaceAll(written, "\\", "/") : written;
}

// An entry of an option as a path with macros: "$(General.ApplicationDir)src/$(Config.Name)/x.ld".
struct OptionPath {
  std::string lead;  // macro for the folder that relative paths are relative to; may be empty
  std::string path;  // "src"
  std::string rest;  // "/$(Config.Name)/x.ld"; the path is then that of a folder
};

OptionPath SplitOptionPath(std::string_view entry) {
  OptionPath found;
  for (const std::string_view macro :
       {"$(General.ApplicationDir)", "$(Application.General.ApplicationDir)"}) {
    if (!EqualNoCase(entry.substr(0, macro.size()), macro)) continue;
    std::size_t end = macro.size();
    while (end < entry.size() && IsSeparator(entry[end])) ++end;
    found.lead = entry.substr(0, end);
    break;
  }
  entry.remove_prefix(found.lead.size());
  std::size_t end = entry.find('$');
  while (end != entry.npos && end > 0 && !IsSeparator(entry[end - 1])) --end;
  if (end != entry.npos && end > 0) --end;  // without the separator
  found.path = entry.substr(0, end);
  if (end != entry.npos) found.rest = entry.substr(end);
  return found;
}

}  // namespace

std::string MapPath(const std::string& path, const std::string& from, const std::string& to) {
  if (path == from) return to;
  if (from.empty() || !path.starts_with(AddSeparator(from))) return path;
  return JoinPath(to, path.substr(AddSeparator(from).size()));
}

const char* NameOf(MovedPath::Kind kind) {
  constexpr const char* kNames[] = {"application", "source", "option"};
  return kNames[static_cast<std::size_t>(kind)];
}

Relocation::Relocation(FileSystem& fileSystem, std::string project)
    : files_(fileSystem),
      index_(fileSystem),
      project_(std::move(project)),
      folder_(FolderOf(project_)) {}

Relocation::~Relocation() = default;

void Relocation::Choose(const std::string& oldPath, const std::string& newPath) {
  chosen_[oldPath] = newPath;
}

Status Relocation::Search(const std::string& below) {
  BeginSearch(below);
  while (ContinueSearch(std::chrono::hours(1))) {
  }
  return FinishSearch();
}

void Relocation::BeginSearch(const std::string& below) {
  from_.clear();
  index_.Begin(below);
}

Status Relocation::FinishSearch() {
  return index_.GetStatus() ? Run() : index_.GetStatus();
}

Status Relocation::Move(const std::string& from, const std::string& to) {
  from_ = from;
  to_ = to;
  return Run();
}

bool Relocation::IsComplete() const {
  return std::none_of(found_.begin(), found_.end(),
                      [](const MovedPath& each) { return each.newPath.empty(); });
}

bool Relocation::MissesApplication() {
  Document project;
  if (!Load(project_, project_, project)) return false;
  return std::ranges::any_of(project.root.GetChildren(), [this](const CXmlNode* child) {
    const std::string written = GetAttribute(child, "Extern");
    return !written.empty() && !IsFile(Resolve(folder_, written));
  });
}

std::vector<FileText> Relocation::Complete(const std::vector<FileText>& changed) const {
  std::vector<FileText> all = changed;
  for (const FileText& each : given_) {
    const bool hasMoved = std::ranges::any_of(found_, [&each](const MovedPath& moved) {
      return moved.kind == MovedPath::Kind::Application && moved.oldPath == each.path &&
             !moved.newPath.empty();
    });
    const auto isThis = [&each](const FileText& other) { return other.path == each.path; };
    if (!hasMoved && std::ranges::none_of(changed, isThis)) all.push_back(each);
  }
  return all;
}

Status Relocation::Run() {
  unknown_ = {};
  documents_.clear();
  used_.clear();
  found_.clear();
  moves_.clear();
  documents_.push_back(std::make_unique<Document>());
  Document& project = *documents_.front();
  if (Status loaded = Load(project_, project_, project); !loaded) return loaded;
  project.oldFolder = project.newFolder = folder_;
  for (const CXmlNode* child : project.root.GetChildren()) {
    const std::string written = GetAttribute(child, "Extern");
    if (!written.empty()) RecordUsed(project_, Resolve(folder_, written));
  }
  for (const CXmlNode* child : project.root.GetChildren()) {
    if (GetAttribute(child, "Extern").empty()) continue;
    if (Status checked = CheckApplication(*child); !checked) return checked;
  }
  for (const auto& each : documents_) {
    ForEachPath(each->root, [&](const std::string& written) {
      RecordUsed(each->path, Resolve(each->newFolder, written));
    });
    ForEachPath(each->root, [&](const std::string& written) { CheckSource(written, *each); });
  }
  SettleRivals();
  LearnFolders();
  SettleByNeighbours();
  LearnFolders();
  for (const auto& each : documents_) {
    ForEachOption(each->root, [&](const std::string& value) { CheckOption(value, *each); });
  }
  return unknown_;
}

Result<std::string> Relocation::ReadText(const std::string& oldPath, const std::string& path) {
  for (const FileText& each : given_) {
    if (each.path == oldPath || each.path == path) return each.text;
  }
  return files_.ReadWholeFile(path);
}

Status Relocation::Load(const std::string& oldPath, const std::string& path, Document& document) {
  document.path = path;
  auto text = ReadText(oldPath, path);
  if (!text) return Error{text.GetError().code, text.GetError().text, path};
  document.text = std::move(*text);
  const std::string fault = LoadWhole(document.root, document.text, XmlTexts::None, path);
  if (fault.empty()) return {};
  return Error{ErrorCode::Io, "it is damaged: " + fault, path};
}

// An application's own file may specify a different base folder for its paths.
Status Relocation::CheckApplication(const CXmlNode& reference) {
  MovedPath moved;
  moved.kind = MovedPath::Kind::Application;
  moved.file = project_;
  moved.attribute = "Extern";
  moved.written = GetAttribute(&reference, "Extern");
  moved.oldPath = Resolve(folder_, moved.written);
  Locate(moved);
  const std::string place = moved.newPath;
  const std::string former = moved.oldPath;
  if (place != former) Add(std::move(moved), folder_);
  // A different application that is missing is not part of the requested move.
  if (place.empty() || (place == former && !from_.empty() && !IsFile(place))) return {};
  auto document = std::make_unique<Document>();
  if (Status loaded = Load(former, place, *document); !loaded) return loaded;
  document->oldFolder = FolderOf(former);
  document->newFolder = FolderOf(place);
  const std::string ownPath = GetAttribute(&document->root, "Path");
  if (!ownPath.empty() && ownPath != GetAttribute(&document->root, "Extern")) {
    document->oldFolder = document->newFolder = FolderOf(Resolve(folder_, ownPath));
  }
  documents_.push_back(std::move(document));
  return {};
}

void Relocation::CheckSource(const std::string& written, const Document& document) {
  MovedPath moved;
  moved.file = document.path;
  moved.attribute = "Path";
  moved.written = written;
  moved.oldPath = Resolve(document.oldFolder, written);
  const std::string present = Resolve(document.newFolder, written);
  if (from_.empty()) {
    const Result<bool> exists = files_.CheckExists(present);
    if (!exists && unknown_) unknown_ = exists.GetError();
    if (IsFile(present)) return;
  }
  Locate(moved);
  const bool isUnknown = moved.newPath == moved.oldPath && !IsFile(moved.oldPath);
  if (moved.newPath == present || isUnknown) return;
  // The file has not moved, but the application has.
  if (moved.newPath == moved.oldPath) moved.oldPath = present;
  Add(std::move(moved), document.newFolder);
}

void Relocation::CheckOption(const std::string& value, const Document& document) {
  std::vector<std::string> parts;
  std::vector<MovedPath> moves;
  for (const std::string_view each : Split(value, ';')) {
    std::string part(Trim(each));
    const OptionPath split = SplitOptionPath(part);
    const std::string former = Resolve(document.oldFolder, split.path);
    const std::string present = Resolve(document.newFolder, split.path);
    if (!split.path.empty() && !files_.Exists(present)) {
      const bool stays = former != present && files_.Exists(former);
      const auto places = stays ? std::vector<std::string>{former} : Follow(former);
      if (places.size() == 1) {
        MovedPath& moved = moves.emplace_back();
        moved.oldPath = stays ? present : former;
        moved.newPath = places.front();
        const std::string written =
            WriteLike(split.path, moved.newPath,
                      RelativeNameOnDisk(files_, document.newFolder, moved.newPath));
        part = (IsRelativePath(written) ? split.lead : std::string()) + written + split.rest;
      }
    }
    parts.push_back(std::move(part));
  }
  for (MovedPath& moved : moves) {
    moved.kind = MovedPath::Kind::Option;
    moved.file = document.path;
    moved.attribute = "Value";
    moved.written = value;
    moved.rewritten = JoinList(parts);
    moved.candidates = {moved.newPath};
    Add(std::move(moved), document.newFolder);
  }
}

std::string Relocation::Resolve(const std::string& folder, const std::string& written) const {
  const std::string path = ToNativeSeparators(written);
  return files_.Canonical(IsRelativePath(path) ? JoinPath(folder, path) : path);
}

bool Relocation::IsFile(const std::string& path) {
  return files_.Exists(path) && !files_.IsFolder(path);
}

// Records that a file is still in use at its old path. A file that moves along with Move is not.
void Relocation::RecordUsed(const std::string& document, const std::string& path) {
  const std::string place = MapPath(path, from_, to_);
  const bool stays = place == path || !IsFile(place);
  if (stays && IsFile(path)) used_.insert(document + "\n" + RealName(files_, path));
}

bool Relocation::IsUsed(const std::string& document, const std::string& path) const {
  return used_.contains(document + "\n" + RealName(files_, path));
}

// Sets newPath to the current path of the file: oldPath if the file exists there, empty if
// unresolved.
void Relocation::Locate(MovedPath& moved) {
  if (!from_.empty()) {
    const std::string place = MapPath(moved.oldPath, from_, to_);
    if (place == moved.oldPath || IsFile(place)) moved.newPath = place;
    if (!moved.newPath.empty()) moved.candidates = {place};
    return;
  }
  if (IsFile(moved.oldPath)) {
    moved.newPath = moved.oldPath;
    return;
  }
  AddCandidates(moved);
  const auto choice = chosen_.find(moved.oldPath);
  if (choice != chosen_.end()) moved.newPath = choice->second;
}

// Returns true if the path is a link to a file that is in the list under its own name.
bool Relocation::IsOtherNameOf(const std::string& path, const std::vector<std::string>& list) {
  if (list.size() < 2 || !files_.ExamineLink(path)) return false;
  const std::string target = files_.ResolveLinks(path);
  return std::ranges::any_of(list, [&](const std::string& each) {
    return each != path && !files_.ExamineLink(each) && files_.ResolveLinks(each) == target;
  });
}

void Relocation::AddCandidates(MovedPath& moved) {
  const std::vector<std::string>& named = index_.Find(FileNameOf(moved.oldPath));
  for (const std::string& each : named) {
    const bool isOther = IsOtherNameOf(each, named) || IsUsed(moved.file, each);
    if (!isOther && files_.Examine(each)) moved.candidates.push_back(each);
  }
  const auto rank = [&moved](const std::string& path) {
    const bool isExact = FileNameOf(path) == FileNameOf(moved.oldPath);
    return 2 * CountCommonEnd(path, moved.oldPath) + (isExact ? 1 : 0);
  };
  std::ranges::stable_sort(moved.candidates, [&rank](const auto& a, const auto& b) {
    return rank(a) != rank(b) ? rank(a) > rank(b) : a < b;
  });
  const auto& list = moved.candidates;
  const bool isTied = list.size() > 1 && rank(list[0]) == rank(list[1]);
  if (!list.empty() && !isTied) moved.newPath = list.front();
}

// Records a moved path; equal values in several elements of a file are recorded once.
void Relocation::Add(MovedPath moved, const std::string& base) {
  moved.base = base;
  const bool isKnown = std::any_of(found_.begin(), found_.end(), [&](const MovedPath& each) {
    return each.file == moved.file && each.attribute == moved.attribute &&
           each.written == moved.written && each.oldPath == moved.oldPath;
  });
  if (!isKnown) found_.push_back(std::move(moved));
}

// If several sources of an application claim the same file, at most one of them can be right.
void Relocation::SettleRivals() {
  if (!from_.empty()) return;
  std::map<std::pair<std::string, std::string>, std::vector<MovedPath*>> rivals;
  for (MovedPath& each : found_) {
    const bool isChosen = chosen_.contains(each.oldPath);
    if (!each.newPath.empty() && !isChosen) rivals[{each.file, each.newPath}].push_back(&each);
  }
  for (auto& [place, list] : rivals) {
    if (list.size() < 2) continue;
    const auto rank = [&path = place.second](const MovedPath* each) {
      return CountCommonEnd(each->oldPath, path);
    };
    const std::size_t best = rank(*std::ranges::max_element(list, {}, rank));
    const bool isTied = std::ranges::count(list, best, rank) > 1;
    for (MovedPath* each : list) {
      if (isTied || rank(each) < best) each->newPath.clear();
    }
  }
}

void Relocation::SettleByNeighbours() {
  if (!from_.empty()) return;
  for (MovedPath& each : found_) {
    if (!each.newPath.empty() || chosen_.contains(each.oldPath)) continue;
    std::vector<std::string> places = Follow(each.oldPath);
    std::erase_if(places, [&each](const std::string& path) {
      return std::ranges::find(each.candidates, path) == each.candidates.end();
    });
    if (places.size() == 1) each.newPath = places.front();
  }
  SettleRivals();
}

// Derives folder moves from the file moves: for each file its own folder, and the topmost folder
// whose name differs.
void Relocation::LearnFolders() {
  moves_.clear();
  if (!from_.empty()) moves_.emplace_back(from_, to_);
  for (const MovedPath& each : found_) {
    if (each.newPath.empty()) continue;
    std::string former = FolderOf(each.oldPath);
    std::string present = FolderOf(each.newPath);
    while (true) {
      const std::pair move(former, present);
      const bool isKnown = std::ranges::find(moves_, move) != moves_.end();
      if (former != present && !isKnown) moves_.push_back(move);
      if (FileNameOf(former).empty() || FileNameOf(former) != FileNameOf(present)) break;
      former = FolderOf(former);
      present = FolderOf(present);
    }
  }
}

// Returns all existing files and folders that a missing path may have become by the moves of
// folders.
std::vector<std::string> Relocation::Follow(const std::string& path) {
  std::set<std::string> places;
  for (const auto& [former, present] : moves_) {
    const std::string place = MapPath(path, former, present);
    if (place == path) continue;
    const Result<bool> exists = files_.CheckExists(place);
    if (exists && *exists) places.insert(place);
  }
  return {places.begin(), places.end()};
}

Result<std::vector<FileText>> Relocation::MakeTexts() {
  std::vector<FileText> texts;
  for (const auto& document : documents_) {
    AttributeEdits edits;
    for (const MovedPath& each : found_) {
      if (each.newPath.empty()) continue;
      const std::string value = each.rewritten.empty()
                                    ? RelativeNameOnDisk(files_, each.base, each.newPath)
                                    : each.rewritten;
      const std::string text = value.empty() ? each.newPath : value;
      if (each.file == document->path) edits.Add(each.attribute, each.written, text);
      // An application's own file repeats the path that the project uses for it.
      const bool isOwn = each.kind == MovedPath::Kind::Application &&
                         (each.file == document->path || each.newPath == document->path);
      if (!isOwn) continue;
      edits.AddOptional("Extern", each.written, text);
      edits.AddOptional("Path", each.written, text);
    }
    if (edits.IsEmpty()) continue;
    auto changed = edits.ApplyTo(document->text);
    if (!changed) return Error{changed.GetError().code, changed.GetError().text, document->path};
    if (*changed != document->text) texts.push_back({document->path, std::move(*changed)});
  }
  return texts;
}

}  // namespace tarn::host
