#include "views/ProjectWnd.h"

#include <chrono>

#include "platform/text/Text.h"
#include "views/Resources.h"
#include "widgets/HostMessages.h"
#include "widgets/ImageList.h"

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
    : files(fileSystem),
      settings(userSettings),
      model(&projectModel),
      propertyManager(&properties),
      popupMenus(CXmlNode::CreateNode("PopupMenus")),
      hostWindow(host),
      viewSizes(ReadFlag(userSettings, "ViewSizes", "TRUE")),
      viewDeps(ReadFlag(userSettings, "ViewDeps", "FALSE")) {}

CProjectWnd::~CProjectWnd() {
  DestroyWindow();
}

bool CProjectWnd::OnCreate() {
  AcceptDroppedFiles(true);
  const Rect all = GetClientRect();
  toolBar.Create(kStyleChild | kStyleVisible, all, this, kToolBarId);
  AddButtons();
  return tree.Create(kTreeMode, kStyleChild | kStyleVisible, all, this, kTreeId);
}

void CProjectWnd::OnDestroy() {
  CloseNameEditor();
}

void CProjectWnd::ForgetModel() {
  KillTimer(kStepTimer);
  isStepping = false;
  tree.SetXmlRoot(nullptr);
  model = nullptr;
  propertyManager = nullptr;
  keeper = nullptr;
  hostWindow = 0;
}

void CProjectWnd::OnSize(Size size) {
  CloseNameEditor();
  const int barHeight = toolBar.GetHeightFor(size.width);
  toolBar.MoveWindow({0, 0, size.width, barHeight});
  tree.MoveWindow({0, barHeight, size.width, size.height > barHeight ? size.height : barHeight});
}

// --- Tool bar and switches ---

void CProjectWnd::AddButtons() {
  toolBar.AddButton(kPropertiesButton, "Properties", -1);
  toolBar.AddButton(kInfoButton, "Info", -1);
  toolBar.AddDropDown(kShowButton, "Show", -1, [this] { return MakeShowMenu(); });
  toolBar.SetUpdater([this](CToolBar::Button& button) {
    if (button.id != kInfoButton) return;
    button.isRadio = true;
    button.isChecked = tree.IsHelpMode();
  });
}

std::unique_ptr<CMenu> CProjectWnd::MakeShowMenu() const {
  auto menu = std::make_unique<CMenu>();
  menu->AppendCommand(kShowSizes, "Build information").isChecked = viewSizes;
  menu->AppendCommand(kShowDependencies, "Dependencies").isChecked = viewDeps;
  return menu;
}

bool CProjectWnd::OnCommand(int command) {
  const DispatchPtr held(keeper);
  switch (command) {
    case kPropertiesButton:
      CloseNameEditor();
      SendWindowMessage(hostWindow, kMsgCommand, kShowOptionsCommand, 0);
      return true;
    case kInfoButton:
      CloseNameEditor();
      tree.SetHelpMode(true);
      return true;
    case kShowSizes:
      Toggle(viewSizes, "ViewSizes");
      return true;
    case kShowDependencies:
      Toggle(viewDeps, "ViewDeps");
      return true;
    default:
      return false;
  }
}

void CProjectWnd::Toggle(bool& flag, const char* profileName) {
  CloseNameEditor();
  flag = !flag;
  // Saved before the refill, since a handler of the refill's messages may destroy this window.
  settings.WriteProfile(kSection, profileName, flag ? "TRUE" : "FALSE");
  if (&flag == &viewSizes) {
    tree.SetShowInfo(viewSizes);
  } else {
    ShowDependencyPicture();
  }
  BeginTreeUpdate(UpdateScope::Whole);
  EndTreeUpdate();
}

// --- Images and popup menus ---

