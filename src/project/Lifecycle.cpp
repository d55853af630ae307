// Opening, creating, saving and closing of projects. A save is a close followed by an open.

#include "output/MessageTable.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "platform/windowing/Dialogs.h"
#include "project/FileAccess.h"
#include "project/ProjectModel.h"
#include "project/TreeSearch.h"

namespace tarn {

namespace {

constexpr const char* kProjectExtension = ".tprj";

std::string ConfigOf(const CXmlNode& application) {
  const char* config = application.GetAttrValue("Config");
  return config == nullptr ? kStandardConfig : config;
}

// Marks a question to the host as open for as long as it lives.
class Asking {
 public:
  explicit Asking(bool& openQuestion) : flag(openQuestion) { flag = true; }
  ~Asking() { flag = false; }
  Asking(const Asking&) = delete;
  Asking& operator=(const Asking&) = delete;

 private:
  bool& flag;
};

}  // namespace

std::intptr_t CProjectModel::SendHost(HostMessage message, std::intptr_t wParam,
                                      std::intptr_t lParam) {
  if (!IsWindow(mainframeHandle)) return 1;
  return SendWindowMessage(mainframeHandle, message, wParam, lParam);
}

std::intptr_t CProjectModel::SendHost(HostMessage message, const std::string& wText,
                                      std::intptr_t lParam) {
  return SendHost(message, reinterpret_cast<std::intptr_t>(wText.c_str()), lParam);
}

std::intptr_t CProjectModel::SendHost(HostMessage message, const std::string& wText,
                                      const std::string& lText) {
  return SendHost(message, reinterpret_cast<std::intptr_t>(wText.c_str()),
                  reinterpret_cast<std::intptr_t>(lText.c_str()));
}

void CProjectModel::PostHostCommand(std::int32_t command) {
  PostWindowMessage(mainframeHandle, kMsgCommand, command, 0);
}

std::string CProjectModel::AskForProject() {
  FileQuestion question;
  for (const auto& [row, pattern] :
       {std::pair{kRowProjectWord, "*.tprj"}, std::pair{kRowFilterPrj, "*.prj"},
        std::pair{kRowFilterStw, "*.stw"}}) {
    question.filter += FormatMessageText(
        "%s (%s)|%s|", std::vector<std::string>{GetMessageText(row), pattern, pattern});
  }
  question.filter += "|";
  if (isDefaultProject == 0) question.folder = projectFolder;
  const std::vector<std::string> chosen = ChooseFiles(mainframeHandle, question);
  return chosen.empty() ? std::string() : chosen.front();
}

std::int32_t CProjectModel::OpenProject(const char* path, std::int32_t isDefault) {
  if (propertyManager == nullptr || output == nullptr || askingHost) return 0;
  if (!CanStartOperation()) return 0;
  if (projectRoot->GetChildCount() > 0 && !CloseProject()) return 0;
  activeApplication = nullptr;
  currentNode = nullptr;

  const std::uint64_t opened = ++projectEpoch;
  std::string chosen = TextOf(path);
  if (path == nullptr) {
    chosen = AskForProject();
    if (projectEpoch != opened) return 0;
    if (!chosen.empty()) isDefaultProject = 0;
  } else {
    isDefaultProject = isDefault;
  }
  if (chosen.empty()) return 0;
  if (!EqualNoCase(ExtensionOf(chosen), kProjectExtension)) return ImportOldProject(chosen);

  projectPath = CanonicalPath(IsRelativePath(chosen) ? JoinPath(files.CurrentFolder(), chosen)
                                                     : ToNativeSeparators(chosen));
  projectFolder = FolderOf(projectPath);
  files.SetCurrentFolder(projectFolder);
  guard.Forget();
  rescuedFiles.clear();
  keptCopies.clear();
  if (!LoadTreeFile(*projectRoot, projectPath)) {
    if (projectEpoch == opened) DiscardTree();
    return 0;
  }
  modified = 0;
  shapeChanged = false;
  isOpen = true;
  projectRoot->SetAttrValue("Path", projectPath);
  NoteTreeChange();
  if (isDefault == 0) {
    views.SetProjectRoot(projectRoot.get());
    views.RepaintWindow();
  } else {
    SendHost(kMsgPaneCaption, "Local Settings", kOptionsPane);
  }
  return projectEpoch == opened && LoadProject(opened) ? 1 : 0;
}

// What follows the reading of the files: the applications are announced and their options made
// ready. 0 when a handler of one of the messages closed the project or opened another.
std::int32_t CProjectModel::LoadProject(std::uint64_t opened) {
  CXmlNode* application = nullptr;
  FindChildNode(projectRoot->GetAttrValue("ActiveApp"), "Header", projectRoot.get(), application);
  if (application != nullptr && (types.FlagsOf(*application) & kTypeApplication) != 0) {
    activeApplication = application;
    std::string absolute;
    if (MakeAbsolutePath(TextOf(application->GetAttrValue("Path")), absolute, nullptr)) {
      application->SetAttrValue("Path", absolute);
    }
  }
  files.SetCurrentFolder(projectFolder);
  SendHost(kMsgProjectOpened, projectPath, isDefaultProject);
  if (projectEpoch != opened || !AnnounceApplications(opened)) return 0;
  if (!MakeOptionsReady(opened)) return 0;
  if (activeApplication != nullptr) {
    SetActiveApplication(activeApplication);
    SetCurrentNode(activeApplication);
    if (projectEpoch != opened) return 0;
    SendActiveApplication();
    if (projectEpoch != opened) return 0;
    views.BeginTreeUpdate();
    views.EndTreeUpdate();
    if (activeApplication != nullptr) views.SetGlobalsFile(GlobalsFileOf(*activeApplication));
  }
  lastBrowseFolder = isDefaultProject != 0 ? examplesFolder : AddSeparator(projectFolder);
  output->SaveLog();
  output->UpdateReport();
  return 1;
}

bool CProjectModel::AnnounceApplications(std::uint64_t opened) {
  for (int i = 0; i < projectRoot->GetChildCount(); ++i) {
    CXmlNode* child = projectRoot->GetChild(i);
    if ((types.FlagsOf(*child) & kTypeApplication) == 0) continue;
    if (activeApplication == nullptr) {
      activeApplication = child;
      SetCurrentNode(child);
      if (projectEpoch != opened) return false;
      // A handler may have taken the child away.
      child = projectRoot->GetChild(i);
      if (child == nullptr) return true;
    }
    std::string absolute;
    MakeAbsolutePath(TextOf(child->GetAttrValue("Path")), absolute, nullptr);
    SendHost(kMsgApplicationKnown, absolute, ConfigOf(*child));
    if (projectEpoch != opened) return false;
  }
  return true;
}

bool CProjectModel::MakeOptionsReady(std::uint64_t opened) {
  if (isDefaultProject == 0) {
    views.StartStepTimer();
    return true;
  }
  propertyManager->BeginUpdate();
  if (activeApplication != nullptr) {
    ResetNodeCache(*activeApplication, false);
    while (activeApplication != nullptr && PublishNextNode(activeApplication)) {
    }
  } else {
    propertyManager->ClearValues();
  }
  propertyManager->EndUpdate();
  PublishTick();
  return projectEpoch == opened;
}

void CProjectModel::DiscardTree() {
  ++projectEpoch;
  RemoveAllChildren(*projectRoot);
  projectRoot->Clear();
  projectRoot->SetName("Project");
  projectRoot->SetValue("");
  activeApplication = nullptr;
  currentNode = nullptr;
  modified = 0;
  shapeChanged = false;
  isOpen = false;
  guard.Forget();
  NoteTreeChange();
}

std::int32_t CProjectModel::CloseProject() {
  if (askingHost || !CanStartOperation()) return 0;
  const std::uint64_t before = projectEpoch;
  if (mainframeHandle != 0) {
    const Asking asking(askingHost);
    if (SendHost(kMsgProjectClosing, projectPath, 0) == 0) return 0;
  }
  // The handler may have started a build, or have closed what it was asked about.
  if (projectEpoch != before || IsWorkerAlive()) return 0;

  ++projectEpoch;
  views.StopStepTimer();
  views.BeginTreeUpdate();
  views.EndTreeUpdate();
  views.ClearTree();
  views.ClearClasses();
  if (isDefaultProject != 0 && activeApplication != nullptr) {
    RemoveContentChildren(*activeApplication);
  }
  textLost = false;
  const bool mustSave = isOpen && modified != 0;
  if (isOpen) StripForSave(*projectRoot, true);
  if (mustSave) SaveTreeFile(*projectRoot, projectPath);
  output->SaveLog();
  output->UpdateReport();
  if (keepTreeOnLoss && textLost) {
    ReopenAfterFailedSave();
    return 0;
  }
  RemoveAllChildren(*projectRoot);
  output->ResetLog();
  output->UpdateReport();
  ReportRescues();
  propertyManager->BeginUpdate();
  propertyManager->ProjectClosing();
  propertyManager->EndUpdate();
  currentNode = nullptr;
  activeApplication = nullptr;
  isOpen = false;
  guard.Forget();
  return 1;
}

// What a save could not put in its place must not vanish with the log that said so.
void CProjectModel::ReportRescues() {
  for (const std::string& path : rescuedFiles) output->WriteMessage(kRowCannotSave, {path});
  for (const std::string& path : keptCopies) {
    output->AddOutput("The file on disk was not the one that had been read; a copy of it is " +
                      path);
  }
  if (!keptCopies.empty()) {
    output->SaveLog();
    output->UpdateReport();
  }
  rescuedFiles.clear();
  keptCopies.clear();
}

// The tree is the only place that holds the user's changes: it stays open, as after a load.
void CProjectModel::ReopenAfterFailedSave() {
  projectRoot->SetAttrValue("Path", projectPath);
  for (int i = 0; i < projectRoot->GetChildCount(); ++i) {
    CXmlNode& child = *projectRoot->GetChild(i);
    const bool wasSaved = (types.FlagsOf(child) & kTypeExtern) != 0 && child.GetChildCount() == 0;
    if (wasSaved) LoadTreeFile(child, TextOf(child.GetAttrValue("Extern")));
  }
  NoteTreeChange();
  currentNode = nullptr;
  activeApplication = nullptr;
  if (isDefaultProject == 0) views.SetProjectRoot(projectRoot.get());
  LoadProject(projectEpoch);
}

std::int32_t CProjectModel::SaveProject() {
  if (askingHost || !CanStartOperation()) return 0;
  if (shapeChanged) modified = 1;
  keepTreeOnLoss = true;
  const std::int32_t closed = CloseProject();
  keepTreeOnLoss = false;
  if (!closed) return 0;
  const std::string path = projectPath;
  OpenProject(path.c_str(), 0);
  return 1;
}

std::int32_t CProjectModel::NewProject(const char* path) {
  if (propertyManager == nullptr || output == nullptr || !CanStartOperation()) return 0;
  // Without a path the user is asked for one by the wizard, which answers Cancel until it exists.
  return path == nullptr ? 0 : CreateProjectFile(path, 1);
}

std::int32_t CProjectModel::CreateProjectFile(const std::string& path, std::int32_t askOverwrite) {
  if (!CanStartOperation()) return 0;
  if (files.Exists(path)) {
    if (askOverwrite != 0) {
      const std::string text =
          FormatMessageText(GetMessageText(kRowOverwriteQuestion), std::vector<std::string>{path});
      if (!AskOkCancel(mainframeHandle, text, GetMessageText(kRowProjectWord))) return 0;
    }
    if (!files.RemoveFile(path)) return 0;
    // What was made from the old project; whether they go makes no difference.
    (void)files.RemoveFile(WithExtension(path, ".tdb"));
    (void)files.RemoveFile(WithExtension(path, ".dbi"));
  }
  CXmlNode root;
  root.SetName("Project");
  root.AddAttr("Header", FormatMessageText("%s '%s'",
                                           std::vector<std::string>{GetMessageText(kRowProjectWord),
                                                                    SplitPath(path).title}));
  root.AddAttr("Path", path);
  root.AddAttr("Project", "Yes");
  if (!CheckFileAccess(files, path, kMustBeWritable | kCreateFolder, *output)) return 0;
  const std::string text = root.ToString(g_xmlDisplayOptions);
  if (files.WriteWholeFile(path, text)) {
    guard.NoteWritten(path, text);
    SendHost(kMsgProjectCreated, path, 0);
  } else {
    output->WriteMessage(kRowCannotSave, {path});
  }
  modified = 1;
  return 1;
}

// Older projects need their conversion script; until it can be run they are not opened.
std::int32_t CProjectModel::ImportOldProject(const std::string& path) {
  output->WriteMessage(kRowCannotRead, {path});
  return 0;
}

}  // namespace tarn
