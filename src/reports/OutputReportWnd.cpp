#include "reports/OutputReportWnd.h"

#include <string>
#include <utility>

#include "platform/text/Text.h"
#include "reports/ReportDefinition.h"
#include "widgets/HostMessages.h"

namespace tarn {

COutputReportWnd::COutputReportWnd(FileSystem& fileSystem, WindowHandle host)
    : files_(fileSystem), hostWindow_(host) {}

COutputReportWnd::~COutputReportWnd() {
  DestroyWindow();
}

void COutputReportWnd::SetDefinition(const CXmlNode& node) {
  auto made = std::make_unique<COutputReport>(files_, hostWindow_, node);
  Retire(std::exchange(report_, std::move(made)));
  if (IsCreated()) CreateReport();
}

bool COutputReportWnd::OnCreate() {
  return report_ == nullptr || CreateReport();
}

bool COutputReportWnd::CreateReport() {
  report_->SetLook(MakeReportLook());
  return report_->Create(kStyleChild | kStyleVisible | kStyleStaticEdge, GetClientRect(), this,
                         kReportId);
}

void COutputReportWnd::OnSize(Size size) {
  if (report_ != nullptr) report_->MoveWindow({0, 0, size.width, size.height});
}

void COutputReportWnd::Update(const CXmlNode& root, std::uint64_t generation) {
  if (report_ != nullptr && report_->IsCreated()) report_->Update(root, generation);
}

std::intptr_t COutputReportWnd::OnMessage(std::uint32_t message, std::intptr_t wParam,
                                          std::intptr_t /*lParam*/) {
  if (message != kMsgReportClick && message != kMsgReportEnter) return 0;
  const auto& notice = *reinterpret_cast<const ReportNotice*>(wParam);
  if (report_ != nullptr && notice.id == kReportId) OpenPositionOf(notice.row);
  return 0;
}

void COutputReportWnd::OpenPositionOf(int row) const {
  const CReportRow* clicked = report_->GetRows().GetAt(row);
  if (clicked == nullptr || clicked->IsGroup()) return;
  const std::string file = report_->GetValueAt(row, kOutputFile);
  const std::string line = report_->GetValueAt(row, kOutputLine);
  const std::string help = report_->GetValueAt(row, kOutputHelp);
  // The host may refill the report or destroy this window.
  const WindowHandle host = hostWindow_;
  SendWindowMessage(host, kMsgOpenFileAtLine, reinterpret_cast<std::intptr_t>(file.c_str()),
                    -std::intptr_t{ParseDecimal(line.c_str())});
  if (help.empty()) return;
  SendWindowMessage(host, kMsgShowHelp, reinterpret_cast<std::intptr_t>(help.c_str()), 0);
}

}  // namespace tarn
