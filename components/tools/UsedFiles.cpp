#include "components/tools/UsedFiles.h"

#include <algorithm>
#include <map>
#include <set>
#include <unordered_set>

#include "components/tools/CommandHash.h"
#include "components/tools/FileList.h"
#include "components/tools/GivenArguments.h"
#include "components/tools/ThinArchive.h"
#include "patterns/IncludeScan.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"

namespace tarn::tools {

namespace {

// Larger files are not handwritten text.
constexpr std::uint64_t kMaxFollowed = 4 << 20;
// Limit for a thin archive, which contains little more than names.
constexpr std::uint64_t kMaxArchive = 64 << 20;

// The paths at which a program searches for a file, in order.
struct Lookup {
  std::vector<std::string> places;
  // The program is known to search there. Otherwise the argument may not be a file name at all.
  bool isCertain = false;
};

// Only $(Item) is defined in the name of a library.
class ItemValue : public TemplateValues {
 public:
  explicit ItemValue(const std::string& value) : item_(value) {}
  std::string Own(OwnName name) const override { return name == OwnName::Item ? item_ : ""; }
  std::string Option(const std::string&) const override { return {}; }

 private:
  const std::string& item_;
};

bool IsText(std::string_view bytes) {
  return bytes.substr(0, 4096).find('\0') == bytes.npos && !bytes.starts_with("!<");
}

// Collects the lookups of a run.
class LookupFinder {
 public:
  LookupFinder(const ToolDefinition& toolDefinition, const ToolPlan& toolPlan,
               const std::vector<std::string>& runFiles, FileSystem& fileSystem,
               bool isRunOver = false)
      : tool_(toolDefinition),
        plan_(toolPlan),
        files_(runFiles),
        disk_(fileSystem),
        hasEnded_(isRunOver),
        own_(runFiles.begin(), runFiles.end()) {}

  // A linker script may name folders in which all libraries are searched, and further scripts may
  // be found there: repeats the search until it finds no more folders.
  std::vector<Lookup> Find() {
    search_ = SearchFolders(&disk_, tool_, plan_);
    std::size_t known = 0;
    do {
      known = scriptFolders_.size();
      lookups_.clear();
      followed_.clear();
      namedFolders_.clear();
      AddAll();
    } while (scriptFolders_.size() > known);
    return std::move(lookups_);
  }

 private:
  void AddAll() {
    for (const ToolCommand& command : plan_.commands) AddCommand(command);
    for (const std::string& path : plan_.depends) AddPath(path, true);
    if (tool_.follows == Follow::Includes || hasEnded_) {
      for (const std::string& file : files_) FollowFile(file);
    }
  }

  void AddCommand(const ToolCommand& command) {
    folder_ = command.folder;
    const GivenArguments given = ExpandArguments(command, &disk_);
    for (const std::string& path : given.responseFiles) AddPath(path, true);
    for (const LibraryRule& rule : tool_.libraries) {
      for (const std::string& each : ValuesOf(rule.folderFlags, given.words)) {
        if (std::string path = LibraryFolder(each); !path.empty()) {
          namedFolders_.push_back(std::move(path));
        }
      }
    }
    for (const LibraryRule& rule : tool_.libraries) {
      for (const std::string& name : ValuesOf(rule.nameFlags, given.words)) {
        AddLibrary(rule, name, LibraryFolders());
      }
      // Among these, the toolchain's libraries precede those in the folders of scripts.
      for (const std::string& name : plan_.implicitLibraries) AddLibrary(rule, name, namedFolders_);
    }
    for (const std::string& name : ValuesOf(tool_.includes, given.words)) {
      Lookup lookup{{Place(folder_, name)}, true};
      for (const std::string& each : search_) lookup.places.push_back(Place(each, name));
      Add(std::move(lookup));
    }
    for (const std::string& each : ValuesOf(tool_.helpers.folderFlags, given.words))
      AddHelpers(each);
    AddWords(given.words);
  }

  // The folder is a prefix that need not end in a separator.
  void AddHelpers(const std::string& prefix) {
    for (const auto* names : {&plan_.helpers, &plan_.helperFiles}) {
      for (const std::string& name : *names) {
        const std::string path = AbsolutePath(&disk_, folder_, prefix + name);
        Add({{path, AbsolutePath(&disk_, AbsolutePath(&disk_, folder_, prefix), name)}, true});
      }
    }
  }

  // Returns the absolute path of a folder that an option or a script names. "=" represents the
  // target's sysroot, which is empty by default.
  std::string LibraryFolder(std::string_view name) const {
    if (name.starts_with('=')) name.remove_prefix(1);
    return name.empty() ? std::string() : AbsolutePath(&disk_, folder_, name);
  }

  // Returns the folders in search order.
  std::vector<std::string> LibraryFolders() const {
    std::vector<std::string> folders = namedFolders_;
    folders.insert(folders.end(), scriptFolders_.begin(), scriptFolders_.end());
    return folders;
  }

