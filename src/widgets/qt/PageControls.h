#pragma once

#include <memory>

#include "widgets/Button.h"
#include "widgets/ComboBox.h"
#include "widgets/HyperlinkCtrl.h"
#include "widgets/PropertyPage.h"
#include "widgets/Static.h"

// Peers of a page and its plain controls.
namespace tarn {

std::unique_ptr<ButtonPeer> MakeButtonPeer(CButton& button);
std::unique_ptr<ComboBoxPeer> MakeComboBoxPeer(CComboBox& list);
std::unique_ptr<WindowPeer> MakeHyperlinkPeer(CHyperlinkCtrl& link);
std::unique_ptr<WindowPeer> MakePagePeer(CPropertyPage& page);
std::unique_ptr<WindowPeer> MakeStaticPeer(CStatic& text);

}  // namespace tarn
