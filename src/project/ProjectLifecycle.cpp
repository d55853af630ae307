// Opening, creating, saving and closing of projects. A save is a close followed by an open.

#include "project/ProjectLifecycle.h"

#include <utility>

#include "output/MessageTable.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "project/FileAccess.h"
#include "project/TreeSearch.h"
#include "widgets/Dialogs.h"
#include "xml/XmlNode.h"

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
  explicit Holding(bool& mark) : flag_(mark) { flag_ = true; }
  ~Holding() { flag_ = false; }
  Holding(const Holding&) = delete;
  Holding& operator=(const Holding&) = delete;

 private:
  bool& flag_;
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
  if (state_.isDefaultProject == 0) question.folder = state_.projectFolder;
  const std::vector<std::string> chosen = ChooseFiles(services_.mainframeHandle, question);
  return chosen.empty() ? std::string() : chosen.front();
}

std::int32_t ProjectLifecycle::OpenProject(const char* path, std::int32_t isDefault) {
  const std::unique_ptr<ReplacedFiles> changes = std::exchange(staged_, nullptr);
  if (services_.propertyManager == nullptr || services_.output == nullptr || state_.isClosing)
    return 0;
  if (!services_.build.CanStartOperation()) return 0;
  // An open project may contain only its own options and attributes.
  if ((state_.isOpen || state_.projectRoot->GetChildCount() > 0) && !CloseProject()) return 0;
  state_.activeApplication = nullptr;
  state_.currentNode = nullptr;

  const std::uint64_t opened = ++state_.projectGeneration;
  std::string chosen = OrEmpty(path);
  if (path == nullptr) {
    chosen = AskForProject();
    if (state_.projectGeneration != opened) return 0;
    if (!chosen.empty()) state_.isDefaultProject = 0;
  } else {
    state_.isDefaultProject = isDefault;
  }
  if (chosen.empty()) return 0;
  if (!EqualNoCase(ExtensionOf(chosen), kProjectExtension)) return ImportOldProject(chosen);

  const std::string former = std::exchange(state_.projectPath, paths_.FullProjectPath(chosen));
  state_.openedBy = chosen;
  state_.projectFolder = FolderOf(state_.projectPath);
  protection_.GetTrust().SetProject(state_.isDefaultProject == 0 ? state_.projectPath
                                                                 : std::string());
  definitions_.Apply();
  files_.SetCurrentFolder(state_.projectFolder);
  protection_.BeginOpen(former != state_.projectPath);
  if (!loader_.LoadProjectFile(changes.get())) {
    if (state_.projectGeneration != opened) return 0;
    protection_.KeepFailedDamage();
    DiscardTree();
    return 0;
  }
  if (state_.projectGeneration != opened) return 0;
  state_.modified = changes != nullptr && changes->Find(state_.projectPath) != nullptr ? 1 : 0;
  ++state_.changeCount;
  publisher_.MarkOpened();
  state_.structureChanged = false;
  state_.isOpen = true;
  state_.projectRoot->SetAttrValue("Path", state_.projectPath);
  state_.MarkTreeChanged();
  if (isDefault == 0) {
    views_.SetProjectRoot(state_.projectRoot.get());
    views_.RepaintWindow();
  } else {
    host_.SendHost(kMsgPaneCaption, "Local Settings", kOptionsPane);
  }
  return state_.projectGeneration == opened && LoadProject(opened) ? 1 : 0;
}

// The converted project may not be openable; the import itself was done.
std::int32_t ProjectLifecycle::ImportOldProject(const std::string& path) {
  std::string newFile;
  if (!importer_.Convert(path, newFile)) return 0;
  OpenProject(newFile.c_str(), 0);
  return 1;
}

// Second half of an open, after the files were read: announces the applications and prepares their
// options. Returns 0 if a handler closed the project or opened another one.
std::int32_t ProjectLifecycle::LoadProject(std::uint64_t opened) {
  CXmlNode* application = nullptr;
  FindChildNode(state_.projectRoot->GetAttrValue("ActiveApp"), "Header", state_.projectRoot.get(),
                application);
  if (application != nullptr && (types_.FlagsOf(*application) & kTypeApplication) != 0) {
    state_.activeApplication = application;
    std::string absolute;
    if (paths_.MakeAbsolutePath(OrEmpty(application->GetAttrValue("Path")), absolute, nullptr)) {
      application->SetAttrValue("Path", absolute);
    }
  }
  files_.SetCurrentFolder(state_.projectFolder);
  const std::string path = state_.projectPath;  // copy, because a handler may open another project
  host_.SendHost(kMsgProjectOpened, path, state_.isDefaultProject);
  if (state_.projectGeneration != opened || !AnnounceApplications(opened)) return 0;
  if (!MakeOptionsReady(opened)) return 0;
  if (state_.activeApplication != nullptr) {
    publisher_.SetActiveApplication(state_.activeApplication);
    publisher_.SetCurrentNode(state_.activeApplication);
    if (state_.projectGeneration != opened) return 0;
    publisher_.SendActiveApplication();
    if (state_.projectGeneration != opened) return 0;
    views_.BeginTreeUpdate();
    views_.EndTreeUpdate();
    if (state_.activeApplication != nullptr)
      views_.SetGlobalsFile(paths_.GlobalsFileOf(*state_.activeApplication));
  }
  state_.lastBrowseFolder =
      state_.isDefaultProject != 0 ? services_.examplesFolder : AddSeparator(state_.projectFolder);
  services_.output->SaveLog();
  services_.output->UpdateReport();
  return 1;
}

