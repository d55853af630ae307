#include "reports/ClassWnd.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "widgets/HostMessages.h"

namespace tarn {

namespace {

constexpr const char* kProfileSection = "Classes";
constexpr const char* kProfileEntry = "Sorted";
constexpr const char* kUsualPicture = "class-variable";
constexpr const char* kToolBarPictures = "class-toolbar";

constexpr std::pair<const char*, const char*> kElementPictures[] = {
    {"aoffile", "class-file"},  {"variable", "class-variable"}, {"type", "class-type"},
    {"define", "class-define"}, {"func", "class-func"},
};

}  // namespace

CXmlGlobalsCtrl::~CXmlGlobalsCtrl() {
  DestroyWindow();
}

CClassWnd::CClassWnd(FileSystem& fileSystem, Settings& profile, WindowHandle host,
                     const std::string& configFolder)
    : files(fileSystem),
      settings(profile),
      hostWindow(host),
      pictureFolder(JoinPath(configFolder, "resources")),
      sortIndex(ParseDecimal(profile.ReadProfile(kProfileSection, kProfileEntry, "-1").c_str())) {}

CClassWnd::~CClassWnd() {
  DestroyWindow();
}

bool CClassWnd::OnCreate() {
  constexpr std::uint32_t kShownChild = kStyleChild | kStyleVisible;
  if (!tree.Create(1, kShownChild, GetClientRect(), this, kTreeId)) return false;
  if (!toolBar.Create(kShownChild, {}, this, kToolBarId)) return false;
  if (const auto pictures = LoadPicture(kToolBarPictures)) {
    CImageList list({pictures->size.height, pictures->size.height});
    list.Add(pictures);
    toolBar.SetImages(std::move(list));
  }
  toolBar.AddDropDown(kSortButton, "Sort", 0, [this] { return MakeSortMenu(); });
  CreateImages();
  return true;
}

void CClassWnd::OnSize(Size size) {
  const int top = toolBar.GetHeightFor(size.width);
  toolBar.MoveWindow({0, 0, size.width, top});
  tree.MoveWindow({0, top, size.width, std::max(top, size.height)});
}

std::shared_ptr<const Bitmap> CClassWnd::LoadPicture(const std::string& name) const {
  return ReadBitmapFile(files, JoinPath(pictureFolder, name + ".bmp"));
}

void CClassWnd::CreateImages() {
  for (const auto& [element, picture] : kElementPictures) {
    tree.AddImage(element, LoadPicture(picture));
  }
  AddChoiceImages();
}

void CClassWnd::AddChoiceImages() {
  for (int i = 0; sortChoices != nullptr && i < sortChoices->GetChildCount(); ++i) {
    const CXmlNode& choice = *sortChoices->GetChild(i);
    const char* header = choice.GetAttrValue("Header");
    if (choice.NameView() != "Row" || header == nullptr) continue;
    const char* picture = choice.GetAttrValue("Icon");
    tree.AddImage(header, LoadPicture(picture == nullptr ? kUsualPicture : picture));
  }
}

void CClassWnd::SetTree(CXmlNode* node) {
  tree.SetXmlRoot(node);
}

int CClassWnd::Load(const std::string& /*path*/) {
  return 1;
}

void CClassWnd::Clear() {
  SetContents(nullptr, nullptr);
}

CXmlNode* CClassWnd::GetCurrentNode() {
  return tree.GetCurrentNode();
}

void CClassWnd::SelectNode(const CXmlNode* node) {
  tree.SelectNode(node);
}

void CClassWnd::Redraw() {
  tree.Invalidate();
}

void CClassWnd::SetContents(std::unique_ptr<CXmlNode> newTree,
                            std::unique_ptr<CXmlNode> newChoices) {
  // The control must stop showing the old tree before that is freed.
  SetTree(nullptr);
  root.reset();
  shownTree = std::move(newTree);
  sortChoices = std::move(newChoices);
  AddChoiceImages();
  SetTree(shownTree.get());
}

std::unique_ptr<CMenu> CClassWnd::MakeSortMenu() const {
  if (sortChoices == nullptr) return nullptr;
  auto menu = std::make_unique<CMenu>();
  constexpr int kMost = kLastSortCommand - kFirstSortCommand + 1;
  for (int i = 0; i < sortChoices->GetChildCount() && i < kMost; ++i) {
    const std::string header = TextOf(sortChoices->GetChild(i)->GetAttrValue("Header"));
    menu->AppendCommand(kFirstSortCommand + i, header).isChecked = i == sortIndex;
  }
  return menu;
}

bool CClassWnd::OnCommand(int command) {
  if (command == kInfoCommand) {
    tree.SetHelpMode(true);
    return true;
  }
  if (command < kFirstSortCommand || command > kLastSortCommand) return false;
  SortBy(command - kFirstSortCommand);
  return true;
}

void CClassWnd::SortBy(int choice) {
  const CXmlNode* chosen = sortChoices == nullptr ? nullptr : sortChoices->GetChild(choice);
  const char* name = chosen == nullptr ? nullptr : chosen->GetAttrValue("Header");
  if (name == nullptr || shownTree == nullptr) return;
  std::vector<std::pair<std::string, const CXmlNode*>> order;
  for (const CXmlNode* child : shownTree->GetChildren()) {
    order.emplace_back(TextOf(child->GetAttrValue(name)), child);
  }
  std::stable_sort(order.begin(), order.end(), [](const auto& a, const auto& b) {
    return CompareNoCase(a.first, b.first) < 0;
  });
  auto sorted = CXmlNode::CreateNode(shownTree->NameView(), shownTree->ValueText());
  for (const CXmlAttr& attribute : shownTree->Attributes()) {
    sorted->AddAttr(attribute.NameView(), attribute.ValueText());
  }
  for (const auto& [value, child] : order) {
    sorted->AppendCopy(*child)->SetAttrValue("highlight", "Yes");
  }
  SetTree(nullptr);
  root = std::move(sorted);
  sortIndex = choice;
  settings.WriteProfile(kProfileSection, kProfileEntry, ToDecimal(choice));
  SetTree(root.get());
}

std::intptr_t CClassWnd::OnMessage(std::uint32_t message, std::intptr_t /*wParam*/,
                                   std::intptr_t /*lParam*/) {
  if (message == kXmlTreeOpen) OpenDeclaration();
  return 0;
}

void CClassWnd::OpenDeclaration() {
  const CXmlNode* node = tree.GetCurrentNode();
  if (node == nullptr) return;
  const char* file = node->GetAttrValue("DeclFile");
  const char* line = node->GetAttrValue("DeclLine");
  if (file == nullptr || line == nullptr) return;
  // The host may destroy the node while it handles the message.
  const std::string path = file;
  SendWindowMessage(hostWindow, kMsgOpenFileAtLine, reinterpret_cast<std::intptr_t>(path.c_str()),
                    ParseDecimal(line));
}

}  // namespace tarn
