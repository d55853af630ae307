#include "components/tools/UsedFiles.h"

#include <set>

#include "components/tools/FileList.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"

namespace tarn::tools {

namespace {

// What follows a flag, in the same argument or in the next one.
std::vector<std::string> ValuesOf(const std::string& flag,
                                  const std::vector<std::string>& arguments) {
  std::vector<std::string> values;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    if (!arguments[i].starts_with(flag)) continue;
    std::string value = arguments[i].substr(flag.size());
    if (value.empty() && i + 1 < arguments.size()) value = arguments[++i];
    if (!value.empty()) values.push_back(std::move(value));
  }
  return values;
}

// Only $(Item) means something in the name of a library.
class ItemValue : public TemplateValues {
 public:
  explicit ItemValue(const std::string& value) : item(value) {}
  std::string Own(OwnName name) const override { return name == OwnName::Item ? item : ""; }
  std::string Option(const std::string&) const override { return {}; }

 private:
  const std::string& item;
};

// A name that starts with a colon is that of the file.
std::vector<std::string> FileNames(const LibraryRule& rule, const std::string& name) {
  if (name.front() == ':') return {name.substr(1)};
  return SplitOptionList(rule.file.Fill(ItemValue(name)));
}

// Names compare without regard to case, as files are looked up.
class NameSet {
 public:
  void Add(const std::string& path) { names.insert(FoldCase(path)); }
  void AddIn(const std::string& folder, std::string_view name) {
    if (!name.empty()) Add(AbsolutePath(folder, name));
  }
  bool Has(const std::string& path) const { return names.contains(FoldCase(path)); }

 private:
  std::set<std::string> names;
};

void AddArguments(const ToolCommand& command, NameSet& used) {
  for (const std::string& argument : command.arguments) {
    used.AddIn(command.folder, argument);
    for (const std::string_view part : Split(argument, ',')) {
      used.AddIn(command.folder, part);
      const std::size_t equal = part.find('=');
      if (equal != std::string_view::npos) used.AddIn(command.folder, part.substr(equal + 1));
    }
  }
}

}  // namespace

std::vector<LibraryPlaces> FindLibraryPlaces(const std::vector<LibraryRule>& rules,
                                             const ToolCommand& command, FileSystem* disk) {
  std::vector<LibraryPlaces> libraries;
  for (const LibraryRule& rule : rules) {
    const std::vector<std::string> folders = ValuesOf(rule.folderFlag, command.arguments);
    for (const std::string& name : ValuesOf(rule.nameFlag, command.arguments)) {
      LibraryPlaces& places = libraries.emplace_back();
      for (const std::string& folder : folders) {
        for (const std::string& file : FileNames(rule, name)) {
          places.push_back(AbsolutePath(disk, AbsolutePath(disk, command.folder, folder), file));
        }
      }
    }
  }
  return libraries;
}

std::vector<std::string> FindUsedFiles(const ToolPlan& plan, const std::vector<std::string>& files,
                                       const std::vector<std::string>& candidates) {
  NameSet used;
  for (const std::string& file : files) used.Add(file);
  for (const std::string& file : plan.depends) used.Add(file);
  for (const LibraryPlaces& places : plan.libraries) {
    for (const std::string& place : places) used.Add(place);
  }
  for (const ToolCommand& command : plan.commands) AddArguments(command, used);
  std::vector<std::string> found;
  for (const std::string& candidate : candidates) {
    const std::string path = CanonicalPath(candidate);
    if (!EqualNoCase(path, plan.output) && used.Has(path)) found.push_back(candidate);
  }
  return found;
}

}  // namespace tarn::tools
