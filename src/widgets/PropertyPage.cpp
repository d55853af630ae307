#include "widgets/PropertyPage.h"

#include <utility>

#include "widgets/Button.h"
#include "widgets/ComboBox.h"
#include "widgets/Edit.h"
#include "widgets/HyperlinkCtrl.h"
#include "widgets/Static.h"
#include "widgets/Toolkit.h"

namespace tarn {

namespace {

std::unique_ptr<CWnd> MakeControl(const ControlRow& row) {
  switch (row.kind) {
    case ControlKind::Label:
      return std::make_unique<CStatic>(StaticKind::Label);
    case ControlKind::Frame:
      return std::make_unique<CStatic>(StaticKind::Frame);
    case ControlKind::Edit:
      return std::make_unique<CEdit>();
    case ControlKind::PushButton:
      return std::make_unique<CButton>(ButtonKind::Push);
    case ControlKind::CheckBox:
      return std::make_unique<CButton>(ButtonKind::CheckBox);
    case ControlKind::RadioButton:
      return std::make_unique<CButton>(ButtonKind::Radio, row.startsGroup);
    case ControlKind::DropDownList:
      return std::make_unique<CComboBox>();
    case ControlKind::Link:
      break;
  }
  return std::make_unique<CHyperlinkCtrl>();
}

}  // namespace

void CPropertyPage::SetHeader(std::string title, std::string subtitle) {
  headerTitle_ = std::move(title);
  headerSubtitle_ = std::move(subtitle);
}

bool CPropertyPage::OnCreate() {
  controls_.clear();
  for (const ControlRow& row : layout_.controls) {
    CWnd& control = *controls_.emplace_back(MakeControl(row));
    control.SetControlText(row.text);
    control.Create(kStyleChild | kStyleVisible | row.style, row.rect, this, row.id);
  }
  OnInitDialog();
  return true;
}

std::intptr_t CPropertyPage::OnMessage(std::uint32_t message, std::intptr_t wParam,
                                       std::intptr_t /*lParam*/) {
  if (message == kMsgControlUsed) OnControl(static_cast<int>(wParam));
  return 0;
}

std::unique_ptr<WindowPeer> CPropertyPage::MakePeer(WindowToolkit& toolkit) {
  return toolkit.MakePeer(*this);
}

}  // namespace tarn
