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
  return CWnd::Create(newStyle, place, above, newId) && tipWindow_.Create(this);
}

void CXmlTreeCtrl::OnDestroy() {
  if (dragging_) EndDrag();
  currentNode_ = nullptr;
  rootNode_ = nullptr;
  isEmpty_ = true;
  ++fillCount_;
  CTreeCtrl::OnDestroy();
}

void CXmlTreeCtrl::AddImage(const std::string& name, std::shared_ptr<const Bitmap> bitmap) {
  const auto hasName = [&](const CXmlTreeImage& entry) { return entry.name == name; };
  if (bitmap == nullptr || std::any_of(imageEntries_.begin(), imageEntries_.end(), hasName)) return;
  if (imageList_ == nullptr) {
    imageList_ = std::make_unique<CImageList>(bitmap->size);
    SetImageList(imageList_.get());
  }
  imageEntries_.push_back({name, imageList_->Add(std::move(bitmap))});
}

void CXmlTreeCtrl::RemoveImage(const std::string& name) {
  std::erase_if(imageEntries_, [&](const CXmlTreeImage& entry) { return entry.name == name; });
}

void CXmlTreeCtrl::AddMarkerImages(std::shared_ptr<const Bitmap> bitmap) {
  if (markerImageList_ == nullptr) markerImageList_ = std::make_unique<CImageList>(kMarkerSize);
  markerImageList_->Add(std::move(bitmap));
  Invalidate();
}

void CXmlTreeCtrl::SetShowInfo(bool on) {
  if (on == showInfo_) return;
  showInfo_ = on;
  Invalidate();
}

CTreeItem* CXmlTreeCtrl::FindItem(const CXmlNode* node) const {
  const auto found = items_.find(node);
  return found == items_.end() ? nullptr : found->second;
}

void CXmlTreeCtrl::SelectNode(const CXmlNode* node) {
  const CTreeItem* const chosen = GetSelectedItem();
  // The new selection replaces a freed node, whose label must not be used at the next fill.
  if (chosen != nullptr && NodeOf(*chosen) == nullptr) selectedNode_ = node;
  CTreeItem* const item = FindItem(node);
  if (item == nullptr) return;
  isSelectingNode_ = true;
  SelectItem(item);
  isSelectingNode_ = false;
  currentNode_ = NodeOf(*item);
  if (const CWnd* const owner = GetOwner()) {
    PostWindowMessage(owner->GetHandle(), kXmlTreeSelect, 0, 0);
  }
}

Rect CXmlTreeCtrl::GetNodeTextRect(const CXmlNode& node) const {
  const CTreeItem* const item = FindItem(&node);
  return item == nullptr ? Rect{} : GetTextRect(*item);
}

}  // namespace tarn
