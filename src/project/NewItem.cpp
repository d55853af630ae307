// Creating applications and folders for the user.

#include "project/ItemAdder.h"

#include "output/MessageTable.h"
#include "platform/paths/Paths.h"
#include "platform/settings/Settings.h"
#include "platform/text/Text.h"
#include "project/FileAccess.h"
#include "project/TreeSearch.h"
#include "widgets/Toolkit.h"
#include "xml/XmlNode.h"

namespace tarn {

namespace {

// Sets the flag of a creation in progress.
class Creating {
 public:
  explicit Creating(std::int32_t& mark) : flag_(mark) { flag_ = 1; }
  ~Creating() { flag_ = 0; }
  Creating(const Creating&) = delete;
  Creating& operator=(const Creating&) = delete;

 private:
  std::int32_t& flag_;
};

bool IsYes(const CXmlNode& type, const char* name) {
  return EqualNoCase(OrEmpty(type.GetAttrValue(name)), "Yes");
}

// Returns true if the name can be used as the base name of the two files.
bool IsFileTitle(const std::string& name) {
  for (const char c : name) {
    if (IsSeparator(c) || static_cast<unsigned char>(c) < 0x20) return false;
  }
  return !name.empty() && !HasDrive(name);
}

}  // namespace

std::string ItemAdder::FindApplicationProblem(const NewApplication& wanted) {
  constexpr std::size_t kLongestName = 240;  // of a file name without extension
  const std::string& name = wanted.applicationName;
  if (Trim(name).empty()) return "The application needs a name.";
  if (!IsFileTitle(name)) {
    return "A name can't contain a slash, a backslash or a control character, or start with a "
           "drive.";
  }
  if (name.size() > kLongestName) return "The name is too long.";

  std::string folder;
  if (Trim(wanted.location).empty() || !paths_.MakeAbsolutePath(wanted.location, folder, nullptr)) {
    return "The application needs a folder.";
  }
  // It would be relative to a folder that the user doesn't see.
  if (wanted.createNewProject && IsRelativePath(wanted.location)) {
    return "Enter the full path of the folder.";
  }
  for (std::string each = folder; !each.empty() && !files_.IsFolder(each); each = FolderOf(each)) {
    const Result<bool> exists = files_.CheckExists(each);
    if (!exists) return each + " can't be used: " + exists.GetError().text + ".";
    if (*exists) return each + " is a file, not a folder.";
  }
  if (wanted.createNewProject) return {};

  CXmlNode* const target = state_.GetCurrentNode();
  CXmlNode* namesake = nullptr;
  FindTreeNode(name.c_str(), "Header", target, namesake);
  if (namesake != nullptr) return "The name \"" + name + "\" is in use.";
  CXmlNode* type = nullptr;
  FindChildNode(wanted.typeHeader.c_str(), "Header", &types_.GetRoot(), type);
  if (type != nullptr && !types_.CanContain(target, type)) {
    return "\"" + OrEmpty(target->GetAttrValue("Header")) +
           "\" can't contain an application of this type. Select the project first.";
  }
  const std::string file = AddSeparator(folder) + name + ".tapp";
  const Result<bool> exists = files_.CheckExists(file);
  if (!exists) return file + " can't be created: " + exists.GetError().text + ".";
  return *exists ? file + " already exists." : std::string();
}

std::int32_t ItemAdder::AddNewItem(const char* itempath, const char* itemtype) {
  if (!services_.build.CanStartOperation()) return 0;
  if (EqualNoCase(OrEmpty(itemtype), "Group")) return AddGroup();
  NewApplication wanted;
  const CXmlNode* type = ProposeApplication(OrEmpty(itempath), itemtype, wanted);
  // While the user was choosing, another project may have been opened or a build started.
  const std::uint64_t asked = state_.projectGeneration;
  if (!views_.AskNewApplication(wanted) || state_.projectGeneration != asked ||
      !services_.build.CanStartOperation())
    return 0;
  if (wanted.configName.empty()) wanted.configName = kStandardConfig;
  CXmlNode* chosen = nullptr;
  FindChildNode(wanted.typeHeader.c_str(), "Header", &types_.GetRoot(), chosen);
  if (chosen != nullptr) type = chosen;
  if (type == nullptr || !IsFileTitle(wanted.applicationName)) return 0;

  std::string folder;
  paths_.MakeAbsolutePath(wanted.location, folder, nullptr);
  const std::string file = AddSeparator(folder) + wanted.applicationName;
  auto node = CXmlNode::CreateNode(type->NameView());
  node->SetAttrValue("Header", wanted.applicationName);
  WriteItemPaths(*node, file + ".tapp");

  const std::int32_t isPlaced = wanted.createNewProject
                                    ? PlaceInNewProject(*node, file + ".tapp", file + ".tprj")
                                    : PlaceInProject(std::move(node));
  if (!isPlaced) return 0;
  const std::uint64_t opened = state_.projectGeneration;
  SetUpApplication(wanted);
  if (state_.projectGeneration == opened && wanted.useCobbler && !wanted.wizardPath.empty()) {
    if (!RunCobbler(wanted.wizardPath)) return 0;
  }
  host_.SendHost(kMsgCreationEnded, GetMessageText(kRowProjectWord), 0);
  if (state_.projectGeneration == opened) state_.MarkModified();
  return 1;
}

// Applies the settings of the selected microcontroller.
void ItemAdder::SetUpApplication(const NewApplication& wanted) {
  const Creating creating(state_.creatingProject);
  const std::uint64_t opened = state_.projectGeneration;
  if (!wanted.targetText.empty()) host_.SendHost(kMsgRunScript, wanted.targetText, 0);
  if (state_.projectGeneration == opened && wanted.configName != kStandardConfig) {
    services_.propertyManager->SetCurrentConfig(wanted.configName);
    options_.SelectConfiguration(wanted.configName);
  }
}

std::int32_t ItemAdder::AddGroup() {
  CXmlNode* target = state_.GetCurrentNode();
  if (target != nullptr && (types_.FlagsOf(*target) & kTypeIsLeaf) != 0) {
    target = target->GetParent();
  }
  // Without a project, no file would contain the folder.
  if (target == nullptr || !state_.isOpen) return 0;
  auto node = CXmlNode::CreateNode("Group");
  node->AddAttr("Header", "New Folder");
  state_.MarkStructureChanged();
  publisher_.SetCurrentNode(editor_.AttachNode(*target, std::move(node), TreeEditor::Opens::No));
  return 1;
}

// Fills in the proposals for the dialog. Returns the record of the requested type, or nullptr.
const CXmlNode* ItemAdder::ProposeApplication(const std::string& itempath, const char* itemtype,
                                              NewApplication& wanted) const {
  CXmlNode* taken = nullptr;
  int number = 0;
  do {
    wanted.applicationName = "Application" + std::to_string(number++);
    taken = nullptr;
    FindTreeNode(wanted.applicationName.c_str(), "Header", state_.projectRoot.get(), taken);
  } while (taken != nullptr);

  wanted.location = HomeFolder();
  const std::string place =
      state_.isDefaultProject != 0 ? services_.examplesFolder : AddSeparator(state_.projectFolder);
  const PathParts parts = SplitPath(ToNativeSeparators(itempath.empty() ? place : itempath));
  if (!(parts.drive + parts.folder).empty()) wanted.location = parts.drive + parts.folder;
  if (!parts.title.empty()) wanted.applicationName = parts.title;

  CXmlNode* type = nullptr;
  FindChildNode(itemtype, nullptr, &types_.GetRoot(), type);
  wanted.createNewProject = state_.isDefaultProject != 0;
  if (type != nullptr) {
    wanted.typeHeader = OrEmpty(type->GetAttrValue("Header"));
    if (!IsYes(*type, "Build")) {
      if (!parts.title.empty()) wanted.applicationName = parts.title + parts.extension;
      wanted.createNewProject = true;
    }
  }
  return type;
}

// Adds the application to the tree only; the next save creates its file.
std::int32_t ItemAdder::PlaceInProject(std::unique_ptr<CXmlNode> node) {
  CXmlNode* const target = state_.GetCurrentNode();
  CXmlNode* namesake = nullptr;
  FindTreeNode(node->GetAttrValue("Header"), "Header", target, namesake);
  if (namesake != nullptr || !state_.isOpen || !types_.CanContain(target, node.get())) return 0;
  const std::uint64_t opened = state_.projectGeneration;
  state_.MarkModified();
  publisher_.SetCurrentNode(editor_.AttachNode(*target, std::move(node), TreeEditor::Opens::No));
  return state_.projectGeneration == opened ? 1 : 0;
}

std::int32_t ItemAdder::PlaceInNewProject(const CXmlNode& node, const std::string& applicationFile,
                                          const std::string& projectFile) {
  if (state_.isOpen && EqualNoCase(projectFile, state_.projectPath) && !lifecycle_.CloseProject())
    return 0;
  if (!CheckFileAccess(files_, applicationFile, kMustBeWritable | kCreateFolder, *services_.output))
    return 0;
  if (files_.Exists(applicationFile)) {
    if (!protection_.MayOverwrite(applicationFile)) return 0;
    // The file is replaced rather than deleted, so that a full disk does not also lose the old one.
    if (!protection_.PutAsideReplaced(applicationFile)) return 0;
    (void)files_.RemoveFile(WithExtension(projectFile, ".dbi"));
  }
  // If the write failed, creation continues without the file, and adding the application reports it
  // as missing; but an old file at this path must not be taken for the new one.
  const std::string text = node.ToString(g_xmlDisplayOptions);
  const Status written = WriteProjectFile(files_, applicationFile, text);
  if (!written && files_.Exists(applicationFile)) {
    services_.output->WriteMessage(kRowCannotSave, {applicationFile}, written.GetError().text);
    return 0;
  }
  const Creating creating(state_.creatingProject);
  if (!lifecycle_.CreateProjectFile(projectFile, 0)) return 0;
  if (!lifecycle_.OpenProject(projectFile.c_str(), 0)) return 0;
  return AddItem(applicationFile, node.NameText(), true);
}

// Runs the tool that generates the initial sources for a microcontroller.
std::int32_t ItemAdder::RunCobbler(const std::string& wizardPath) {
  const std::string tool =
      files_.Exists(wizardPath) ? wizardPath : services_.configFolder + wizardPath;
  CXmlNode* const node = state_.GetCurrentNode();
  const CXmlNode* values = FindStoredValues(*node);
  if (values == nullptr) values = publisher_.LoadNodeOptions(node, true);
  if (values == nullptr || services_.toolManager == nullptr) return 0;
  const std::string text = values->GetValue();
  const WaitCursor wait;
  services_.toolManager->RunTool(tool, "", text, nullptr);
  return 1;
}

std::int32_t ItemAdder::NewProject(const char* path) {
  if (services_.propertyManager == nullptr || services_.output == nullptr ||
      !services_.build.CanStartOperation())
    return 0;
  if (path != nullptr) return lifecycle_.CreateProjectFile(path, 1);
  // The wizard only offers a new project. If one was opened, the flag belongs to it.
  const std::uint64_t before = state_.projectGeneration;
  const std::int32_t noted = std::exchange(state_.isDefaultProject, 1);
  const std::int32_t result = AddNewItem(nullptr, nullptr);
  const bool hasOpened = state_.isOpen && state_.projectGeneration != before;
  if (!result && !hasOpened) state_.isDefaultProject = noted;
  return result;
}

}  // namespace tarn
