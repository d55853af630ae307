#include "reports/ClassWnd.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "widgets/HostMessages.h"
#include "xml/XmlNode.h"

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
    : files_(fileSystem),
      settings_(profile),
      hostWindow_(host),
      pictureFolder_(JoinPath(configFolder, "resources")),
      sortIndex_(ParseDecimal(profile.ReadProfile(kProfileSection, kProfileEntry, "-1").c_str())) {}

CClassWnd::~CClassWnd() {
  DestroyWindow();
}

bool CClassWnd::OnCreate() {
  constexpr std::uint32_t kShownChild = kStyleChild | kStyleVisible;
  if (!tree_.Create(1, kShownChild, GetClientRect(), this, kTreeId)) return false;
  if (!toolBar_.Create(kShownChild, {}, this, kToolBarId)) return false;
  if (const auto pictures = LoadPicture(kToolBarPictures)) {
    CImageList list({pictures->size.height, pictures->size.height});
    list.Add(pictures);
    toolBar_.SetImages(std::move(list));
  }
  toolBar_.AddDropDown(kSortButton, "Sort", 0, [this] { return MakeSortMenu(); });
  CreateImages();
  return true;
}

void CClassWnd::OnSize(Size size) {
  const int top = toolBar_.GetHeightFor(size.width);
  toolBar_.MoveWindow({0, 0, size.width, top});
  tree_.MoveWindow({0, top, size.width, std::max(top, size.height)});
}

std::shared_ptr<const Bitmap> CClassWnd::LoadPicture(const std::string& name) const {
  return ReadBitmapFile(files_, JoinPath(pictureFolder_, name + ".bmp"));
}

void CClassWnd::CreateImages() {
  for (const auto& [element, picture] : kElementPictures) {
    tree_.AddImage(element, LoadPicture(picture));
  }
  AddChoiceImages();
}

void CClassWnd::AddChoiceImages() {
  for (int i = 0; sortChoices_ != nullptr && i < sortChoices_->GetChildCount(); ++i) {
    const CXmlNode& choice = *sortChoices_->GetChild(i);
    const char* header = choice.GetAttrValue("Header");
    if (choice.NameView() != "Row" || header == nullptr) continue;
    const char* picture = choice.GetAttrValue("Icon");
    tree_.AddImage(header, LoadPicture(picture == nullptr ? kUsualPicture : picture));
  }
}

void CClassWnd::SetTree(CXmlNode* node) {
  tree_.SetXmlRoot(node);
}

int CClassWnd::Load(const std::string& /*path*/) {
  return 1;
}

void CClassWnd::Clear() {
  SetContents(nullptr, nullptr);
}

CXmlNode* CClassWnd::GetCurrentNode() {
  return tree_.GetCurrentNode();
}

void CClassWnd::SelectNode(const CXmlNode* node) {
  tree_.SelectNode(node);
}

void CClassWnd::Redraw() {
  tree_.Invalidate();
}

void CClassWnd::SetContents(std::unique_ptr<CXmlNode> newTree,
                            std::unique_ptr<CXmlNode> newChoices) {
  // The control must stop showing the old tree before that is freed.
  SetTree(nullptr);
  root_.reset();
  shownTree_ = std::move(newTree);
  sortChoices_ = std::move(newChoices);
  AddChoiceImages();
  SetTree(shownTree_.get());
}

std::unique_ptr<CMenu> CClassWnd::MakeSortMenu() const {
  if (sortChoices_ == nullptr) return nullptr;
  auto menu = std::make_unique<CMenu>();
  constexpr int kMost = kLastSortCommand - kFirstSortCommand + 1;
  for (int i = 0; i < sortChoices_->GetChildCount() && i < kMost; ++i) {
    const std::string header = OrEmpty(sortChoices_->GetChild(i)->GetAttrValue("Header"));
    menu->AppendCommand(kFirstSortCommand + i, header).isChecked = i == sortIndex_;
  }
  return menu;
}

bool CClassWnd::OnCommand(int command) {
  if (command == kInfoCommand) {
    tree_.SetHelpMode(true);
    return true;
  }
  if (command < kFirstSortCommand || command > kLastSortCommand) return false;
  SortBy(command - kFirstSortCommand);
  return true;
}

void CClassWnd::SortBy(int choice) {
  const CXmlNode* chosen = sortChoices_ == nullptr ? nullptr : sortChoices_->GetChild(choice);
  const char* name = chosen == nullptr ? nullptr : chosen->GetAttrValue("Header");
  if (name == nullptr || shownTree_ == nullptr) return;
  std::vector<std::pair<std::string, const CXmlNode*>> order;
  for (const CXmlNode* child : shownTree_->GetChildren()) {
    order.emplace_back(OrEmpty(child->GetAttrValue(name)), child);
  }
  std::stable_sort(order.begin(), order.end(), [](const auto& a, const auto& b) {
    return CompareNoCase(a.first, b.first) < 0;
  });
  auto sorted = CXmlNode::CreateNode(shownTree_->NameView(), shownTree_->ValueText());
  for (const CXmlAttr& attribute : shownTree_->Attributes()) {
    sorted->AddAttr(attribute.NameView(), attribute.ValueText());
  }
  for (const auto& [value, child] : order) {
    sorted->AppendCopy(*child)->SetAttrValue("highlight", "Yes");
  }
  SetTree(nullptr);
  root_ = std::move(sorted);
  sortIndex_ = choice;
  settings_.WriteProfile(kProfileSection, kProfileEntry, ToDecimal(choice));
  SetTree(root_.get());
}

std::intptr_t CClassWnd::OnMessage(std::uint32_t message, std::intptr_t /*wParam*/,
                                   std::intptr_t /*lParam*/) {
  if (message == kXmlTreeOpen) OpenDeclaration();
  return 0;
}

void CClassWnd::OpenDeclaration() {
  const CXmlNode* node = tree_.GetCurrentNode();
  if (node == nullptr) return;
  const char* file = node->GetAttrValue("DeclFile");
  const char* line = node->GetAttrValue("DeclLine");
  if (file == nullptr || line == nullptr) return;
  // The host may destroy the node while it handles the message.
  const std::string path = file;
  SendWindowMessage(hostWindow_, kMsgOpenFileAtLine, reinterpret_cast<std::intptr_t>(path.c_str()),
                    ParseDecimal(line));
}

}  // namespace tarn
