// Opening, creating, saving and closing of projects. A save is a close followed by an open.

#include "project/ProjectLifecycle.h"

#include <utility>

#include "output/MessageTable.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "project/FileAccess.h"
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

std::string ProjectLifecycle::AskForProject() {
  FileQuestion question;
  const auto offer = [&question](const std::string& pattern, int row) {
    question.filter += FormatMessageText(
        "%s (%s)|%s|", std::vector<std::string>{GetMessageText(row), pattern, pattern});
  };
  offer("*.tprj", kRowProjectWord);
  for (const ImportFormat& each : ImportFormats()) offer(each.pattern, each.messageRow);
  question.filter += "|";
  if (state.isDefaultProject == 0) question.folder = state.projectFolder;
  const std::vector<std::string> chosen = ChooseFiles(services.mainframeHandle, question);
  return chosen.empty() ? std::string() : chosen.front();
}

std::int32_t ProjectLifecycle::OpenProject(const char* path, std::int32_t isDefault) {
  const std::unique_ptr<ReplacedFiles> changes = std::exchange(staged, nullptr);
  if (services.propertyManager == nullptr || services.output == nullptr || state.isClosing)
    return 0;
  if (!services.build.CanStartOperation()) return 0;
  // An open project may contain only its own options and attributes.
  if ((state.isOpen || state.projectRoot->GetChildCount() > 0) && !CloseProject()) return 0;
  state.activeApplication = nullptr;
  state.currentNode = nullptr;

  const std::uint64_t opened = ++state.projectEpoch;
  std::string chosen = TextOf(path);
  if (path == nullptr) {
    chosen = AskForProject();
    if (state.projectEpoch != opened) return 0;
    if (!chosen.empty()) state.isDefaultProject = 0;
  } else {
    state.isDefaultProject = isDefault;
  }
  if (chosen.empty()) return 0;
  if (!EqualNoCase(ExtensionOf(chosen), kProjectExtension)) return ImportOldProject(chosen);

  const std::string former = std::exchange(state.projectPath, paths.FullProjectPath(chosen));
  state.openedBy = chosen;
  state.projectFolder = FolderOf(state.projectPath);
  protection.GetTrust().SetProject(state.isDefaultProject == 0 ? state.projectPath : std::string());
  files.SetCurrentFolder(state.projectFolder);
  protection.BeginOpen(former != state.projectPath);
  if (!loader.LoadProjectFile(changes.get())) {
    if (state.projectEpoch != opened) return 0;
    protection.KeepFailedDamage();
    DiscardTree();
    return 0;
  }
  if (state.projectEpoch != opened) return 0;
  state.modified = changes != nullptr && changes->Find(state.projectPath) != nullptr ? 1 : 0;
  ++state.changeCount;
  publisher.NoteOpened();
  state.shapeChanged = false;
  state.isOpen = true;
  state.projectRoot->SetAttrValue("Path", state.projectPath);
  state.NoteTreeChange();
  if (isDefault == 0) {
    views.SetProjectRoot(state.projectRoot.get());
    views.RepaintWindow();
  } else {
    host.SendHost(kMsgPaneCaption, "Local Settings", kOptionsPane);
  }
  return state.projectEpoch == opened && LoadProject(opened) ? 1 : 0;
}

// The converted project may not be openable; the import itself was done.
std::int32_t ProjectLifecycle::ImportOldProject(const std::string& path) {
  std::string newFile;
  if (!importer.Convert(path, newFile)) return 0;
  OpenProject(newFile.c_str(), 0);
  return 1;
}

// Second half of an open, after the files were read: announces the applications and prepares their
// options. Returns 0 if a handler closed the project or opened another one.
std::int32_t ProjectLifecycle::LoadProject(std::uint64_t opened) {
  CXmlNode* application = nullptr;
  FindChildNode(state.projectRoot->GetAttrValue("ActiveApp"), "Header", state.projectRoot.get(),
                application);
  if (application != nullptr && (types.FlagsOf(*application) & kTypeApplication) != 0) {
    state.activeApplication = application;
    std::string absolute;
    if (paths.MakeAbsolutePath(TextOf(application->GetAttrValue("Path")), absolute, nullptr)) {
      application->SetAttrValue("Path", absolute);
    }
  }
  files.SetCurrentFolder(state.projectFolder);
  const std::string path = state.projectPath;  // copy, because a handler may open another project
  host.SendHost(kMsgProjectOpened, path, state.isDefaultProject);
  if (state.projectEpoch != opened || !AnnounceApplications(opened)) return 0;
  if (!MakeOptionsReady(opened)) return 0;
  if (state.activeApplication != nullptr) {
    publisher.SetActiveApplication(state.activeApplication);
    publisher.SetCurrentNode(state.activeApplication);
    if (state.projectEpoch != opened) return 0;
    publisher.SendActiveApplication();
    if (state.projectEpoch != opened) return 0;
    views.BeginTreeUpdate();
    views.EndTreeUpdate();
    if (state.activeApplication != nullptr)
      views.SetGlobalsFile(paths.GlobalsFileOf(*state.activeApplication));
  }
  state.lastBrowseFolder =
      state.isDefaultProject != 0 ? services.examplesFolder : AddSeparator(state.projectFolder);
  services.output->SaveLog();
  services.output->UpdateReport();
  return 1;
}

