#include "components/tools/CarriedOptions.h"

#include <algorithm>
#include <optional>
#include <unordered_set>
#include <utility>

#include "components/tools/FileList.h"
#include "components/tools/GivenArguments.h"
#include "components/tools/ObjectSections.h"
#include "components/tools/ThinArchive.h"
#include "components/tools/UsedFiles.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"

namespace tarn::tools {

namespace {

// Splits a list in which each option is between ' and ', and '\'' stands for a ' in it.
void AddList(std::string_view text, CarriedOptions& carried) {
  for (std::size_t i = text.find('\''); i < text.size(); i = text.find('\'', i)) {
    std::string word;
    for (++i; i < text.size(); ++i) {
      if (text.substr(i).starts_with("'\\''")) {
        i += 3;
      } else if (text[i] == '\'') {
        break;
      }
      word += text[i];
    }
    if (i++ >= text.size()) carried.isReadable = false;
    carried.words.push_back(std::move(word));
  }
}

// Commands of linker scripts that name files to read.
constexpr std::string_view kInputCommands[] = {"INPUT", "GROUP", "STARTUP", "INCLUDE"};

bool IsBinary(std::string_view bytes) {
  return bytes.starts_with(
             "\x7f"
             "ELF") ||
         IsArchive(bytes);
}

// Names like "/proc/self/cwd/a.o" mean the same for this process and the tool as long as it exists.
class CurrentFolder {
 public:
  CurrentFolder(FileSystem& fileSystem, const std::string& folder)
      : disk_(fileSystem), before_(fileSystem.CurrentFolder()) {
    disk_.SetCurrentFolder(folder);
  }
  ~CurrentFolder() { disk_.SetCurrentFolder(before_); }
  CurrentFolder(const CurrentFolder&) = delete;
  CurrentFolder& operator=(const CurrentFolder&) = delete;

 private:
  FileSystem& disk_;
  const std::string before_;
};

// A breadth-first search over files, folders and names. Costs one examination for each name that is
// absolute or found in the working folder, and otherwise one for each name and folder.
class LinkSearch {
 public:
  LinkSearch(const ToolDefinition& definition, FileSystem& fileSystem)
      : tool_(definition), disk_(fileSystem) {}

  std::vector<CarriedOptions> Find(const ToolPlan& plan) {
    const CurrentFolder current(disk_, plan.commands.front().folder);
    for (const std::string& path : plan.depends) AddFile(path);
    for (const ToolCommand& command : plan.commands) {
      AddCommand(command, plan);
      Search();
    }
    return std::move(found_);
  }

 private:
  void AddCommand(const ToolCommand& command, const ToolPlan& plan) {
    folder_ = command.folder;
    AddFolder(folder_);
    for (const LibraryRule& rule : tool_.libraries) {
      for (const std::string& name : plan.implicitLibraries) AddLibrary(rule, name);
    }
    const GivenArguments given = ExpandArguments(command, &disk_);
    for (std::size_t i = 0; i < given.words.size(); ++i) {
      const std::string& word = given.words[i];
      const bool isWritten = i > 0 && FindFlag(tool_.writes, given.words[i - 1]) != nullptr;
      if (!isWritten || !word.starts_with('-')) AddWord(word);
    }
    for (const LibraryRule& rule : tool_.libraries) {
      for (const std::string& each : ValuesOf(rule.folderFlags, given.words)) AddName(each);
      for (const std::string& each : ValuesOf(rule.nameFlags, given.words)) AddLibrary(rule, each);
    }
  }

  // The value of a flag may be a name, too.
  void AddWord(std::string_view word) {
    if (!word.starts_with('-')) return AddName(word);
    if (word.size() > 2) AddName(word.substr(2));
    const std::size_t equal = word.find('=');
    if (equal == word.npos) return;
    // The map file of the previous link is full of words that look like names.
    const bool isWritten = std::find(tool_.writes.begin(), tool_.writes.end(),
                                     word.substr(0, equal)) != tool_.writes.end();
    if (!isWritten) AddName(word.substr(equal + 1));
  }

  void AddName(std::string_view name) {
    if (name.empty() || !knownNames_.emplace(name).second) return;
    names_.emplace_back(name);
  }

  void AddLibrary(const LibraryRule& rule, const std::string& name) {
    for (const std::string& each : LibraryFileNames(rule, name)) AddName(each);
  }

  // A prefix stands for the root of the target's system, which is that of this system.
  static std::string_view WithoutRoot(std::string_view name) {
    for (const std::string_view root : {"=", "$SYSROOT"}) {
      if (name.starts_with(root)) return name.substr(root.size());
    }
    return name;
  }

  void Search() {
    for (bool hasMore = true; hasMore;) {
      hasMore = false;
      for (std::size_t i = 0; i < folders_.size(); ++i) {
        hasMore |= tried_[i] < names_.size();
        TryNames(i);
      }
      for (; asFolder_ < names_.size(); ++asFolder_) AddFolderName(names_[asFolder_]);
    }
  }

