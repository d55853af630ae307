// Opening, creating, saving and closing of projects. A save is a close followed by an open.

#include <utility>

#include "output/MessageTable.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "project/FileAccess.h"
#include "project/ProjectModel.h"
#include "project/TreeSearch.h"
#include "widgets/Dialogs.h"

namespace tarn {

namespace {

constexpr const char* kProjectExtension = ".tprj";
constexpr const char* kDamageHeld =
    "The changes were not saved: the project was read only in part.";

std::string ConfigOf(const CXmlNode& application) {
  const char* config = application.GetAttrValue("Config");
  return config == nullptr ? kStandardConfig : config;
}

// Sets a flag during its lifetime.
class Holding {
 public:
  explicit Holding(bool& mark) : flag(mark) { flag = true; }
  ~Holding() { flag = false; }
  Holding(const Holding&) = delete;
  Holding& operator=(const Holding&) = delete;

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

void CProjectModel::AddLogLine(const std::string& text) {
  output->AddOutput(text);
  SendHost(kMsgLogLine, text, 0);
}

void CProjectModel::AddBuildNotice(LineKind kind, const std::string& text) {
  buildNotices.push_back({kind, text});
  if (kind == LineKind::Error) {
    output->AddError(text);
  } else {
    output->AddWarning(text);
  }
  SendHost(kMsgLogLine, text, 0);
}

std::vector<CProjectModel::BuildNotice> CProjectModel::TakeBuildNotices() {
  const Status written = output == nullptr ? Status() : output->GetLogStatus();
  if (!written) {
    const Error& error = written.GetError();
    buildNotices.push_back(
        {LineKind::Error, "The log can't be written to " + error.place + ": " + error.text});
  }
  return std::exchange(buildNotices, {});
}

void CProjectModel::AddLogError(const std::string& text) {
  output->AddError(text);
  SendHost(kMsgLogLine, text, 0);
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

std::string CProjectModel::FullProjectPath(const std::string& path) const {
  return files.Canonical(IsRelativePath(path) ? JoinPath(files.CurrentFolder(), path)
                                              : ToNativeSeparators(path));
}

bool CProjectModel::IsOpenAs(const std::string& path) const {
  if (!isOpen || path.empty()) return false;
  return EqualNoCase(path, openedBy) || EqualNoCase(FullProjectPath(path), projectPath);
}

std::int32_t CProjectModel::OpenProject(const char* path, std::int32_t isDefault) {
  const std::unique_ptr<ReplacedFiles> changes = std::exchange(staged, nullptr);
  if (propertyManager == nullptr || output == nullptr || isClosing) return 0;
  if (!CanStartOperation()) return 0;
  // An open project may contain only its own options and attributes.
  if ((isOpen || projectRoot->GetChildCount() > 0) && !CloseProject()) return 0;
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

  const std::string former = std::exchange(projectPath, FullProjectPath(chosen));
  openedBy = chosen;
  projectFolder = FolderOf(projectPath);
  trust.SetProject(isDefaultProject == 0 ? projectPath : std::string());
  files.SetCurrentFolder(projectFolder);
  if (former != projectPath) guard.ForgetAll();
  guard.Forget();
  damage.clear();
  // After a failure, the placeholder project is opened; it must not clear the damage.
  if (isDefaultProject == 0) failedDamage.clear();
  // A handler of a log message may open another project while this one is being read.
  std::vector<std::string> outer = std::exchange(loadingFiles, {});
  const ReplacedFiles* const outerReplaced = std::exchange(replaced, changes.get());
  const std::int32_t loaded = LoadTreeFile(*projectRoot, projectPath);
  if (loaded && projectEpoch == opened) CheckActiveApplication();
  loadingFiles = std::move(outer);
  replaced = outerReplaced;
  if (!loaded) {
    if (projectEpoch != opened) return 0;
    if (isDefaultProject == 0) failedDamage = std::exchange(damage, {});
    DiscardTree();
    return 0;
  }
  if (projectEpoch != opened) return 0;
  modified = changes != nullptr && changes->Find(projectPath) != nullptr ? 1 : 0;
  ++changeCount;
  publishingStopped = false;
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

// Second half of an open, after the files were read: announces the applications and prepares their
// options. Returns 0 if a handler closed the project or opened another one.
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
  const std::string path = projectPath;  // copy, because a handler may open another project
  SendHost(kMsgProjectOpened, path, isDefaultProject);
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
      // A handler may have removed the child.
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
    CXmlNode* const application = activeApplication;  // publishing changes the active application
    ResetNodeCache(*application, false);
    while (PublishNextNode(application)) {
    }
    activeApplication = application;
  } else {
    propertyManager->ClearValues();
  }
  propertyManager->EndUpdate();
  PublishTick();
  return projectEpoch == opened;
}

void CProjectModel::DiscardTree() {
  ++projectEpoch;
  buildRecords.CloseJournal();
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
  damage.clear();
  NoteTreeChange();
}

std::int32_t CProjectModel::CloseProject() {
  if (isClosing || !CanStartOperation()) return 0;
  const std::uint64_t before = projectEpoch;
  if (mainframeHandle != 0) {
    const Holding asking(isClosing);
    const std::string path = projectPath;
    if (SendHost(kMsgProjectClosing, path, 0) == 0) return 0;
  }
  // The handler may have started a build or closed the project it was asked about.
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
  inPublishTick = false;
  if (isOpen && modified != 0 && IsDamageHeld()) AddLogLine(kDamageHeld);
  WriteAndEmpty();
  const std::uint64_t closed = projectEpoch;
  output->ResetLog();
  output->UpdateReport();
  propertyManager->BeginUpdate();
  propertyManager->ProjectClosing();
  propertyManager->EndUpdate();
  ReportSave();
  const std::unique_ptr<ReplacedFiles> kept = std::exchange(unsaved, nullptr);
  if (projectEpoch != closed) return 0;
  if (kept == nullptr) return 1;
  isSaving = false;
  const std::string path = projectPath;
  Reload(path, *kept);
  return 0;
}

// Writes the files of the open project and frees its tree. No other open or close can run while
// this does.
void CProjectModel::WriteAndEmpty() {
  const Holding closing(isClosing);
  savedFiles.clear();
  const bool mustSave = isOpen && modified != 0 && !IsDamageHeld();
  if (isOpen) StripForSave(*projectRoot, true);
  if (mustSave) SaveTreeFile(*projectRoot, projectPath);
  output->SaveLog();
  output->UpdateReport();
  buildRecords.CloseJournal();
  RemoveAllChildren(*projectRoot);
  currentNode = nullptr;
  activeApplication = nullptr;
  isOpen = false;
  guard.Forget();
  damage.clear();
  NoteTreeChange();
}

// Repeats the messages of the save, because the close has cleared the log.
void CProjectModel::ReportSave() {
  const std::vector<SavedFile> reports = savedFiles;  // copy, because the host may save again
  for (const SavedFile& each : reports) {
    for (const std::string& line : each.ToLines()) {
      if (each.problem.empty()) {
        AddLogLine(line);
      } else {
        AddLogError(line);
      }
    }
  }
  if (reports.empty()) return;
  output->SaveLog();
  output->UpdateReport();
}

std::int32_t CProjectModel::SaveProject() {
  if (isClosing || !CanStartOperation()) return 0;
  if (IsDamageHeld()) {
    AddLogLine(kDamageHeld);
    return 0;
  }
  // Rewrites files that were deleted since the load. Those that can't be read any more are
  // reported, and the project stays open.
  const auto isLost = [this](const std::string& file) {
    return !files.Examine(file) || !files.CanRead(file);
  };
  bool isMissing = isOpen && isLost(projectPath);
  for (int i = 0; isOpen && i < projectRoot->GetChildCount(); ++i) {
    std::string file;
    const char* path = projectRoot->GetChild(i)->GetAttrValue("Extern");
    if (MakeAbsolutePath(TextOf(path), file, nullptr) && isLost(file)) isMissing = true;
  }
  if (shapeChanged || isMissing) NoteModified();
  isSaving = true;
  const std::int32_t closed = CloseProject();
  isSaving = false;
  if (!closed) return 0;
  const std::string path = projectPath;
  OpenProject(path.c_str(), 0);
  return 1;
}

std::int32_t CProjectModel::NewProject(const char* path) {
  if (propertyManager == nullptr || output == nullptr || !CanStartOperation()) return 0;
  if (path != nullptr) return CreateProjectFile(path, 1);
  // The wizard only offers a new project. If one was opened, the flag belongs to it.
  const std::uint64_t before = projectEpoch;
  const std::int32_t noted = std::exchange(isDefaultProject, 1);
  const std::int32_t result = AddNewItem(nullptr, nullptr);
  const bool hasOpened = isOpen && projectEpoch != before;
  if (!result && !hasOpened) isDefaultProject = noted;
  return result;
}

bool CProjectModel::MayOverwrite(const std::string& path) const {
  const std::string question =
      FormatMessageText(GetMessageText(kRowOverwriteQuestion), std::vector<std::string>{path});
  return AskOkCancel(mainframeHandle, question, GetMessageText(kRowProjectWord));
}

bool CProjectModel::PutAsideReplaced(const std::string& path) {
  std::string copy;
  CopyReason reason = CopyReason::None;
  Status kept = files.CheckWritable(path);
  if (files.IsFolder(path)) kept = Error{ErrorCode::NotAFile, "it is a folder", path};
  if (kept) kept = guard.PutAside(path, copy, reason);
  if (!kept) {
    output->WriteMessage(kRowCannotSave, {path}, kept.GetError().text);
    return false;
  }
  // Not a message to the host: the user was asked before.
  if (!copy.empty()) output->AddOutput("The file that was replaced is kept as " + copy);
  return true;
}

std::int32_t CProjectModel::CreateProjectFile(const std::string& path, std::int32_t askOverwrite) {
  if (!CanStartOperation()) return 0;
  const Result<bool> exists = files.CheckExists(path);
  if (!exists) {
    output->WriteMessage(kRowCannotSave, {path}, exists.GetError().text);
    return 0;
  }
  if (*exists) {
    if (askOverwrite != 0 && !MayOverwrite(path)) return 0;
    // The file is replaced rather than deleted, so that a full disk does not also lose the old one.
    if (!PutAsideReplaced(path)) return 0;
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
  if (const Status written = WriteProjectFile(files, path, text)) {
    guard.NoteWritten(path, text);
    // Remains of an old project. Errors don't matter.
    (void)files.RemoveFile(WithExtension(path, ".tdb"));
    (void)files.RemoveFile(WithExtension(path, ".dbi"));
    SendHost(kMsgProjectCreated, path, 0);
  } else {
    output->WriteMessage(kRowCannotSave, {path}, written.GetError().text);
    // The file that was to be replaced still exists and must not be taken for the new project.
    if (files.Exists(path)) return 0;
  }
  NoteModified();
  return 1;
}

}  // namespace tarn