bool ProjectLifecycle::AnnounceApplications(std::uint64_t opened) {
  for (int i = 0; i < state.projectRoot->GetChildCount(); ++i) {
    CXmlNode* child = state.projectRoot->GetChild(i);
    if ((types.FlagsOf(*child) & kTypeApplication) == 0) continue;
    if (state.activeApplication == nullptr) {
      state.activeApplication = child;
      publisher.SetCurrentNode(child);
      if (state.projectEpoch != opened) return false;
      // A handler may have removed the child.
      child = state.projectRoot->GetChild(i);
      if (child == nullptr) return true;
    }
    std::string absolute;
    paths.MakeAbsolutePath(TextOf(child->GetAttrValue("Path")), absolute, nullptr);
    host.SendHost(kMsgApplicationKnown, absolute, ConfigOf(*child));
    if (state.projectEpoch != opened) return false;
  }
  return true;
}

bool ProjectLifecycle::MakeOptionsReady(std::uint64_t opened) {
  if (state.isDefaultProject == 0) {
    views.StartStepTimer();
    return true;
  }
  services.propertyManager->BeginUpdate();
  if (state.activeApplication != nullptr) {
    CXmlNode* const application =
        state.activeApplication;  // publishing changes the active application
    derived.ResetNodeCache(*application, false);
    while (publisher.PublishNextNode(application)) {
    }
    state.activeApplication = application;
  } else {
    services.propertyManager->ClearValues();
  }
  services.propertyManager->EndUpdate();
  publisher.PublishTick();
  return state.projectEpoch == opened;
}

void ProjectLifecycle::DiscardTree() {
  ++state.projectEpoch;
  services.build.CloseJournal();
  state.RemoveAllChildren(*state.projectRoot);
  state.projectRoot->Clear();
  state.projectRoot->SetName("Project");
  state.projectRoot->SetValue("");
  state.activeApplication = nullptr;
  state.currentNode = nullptr;
  state.modified = 0;
  state.shapeChanged = false;
  state.isOpen = false;
  protection.Forget();
  state.NoteTreeChange();
}

std::int32_t ProjectLifecycle::CloseProject() {
  if (state.isClosing || !services.build.CanStartOperation()) return 0;
  const std::uint64_t before = state.projectEpoch;
  if (services.mainframeHandle != 0) {
    const Holding asking(state.isClosing);
    const std::string path = state.projectPath;
    if (host.SendHost(kMsgProjectClosing, path, 0) == 0) return 0;
  }
  // The handler may have started a build or closed the project it was asked about.
  if (state.projectEpoch != before || services.build.IsWorkerAlive()) return 0;

  ++state.projectEpoch;
  views.StopStepTimer();
  views.BeginTreeUpdate();
  views.EndTreeUpdate();
  views.ClearTree();
  views.ClearClasses();
  if (state.isDefaultProject != 0 && state.activeApplication != nullptr) {
    state.RemoveContentChildren(*state.activeApplication);
  }
  publisher.NoteClosing();
  if (state.isOpen && state.modified != 0 && protection.IsDamageHeld())
    host.AddLogLine(kDamageHeld);
  WriteAndEmpty();
  const std::uint64_t closed = state.projectEpoch;
  services.output->ResetLog();
  services.output->UpdateReport();
  services.propertyManager->BeginUpdate();
  services.propertyManager->ProjectClosing();
  services.propertyManager->EndUpdate();
  ReportSave();
  const std::unique_ptr<ReplacedFiles> kept = saver.TakeUnsaved();
  if (state.projectEpoch != closed) return 0;
  if (kept == nullptr) return 1;
  saver.SetSaving(false);
  const std::string path = state.projectPath;
  Reload(path, *kept);
  return 0;
}

