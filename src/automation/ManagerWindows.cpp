#include "automation/ManagerWindows.h"

#include "reports/ReportDefinition.h"
#include "xml/XmlNode.h"

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
    : files_(fileSystem), settings_(userSettings), host_(hostWindow) {}

void ManagerWindows::CreateOutputViews(CBuildOutput& buildOutput) {
  output_ = &buildOutput;
  logView_ = std::make_unique<COutputEdit>(files_, host_);
  logView_->SetControlText(output_->GetViewTitle());
  logView_->Create(kStylePopup, {}, nullptr, 0);
  reportView_ = std::make_unique<COutputReportWnd>(files_, host_);
  reportView_->SetDefinition(*MakeOutputDefinition(output_->GetConfigFolder()));
  reportView_->SetControlText(output_->GetViewTitle());
  reportView_->Create(kStylePopup, {}, nullptr, 0);
  output_->SetViews(logView_.get(), reportView_.get());
}

void ManagerWindows::CreateProjectWindows(CProjectModel& projectModel,
                                          CPropertyManagerDriver& properties,
                                          const Installation& installation, IDispatch* keeper) {
  model_ = &projectModel;
  const std::string& configFolder = installation.GetConfigFolder();
  projectWindow_ = std::make_unique<CProjectWnd>(files_, settings_, *model_, properties, host_);
  projectWindow_->SetKeeper(keeper);
  model_->Services().views.project = projectWindow_.get();
  projectWindow_->Create(kStylePopup, {}, nullptr, 0);
  projectWindow_->LoadViewConfig(installation.GetConfigFile());

  classWindow_ = std::make_unique<CClassWnd>(files_, settings_, host_, configFolder);
  model_->Services().views.classes = classWindow_.get();
  classWindow_->Create(kStylePopup, {}, nullptr, 0);
  classWindow_->CreateImages();
  classWindow_->Load(installation.GetConfigFile());

  globalsWindow_ = std::make_unique<CGlobalsReportWnd>(files_, host_, configFolder);
  model_->Services().views.globals = globalsWindow_.get();
  globalsWindow_->Create(kStylePopup, {}, nullptr, 0);
}

void ManagerWindows::Detach() {
  if (model_ != nullptr) model_->Services().views = {};
  if (output_ != nullptr) output_->SetViews(nullptr, nullptr);
  DetachProjectWindow();
  model_ = nullptr;
  output_ = nullptr;
}

void ManagerWindows::DetachProjectWindow() {
  if (projectWindow_) projectWindow_->DetachModel();
}

void ManagerWindows::Announce(CWnd* window, const char* title, int id) const {
  if (window == nullptr) return;
  const std::string number = std::to_string(id);
  const std::string text = "<Wnd ID='" + number + "' Icon='" + number + "' Title='" + title +
                           "' SizeX='" + std::to_string(kDockedWidth) + "' SizeY='" +
                           std::to_string(kDockedHeight) + "' />";
  SendWindowMessage(host_, kMsgAnnounceWindow, reinterpret_cast<std::intptr_t>(window),
                    reinterpret_cast<std::intptr_t>(text.c_str()));
}

std::int32_t ManagerWindows::ShowProjectWindow() const {
  Announce(globalsWindow_.get(), "Globals", kGlobalsWindowId);
  Announce(projectWindow_.get(), "Project", kProjectWindowId);
  return HandleOf(projectWindow_.get());
}

std::int32_t ManagerWindows::ShowOutputWindow() const {
  Announce(reportView_.get(), "Build Report", kReportViewId);
  Announce(logView_.get(), "Build Log", kLogViewId);
  return HandleOf(logView_.get());
}

std::int32_t ManagerWindows::GetReportWindow() const {
  return HandleOf(reportView_.get());
}

}  // namespace tarn
