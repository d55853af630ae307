// Windows of a manager: creation, announcement to the host, destruction.

#include "automation/ProjectManager.h"
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

void CProjectManager::CreateOutputViews() {
  logView = std::make_unique<COutputEdit>(platform.files, mainframeHandle);
  logView->SetControlText(output->GetViewTitle());
  logView->Create(kStylePopup, {}, nullptr, 0);
  reportView = std::make_unique<COutputReportWnd>(platform.files, mainframeHandle);
  reportView->SetDefinition(*MakeOutputDefinition(output->GetConfigFolder()));
  reportView->SetControlText(output->GetViewTitle());
  reportView->Create(kStylePopup, {}, nullptr, 0);
  output->SetViews(logView.get(), reportView.get());
}

void CProjectManager::CreateWindows() {
  projectWindow = std::make_unique<CProjectWnd>(platform.files, platform.settings, *model,
                                                *propertyManager, mainframeHandle);
  projectWindow->SetKeeper(this);
  model->Services().views.project = projectWindow.get();
  projectWindow->Create(kStylePopup, {}, nullptr, 0);
  projectWindow->LoadViewConfig(configFilePath);

  classWindow =
      std::make_unique<CClassWnd>(platform.files, platform.settings, mainframeHandle, configFolder);
  model->Services().views.classes = classWindow.get();
  classWindow->Create(kStylePopup, {}, nullptr, 0);
  classWindow->CreateImages();
  classWindow->Load(configFilePath);

  globalsWindow =
      std::make_unique<CGlobalsReportWnd>(platform.files, mainframeHandle, configFolder);
  model->Services().views.globals = globalsWindow.get();
  globalsWindow->Create(kStylePopup, {}, nullptr, 0);
}

void CProjectManager::ReleaseWindows() {
  if (model) model->Services().views = {};
  if (output) output->SetViews(nullptr, nullptr);
  if (projectWindow) projectWindow->ForgetModel();
}

void CProjectManager::Announce(CWnd* window, const char* title, int id) const {
  if (window == nullptr) return;
  const std::string number = std::to_string(id);
  const std::string text = "<Wnd ID='" + number + "' Icon='" + number + "' Title='" + title +
                           "' SizeX='" + std::to_string(kDockedWidth) + "' SizeY='" +
                           std::to_string(kDockedHeight) + "' />";
  SendWindowMessage(mainframeHandle, kMsgAnnounceWindow, reinterpret_cast<std::intptr_t>(window),
                    reinterpret_cast<std::intptr_t>(text.c_str()));
}

std::int32_t CProjectManager::GetProjectWindow() {
  Announce(globalsWindow.get(), "Globals", kGlobalsWindowId);
  Announce(projectWindow.get(), "Project", kProjectWindowId);
  return HandleOf(projectWindow.get());
}

std::int32_t CProjectManager::GetOutputWindow() {
  Announce(reportView.get(), "Build Report", kReportViewId);
  Announce(logView.get(), "Build Log", kLogViewId);
  return HandleOf(logView.get());
}

std::int32_t CProjectManager::GetReportWindow() {
  return HandleOf(reportView.get());
}

}  // namespace tarn
