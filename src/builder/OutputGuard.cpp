#include "builder/OutputGuard.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <span>
#include <string_view>

#include "builder/BuildRecords.h"
#include "platform/files/FileTexts.h"
#include "platform/files/ProjectFolder.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "project/ProjectModel.h"
#include "xml/XmlNode.h"

namespace tarn {

namespace {

constexpr const char* kIsSource = "is a source of the project";
constexpr const char* kIsDependency = "is a dependency of files of the project";
constexpr const char* kIsProjectFile = "is a file of the project itself";
constexpr const char* kIsOwn = "has a name that only Tarn's own files have";
constexpr const char* kIsState = "is where Tarn stores the user's state and settings";
constexpr const char* kIsControl = "is where a version control system stores its data";
constexpr const char* kIsOutside =
    "is outside the project's folder, and its present content was not written by a build of this "
    "project";
constexpr const char* kIsUnmadeSource =
    "looks like a source, and no build of this project made it (delete it if it is not needed)";
constexpr const char* kIsUnmade =
    "no build of this project made it (delete it if it is not needed)";
constexpr const char* kIsUntrusted = "is outside the project's folder, which is not trusted";

// Files that the server and its hosts write next to a project. Backups may have a number appended.
constexpr std::string_view kOwnExtensions[] = {".tprj", ".tapp", ".tstate", ".tlog",
                                               kLockExtension};
constexpr std::string_view kCopyExtensions[] = {".bak", ".orig", ".unsaved"};
// Replacements for the project's own extension.
constexpr const char* kStoredExtensions[] = {".tstate", ".undo.tstate", ".sizes.tstate", ".tlog",
                                             kLockExtension};

// Names of the folders, and of a file that replaces one. A tool of the system runs programs that
// its configuration there names.
constexpr std::string_view kControlNames[] = {".git", ".hg", ".svn", ".bzr"};

bool IsControlPath(std::string_view path) {
  for (const std::string_view part : Split(path, '/')) {
    const auto isSame = [part](std::string_view name) { return EqualNoCase(name, part); };
    if (std::any_of(std::begin(kControlNames), std::end(kControlNames), isSame)) return true;
  }
  return false;
}

// Usual extensions of what options name. Without a record of its run, such a file may be replaced,
// so that a build continues after the records were lost.
constexpr std::string_view kOutputExtensions[] = {".o",   ".obj", ".rel", ".a",  ".lib",
                                                  ".elf", ".axf", ".out", ".exe"};
// Same, but only of applications: those of single files are rather images that sources include.
constexpr std::string_view kImageExtensions[] = {".hex", ".ihx", ".bin", ".s19", ".srec"};
constexpr std::string_view kReportExtensions[] = {".lst", ".map", ".d"};
constexpr const char* kOutputOption = "Build.OutputFile";

// Returns false for an empty file.
bool IsText(std::string_view bytes) {
  return !bytes.empty() && std::none_of(bytes.begin(), bytes.end(), [](char c) {
    const bool isControl = static_cast<unsigned char>(c) < 0x20 || c == 0x7f;
    return isControl && std::string_view("\t\n\f\r").find(c) == std::string_view::npos;
  });
}

bool Contains(std::span<const std::string_view> list, const std::string& wanted) {
  return std::any_of(list.begin(), list.end(),
                     [&](std::string_view each) { return EqualNoCase(each, wanted); });
}

bool HasOwnName(const std::string& path) {
  const std::string extension = ExtensionOf(path);
  const std::size_t last = extension.find_last_not_of("0123456789");
  const std::string copy = extension.substr(0, last == extension.npos ? 0 : last + 1);
  return Contains(kOwnExtensions, extension) || Contains(kCopyExtensions, copy);
}

std::string Describe(const NamedOutput& output, const std::string& reason) {
  const std::string option = output.option.empty() ? "" : " by the option " + output.option;
  const std::string argument = output.argument.empty() ? "" : " by the argument " + output.argument;
  return output.path + " is named as an output" + (option.empty() ? argument : option) + ", but " +
         reason;
}

}  // namespace

std::vector<NamedOutput> FindWritten(const std::string& access) {
  std::vector<NamedOutput> written;
  const auto list = SplitFileTexts(access);
  if (!list) return written;
  for (const auto& [kind, text] : *list) {
    if (kind == "write" || kind == "maybe") written.push_back({text, {}, {}, kind == "write"});
    if (kind == "option" && !written.empty()) written.back().option = text;
    if (kind == "named-by" && !written.empty()) written.back().argument = text;
  }
  return written;
}

std::vector<std::string> FindAccessed(const std::string& access, std::string_view wanted) {
  std::vector<std::string> paths;
  const auto list = SplitFileTexts(access);
  if (!list) return paths;
  for (const auto& [kind, text] : *list) {
    if (kind == wanted && !text.empty()) paths.push_back(text);
  }
  return paths;
}

std::string OutputGuard::WhyKept(const CXmlNode& node, const NamedOutput& output) {
  const std::string& path = output.path;
  const std::optional<FileStatus> status = model_.GetFiles().ExamineExactly(path);
  const bool isLink = IsLink(path);
  if (const std::string own = WhyOwn(output, isLink); !own.empty()) return own;
  // A tool would create the file that a dangling link points to.
  if (!status && !isLink) return {};
  const bool isOutside = LocationOf(path, isLink).isOutside;
  const bool isRefused = model_.Protection().GetTrust().IsWithheld() && isOutside;
  if (!isRefused && status && IsMade(node, path, *status)) return {};
  const char* const needed = status ? FindReason(path, *status) : nullptr;
  if (needed != nullptr && !IsGenerated(node, path, needed)) return Describe(output, needed);
  if (!isRefused && (model_.Protection().MayWriteOutside() || !isOutside)) {
    const bool isUnmade = status && !HasRecord(node, path);
    const char* const reason = isUnmade ? FindUnmadeReason(node, output) : nullptr;
    return reason == nullptr ? std::string() : Describe(output, reason);
  }
  const ProjectFolder folder(model_.GetFiles(), model_.GetProjectPath());
  const std::string wayOut = folder.DescribeWayOut(path);
  return Describe(output, (wayOut.empty() ? "" : wayOut + ", which ") +
                              (isRefused ? kIsUntrusted : kIsOutside));
}

std::string OutputGuard::WhyOwn(const NamedOutput& output) {
  return WhyOwn(output, IsLink(output.path));
}

std::string OutputGuard::WhyOwn(const NamedOutput& output, bool isLink) {
  const char* const reason = FindOwnReason(output.path, isLink);
  if (reason == nullptr || model_.GetFiles().IsFolder(output.path)) return {};
  const std::optional<FileStatus> status = model_.GetFiles().ExamineExactly(output.path);
  const bool isProjects = status && FindReason(output.path, *status) == kIsProjectFile;
  return Describe(output, isProjects ? kIsProjectFile : reason);
}

bool OutputGuard::IsLink(const std::string& path) const {
  return model_.GetFiles().ExamineLink(path).has_value();
}

const char* OutputGuard::FindOwnReason(const std::string& path, bool isLink) {
  if (HasOwnName(path)) return kIsOwn;
  if (isLink && HasOwnName(model_.GetFiles().ResolveLinks(path))) return kIsOwn;
  const Location place = LocationOf(path, isLink);
  if (place.isControl || IsControlPath(path)) return kIsControl;
  return place.isState ? kIsState : nullptr;
}

const BuildRecord* OutputGuard::FindRecord(const CXmlNode& node) const {
  const BuildRecords::Bound* const bound = records_.Find(node);
  const bool isKnown = bound != nullptr && bound->record != BuildRecordStore::kNone;
  return isKnown ? &records_.RecordOf(*bound) : nullptr;
}

// A record has the version of its output in a separate field; further products are its last inputs.
template <class Test>
bool OutputGuard::IsMade(const CXmlNode& node, const std::string& path, const Test& test) const {
  const BuildRecord* const record = FindRecord(node);
  if (record == nullptr) return false;
  const BuildRecordStore& store = records_.Store();
  const auto isThis = [&](BuildRecord::Number version) {
    return store.PathOf(version) == path && test(store.Version(version));
  };
  const auto products = record->inputs.end() - static_cast<std::ptrdiff_t>(record->programs);
  return isThis(record->output) || std::any_of(products, record->inputs.end(), isThis) ||
         std::any_of(record->byProducts.begin(), record->byProducts.end(), isThis);
}

bool OutputGuard::IsMade(const CXmlNode& node, const std::string& path,
                         const FileStatus& status) const {
  return IsMade(node, path,
                [&](const FileVersion& version) { return version.IsCertainly(status); });
}

std::vector<std::string> OutputGuard::FindByProducts(const CXmlNode& node) {
  std::vector<std::string> paths;
  const BuildRecord* const record = FindRecord(node);
  if (record == nullptr) return paths;
  const BuildRecordStore& store = records_.Store();
  for (const BuildRecord::Number each : record->byProducts) {
    std::string path(store.PathOf(each));
    const std::optional<FileStatus> status = model_.GetFiles().ExamineExactly(path);
    // Outside the project's folder, WhyKept is stricter.
    const bool isLeft = status && IsSameVersion(store.Version(each).status, *status) &&
                        !model_.GetFiles().ExamineLink(path);
    const char* const reason = isLeft ? FindReason(path, *status) : nullptr;
    const bool isOwn =
        reason == nullptr || reason == kIsDependency || IsGenerated(node, path, reason);
    if (isLeft && isOwn) paths.push_back(std::move(path));
  }
  return paths;
}

bool OutputGuard::IsUnchangedProduct(BuildRecord::Number version) {
  const std::string path(records_.Store().PathOf(version));
  const std::optional<FileStatus> status = model_.GetFiles().ExamineExactly(path);
  const bool isSame =
      status && !IsLink(path) && IsSameVersion(records_.Store().Version(version).status, *status);
  return isSame && FindReason(path, *status) == nullptr && FindOwnReason(path, false) == nullptr &&
         (!LocationOf(path, false).isOutside || !model_.Protection().GetTrust().IsWithheld());
}

std::vector<OutputGuard::Removed> OutputGuard::FindRemoved(const CXmlNode& application) {
  const BuildRecordStore& store = records_.Store();
  const std::string own = OrEmpty(application.GetAttrValue("Path"));
  const std::vector<std::size_t> all = store.RecordsOf(own);
  // An application is linked from the outputs of its sources.
  const std::string output = OrEmpty(application.GetAttrValue("OutputFile"));
  std::vector<Removed> found;
  for (const std::size_t record : all) {
    const BuildRecord& each = store.Get(record);
    if (each.sources != 1 || store.PathOf(each.output) == output) continue;
    const std::string source(store.PathOf(each.inputs.front()));
    FindReason(source, {});  // collects the paths
    if (paths_.contains(source) || store.Find(own, source) != BuildRecordStore::kNone) continue;
    std::vector<BuildRecord::Number> made = each.byProducts;
    made.push_back(each.output);
    Removed& removed = found.emplace_back();
    removed.record = record;
    for (const BuildRecord::Number version : made) {
      if (IsUnchangedProduct(version)) removed.files.emplace_back(store.PathOf(version));
    }
  }
  return found;
}

// A cache that hard-links its files into builds also changes their times.
Status OutputGuard::Remove(const CXmlNode& node, const std::string& path) {
  FileSystem& files = model_.GetFiles();
  const std::optional<FileStatus> status = files.Examine(path);
  const bool isMade = status && IsMade(node, path, [&](const FileVersion& version) {
                        const FileStatus& made = version.status;
                        return made.device == status->device && made.inode == status->inode &&
                               made.size == status->size;
                      });
  return isMade ? files.RemoveOwnFile(path) : files.RemoveFile(path);
}

bool OutputGuard::IsRecorded(std::string_view path) const {
  const BuildRecordStore& store = records_.Store();
  return std::any_of(applications_.begin(), applications_.end(), [&](const std::string& each) {
    return store.Find(each, path) != BuildRecordStore::kNone;
  });
}

bool OutputGuard::HasRecord(const CXmlNode& node, const std::string& path) const {
  return IsMade(node, path, [](const FileVersion&) { return true; }) || IsRecorded(path);
}

const char* OutputGuard::FindUnmadeReason(const CXmlNode& node, const NamedOutput& output) const {
  const bool isByProduct = output.option.empty() && output.argument.empty();
  if (isByProduct || LooksLikeProduct(node, output)) return nullptr;
  const CXmlNode* const type = model_.Extensions().Find(output.path);
  const bool isLeaf = type != nullptr && (model_.Types().FlagsOf(*type) & kTypeIsLeaf) != 0;
  return isLeaf ? kIsUnmadeSource : kIsUnmade;
}

bool OutputGuard::IsGenerated(const CXmlNode& node, const std::string& path,
                              const char* reason) const {
  const bool isInput = reason == kIsSource || reason == kIsDependency;
  return isInput && (model_.Types().FlagsOf(node) & kTypeFirst) != 0 && IsInBuildFolder(path);
}

bool OutputGuard::IsInBuildFolder(const std::string& path) const {
  const std::string folder = FolderOf(model_.GetProjectPath());
  if (!path.starts_with(folder)) return false;
  const std::vector<std::string_view> parts =
      Split(std::string_view(path).substr(folder.size()), kSeparator);
  const auto build = std::find(parts.begin(), parts.end(), "build");
  return parts.end() - build > 2;
}

bool OutputGuard::LooksLikeProduct(const CXmlNode& node, const NamedOutput& output) const {
  const std::string extension = ExtensionOf(output.path);
  const bool isOutput = output.option == kOutputOption;
  const std::uint32_t flags = model_.Types().FlagsOf(node);
  const bool isApplication = (flags & kTypeApplication) != 0;
  if (!extension.empty()) {
    if ((flags & (kTypeFirst | kTypeApplication)) != 0 && IsInBuildFolder(output.path)) return true;
    if (!isOutput) return Contains(kReportExtensions, extension);
    return Contains(kOutputExtensions, extension) ||
           (isApplication && Contains(kImageExtensions, extension));
  }
  const bool isApart = FolderOf(output.path) != FolderOf(model_.GetProjectPath());
  if (!isApplication || (isOutput && isApart)) return isApplication;
  // A linker that was killed leaves an empty file or a part of a program.
  const Result<std::string> text = model_.GetFiles().ReadWholeFile(output.path);
  return text && !IsText(*text);
}

OutputGuard::Location OutputGuard::LocationOf(const std::string& path, bool isLink) {
  FileSystem& files = model_.GetFiles();
  const auto find = [&](const std::string& place) {
    bool isState = false;
    for (const std::string_view state : Split(model_.Services().stateFolder, '\n')) {
      isState |= !state.empty() && LeadsInto(files, std::string(state), place);
    }
    return Location{!ProjectFolder(files, model_.GetProjectPath()).Holds(place), isState,
                    IsControlPath(files.ResolveLinks(place))};
  };
  // Deleting a link removes the link itself, but a tool writes through it.
  if (isLink) return find(path);
  const auto [known, isNew] = folders_.try_emplace(FolderOf(path));
  if (isNew) known->second = find(known->first);
  return known->second;
}

const char* OutputGuard::FindReason(const std::string& path, const FileStatus& status) {
  if (!isCollected_) {
    isCollected_ = true;
    const std::string folder = FolderOf(model_.GetProjectPath());
    Protect(model_.GetProjectPath().c_str(), folder, kIsProjectFile);
    for (const char* extension : kStoredExtensions) {
      Protect(WithExtension(model_.GetProjectPath(), extension).c_str(), folder, kIsProjectFile);
    }
    for (const CXmlNode* each : model_.GetProjectRoot().GetChildren()) {
      if ((model_.Types().FlagsOf(*each) & kTypeApplication) == 0) continue;
      applications_.push_back(OrEmpty(each->GetAttrValue("Path")));
    }
    Collect(model_.GetProjectRoot(), folder);
  }
  if (const auto found = paths_.find(path); found != paths_.end()) return found->second;
  const auto found = files_.find({status.device, status.inode});
  if (found == files_.end() || status.inode == 0) return nullptr;
  // The log is replaced while a build runs, and its former number may be another file's by now.
  const std::optional<FileStatus> now = model_.GetFiles().Examine(found->second);
  const bool isSame = now && now->device == status.device && now->inode == status.inode;
  return isSame ? paths_.at(found->second) : nullptr;
}

void OutputGuard::Collect(const CXmlNode& node, const std::string& folder) {
  const std::uint32_t flags = model_.Types().FlagsOf(node);
  const bool isFile = (flags & (kTypeProject | kTypeApplication)) != 0;
  Protect(node.GetAttrValue("Extern"), folder, kIsProjectFile);
  Protect(node.GetAttrValue("Path"), folder, isFile ? kIsProjectFile : kIsSource);
  for (int i = 0; i < node.GetChildCount(); ++i) {
    const CXmlNode& child = *node.GetChild(i);
    if (IsContentNode(child)) Collect(child, folder);
    if (child.NameView() != "Dependencies") continue;
    for (int j = 0; j < child.GetChildCount(); ++j) {
      const char* const file = child.GetChild(j)->GetAttrValue("Header");
      if (file != nullptr && !IsRecorded(file)) Protect(file, folder, kIsDependency);
    }
  }
}

void OutputGuard::Protect(const char* path, const std::string& folder, const char* reason) {
  if (path == nullptr || *path == '\0') return;
  std::string full = path;
  if (IsRelativePath(full)) model_.Paths().MakeAbsolutePath(path, full, folder.c_str());
  if (!paths_.try_emplace(full, reason).second) return;
  const std::optional<FileStatus> status = model_.GetFiles().Examine(full);
  if (status && status->inode != 0) files_.try_emplace({status->device, status->inode}, full);
}

}  // namespace tarn
