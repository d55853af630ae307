#include "views/ProjectWnd.h"

#include <chrono>

#include "platform/text/Text.h"
#include "views/Resources.h"
#include "widgets/HostMessages.h"
#include "widgets/ImageList.h"
#include "xml/XmlNode.h"

namespace tarn {

namespace {

constexpr int kTreeId = 100;
constexpr int kToolBarId = 59392;
constexpr int kTreeMode = 2;
constexpr int kStepTimer = 101;
constexpr std::chrono::milliseconds kStepPeriod(10);

constexpr int kPropertiesButton = 32776;
constexpr int kInfoButton = 32779;
constexpr int kShowButton = 32772;
constexpr int kShowSizes = 32773;
constexpr int kShowDependencies = 32774;
constexpr int kShowOptionsCommand = 33035;

constexpr const char* kSection = "Project";
constexpr const char* kDependencies = "Dependencies";

bool ReadFlag(const Settings& settings, const char* name, const char* fallback) {
  return EqualNoCase(settings.ReadProfile(kSection, name, fallback), "TRUE");
}

}  // namespace

CProjectWnd::CProjectWnd(FileSystem& fileSystem, Settings& userSettings,
                         CProjectModel& projectModel, CPropertyManagerDriver& properties,
                         WindowHandle host)
    : files_(fileSystem),
      settings_(userSettings),
      model_(&projectModel),
      propertyManager_(&properties),
      popupMenus_(CXmlNode::CreateNode("PopupMenus")),
      hostWindow_(host),
      viewSizes_(ReadFlag(userSettings, "ViewSizes", "TRUE")),
      viewDeps_(ReadFlag(userSettings, "ViewDeps", "FALSE")) {}

CProjectWnd::~CProjectWnd() {
  DestroyWindow();
}

bool CProjectWnd::OnCreate() {
  AcceptDroppedFiles(true);
  const Rect all = GetClientRect();
  toolBar_.Create(kStyleChild | kStyleVisible, all, this, kToolBarId);
  AddButtons();
  return tree_.Create(kTreeMode, kStyleChild | kStyleVisible, all, this, kTreeId);
}

void CProjectWnd::OnDestroy() {
  CloseNameEditor();
}

void CProjectWnd::DetachModel() {
  KillTimer(kStepTimer);
  isStepping_ = false;
  tree_.SetXmlRoot(nullptr);
  model_ = nullptr;
  propertyManager_ = nullptr;
  keeper_ = nullptr;
  hostWindow_ = 0;
}

void CProjectWnd::OnSize(Size size) {
  CloseNameEditor();
  const int barHeight = toolBar_.GetHeightFor(size.width);
  toolBar_.MoveWindow({0, 0, size.width, barHeight});
  tree_.MoveWindow({0, barHeight, size.width, size.height > barHeight ? size.height : barHeight});
}

// --- Tool bar and switches ---

void CProjectWnd::AddButtons() {
  toolBar_.AddButton(kPropertiesButton, "Properties", -1);
  toolBar_.AddButton(kInfoButton, "Info", -1);
  toolBar_.AddDropDown(kShowButton, "Show", -1, [this] { return MakeShowMenu(); });
  toolBar_.SetUpdater([this](CToolBar::Button& button) {
    if (button.id != kInfoButton) return;
    button.isRadio = true;
    button.isChecked = tree_.IsHelpMode();
  });
}

std::unique_ptr<CMenu> CProjectWnd::MakeShowMenu() const {
  auto menu = std::make_unique<CMenu>();
  menu->AppendCommand(kShowSizes, "Build information").isChecked = viewSizes_;
  menu->AppendCommand(kShowDependencies, "Dependencies").isChecked = viewDeps_;
  return menu;
}

bool CProjectWnd::OnCommand(int command) {
  const DispatchPtr held(keeper_);
  switch (command) {
    case kPropertiesButton:
      CloseNameEditor();
      SendWindowMessage(hostWindow_, kMsgCommand, kShowOptionsCommand, 0);
      return true;
    case kInfoButton:
      CloseNameEditor();
      tree_.SetHelpMode(true);
      return true;
    case kShowSizes:
      Toggle(viewSizes_, "ViewSizes");
      return true;
    case kShowDependencies:
      Toggle(viewDeps_, "ViewDeps");
      return true;
    default:
      return false;
  }
}

void CProjectWnd::Toggle(bool& flag, const char* profileName) {
  CloseNameEditor();
  flag = !flag;
  // Saved before the refill, since a handler of the refill's messages may destroy this window.
  settings_.WriteProfile(kSection, profileName, flag ? "TRUE" : "FALSE");
  if (&flag == &viewSizes_) {
    tree_.SetShowInfo(viewSizes_);
  } else {
    ShowDependencyPicture();
  }
  BeginTreeUpdate(UpdateScope::Whole);
  EndTreeUpdate();
}

// --- Images and popup menus ---

void CProjectWnd::LoadViewConfig(const std::string& fileName) {
  if (model_ == nullptr || propertyManager_ == nullptr) return;
  const Result<std::string> text = files_.ReadWholeFile(fileName);
  if (!text && text.GetError().code != ErrorCode::Io) return;
  if (text) {
    CXmlNode configuration;
    configuration.Load(*text, g_xmlParseInfo);
    for (int i = 0; i < configuration.GetChildCount(); ++i) {
      const CXmlNode& section = *configuration.GetChild(i);
      if (section.NameView() == "Types") LoadTypePictures(section);
      if (section.NameView() != "PopupMenus") continue;
      for (int menu = 0; menu < section.GetChildCount(); ++menu) {
        popupMenus_->AppendCopy(*section.GetChild(menu));
      }
    }
  }
  ShowDependencyPicture();
  tree_.AddMarkerImages(
      ReadBitmapFile(files_, ResourcePath(model_->Services().configFolder, "marker.bmp")));
  tree_.SetShowInfo(viewSizes_);
}

void CProjectWnd::LoadTypePictures(const CXmlNode& types) {
  for (int i = 0; i < types.GetChildCount(); ++i) {
    const CXmlNode& type = *types.GetChild(i);
    if (type.GetType() != XmlElement) continue;
    const std::string path = TypeProperty(type, "Icon");
    if (!path.empty()) tree_.AddImage(type.GetName(), ReadBitmapFile(files_, path));
  }
}

// Dependencies are shown if and only if their elements have an image.
void CProjectWnd::ShowDependencyPicture() {
  if (!viewDeps_) {
    tree_.RemoveImage(kDependencies);
  } else if (model_ != nullptr) {
    tree_.AddImage(
        kDependencies,
        ReadBitmapFile(files_, ResourcePath(model_->Services().configFolder, "dependencies.bmp")));
  }
}

// --- IProjectWindow ---

bool CProjectWnd::SetProjectRoot(CXmlNode* root) {
  if (!tree_.IsCreated()) return false;
  updateDepth_ = 0;
  tree_.SetXmlRoot(root);
  return true;
}

void CProjectWnd::BeginTreeUpdate(UpdateScope scope) {
  if (updateDepth_ == 0) {
    tree_.SaveViewState();
    isWholeUpdate_ = false;
    updated_.clear();
  }
  if (scope == UpdateScope::Whole) isWholeUpdate_ = true;
  ++updateDepth_;
}

void CProjectWnd::NotifyNodeUpdated(const CXmlNode& node) {
  updated_.insert(&node);
}

void CProjectWnd::EndTreeUpdate() {
  // Without a matching BeginTreeUpdate() no nodes have been reported, so everything is refilled.
  if (updateDepth_ == 0) isWholeUpdate_ = true;
  if (updateDepth_ > 0 && --updateDepth_ > 0) return;
  const WindowHandle own = GetHandle();
  if (isWholeUpdate_) {
    tree_.Refill();
  } else {
    tree_.RefillNodes({updated_.begin(), updated_.end()});
  }
  if (IsWindow(own)) toolBar_.Invalidate();
}

void CProjectWnd::ClearTree() {
  if (!tree_.IsCreated()) return;
  tree_.SetSelectedLabel("");
  tree_.SetXmlRoot(nullptr);
}

CXmlNode* CProjectWnd::GetSelectedNode() {
  return tree_.IsCreated() ? tree_.GetCurrentNode() : nullptr;
}

void CProjectWnd::SelectTreeNode(CXmlNode* node) {
  tree_.SelectNode(node);
}

void CProjectWnd::InvalidateNode(const CXmlNode& node) {
  tree_.InvalidateNode(node);
  if (!updated_.empty()) ClearUpdated(node);
}

void CProjectWnd::ClearUpdated(const CXmlNode& node) {
  updated_.erase(&node);
  for (const CXmlNode* const child : node.GetChildren()) ClearUpdated(*child);
}

void CProjectWnd::StartStepTimer() {
  SetTimer(kStepTimer, kStepPeriod);
  // Only once per start and stop; otherwise updates of the options window would stay suspended.
  if (isStepping_ || propertyManager_ == nullptr) return;
  isStepping_ = true;
  propertyManager_->BeginUpdate();
}

void CProjectWnd::StopStepTimer() {
  KillTimer(kStepTimer);
  isStepping_ = false;
  if (propertyManager_ != nullptr) propertyManager_->EndUpdate();
}

void CProjectWnd::OnTimer(int timerId) {
  const DispatchPtr held(keeper_);
  if (timerId != kStepTimer || model_ == nullptr || model_->Publishing().IsPublishingSuspended())
    return;
  model_->Publishing().PublishTick();
}

}  // namespace tarn