bool ProjectLifecycle::AnnounceApplications(std::uint64_t opened) {
  for (int i = 0; i < state_.projectRoot->GetChildCount(); ++i) {
    CXmlNode* child = state_.projectRoot->GetChild(i);
    if ((types_.FlagsOf(*child) & kTypeApplication) == 0) continue;
    if (state_.activeApplication == nullptr) {
      state_.activeApplication = child;
      publisher_.SetCurrentNode(child);
      if (state_.projectGeneration != opened) return false;
      // A handler may have removed the child.
      child = state_.projectRoot->GetChild(i);
      if (child == nullptr) return true;
    }
    std::string absolute;
    paths_.MakeAbsolutePath(OrEmpty(child->GetAttrValue("Path")), absolute, nullptr);
    host_.SendHost(kMsgApplicationKnown, absolute, ConfigOf(*child));
    if (state_.projectGeneration != opened) return false;
  }
  return true;
}

bool ProjectLifecycle::MakeOptionsReady(std::uint64_t opened) {
  if (state_.isDefaultProject == 0) {
    views_.StartStepTimer();
    return true;
  }
  services_.propertyManager->BeginUpdate();
  if (state_.activeApplication != nullptr) {
    CXmlNode* const application =
        state_.activeApplication;  // publishing changes the active application
    derived_.ResetNodeCache(*application, false);
    while (publisher_.PublishNextNode(application)) {
    }
    state_.activeApplication = application;
  } else {
    services_.propertyManager->ClearValues();
  }
  services_.propertyManager->EndUpdate();
  publisher_.PublishTick();
  return state_.projectGeneration == opened;
}

void ProjectLifecycle::DiscardTree() {
  ++state_.projectGeneration;
  services_.build.CloseJournal();
  state_.RemoveAllChildren(*state_.projectRoot);
  state_.projectRoot->Clear();
  state_.projectRoot->SetName("Project");
  state_.projectRoot->SetValue("");
  state_.activeApplication = nullptr;
  state_.currentNode = nullptr;
  state_.modified = 0;
  state_.structureChanged = false;
  state_.isOpen = false;
  protection_.Clear();
  state_.MarkTreeChanged();
}

std::int32_t ProjectLifecycle::CloseProject() {
  if (state_.isClosing || !services_.build.CanStartOperation()) return 0;
  const std::uint64_t before = state_.projectGeneration;
  if (services_.mainframeHandle != 0) {
    const Holding asking(state_.isClosing);
    const std::string path = state_.projectPath;
    if (host_.SendHost(kMsgProjectClosing, path, 0) == 0) return 0;
  }
  // The handler may have started a build or closed the project it was asked about.
  if (state_.projectGeneration != before || services_.build.IsWorkerAlive()) return 0;

  ++state_.projectGeneration;
  views_.StopStepTimer();
  views_.BeginTreeUpdate();
  views_.EndTreeUpdate();
  views_.ClearTree();
  views_.ClearClasses();
  if (state_.isDefaultProject != 0 && state_.activeApplication != nullptr) {
    state_.RemoveContentChildren(*state_.activeApplication);
  }
  publisher_.MarkClosing();
  if (state_.isOpen && state_.modified != 0 && protection_.IsDamageHeld())
    host_.AddLogLine(kDamageHeld);
  WriteAndEmpty();
  const std::uint64_t closed = state_.projectGeneration;
  services_.output->ResetLog();
  services_.output->UpdateReport();
  services_.propertyManager->BeginUpdate();
  services_.propertyManager->ProjectClosing();
  services_.propertyManager->EndUpdate();
  ReportSave();
  const std::unique_ptr<ReplacedFiles> kept = saver_.TakeUnsaved();
  if (state_.projectGeneration != closed) return 0;
  if (kept == nullptr) return 1;
  saver_.SetSaving(false);
  const std::string path = state_.projectPath;
  Reload(path, *kept);
  return 0;
}

