#include "components/tools/ToolSet.h"

#include <algorithm>

#include "components/tools/CommandBuilder.h"
#include "components/tools/XmlAttributes.h"
#include "platform/paths/Paths.h"
#include "platform/text/Hash.h"
#include "platform/text/Text.h"

namespace tarn::tools {

namespace {

// `Tool` is a tool or an action.
template <class Tool>
std::string ToolElement(const Tool& tool, std::string_view children) {
  std::string text =
      "<Tool" + XmlAttribute("Header", tool.name) + XmlAttribute("Title", tool.title);
  return text.append(children.empty() ? "/>" : children);
}

bool TakesOnlyPlainNames(const ToolDefinition& tool) {
  return std::ranges::any_of(tool.steps, &StepRule::plainArguments);
}

// Returns elements for the options that name output files.
std::string MadeElements(const ToolDefinition& tool) {
  std::vector<Template> made{tool.output, tool.listing};
  for (const ProductRule& each : tool.products) made.push_back(each.file);
  std::string text;
  for (const Template& each : made) {
    for (const std::string& macro : each.GetOptionMacros()) {
      text += "<Makes" + XmlAttribute("Header", macro) + "/>";
    }
  }
  return text;
}

// Files of the installation, folder 0, have short names.
void ReadFolder(FileSystem& files, const std::string& folder, std::size_t number,
                std::vector<DefinitionFile>& definitions, std::vector<std::string>& errors) {
  const auto entries = files.ListFolder(folder);
  if (!entries) {
    const bool isOptional = number > 0 && entries.GetError().code == ErrorCode::NotFound;
    if (!isOptional) errors.push_back(folder + ": " + entries.GetError().text);
    return;
  }
  for (const FolderEntry& entry : *entries) {
    if (entry.isFolder || !EndsWithNoCase(entry.name, ".tools")) continue;
    const std::string path = JoinPath(folder, entry.name);
    auto text = files.ReadWholeFile(path);
    if (text) {
      definitions.push_back({number == 0 ? entry.name : path, std::move(*text), number});
    } else {
      errors.push_back(path + ": " + text.GetError().text);
    }
  }
}

std::vector<DefinitionFile> ReadTexts(FileSystem& files, const std::string& folder,
                                      const std::vector<std::string>& further,
                                      std::vector<std::string>& errors) {
  std::vector<DefinitionFile> definitions;
  ReadFolder(files, folder, 0, definitions, errors);
  for (std::size_t i = 0; i < further.size(); ++i) {
    ReadFolder(files, further[i], i + 1, definitions, errors);
  }
  return definitions;
}

std::uint64_t Digest(const std::vector<DefinitionFile>& definitions,
                     const std::vector<std::string>& errors) {
  std::uint64_t digest = HashBytes("");
  for (const DefinitionFile& each : definitions) {
    digest = HashBytes(each.text, HashBytes(each.name, digest));
  }
  for (const std::string& each : errors) digest = HashBytes(each, digest);
  return digest;
}

}  // namespace

std::string VariableOfToolchain(std::string_view toolchain) {
  std::string name = "TARN_";
  for (const char c : toolchain) {
    const bool isLower = c >= 'a' && c <= 'z';
    const bool isKept = (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
    name += isLower ? static_cast<char>(c - 'a' + 'A') : isKept ? c : '_';
  }
  return name;
}

std::unique_ptr<ToolSet> ToolSet::FromFolder(FileSystem& files, const std::string& folder,
                                             const std::vector<std::string>& further,
                                             const ToolchainLocator& locate) {
  auto set = std::make_unique<ToolSet>();
  const std::vector<DefinitionFile> definitions = ReadTexts(files, folder, further, set->errors_);
  set->folder_ = folder;
  set->configFolder_ = AddSeparator(FolderOf(folder));
  set->digest_ = Digest(definitions, set->errors_);
  if (!set->errors_.empty()) set->problem_ = set->errors_.front();
  ReadDefinitions read = ReadDefinitionFiles(definitions, locate);
  if (set->problem_.empty() && !read.lostFile.empty()) {
    set->problem_ = IsRelativePath(read.lostFile) ? JoinPath(folder, read.lostFile) : read.lostFile;
  }
  set->errors_.insert(set->errors_.end(), read.errors.begin(), read.errors.end());
  set->messages_ = std::move(read.messages);
  set->toolchains_ = std::move(read.toolchains);
  set->actions_ = std::move(read.actions);
  set->faulty_ = std::move(read.faulty);
  for (auto& tool : read.tools) set->Take(std::move(tool));
  set->PrepareLists();
  if (set->tools_.empty() && set->problem_.empty())
    set->problem_ = folder + ": no tools are defined";
  return set;
}

std::uint64_t ToolSet::DigestOf(FileSystem& files, const std::string& folder,
                                const std::vector<std::string>& further) {
  std::vector<std::string> errors;
  return Digest(ReadTexts(files, folder, further, errors), errors);
}

bool ToolSet::HasLocations(const ToolchainLocator& locate) const {
  return std::all_of(toolchains_.begin(), toolchains_.end(), [&](const auto& each) {
    return each.first.empty() || locate.findFolder(each.first) == each.second;
  });
}

void ToolSet::Take(std::unique_ptr<ToolDefinition> tool) {
  const auto isSame = [&](const auto& other) { return EqualNoCase(other->name, tool->name); };
  const auto same = std::find_if(tools_.begin(), tools_.end(), isSame);
  if (same != tools_.end()) {
    const bool isMeant = (*same)->folder != tool->folder;
    if (!isMeant)
      errors_.push_back(tool->name + ": is defined twice; the later definition applies");
    *same = std::move(tool);
  } else {
    tools_.push_back(std::move(tool));
  }
}

void ToolSet::PrepareLists() {
  std::map<std::string, std::size_t> counts;
  const auto list = [&](const auto& tool, const std::string& attributes) {
    for (const std::string& extension : tool.extensions) {
      if (counts[extension]++ < kMaxListed) {
        listsByExtension_[extension] += ToolElement(tool, attributes + "/>");
      }
    }
  };
  for (const auto& tool : tools_) {
    byName_[FoldCase(tool->name)] = tool.get();
    const bool translates = !tool->output.IsEmpty() && !tool->toolchain.empty();
    list(*tool, translates ? XmlAttribute("Toolchain", tool->toolchain) : std::string());
  }
  for (const ActionRule& action : actions_) list(action, {});
  for (auto& [extension, text] : listsByExtension_) {
    text.insert(0, "<Tools>").append("</Tools>");
  }
}

const ToolDefinition* ToolSet::Find(std::string_view name) const {
  const auto found = byName_.find(FoldCase(name));
  return found == byName_.end() ? nullptr : found->second;
}

std::string ToolSet::FindFault(std::string_view name) const {
  const auto found = faulty_.find(FoldCase(name));
  if (found != faulty_.end()) return found->second.error;
  const auto performs = std::ranges::find_if(
      faulty_, [&](const auto& each) { return EqualNoCase(each.second.action, name); });
  return performs == faulty_.end() ? std::string() : performs->second.error;
}

const ActionRule* ToolSet::FindAction(std::string_view name) const {
  const auto found = std::find_if(actions_.begin(), actions_.end(), [&](const ActionRule& each) {
    return EqualNoCase(each.name, name);
  });
  return found == actions_.end() ? nullptr : &*found;
}

std::vector<const ToolDefinition*> ToolSet::ToolsForAction(std::string_view action) const {
  std::vector<const ToolDefinition*> found;
  for (const auto& tool : tools_) {
    if (!tool->action.empty() && EqualNoCase(tool->action, action)) found.push_back(tool.get());
  }
  return found;
}

MessageRuleLists ToolSet::CommonMessages() const {
  const auto found = messages_.find("gcc");
  return found == messages_.end() ? MessageRuleLists() : MessageRuleLists{found->second};
}

std::string ToolSet::ToolsForExtension(std::string_view extension) const {
  const auto found = listsByExtension_.find(FoldCase(extension));
  return found == listsByExtension_.end() ? "<Tools/>" : found->second;
}

std::string ToolSet::ListText() const {
  std::string text = "<Tools>";
  for (const auto& tool : tools_) {
    std::string children;
    for (const std::string& extension : tool->extensions) {
      children += "<Extension" + XmlAttribute("Header", extension) + "/>";
    }
    for (const ToolProgram& program : ProgramsOf(*tool)) {
      children += "<Program" + XmlAttribute("Header", program.name) +
                  XmlAttribute("Optional", program.isOptional ? "Yes" : "No") + "/>";
    }
    if (!tool->toolchain.empty() && tool->action.empty()) {
      const auto found = toolchains_.find(tool->toolchain);
      children += "<Toolchain" + XmlAttribute("Header", tool->toolchain) +
                  XmlPathAttribute("Folder", found == toolchains_.end() ? "" : found->second) +
                  XmlAttribute("Variable", VariableOfToolchain(tool->toolchain)) +
                  XmlAttribute("Hint", tool->hint) +
                  (TakesOnlyPlainNames(*tool) ? XmlAttribute("Plain", "Yes") : "") + "/>";
    }
    text += ToolElement(*tool, ">" + children + MadeElements(*tool) + "</Tool>");
  }
  return text + "</Tools>";
}

}  // namespace tarn::tools
