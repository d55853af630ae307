#include "hosts/core/import/ImportedProject.h"

#include <algorithm>
#include <memory>
#include <set>

#include "components/values/ValuesXml.h"
#include "hosts/core/ProjectTemplate.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn::host {

namespace {

constexpr const char* kStandard = "Standard";

std::string DiskPath(const std::string& folder, const std::string& path) {
  const std::string relative = RelativeDiskPath(folder, path);
  const bool isNear = relative.starts_with(".\\") || relative.starts_with("..\\");
  // A path that leads up to the root has nothing to do with the place of the project.
  const bool isInside = path.starts_with(AddSeparator(folder));
  const bool isSibling = isNear && path.starts_with(AddSeparator(FolderOf(folder))) &&
                         FolderOf(folder) != FolderOf(FolderOf(folder));
  return isInside || isSibling ? relative : path;
}

// Adds one configuration to the element Options, divided by set and section.
void AddOptions(CXmlNode& parent, const std::string& name, const ImportedOptions& options) {
  if (options.empty()) return;
  CXmlNode* config = parent.AddChild("Config");
  config->AddAttr("Header", Escape(name));
  std::string lastSet, lastSection;
  CXmlNode* set = nullptr;
  CXmlNode* section = nullptr;
  for (const auto& [key, value] : options) {
    const auto parts = Split(key, '.');
    const std::string setName(parts[0]);
    const std::string sectionName(parts[1]);
    if (set == nullptr || setName != lastSet) {
      set = config->AddChild("Set");
      set->AddAttr("Header", setName);
      section = nullptr;
    }
    if (section == nullptr || sectionName != lastSection) {
      section = set->AddChild("Section");
      section->AddAttr("Header", sectionName);
    }
    lastSet = setName;
    lastSection = sectionName;
    CXmlNode* property = section->AddChild("Property");
    property->AddAttr("Header", std::string(parts[2]));
    property->AddAttr("Removable", "Yes");
    property->AddAttr("Value", Escape(value));
  }
}

class Writer {
 public:
  Writer(const ImportedProject& project, const ImportContext& context)
      : project_(project), context_(context) {}

  std::string ApplicationText(const ImportedApplication& application,
                              const std::string& file) const;
  std::string ProjectText(const std::vector<std::string>& files) const;

 private:
  void AddFile(CXmlNode& tree, const ImportedApplication& application,
               const ImportedFile& file) const;

  const ImportedProject& project_;
  const ImportContext& context_;
};

std::vector<ImportedConfiguration> AllConfigurations(const ImportedApplication& application) {
  std::vector<ImportedConfiguration> all = application.configurations;
  const bool hasStandard = std::any_of(
      all.begin(), all.end(),
      [](const ImportedConfiguration& each) { return EqualNoCase(each.name, kStandard); });
  if (!hasStandard && !all.empty()) all.insert(all.begin(), {kStandard, all.front().options});
  return all;
}

void Writer::AddFile(CXmlNode& tree, const ImportedApplication& application,
                     const ImportedFile& file) const {
  CXmlNode* parent = &tree;
  for (const std::string& group : file.groups) {
    CXmlNode* found = nullptr;
    for (CXmlNode* child : parent->GetChildren()) {
      const char* label = child->GetAttrValue("Header");
      if (child->NameView() == "Group" && label != nullptr && group == label) found = child;
    }
    if (found == nullptr) {
      found = parent->AddChild("Group");
      found->AddAttr("Header", group);
    }
    parent = found;
  }
  CXmlNode* node = parent->AddChild(file.type.empty() ? context_.typeOf(file.path) : file.type);
  node->AddAttr("Header", FileNameOf(file.path));
  node->AddAttr("Path", DiskPath(project_.folder, file.path));
  if (file.options.empty()) return;
  CXmlNode* options = node->AddChild("Options");
  const auto everywhere = file.options.find("");
  for (const ImportedConfiguration& each : AllConfigurations(application)) {
    const auto own = file.options.find(each.name);
    ImportedOptions values;
    if (own != file.options.end()) values = own->second;
    if (everywhere != file.options.end())
      values.insert(everywhere->second.begin(), everywhere->second.end());
    AddOptions(*options, each.name, values);
  }
  if (options->GetChildCount() == 0) options->SetName("");
}

std::string Writer::ApplicationText(const ImportedApplication& application,
                                    const std::string& file) const {
  const auto tree = CXmlNode::CreateNode("Application");
  tree->AddAttr("Header", application.label);
  tree->AddAttr("Extern", DiskPath(project_.folder, file));
  tree->AddAttr("Path", DiskPath(project_.folder, file));
  const std::vector<ImportedConfiguration> all = AllConfigurations(application);
  if (!EqualNoCase(application.configurations.front().name, kStandard)) {
    tree->AddAttr("Config", application.configurations.front().name);
  }
  if (all.size() > 1) {
    CXmlNode* configs = tree->AddChild("Configs");
    for (const ImportedConfiguration& each : all) {
      if (EqualNoCase(each.name, kStandard)) continue;
      configs->AddChild("Config")->AddAttr("Header", each.name);
    }
  }
  const bool hasOptions =
      std::any_of(all.begin(), all.end(),
                  [](const ImportedConfiguration& each) { return !each.options.empty(); });
  if (hasOptions) {
    CXmlNode* options = tree->AddChild("Options");
    for (const ImportedConfiguration& each : all) AddOptions(*options, each.name, each.options);
  }
  for (const ImportedFile& each : application.files) AddFile(*tree, application, each);
  return tree->ToString(g_xmlDisplayOptions);
}

std::string Writer::ProjectText(const std::vector<std::string>& files) const {
  const auto tree = CXmlNode::CreateNode("Project");
  tree->AddAttr("Header", "Project '" + project_.name + "'");
  tree->AddAttr("Path", ".\\" + project_.name + ".tprj");
  tree->AddAttr("Project", "Yes");
  tree->AddAttr("ActiveApp", project_.applications.front().label);
  for (std::size_t i = 0; i < files.size(); ++i) {
    CXmlNode* application = tree->AddChild("Application");
    application->AddAttr("Header", project_.applications[i].label);
    application->AddAttr("Extern", DiskPath(project_.folder, files[i]));
    application->AddAttr("Path", DiskPath(project_.folder, files[i]));
  }
  return tree->ToString(g_xmlDisplayOptions);
}

}  // namespace