  void AddLibrary(const LibraryRule& rule, const std::string& name,
                  const std::vector<std::string>& folders) {
    Lookup lookup{{}, true};
    for (const std::string& each : folders) {
      for (const std::string& file : LibraryFileNames(rule, name)) {
        lookup.places.push_back(AbsolutePath(&disk_, each, file));
      }
    }
    Add(std::move(lookup));
  }

  void AddWords(const std::vector<std::string>& words) {
    for (std::size_t i = 0; i < words.size(); ++i) {
      const std::string& word = words[i];
      if (const std::string* const flag = FindFlag(tool_.writes, word)) {
        if (*flag == word) ++i;
        continue;
      }
      AddWord(word);
    }
  }

  void AddWord(std::string_view word) {
    if (word.starts_with("-D") || word.starts_with("-U")) return;
    if (!word.starts_with('-')) {
      AddName(word);
    } else if (!word.starts_with("--") && word.size() > 2) {
      AddName(word.substr(2));
    }
    const std::vector<std::string_view> parts = Split(word, ',');
    for (const std::string_view part : parts) {
      const std::size_t equal = part.find('=');
      if (equal != part.npos) AddName(part.substr(equal + 1));
      if (parts.size() > 1 && !part.starts_with('-')) AddName(part);
    }
  }

  // Files named by arguments are also searched in the library folders.
  void AddName(std::string_view name) {
    if (name.empty()) return;
    Lookup lookup{{Place(folder_, name)}, false};
    if (own_.contains(lookup.places.front())) return;
    if (IsRelativePath(PathOfName(name))) {
      for (const std::string& each : LibraryFolders()) {
        lookup.places.push_back(Place(each, name));
      }
    }
    Add(std::move(lookup));
  }

  // Returns the path of a name that an argument or a file contains, if it is found in the folder.
  std::string Place(const std::string& folder, std::string_view name) const {
    return AbsolutePath(&disk_, folder, PathOfName(name));
  }

  void AddPath(const std::string& path, bool isCertain) { Add({{path}, isCertain}); }

  void Add(Lookup lookup) {
    if (lookup.places.empty()) return;
    lookups_.push_back(std::move(lookup));
    if (tool_.follows != Follow::Scripts) return;
    const std::vector<std::string> places = lookups_.back().places;
    for (const std::string& place : places) FollowFile(place);
  }

  // Adds the files named in this one if it is a text.
  void FollowFile(const std::string& path) {
    if (tool_.follows == Follow::None || !followed_.insert(path).second || IsOutput(path)) return;
    const std::string extension = FoldCase(ExtensionOf(path));
    if (extension == ".o" || extension == ".obj" || (extension == ".a" && !hasEnded_)) return;
    const auto status = disk_.ExamineExactly(path);
    if (!status) return;
    if (extension == ".a") return FollowArchive(path, status->size);
    if (status->size > kMaxFollowed) return;
    const auto text = disk_.ReadWholeFile(path);
    if (text && IsText(*text)) FollowText(*text, path);
  }

  void FollowText(std::string_view text, const std::string& path) {
    if (tool_.follows == Follow::Scripts) {
      const ScriptNames names = FindScriptNames(text);
      for (const std::string& name : names.folders) AddScriptFolder(name);
      for (const std::string& name : names.inputs) AddScriptInput(name, path);
    } else {
      for (const std::string& name : FindIncludes(text)) AddInclude(name, path);
    }
  }

  // Adds the members of a thin archive, including those of nested archives.
  void FollowArchive(const std::string& path, std::uint64_t size) {
    if (tool_.follows != Follow::Scripts || size > kMaxArchive) return;
    const auto bytes = disk_.ReadWholeFile(path);
    if (!bytes) return;
    for (const std::string& name : ReadThinArchive(*bytes)) {
      AddPath(AbsolutePath(&disk_, FolderOf(path), name), true);
    }
    if (bytes->size() <= kMaxFollowed && IsText(*bytes)) FollowText(*bytes, path);
  }

  void AddScriptFolder(const std::string& name) {
    std::string path = LibraryFolder(name);
    const bool isKnown =
        std::find(scriptFolders_.begin(), scriptFolders_.end(), path) != scriptFolders_.end();
    if (!path.empty() && !isKnown) scriptFolders_.push_back(std::move(path));
  }

  void AddScriptInput(const std::string& name, const std::string& script) {
    if (name.starts_with("-l") && name.size() > 2) {
      for (const LibraryRule& rule : tool_.libraries) {
        AddLibrary(rule, name.substr(2), LibraryFolders());
      }
      return;
    }
    Lookup lookup{{Place(folder_, name)}, true};
    lookup.places.push_back(Place(FolderOf(script), name));
    for (const std::string& each : LibraryFolders()) lookup.places.push_back(Place(each, name));
    Add(std::move(lookup));
  }

