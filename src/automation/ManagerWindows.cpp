#include "automation/ManagerWindows.h"

#include "reports/ReportDefinition.h"

namespace tarn {

namespace {

constexpr int kProjectWindowId = 4003;
constexpr int kLogViewId = 4004;
constexpr int kReportViewId = 4006;
constexpr int kGlobalsWindowId = 4015;
constexpr int kDockedWidth = 200;
constexpr int kDockedHeight = 600;

std::int32_t HandleOf(const CWnd* window) {
  return window == nullptr ? 0 : window->GetHandle();
}

}  // namespace

ManagerWindows::ManagerWindows(FileSystem& fileSystem, Settings& userSettings,
                               WindowHandle hostWindow)
    : files(fileSystem), settings(userSettings), host(hostWindow) {}

void ManagerWindows::CreateOutputViews(CBuildOutput& buildOutput) {
  output = &buildOutput;
  logView = std::make_unique<COutputEdit>(files, host);
  logView->SetControlText(output->GetViewTitle());
  logView->Create(kStylePopup, {}, nullptr, 0);
  reportView = std::make_unique<COutputReportWnd>(files, host);
  reportView->SetDefinition(*MakeOutputDefinition(output->GetConfigFolder()));
  reportView->SetControlText(output->GetViewTitle());
  reportView->Create(kStylePopup, {}, nullptr, 0);
  output->SetViews(logView.get(), reportView.get());
}

void ManagerWindows::CreateProjectWindows(CProjectModel& projectModel,
                                          CPropertyManagerDriver& properties,
                                          const Installation& installation, IDispatch* keeper) {
  model = &projectModel;
  const std::string& configFolder = installation.GetConfigFolder();
  projectWindow = std::make_unique<CProjectWnd>(files, settings, *model, properties, host);
  projectWindow->SetKeeper(keeper);
  model->Services().views.project = projectWindow.get();
  projectWindow->Create(kStylePopup, {}, nullptr, 0);
  projectWindow->LoadViewConfig(installation.GetConfigFile());

  classWindow = std::make_unique<CClassWnd>(files, settings, host, configFolder);
  model->Services().views.classes = classWindow.get();
  classWindow->Create(kStylePopup, {}, nullptr, 0);
  classWindow->CreateImages();
  classWindow->Load(installation.GetConfigFile());

  globalsWindow = std::make_unique<CGlobalsReportWnd>(files, host, configFolder);
  model->Services().views.globals = globalsWindow.get();
  globalsWindow->Create(kStylePopup, {}, nullptr, 0);
}

void ManagerWindows::Detach() {
  if (model != nullptr) model->Services().views = {};
  if (output != nullptr) output->SetViews(nullptr, nullptr);
  DetachProjectWindow();
  model = nullptr;
  output = nullptr;
}

void ManagerWindows::DetachProjectWindow() {
  if (projectWindow) projectWindow->ForgetModel();
}

void ManagerWindows::Announce(CWnd* window, const char* title, int id) const {
  if (window == nullptr) return;
  const std::string number = std::to_string(id);
  const std::string text = "<Wnd ID='" + number + "' Icon='" + number + "' Title='" + title +
                           "' SizeX='" + std::to_string(kDockedWidth) + "' SizeY='" +
                           std::to_string(kDockedHeight) + "' />";
  SendWindowMessage(host, kMsgAnnounceWindow, reinterpret_cast<std::intptr_t>(window),
                    reinterpret_cast<std::intptr_t>(text.c_str()));
}

std::int32_t ManagerWindows::ShowProjectWindow() const {
  Announce(globalsWindow.get(), "Globals", kGlobalsWindowId);
  Announce(projectWindow.get(), "Project", kProjectWindowId);
  return HandleOf(projectWindow.get());
}

std::int32_t ManagerWindows::ShowOutputWindow() const {
  Announce(reportView.get(), "Build Report", kReportViewId);
  Announce(logView.get(), "Build Log", kLogViewId);
  return HandleOf(logView.get());
}

std::int32_t ManagerWindows::GetReportWindow() const {
  return HandleOf(reportView.get());
}

}  // namespace tarn
