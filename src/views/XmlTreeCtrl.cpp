#include "views/XmlTreeCtrl.h"

#include <algorithm>
#include <utility>

#include "xml/XmlNode.h"

namespace tarn {

namespace {

constexpr Size kMarkerSize{16, 16};

}  // namespace

CXmlTreeCtrl::~CXmlTreeCtrl() {
  DestroyWindow();
}

bool CXmlTreeCtrl::Create(int mode, std::uint32_t newStyle, const Rect& place, CWnd* above,
                          int newId) {
  if (mode == 1 || mode == 2) {
    newStyle |= kTreeHasButtons | kTreeHasLines | kTreeLinesAtRoot | kTreeShowsSelectionAlways;
  }
  return CWnd::Create(newStyle, place, above, newId) && tipWindow.Create(this);
}

void CXmlTreeCtrl::OnDestroy() {
  if (dragging) EndDrag();
  currentNode = nullptr;
  rootNode = nullptr;
  isEmpty = true;
  ++fillCount;
  CTreeCtrl::OnDestroy();
}

void CXmlTreeCtrl::AddImage(const std::string& name, std::shared_ptr<const Bitmap> bitmap) {
  const auto hasName = [&](const CXmlTreeImage& entry) { return entry.name == name; };
  if (bitmap == nullptr || std::any_of(imageEntries.begin(), imageEntries.end(), hasName)) return;
  if (imageList == nullptr) {
    imageList = std::make_unique<CImageList>(bitmap->size);
    SetImageList(imageList.get());
  }
  imageEntries.push_back({name, imageList->Add(std::move(bitmap))});
}

void CXmlTreeCtrl::RemoveImage(const std::string& name) {
  std::erase_if(imageEntries, [&](const CXmlTreeImage& entry) { return entry.name == name; });
}

void CXmlTreeCtrl::AddMarkerImages(std::shared_ptr<const Bitmap> bitmap) {
  if (markerImageList == nullptr) markerImageList = std::make_unique<CImageList>(kMarkerSize);
  markerImageList->Add(std::move(bitmap));
  Invalidate();
}

void CXmlTreeCtrl::SetShowInfo(bool on) {
  if (on == showInfo) return;
  showInfo = on;
  Invalidate();
}

CTreeItem* CXmlTreeCtrl::FindItem(const CXmlNode* node) const {
  const auto found = items.find(node);
  return found == items.end() ? nullptr : found->second;
}

void CXmlTreeCtrl::SelectNode(const CXmlNode* node) {
  const CTreeItem* const chosen = GetSelectedItem();
  // The new selection replaces a freed node, whose label must not be used at the next fill.
  if (chosen != nullptr && NodeOf(*chosen) == nullptr) selectedNode = node;
  CTreeItem* const item = FindItem(node);
  if (item == nullptr) return;
  isSelectingNode = true;
  SelectItem(item);
  isSelectingNode = false;
  currentNode = NodeOf(*item);
  if (const CWnd* const hears = GetOwner()) {
    PostWindowMessage(hears->GetHandle(), kXmlTreeSelect, 0, 0);
  }
}

Rect CXmlTreeCtrl::GetNodeTextRect(const CXmlNode& node) const {
  const CTreeItem* const item = FindItem(&node);
  return item == nullptr ? Rect{} : GetTextRect(*item);
}

}  // namespace tarn
