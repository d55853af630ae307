#pragma once

#include <memory>
#include <string>
#include <vector>

#include "widgets/MessageLoop.h"
#include "widgets/ReportControl.h"
#include "widgets/Static.h"
#include "widgets/Wnd.h"
#include "xml/XmlNode.h"

namespace tarn::options {

class PropertyManager;

// The options window of the component: the options of the node held with their values and where
// these come from, below their sections, and what the selected one means. A text typed into a value
// sets it, Del takes it away; the main frame gets the command that carries this out. For hosts that
// have a toolkit and no options window of their own.
//
// Borrows the component, which owns it. On the host's thread.
class OptionsWnd : public CWnd {
 public:
  OptionsWnd(PropertyManager& propertyManager, WindowHandle mainFrame);
  ~OptionsWnd() override;

  // Shows the values of the node in hand; nothing while the component is between BeginUpdate and
  // EndUpdate.
  void Refill();
  // The same, when the loop comes round; however often it is called meanwhile.
  void RefillSoon();

  CReportControl& GetReport() { return *report; }
  // What stands below the report: help, or why a value was not taken.
  const std::string& GetNote() const { return note.GetWindowText(); }

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

  void LayOut(Size size);
  void Rebuild(const CXmlNode& definitions);
  void UpdateValues(CReportRecords& records);
  std::string CaptionOf(const Record& record);
  Record* RecordAt(int row) const;
  void OnEdited(int row);
  void Reset(int row);
  void SendCommand(const std::string& command);

  PropertyManager& manager;
  const WindowHandle frame;
  std::unique_ptr<CReportControl> report;
  CStatic note{StaticKind::Label};
  std::string layout;  // the definitions that the rows were made of
  bool isTimerSet = false;
};

}  // namespace tarn::options
