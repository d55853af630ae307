// Determines the files that a run has read, and those it would have read instead if they existed.

#include <algorithm>
#include <unordered_set>
#include <utility>

#include "components/tools/CommandHash.h"
#include "components/tools/DepFile.h"
#include "components/tools/GivenArguments.h"
#include "components/tools/ToolRun.h"
#include "components/tools/ToolchainFolders.h"
#include "components/tools/UsedFiles.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"

namespace tarn::tools {

namespace {

// Returns true for names with characters that are ambiguous: a backslash separates folders.
bool HasOddCharacter(std::string_view name) {
  return std::any_of(name.begin(), name.end(), [](char c) {
    return c == '\\' || static_cast<unsigned char>(c) < ' ' || c == 127;
  });
}

void AddOnce(std::vector<std::string>& list, std::string text) {
  if (std::find(list.begin(), list.end(), text) == list.end()) list.push_back(std::move(text));
}

std::vector<std::string_view> SplitAny(std::string_view text, std::string_view separators) {
  std::vector<std::string_view> parts;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = std::min(text.find_first_of(separators, at), text.size());
    parts.push_back(text.substr(at, end - at));
    at = end + 1;
  }
  return parts;
}

}  // namespace

// Unknown dependencies must be an error: without any, the output would never be stale again.
std::string ToolRun::ReadDependencies(BuildRecord& found) {
  ReadFiles read = FindReadFiles(tool_, plan_, job_.files, *world_.files);
  std::vector<std::string> names = job_.respelled;
  names.insert(names.end(), read.found.begin(), read.found.end());
  found.missing = std::move(read.missing);
  std::vector<std::string> words;
  for (const ToolCommand& command : plan_.commands) {
    const GivenArguments given = ExpandArguments(command, world_.files);
    words.insert(words.end(), given.words.begin(), given.words.end());
  }
  found.definitions = ValuesOf(tool_.defines, words);
  found.search = SearchFolders(world_.files, tool_, plan_);
  // A command without search folders still searches the folder of its source.
  if (!tool_.search.empty() && found.search.empty() && !job_.files.empty()) {
    found.search.push_back(FolderOf(job_.files.front()));
  }
  if (!plan_.rules.empty()) {
    if (std::string problem = ReadRules(found.search, names); !problem.empty()) return problem;
  }
  if (!plan_.furtherRules.empty()) ReadFurtherRules(found, names);
  const bool isCompiler = tool_.carriers.empty();
  if (isCompiler && LeavesCodeToTheLink(tool_, words)) AddAssembledFiles(found, names);
  std::unordered_set<std::string> seen(job_.files.begin(), job_.files.end());
  for (const std::string& name : job_.respelled) seen.erase(name);
  for (std::string& name : names) {
    if (seen.insert(name).second) found.dependencies.push_back(std::move(name));
  }
  // A file listed as a dependency need not be listed elsewhere as well.
  std::erase_if(found.programs, [&seen](const std::string& path) { return seen.contains(path); });
  for (std::string& path : helpers_.Find(world_, tool_, plan_)) {
    if (seen.insert(path).second) found.programs.push_back(std::move(path));
  }
  return {};
}

// Base of the names in dependency files. A tool's conditions can leave it without any step.
const std::string& ToolRun::RulesFolder() const {
  return plan_.commands.empty() ? job_.baseFolder : plan_.commands.front().folder;
}

// A header of the toolchain is a dependency only if it is in a folder named by the command.
std::string ToolRun::ReadRules(const std::vector<std::string>& search,
                               std::vector<std::string>& names) {
  const auto text = world_.files->ReadWholeFile(plan_.rules);
  if (!text) return "can't be read: " + text.GetError().text;
  const DepFile rules = ReadDepFile(*text);
  if (!rules.problem.empty()) return rules.problem;
  const ToolchainFolders toolchain(world_, plan_);
  const auto isBelow = [](const std::string& path, const std::string& folder) {
    return path.starts_with(AddSeparator(folder));
  };
  std::unordered_set<std::string> fileNames;
  for (const std::string& name : rules.names) {
    const std::string named = PathOfName(name);
    std::string path = AbsolutePath(world_.files, RulesFolder(), named);
    if (HasOddCharacter(name) && !world_.files->Examine(path)) {
      return "names a file that can't be followed, rename it: " + name;
    }
    fileNames.insert(FoldCase(FileNameOf(path)));
    const bool isOwn =
        IsRelativePath(named) || !toolchain.Has(path) || isBelow(path, RulesFolder()) ||
        std::any_of(search.begin(), search.end(),
                    [&](const std::string& folder) { return isBelow(path, folder); });
    if (isOwn) names.push_back(std::move(path));
  }
  // Compares the last component only, because a launcher may write the folders differently.
  for (const std::string& source : job_.files) {
    if (!fileNames.contains(FoldCase(FileNameOf(source)))) {
      return "doesn't name the source " + source;
    }
  }
  return {};
}

