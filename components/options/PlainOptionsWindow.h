#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "widgets/MessageLoop.h"
#include "widgets/ReportControl.h"
#include "widgets/Static.h"
#include "widgets/Wnd.h"

namespace tarn {
class CXmlNode;
}

namespace tarn::options {

class PropertyManager;

// The component's own options window: lists the options of the current node by section, with their
// values and the sources of these, and explains the selected one. Text typed into a value sets it,
// Del resets it; the main frame receives the command that carries this out. For hosts that have a
// toolkit but no options window.
//
// Borrows the component, which owns the window. Main thread only.
class PlainOptionsWindow : public CWnd {
 public:
  PlainOptionsWindow(PropertyManager& propertyManager, WindowHandle mainFrame);
  ~PlainOptionsWindow() override;

  // Shows the values of the current node. No-op between BeginUpdate and EndUpdate of the component.
  void Refill();
  // Schedules a Refill on the message loop; further calls before it runs have no effect.
  void RefillSoon();

  CReportControl& GetReport() { return *report_; }
  // Returns the text below the report: help, or the reason why a value was rejected.
  const std::string& GetNote() const { return note_.GetControlText(); }

 protected:
  bool OnCreate() override;
  void OnDestroy() override;
  void OnSize(Size size) override;
  void OnTimer(int timerId) override;
  std::intptr_t OnMessage(std::uint32_t message, std::intptr_t wParam,
                          std::intptr_t lParam) override;

 private:
  class Report;
  class Record;

  // Places the report and the note below it.
  void LayOut(Size size);
  void Rebuild(const CXmlNode& definitions);
  void UpdateValues(CReportRecords& records);
  std::string CaptionOf(const Record& record);
  Record* RecordAt(int row) const;
  void OnEdited(int row);
  void Reset(int row);
  void SendCommand(const std::string& command);

  PropertyManager& manager_;
  const WindowHandle frame_;
  std::unique_ptr<CReportControl> report_;
  CStatic note_{StaticKind::Label};
  std::string layout_;  // definitions from which the rows were made
  bool isTimerSet_ = false;
};

}  // namespace tarn::options