void CProjectWnd::LoadViewConfig(const std::string& fileName) {
  if (model == nullptr || propertyManager == nullptr) return;
  const Result<std::string> text = files.ReadWholeFile(fileName);
  if (!text && text.GetError().code != ErrorCode::Io) return;
  if (text) {
    CXmlNode configuration;
    configuration.Load(*text, g_xmlParseInfo);
    for (int i = 0; i < configuration.GetChildCount(); ++i) {
      const CXmlNode& section = *configuration.GetChild(i);
      if (section.NameView() == "Types") LoadTypePictures(section);
      if (section.NameView() != "PopupMenus") continue;
      for (int menu = 0; menu < section.GetChildCount(); ++menu) {
        popupMenus->AppendCopy(*section.GetChild(menu));
      }
    }
  }
  ShowDependencyPicture();
  tree.AddMarkerImages(
      ReadBitmapFile(files, ResourcePath(model->Services().configFolder, "marker.bmp")));
  tree.SetShowInfo(viewSizes);
}

void CProjectWnd::LoadTypePictures(const CXmlNode& types) {
  for (int i = 0; i < types.GetChildCount(); ++i) {
    const CXmlNode& type = *types.GetChild(i);
    if (type.GetType() != XmlElement) continue;
    const std::string path = TypeProperty(type, "Icon");
    if (!path.empty()) tree.AddImage(type.GetName(), ReadBitmapFile(files, path));
  }
}

// Dependencies are shown if and only if their elements have an image.
void CProjectWnd::ShowDependencyPicture() {
  if (!viewDeps) {
    tree.RemoveImage(kDependencies);
  } else if (model != nullptr) {
    tree.AddImage(kDependencies, ReadBitmapFile(files, ResourcePath(model->Services().configFolder,
                                                                    "dependencies.bmp")));
  }
}

// --- IProjectWindow ---

bool CProjectWnd::SetProjectRoot(CXmlNode* root) {
  if (!tree.IsCreated()) return false;
  updateDepth = 0;
  tree.SetXmlRoot(root);
  return true;
}

void CProjectWnd::BeginTreeUpdate(UpdateScope scope) {
  if (updateDepth == 0) {
    tree.SaveViewState();
    isWholeUpdate = false;
    updated.clear();
  }
  if (scope == UpdateScope::Whole) isWholeUpdate = true;
  ++updateDepth;
}

void CProjectWnd::TellUpdated(const CXmlNode& node) {
  updated.insert(&node);
}

void CProjectWnd::EndTreeUpdate() {
  // Without a matching BeginTreeUpdate() no nodes have been reported, so everything is refilled.
  if (updateDepth == 0) isWholeUpdate = true;
  if (updateDepth > 0 && --updateDepth > 0) return;
  const WindowHandle own = GetHandle();
  if (isWholeUpdate) {
    tree.Refill();
  } else {
    tree.RefillNodes({updated.begin(), updated.end()});
  }
  if (IsWindow(own)) toolBar.Invalidate();
}

void CProjectWnd::ClearTree() {
  if (!tree.IsCreated()) return;
  tree.SetSelectedLabel("");
  tree.SetXmlRoot(nullptr);
}

CXmlNode* CProjectWnd::GetSelectedNode() {
  return tree.IsCreated() ? tree.GetCurrentNode() : nullptr;
}

void CProjectWnd::SelectTreeNode(CXmlNode* node) {
  tree.SelectNode(node);
}

void CProjectWnd::ForgetNode(const CXmlNode& node) {
  tree.ForgetNode(node);
  if (!updated.empty()) ForgetUpdated(node);
}

void CProjectWnd::ForgetUpdated(const CXmlNode& node) {
  updated.erase(&node);
  for (const CXmlNode* const child : node.GetChildren()) ForgetUpdated(*child);
}

void CProjectWnd::StartStepTimer() {
  SetTimer(kStepTimer, kStepPeriod);
  // Only once per start and stop; otherwise updates of the options window would stay suspended.
  if (isStepping || propertyManager == nullptr) return;
  isStepping = true;
  propertyManager->BeginUpdate();
}

void CProjectWnd::StopStepTimer() {
  KillTimer(kStepTimer);
  isStepping = false;
  if (propertyManager != nullptr) propertyManager->EndUpdate();
}

void CProjectWnd::OnTimer(int timerId) {
  const DispatchPtr held(keeper);
  if (timerId != kStepTimer || model == nullptr || model->Publishing().IsPublishingSuspended())
    return;
  model->Publishing().PublishTick();
}

}  // namespace tarn