// Writes the files of the open project and frees its tree. No other open or close can run while
// this does.
void ProjectLifecycle::WriteAndEmpty() {
  const Holding closing(state.isClosing);
  saver.ClearSavedFiles();
  const bool mustSave = state.isOpen && state.modified != 0 && !protection.IsDamageHeld();
  if (state.isOpen) derived.StripForSave(*state.projectRoot, true);
  if (mustSave) {
    saver.SaveTreeFile(*state.projectRoot, state.projectPath);
  } else {
    guard.KeepRescued();
  }
  services.output->SaveLog();
  services.output->UpdateReport();
  services.build.CloseJournal();
  state.RemoveAllChildren(*state.projectRoot);
  state.currentNode = nullptr;
  state.activeApplication = nullptr;
  state.isOpen = false;
  protection.Forget();
  state.NoteTreeChange();
}

// Repeats the messages of the save, because the close has cleared the log.
void ProjectLifecycle::ReportSave() {
  const std::vector<SavedFile> reports =
      saver.GetSavedFiles();  // copy, because the host may save again
  for (const SavedFile& each : reports) {
    for (const std::string& line : each.ToLines()) {
      if (each.problem.empty()) {
        host.AddLogLine(line);
      } else {
        host.AddLogError(line);
      }
    }
  }
  if (reports.empty()) return;
  services.output->SaveLog();
  services.output->UpdateReport();
}

std::int32_t ProjectLifecycle::SaveProject() {
  if (state.isClosing || !services.build.CanStartOperation()) return 0;
  if (protection.IsDamageHeld()) {
    host.AddLogLine(kDamageHeld);
    return 0;
  }
  // Rewrites files that were deleted since the load. Those that can't be read any more are
  // reported, and the project stays open.
  const auto isLost = [this](const std::string& file) {
    return !files.Examine(file) || !files.CanRead(file);
  };
  bool isMissing = state.isOpen && isLost(state.projectPath);
  for (int i = 0; state.isOpen && i < state.projectRoot->GetChildCount(); ++i) {
    std::string file;
    const char* path = state.projectRoot->GetChild(i)->GetAttrValue("Extern");
    if (paths.MakeAbsolutePath(TextOf(path), file, nullptr) && isLost(file)) isMissing = true;
  }
  if (state.shapeChanged || isMissing) state.NoteModified();
  saver.SetSaving(true);
  const std::int32_t closed = CloseProject();
  saver.SetSaving(false);
  if (!closed) return 0;
  const std::string path = state.projectPath;
  OpenProject(path.c_str(), 0);
  return 1;
}

std::int32_t ProjectLifecycle::CreateProjectFile(const std::string& path,
                                                 std::int32_t askOverwrite) {
  if (!services.build.CanStartOperation()) return 0;
  const Result<bool> exists = files.CheckExists(path);
  if (!exists) {
    services.output->WriteMessage(kRowCannotSave, {path}, exists.GetError().text);
    return 0;
  }
  if (*exists) {
    if (askOverwrite != 0 && !protection.MayOverwrite(path)) return 0;
    // The file is replaced rather than deleted, so that a full disk does not also lose the old one.
    if (!protection.PutAsideReplaced(path)) return 0;
  }
  CXmlNode root;
  root.SetName("Project");
  root.AddAttr("Header", FormatMessageText("%s '%s'",
                                           std::vector<std::string>{GetMessageText(kRowProjectWord),
                                                                    SplitPath(path).title}));
  root.AddAttr("Path", path);
  root.AddAttr("Project", "Yes");
  if (!CheckFileAccess(files, path, kMustBeWritable | kCreateFolder, *services.output)) return 0;
  const std::string text = root.ToString(g_xmlDisplayOptions);
  if (const Status written = WriteProjectFile(files, path, text)) {
    guard.NoteWritten(path, text);
    // Remains of an old project. Errors don't matter.
    (void)files.RemoveFile(WithExtension(path, ".tdb"));
    (void)files.RemoveFile(WithExtension(path, ".dbi"));
    host.SendHost(kMsgProjectCreated, path, 0);
  } else {
    services.output->WriteMessage(kRowCannotSave, {path}, written.GetError().text);
    // The file that was to be replaced still exists and must not be taken for the new project.
    if (files.Exists(path)) return 0;
  }
  state.NoteModified();
  return 1;
}

}  // namespace tarn
