#include "reports/OutputReportWnd.h"

#include <string>
#include <utility>

#include "platform/text/Text.h"
#include "reports/ReportDefinition.h"
#include "widgets/HostMessages.h"

namespace tarn {

COutputReportWnd::COutputReportWnd(FileSystem& fileSystem, WindowHandle host)
    : files(fileSystem), hostWindow(host) {}

COutputReportWnd::~COutputReportWnd() {
  DestroyWindow();
}

void COutputReportWnd::SetDefinition(const CXmlNode& node) {
  auto made = std::make_unique<COutputReport>(files, hostWindow, node);
  Retire(std::exchange(report, std::move(made)));
  if (IsCreated()) CreateReport();
}

bool COutputReportWnd::OnCreate() {
  return report == nullptr || CreateReport();
}

bool COutputReportWnd::CreateReport() {
  report->SetLook(MakeReportLook());
  return report->Create(kStyleChild | kStyleVisible | kStyleStaticEdge, GetClientRect(), this,
                        kReportId);
}

void COutputReportWnd::OnSize(Size size) {
  if (report != nullptr) report->MoveWindow({0, 0, size.width, size.height});
}

void COutputReportWnd::Update(const CXmlNode& root, std::uint64_t generation) {
  if (report != nullptr && report->IsCreated()) report->Update(root, generation);
}

std::intptr_t COutputReportWnd::OnMessage(std::uint32_t message, std::intptr_t wParam,
                                          std::intptr_t /*lParam*/) {
  if (message != kMsgReportClick && message != kMsgReportEnter) return 0;
  const auto& notice = *reinterpret_cast<const ReportNotice*>(wParam);
  if (report != nullptr && notice.id == kReportId) OpenPlaceOf(notice.row);
  return 0;
}

void COutputReportWnd::OpenPlaceOf(int row) const {
  const CReportRow* clicked = report->GetRows().GetAt(row);
  if (clicked == nullptr || clicked->IsGroup()) return;
  const std::string file = report->GetValueAt(row, kOutputFile);
  const std::string line = report->GetValueAt(row, kOutputLine);
  const std::string help = report->GetValueAt(row, kOutputHelp);
  // The host may refill the report or destroy this window.
  const WindowHandle host = hostWindow;
  SendWindowMessage(host, kMsgOpenFileAtLine, reinterpret_cast<std::intptr_t>(file.c_str()),
                    -std::intptr_t{ParseDecimal(line.c_str())});
  if (help.empty()) return;
  SendWindowMessage(host, kMsgShowHelp, reinterpret_cast<std::intptr_t>(help.c_str()), 0);
}

}  // namespace tarn