// An assembler that runs after a compiler also reports the compiler's intermediate file, which is
// deleted or stored next to the output or the source. Its name is random, so the rules are not
// kept. A linker reports temporary files of its compiler, and files of the toolchain, of which only
// the version matters and not the time.
void ToolRun::ReadFurtherRules(BuildRecord& found, std::vector<std::string>& names) {
  // Not every run produces this file, and searching for other spellings takes time proportional to
  // the size of the output folder.
  if (!world_.files->ExamineExactly(plan_.furtherRules)) return;
  const auto text = world_.files->ReadWholeFile(plan_.furtherRules);
  if (!text) return;
  static_cast<void>(world_.files->RemoveScratchFile(plan_.furtherRules));
  std::unordered_set<std::string> titles{FileNameOf(WithoutExtension(plan_.output))};
  for (const std::string& source : job_.files) {
    titles.insert(FileNameOf(source));
    titles.insert(FileNameOf(WithoutExtension(source)));
  }
  for (const std::string& each : ReadDepFile(*text).names) {
    const std::string name = PathOfName(each);
    std::string path = AbsolutePath(world_.files, RulesFolder(), name);
    const bool isBetween =
        ExtensionOf(path) == ".s" && titles.contains(FileNameOf(WithoutExtension(path)));
    if (isBetween || !world_.files->ExamineExactly(path)) continue;
    const bool isPart = tool_.follows == Follow::Scripts && !IsRelativePath(name) &&
                        !path.starts_with(AddSeparator(RulesFolder()));
    if (isPart) {
      found.programs.push_back(std::move(path));
      continue;
    }
    AddEarlier(path, found);
    names.push_back(std::move(path));
  }
}

// An assembler searches its working folder first and then the header search folders.
void ToolRun::AddEarlier(const std::string& path, BuildRecord& found) const {
  std::vector<std::string> folders{RulesFolder()};
  folders.insert(folders.end(), found.search.begin(), found.search.end());
  for (const std::string& folder : folders) {
    const std::string start = AddSeparator(folder);
    if (!path.starts_with(start)) continue;
    for (const std::string& other : folders) {
      std::string earlier = JoinPath(other, path.substr(start.size()));
      if (earlier != path) AddOnce(found.missing, std::move(earlier));
    }
  }
}

// Assembler code is passed through the object file to the link, where it may read files that no
// rules name. Its text can be composed by macros, so every file name in a source that contains such
// code, or in an option, is considered.
void ToolRun::AddAssembledFiles(BuildRecord& found, std::vector<std::string>& names) const {
  std::vector<std::string> texts = found.definitions;
  bool hasCode = false;
  for (const std::vector<std::string>* paths : {&job_.files, &std::as_const(names)}) {
    for (const std::string& path : *paths) {
      auto text = world_.files->ReadWholeFile(path);
      if (!text) continue;
      hasCode |= text->find("incbin") != text->npos || text->find(".include") != text->npos;
      texts.push_back(std::move(*text));
    }
  }
  if (!hasCode) return;
  std::vector<std::string> folders{RulesFolder()};
  folders.insert(folders.end(), found.search.begin(), found.search.end());
  std::unordered_set<std::string> tried;
  for (const std::string& text : texts) {
    for (const std::string_view word : SplitAny(text, " \t\r\n\"'<>()[]{},;\\=")) {
      if (word.empty() || !tried.emplace(word).second) continue;
      for (const std::string& folder : folders) {
        std::string path = AbsolutePath(world_.files, folder, PathOfName(word));
        if (!world_.files->ExamineExactly(path)) continue;
        AddEarlier(path, found);
        names.push_back(std::move(path));
      }
    }
  }
}

// The rules of a tool that has missed a file don't exist, or don't say where it is searched for.
void ToolRun::CollectFailedInputs() {
  if (!listsInputsOnError_ || !tool_.listsOnError || !hasPlacedError_) return;
  BuildRecord found;
  if (!ReadDependencies(found).empty() || MayMissAssembledFile(found)) return;
  failedInputs_ = std::move(found);
}

// Returns true if assembler code may name a file. An assembler that doesn't find it writes no
// rules, but the compiler before it has written its own.
bool ToolRun::MayMissAssembledFile(const BuildRecord& found) const {
  const auto mayName = [](std::string_view text) {
    const std::string folded = FoldCase(text);
    return folded.find("incbin") != folded.npos || folded.find(".include") != folded.npos;
  };
  for (const std::vector<std::string>* paths : {&job_.files, &found.dependencies}) {
    for (const std::string& path : *paths) {
      const auto text = world_.files->ReadWholeFile(path);
      if (!text || mayName(*text)) return true;
    }
  }
  return std::ranges::any_of(found.definitions, mayName);
}

bool ToolRun::FailRules(const std::string& problem) {
  log_.AddError(tool_.name + " ended without an error, but its dependencies are unknown: " +
                plan_.rules + ' ' + problem);
  return false;
}

}  // namespace tarn::tools
