#include "hosts/core/ProjectTemplate.h"

#include <algorithm>
#include <iterator>
#include <memory>

#include "hosts/core/LogEntry.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "xml/XmlEntities.h"
#include "xml/XmlNode.h"

namespace tarn::host {

namespace {

constexpr std::string_view kMainSource =
    "int main(void) {\n"
    "  return 0;\n"
    "}\n";

// Paths in project files have backslashes on every platform.
std::string OnDisk(const std::string& name) {
  return ".\\" + ReplaceAll(name, "/", "\\");
}

std::string ProjectText(const std::string& name) {
  const auto project = CXmlNode::CreateNode("Project");
  project->AddAttr("Header", "Project '" + name + "'");
  project->AddAttr("Path", OnDisk(name + ".tprj"));
  project->AddAttr("Project", "Yes");
  project->AddAttr("ActiveApp", name);
  CXmlNode* application = project->AddChild("Application");
  application->AddAttr("Header", name);
  application->AddAttr("Extern", OnDisk(name + ".tapp"));
  application->AddAttr("Path", OnDisk(name + ".tapp"));
  return project->ToString(g_xmlDisplayOptions);
}

std::unique_ptr<CXmlNode> MakeApplication(const std::string& name) {
  auto application = CXmlNode::CreateNode("Application");
  application->AddAttr("Header", name);
  application->AddAttr("Extern", OnDisk(name + ".tapp"));
  application->AddAttr("Path", OnDisk(name + ".tapp"));
  return application;
}

std::string ApplicationText(const NewProject& project) {
  const auto application = MakeApplication(project.name);
  CXmlNode* group = application->AddChild("Group");
  group->AddAttr("Header", "Sources");
  CXmlNode* source = group->AddChild(project.sourceType);
  source->AddAttr("Header", "main.c");
  source->AddAttr("Path", OnDisk("src/main.c"));
  return application->ToString(g_xmlDisplayOptions);
}

Status WriteWithFolder(FileSystem& files, const std::string& path, std::string_view text) {
  const Status made = files.CreateFolders(FolderOf(path));
  return made ? files.WriteOwnFile(path, text) : made;
}

}  // namespace

std::string CheckFileTitle(const std::string& name, const std::string& what) {
  const std::string article = what.starts_with('a') ? "An " : "A ";
  if (Trim(name).empty() || name == "." || name == "..") return article + what + " needs a name.";
  for (const char c : name) {
    const bool isControl = static_cast<unsigned char>(c) < 0x20 || c == 0x7f;
    if (isControl || std::string_view("/\\:*?\"<>|").find(c) != std::string_view::npos) {
      return article + what + "'s name can't contain / \\ : * ? \" < > | or control characters.";
    }
  }
  return IsStorable(name) ? std::string()
                          : article + what + "'s name can't contain &quot; or &slash;.";
}

bool IsStorable(const std::string& text) {
  return g_xmlEntities.Decode(g_xmlEntities.Encode(text.c_str()).c_str()) == text;
}

Status WriteFirstSource(FileSystem& files, const std::string& path, const std::string& original) {
  if (original.empty()) return WriteWithFolder(files, path, kMainSource);
  const Result<std::string> text = files.ReadWholeFile(original);
  return text ? WriteWithFolder(files, path, *text) : Status(text.GetError());
}

Result<std::vector<std::string>> WriteNewProject(FileSystem& files, const NewProject& project) {
  const std::string projectFile = JoinPath(project.folder, project.name + ".tprj");
  const std::string applicationFile = JoinPath(project.folder, project.name + ".tapp");
  const std::string sourceFile = JoinPath(project.folder, "src/main.c");
  for (const std::string& path : {projectFile, applicationFile}) {
    const Result<bool> exists = files.CheckExists(path);
    if (!exists) return exists.GetError();
    if (*exists) return Error{ErrorCode::AlreadyExists, "already exists", path};
  }
  std::vector<std::string> written;
  const auto write = [&](const std::string& path, std::string_view text) {
    const Status status = WriteWithFolder(files, path, text);
    if (status) written.push_back(path);
    return status;
  };
  // The project file is written last, so that a process that finds it also finds the rest.
  const Result<bool> hasSource = files.CheckExists(sourceFile);
  if (!hasSource) return hasSource.GetError();
  Status status;
  if (!*hasSource) status = write(sourceFile, kMainSource);
  if (status) status = write(applicationFile, ApplicationText(project));
  if (status) status = write(projectFile, ProjectText(project.name));
  if (!status) return status.GetError();
  std::reverse(written.begin(), written.end());
  return written;
}

Status WriteStandInProject(FileSystem& files, const std::string& folder, const std::string& name) {
  const std::string texts[] = {MakeApplication(name)->ToString(g_xmlDisplayOptions),
                               ProjectText(name)};
  const std::string paths[] = {JoinPath(folder, name + ".tapp"), JoinPath(folder, name + ".tprj")};
  for (std::size_t i = 0; i < std::size(paths); ++i) {
    const Result<bool> exists = files.CheckExists(paths[i]);
    if (!exists) return exists.GetError();
    if (*exists) continue;
    if (Status written = files.WriteOwnFile(paths[i], texts[i]); !written) return written;
  }
  return {};
}

std::string FindSourceType(FileSystem& files, const std::string& configurationFile,
                           const std::string& extension, const std::string& fallback) {
  const auto text = files.ReadWholeFile(configurationFile);
  const auto root = text ? ParseXml(*text) : nullptr;
  if (root == nullptr) return fallback;
  std::string found = fallback;
  for (const CXmlNode* types : root->GetChildren()) {
    if (types->NameView() != "Types") continue;
    for (const CXmlNode* type : types->GetChildren()) {
      const std::string extensions = GetAttribute(type, "Extension");
      for (const std::string_view each : Split(extensions, ';')) {
        if (EqualNoCase(each, extension)) found = type->GetName();
      }
    }
  }
  return found;
}

}  // namespace tarn::host