  void TryNames(std::size_t folder) {
    while (tried_[folder] < names_.size()) {
      const std::string& name = names_[tried_[folder]++];
      // An absolute name is the same file everywhere.
      if (folder > 0 && !IsRelativePath(name)) continue;
      AddFile(AbsolutePath(&disk_, folders_[folder], name));  // the lists may grow
    }
  }

  void AddFolderName(std::string_view name) {
    const std::string path = AbsolutePath(&disk_, folder_, WithoutRoot(name));
    if (!files_.contains(path) && disk_.ExamineFolder(path)) AddFolder(path);
  }

  void AddFolder(const std::string& path) {
    if (!knownFolders_.insert(path).second) return;
    folders_.push_back(path);
    tried_.push_back(0);
  }

  void AddFile(const std::string& path) {
    if (!known_.insert(path).second || !disk_.ExamineExactly(path)) return;
    files_.insert(path);
    const Result<std::string> bytes = disk_.ReadWholeFile(path);
    if (!bytes) return;
    CarriedOptions carried{path, {}};
    if (ReadCarriedOptions(tool_.carriers, *bytes, carried)) found_.push_back(std::move(carried));
    if (!IsBinary(*bytes)) return AddScript(*bytes, FolderOf(path));
    for (const std::string& name : ReadThinArchive(*bytes)) {
      AddFile(AbsolutePath(&disk_, FolderOf(path), name));
    }
  }

  // Doesn't parse the script: where a comment or a quoted name begins depends on the statement.
  void AddScript(std::string_view text, const std::string& folder) {
    const bool hasInputs =
        std::any_of(std::begin(kInputCommands), std::end(kInputCommands),
                    [text](std::string_view command) { return text.find(command) != text.npos; });
    if (!hasInputs) return;
    AddFolder(folder);
    for (const std::string_view quoted : Split(text, '"')) AddScriptName(quoted);
    constexpr std::string_view kSpaces = " \t\r\n\f\v(){}\";*";
    while (!text.empty()) {
      const std::size_t end = std::min(text.find_first_of(kSpaces), text.size());
      const std::string_view word = text.substr(0, end);
      AddScriptName(word);
      for (const std::string_view part : Split(word, ',')) AddScriptName(part);
      text.remove_prefix(std::min(end + 1, text.size()));
    }
  }

  void AddScriptName(std::string_view name) {
    constexpr std::size_t kMaxName = 4096;
    if (name.empty() || name.size() > kMaxName) return;
    AddName(WithoutRoot(name));
    AddName(name);
    if (!name.starts_with("-l") || name.size() == 2) return;
    for (const LibraryRule& rule : tool_.libraries) AddLibrary(rule, std::string(name.substr(2)));
  }

  const ToolDefinition& tool_;
  FileSystem& disk_;
  std::string folder_;  // working folder of the current command
  std::vector<std::string> folders_, names_;
  std::vector<std::size_t> tried_;  // for each folder, the number of names searched in it
  std::size_t asFolder_ = 0;        // number of names searched as folders
  std::unordered_set<std::string> knownFolders_, knownNames_, known_;  // the last: paths examined
  std::unordered_set<std::string> files_;                              // those that are files
  std::vector<CarriedOptions> found_;
};

}  // namespace

std::vector<CarriedOptions> FindCarriedOptions(const ToolDefinition& tool, const ToolPlan& plan,
                                               FileSystem& disk) {
  if (tool.carriers.empty() || plan.commands.empty()) return {};
  return LinkSearch(tool, disk).Find(plan);
}

bool ReadCarriedOptions(const std::vector<CarrierRule>& rules, std::string_view bytes,
                        CarriedOptions& carried) {
  const bool mayCarry = std::any_of(rules.begin(), rules.end(), [&](const CarrierRule& rule) {
    return bytes.find(rule.sections) != bytes.npos;
  });
  // A thin archive may hide the name of a member.
  if (!mayCarry && !IsThinArchive(bytes)) return false;
  bool isCarrier = false;
  const auto onSection = [&](std::string_view name, std::optional<std::string_view> content) {
    for (const CarrierRule& rule : rules) {
      if (!name.starts_with(rule.sections)) continue;
      isCarrier = true;
      if (!name.substr(rule.sections.size()).starts_with(rule.options)) continue;
      // Compilers read the options without regard to the type of the section.
      if (!content) carried.isReadable = false;
      for (const std::string_view list : Split(content.value_or(""), '\0')) AddList(list, carried);
    }
  };
  const bool isRead = ForEachSection(bytes, onSection);
  carried.isReadable &= isRead;
  // A text, such as a source of an assembler, is not what a linker takes code from.
  const bool isUnreadable = !isRead && (IsArchive(bytes) || bytes.find('\0') != bytes.npos);
  return isCarrier || isUnreadable;
}

}  // namespace tarn::tools