// Writes the files of the open project and frees its tree. No other open or close can run while
// this does.
void ProjectLifecycle::WriteAndEmpty() {
  const Holding closing(state_.isClosing);
  saver_.ClearSavedFiles();
  const bool mustSave = state_.isOpen && state_.modified != 0 && !protection_.IsDamageHeld();
  if (state_.isOpen) derived_.StripForSave(*state_.projectRoot, true);
  if (mustSave) {
    saver_.SaveTreeFile(*state_.projectRoot, state_.projectPath);
  } else {
    guard_.RetainRescued();
  }
  services_.output->SaveLog();
  services_.output->UpdateReport();
  services_.build.CloseJournal();
  state_.RemoveAllChildren(*state_.projectRoot);
  state_.currentNode = nullptr;
  state_.activeApplication = nullptr;
  state_.isOpen = false;
  protection_.Clear();
  state_.MarkTreeChanged();
}

// Repeats the messages of the save, because the close has cleared the log.
void ProjectLifecycle::ReportSave() {
  const std::vector<SavedFile> reports =
      saver_.GetSavedFiles();  // copy, because the host may save again
  for (const SavedFile& each : reports) {
    for (const std::string& line : each.ToLines()) {
      if (each.problem.empty()) {
        host_.AddLogLine(line);
      } else {
        host_.AddLogError(line);
      }
    }
  }
  if (reports.empty()) return;
  services_.output->SaveLog();
  services_.output->UpdateReport();
}

std::int32_t ProjectLifecycle::SaveProject() {
  if (state_.isClosing || !services_.build.CanStartOperation()) return 0;
  if (protection_.IsDamageHeld()) {
    host_.AddLogLine(kDamageHeld);
    return 0;
  }
  // Rewrites files that were deleted since the load. Those that can't be read any more are
  // reported, and the project stays open.
  const auto isLost = [this](const std::string& file) {
    return !files_.Examine(file) || !files_.CanRead(file);
  };
  bool isMissing = state_.isOpen && isLost(state_.projectPath);
  for (int i = 0; state_.isOpen && i < state_.projectRoot->GetChildCount(); ++i) {
    std::string file;
    const char* path = state_.projectRoot->GetChild(i)->GetAttrValue("Extern");
    if (paths_.MakeAbsolutePath(OrEmpty(path), file, nullptr) && isLost(file)) isMissing = true;
  }
  if (state_.structureChanged || isMissing) state_.MarkModified();
  saver_.SetSaving(true);
  const std::int32_t closed = CloseProject();
  saver_.SetSaving(false);
  if (!closed) return 0;
  const std::string path = state_.projectPath;
  OpenProject(path.c_str(), 0);
  return 1;
}

std::int32_t ProjectLifecycle::CreateProjectFile(const std::string& path,
                                                 std::int32_t askOverwrite) {
  if (!services_.build.CanStartOperation()) return 0;
  const Result<bool> exists = files_.CheckExists(path);
  if (!exists) {
    services_.output->WriteMessage(kRowCannotSave, {path}, exists.GetError().text);
    return 0;
  }
  if (*exists) {
    if (askOverwrite != 0 && !protection_.MayOverwrite(path)) return 0;
    // The file is replaced rather than deleted, so that a full disk does not also lose the old one.
    if (!protection_.PutAsideReplaced(path)) return 0;
  }
  CXmlNode root;
  root.SetName("Project");
  root.AddAttr("Header", FormatMessageText("%s '%s'",
                                           std::vector<std::string>{GetMessageText(kRowProjectWord),
                                                                    SplitPath(path).title}));
  root.AddAttr("Path", path);
  root.AddAttr("Project", "Yes");
  if (!CheckFileAccess(files_, path, kMustBeWritable | kCreateFolder, *services_.output)) return 0;
  const std::string text = root.ToString(g_xmlDisplayOptions);
  if (const Status written = WriteProjectFile(files_, path, text)) {
    guard_.RecordWritten(path, text);
    // Remains of an old project. Errors don't matter.
    (void)files_.RemoveFile(WithExtension(path, ".tdb"));
    (void)files_.RemoveFile(WithExtension(path, ".dbi"));
    host_.SendHost(kMsgProjectCreated, path, 0);
  } else {
    services_.output->WriteMessage(kRowCannotSave, {path}, written.GetError().text);
    // The file that was to be replaced still exists and must not be taken for the new project.
    if (files_.Exists(path)) return 0;
  }
  state_.MarkModified();
  return 1;
}

}  // namespace tarn