  // Adds every candidate, because the search order differs between programs. Files that are created
  // later are found through the names in the files read.
  void AddInclude(const std::string& name, const std::string& includer) {
    std::vector<std::string> folders = search_;
    folders.push_back(FolderOf(includer));
    for (const std::string& each : folders) {
      const std::string path = Place(each, name);
      AddPath(path, false);
      FollowFile(path);
    }
  }

  bool IsOutput(const std::string& path) const {
    return path == plan_.output || path == plan_.outputOnDisk;
  }

  const ToolDefinition& tool_;
  const ToolPlan& plan_;
  const std::vector<std::string>& files_;
  FileSystem& disk_;
  const bool hasEnded_;  // also follow archives, which is too slow when searching for a build order
  const std::unordered_set<std::string> own_;  // the files of the run
  std::vector<std::string> search_;
  std::string folder_;                      // working folder of the current command
  std::vector<std::string> namedFolders_;   // library search folders of all commands so far
  std::vector<std::string> scriptFolders_;  // same, but named by linker scripts
  std::unordered_set<std::string> followed_;
  std::vector<Lookup> lookups_;
};

// Returns everything that the run itself writes under a known name.
std::unordered_set<std::string> WrittenFiles(const ToolPlan& plan) {
  std::unordered_set<std::string> written(plan.products.begin(), plan.products.end());
  for (const std::string& path : {plan.output, plan.outputOnDisk, plan.listing, plan.rules,
                                  plan.furtherRules, plan.sizeFile, plan.globals}) {
    written.insert(path);
  }
  return written;
}

// Splits the paths into the file that is read, including equivalent ones in the same folder, and
// those that would be read instead if they existed. Programs try all forms of a name in one folder
// before the next.
void Divide(const Lookup& lookup, FileSystem& disk, std::vector<std::string>& there,
            std::vector<std::string>& missing) {
  std::string folder;
  std::vector<std::string> absent;
  const std::size_t before = there.size();
  for (const std::string& place : lookup.places) {
    if (there.size() > before && FolderOf(place) != folder) break;
    folder = FolderOf(place);
    if (disk.ExamineExactly(place)) {
      there.push_back(place);
    } else {
      absent.push_back(place);
    }
  }
  if (!lookup.isCertain && there.size() == before) return;
  missing.insert(missing.end(), absent.begin(), absent.end());
}

// A set of file names, compared ignoring case, as in file lookups, and through symbolic links.
class NameSet {
 public:
  explicit NameSet(FileSystem& fileSystem) : disk_(fileSystem) {}

  void Add(const std::string& path) {
    names_.insert(FoldCase(path));
    folders_[FoldCase(FileNameOf(path))].insert(FolderOf(path));
  }

  bool Has(const std::string& path) const {
    if (names_.contains(FoldCase(path))) return true;
    const auto found = folders_.find(FoldCase(FileNameOf(path)));
    if (found == folders_.end()) return false;
    const std::string real = FoldCase(disk_.ResolveLinks(FolderOf(path)));
    return std::any_of(found->second.begin(), found->second.end(), [&](const std::string& each) {
      return FoldCase(disk_.ResolveLinks(each)) == real;
    });
  }

 private:
  FileSystem& disk_;
  std::set<std::string> names_;
  std::map<std::string, std::set<std::string>> folders_;  // by file name
};

}  // namespace

// A name that starts with a colon is a file name.
std::vector<std::string> LibraryFileNames(const LibraryRule& rule, const std::string& name) {
  if (name.starts_with(':')) return {name.substr(1)};
  return SplitOptionList(rule.file.Fill(ItemValue(name)));
}

ReadFiles FindReadFiles(const ToolDefinition& tool, const ToolPlan& plan,
                        const std::vector<std::string>& files, FileSystem& disk) {
  const std::unordered_set<std::string> written = WrittenFiles(plan);
  std::vector<std::string> there;
  std::vector<std::string> absent;
  for (const Lookup& lookup : LookupFinder(tool, plan, files, disk, true).Find()) {
    Divide(lookup, disk, there, absent);
  }
  ReadFiles result;
  std::unordered_set<std::string> seen;
  for (std::string& path : there) {
    if (!written.contains(path) && seen.insert(path).second) result.found.push_back(path);
  }
  for (std::string& path : absent) {
    if (seen.insert(path).second) result.missing.push_back(std::move(path));
  }
  return result;
}

std::vector<std::string> FindUsedFiles(const ToolDefinition& tool, const ToolPlan& plan,
                                       const std::vector<std::string>& files,
                                       const std::vector<std::string>& candidates,
                                       FileSystem& disk) {
  NameSet used(disk);
  for (const std::string& file : files) used.Add(file);
  for (const Lookup& lookup : LookupFinder(tool, plan, files, disk).Find()) {
    for (const std::string& place : lookup.places) used.Add(place);
  }
  std::vector<std::string> found;
  for (const std::string& candidate : candidates) {
    const std::string path = CanonicalPath(candidate);
    if (!EqualNoCase(path, plan.output) && used.Has(path)) found.push_back(candidate);
  }
  return found;
}

}  // namespace tarn::tools