Result<std::string> ReadForImport(FileSystem& files, const std::string& path, std::size_t limit) {
  const std::optional<FileStatus> status = files.Examine(path);
  if (status && status->size > limit) {
    return Error{ErrorCode::Unsupported, "it is too large to be imported", path};
  }
  Result<std::string> text = files.ReadWholeFile(path);
  if (text && text->size() > limit) {
    return Error{ErrorCode::Unsupported, "it is too large to be imported", path};
  }
  if (text && text->find('\0') != std::string::npos) {
    return Error{ErrorCode::Unsupported, "it is not a text file", path};
  }
  return text;
}

std::vector<NewFile> WriteImportedProject(const ImportedProject& project,
                                          const ImportContext& context) {
  const Writer writer(project, context);
  std::vector<NewFile> files = project.sources;
  std::vector<std::string> paths;
  for (const ImportedApplication& each : project.applications) {
    paths.push_back(JoinPath(project.folder, each.label + ".tapp"));
    files.push_back({paths.back(), writer.ApplicationText(each, paths.back())});
  }
  files.push_back({JoinPath(project.folder, project.name + ".tprj"), writer.ProjectText(paths)});
  return files;
}

std::string PathInOption(const std::string& folder, const std::string& path) {
  if (path == folder) return ".";
  const std::string inside = AddSeparator(folder);
  return path.starts_with(inside) ? path.substr(inside.size()) : path;
}

std::vector<std::string> GroupsBelow(const std::string& folder, const std::string& path) {
  std::vector<std::string> groups;
  const std::string inside = AddSeparator(folder);
  if (!path.starts_with(inside)) return groups;
  const std::string rest = FolderOf(path.substr(inside.size()));
  for (const std::string_view each : Split(rest, kSeparator)) {
    if (!each.empty()) groups.emplace_back(each);
  }
  return groups;
}

std::string CommonFolder(const std::vector<std::string>& paths) {
  std::string common = paths.empty() ? std::string() : FolderOf(paths.front());
  for (const std::string& path : paths) {
    while (!path.starts_with(AddSeparator(common)) && FolderOf(common) != common) {
      common = FolderOf(common);
    }
  }
  return common;
}

std::string LiteralValue(const std::string& text) {
  return ReplaceAll(text, "$", "$$");
}

std::string ListValue(const std::vector<std::string>& entries) {
  std::string list;
  std::set<std::string_view> seen;
  for (const std::string& each : entries) {
    if (each.empty() || !seen.insert(each).second) continue;
    list += (list.empty() ? "" : ";") + each;
  }
  return list;
}

std::string WordsValue(const std::vector<std::string>& words) {
  std::string line;
  for (const std::string& word : words) {
    if (!line.empty()) line += ' ';
    const bool isPlain = !word.empty() && word.find_first_of(" \t\"'\\") == std::string::npos;
    const std::string escaped = ReplaceAll(ReplaceAll(word, "\\", "\\\\"), "\"", "\\\"");
    line += isPlain ? word : '"' + escaped + '"';
  }
  return line;
}

std::vector<std::string> SplitShellWords(const std::string& line) {
  std::vector<std::string> words;
  std::string word;
  bool isOpen = false;  // a word has started, possibly an empty one in quotes
  char quote = 0;
  for (std::size_t i = 0; i < line.size(); ++i) {
    const char c = line[i];
    const bool hasNext = i + 1 < line.size();
    if (quote == 0 && IsSpace(c)) {
      if (isOpen) words.push_back(std::move(word));
      word.clear();
      isOpen = false;
      continue;
    }
    isOpen = true;
    const bool isEscape =
        c == '\\' && hasNext && quote != '\'' &&
        (quote == 0 || std::string_view("\"\\$`").find(line[i + 1]) != std::string_view::npos);
    if (isEscape) {
      word += line[++i];
    } else if (quote == 0 && (c == '"' || c == '\'')) {
      quote = c;
    } else if (c == quote) {
      quote = 0;
    } else {
      word += c;
    }
  }
  if (isOpen) words.push_back(std::move(word));
  return words;
}

std::string SafeName(const std::string& name, const std::string& fallback) {
  std::string safe;
  for (const char c : Trim(name)) {
    const bool isControl = static_cast<unsigned char>(c) < 0x20 || c == 0x7f;
    const bool isBad =
        isControl || std::string_view("/\\:*?\"<>|&").find(c) != std::string_view::npos;
    safe += isBad ? '_' : c;
  }
  return CheckFileTitle(safe, "project").empty() ? safe : fallback;
}

std::string UniqueName(const std::string& name, std::set<std::string>& taken) {
  std::string unique = name;
  for (int count = 2; !taken.insert(FoldCase(unique)).second; ++count) {
    unique = name + " " + ToDecimal(count);
  }
  return unique;
}

}  // namespace tarn::host
