#include "reports/GlobalsReportWnd.h"

#include "platform/text/Text.h"
#include "reports/ReportDefinition.h"
#include "reports/SymbolFile.h"
#include "widgets/HostMessages.h"
#include "xml/XmlNode.h"

namespace tarn {

CGlobalsReportWnd::CGlobalsReportWnd(FileSystem& fileSystem, WindowHandle host,
                                     const std::string& configFolder)
    : files_(fileSystem),
      hostWindow_(host),
      report_(std::make_unique<CGlobalsReport>(fileSystem, host,
                                               *MakeGlobalsDefinition(configFolder))) {}

CGlobalsReportWnd::~CGlobalsReportWnd() {
  DestroyWindow();
}

bool CGlobalsReportWnd::OnCreate() {
  ReportLook look = MakeReportLook();
  look.captionFont = GetFont();
  look.captionFont.twips = look.captionFont.twips * 5 / 6;
  report_->SetLook(look);
  if (!report_->Create(kStyleChild | kStyleVisible | kStyleStaticEdge, GetClientRect(), this,
                       kReportId)) {
    return false;
  }
  // Show the symbols that were loaded before the window was created.
  if (symbols_ != nullptr) SetRows(*symbols_);
  return true;
}

void CGlobalsReportWnd::OnSize(Size size) {
  report_->MoveWindow({0, 0, size.width, size.height});
}

std::int32_t CGlobalsReportWnd::Load(const char* path) {
  const std::string name = OrEmpty(path);
  const std::optional<FileStatus> status = name.empty() ? std::nullopt : files_.Examine(name);
  // Compare the full path: a different folder may have a file with the same name and time.
  const bool isShown = loaded_ && status && EqualNoCase(loaded_->path, name) &&
                       loaded_->status.modifiedSeconds == status->modifiedSeconds &&
                       loaded_->status.size == status->size;
  if (isShown) return 1;
  loaded_.reset();
  symbols_ = std::make_unique<CXmlNode>();
  if (!name.empty()) {
    if (const Result<std::string> read = files_.ReadWholeFile(name)) {
      symbols_ = ReadSymbols(*read);
      if (status) loaded_ = LoadedFile{name, *status};
    }
  }
  SetRows(*symbols_);
  return 1;
}

void CGlobalsReportWnd::SetRows(const CXmlNode& root) {
  report_->Reload(&root, true, -1);
}

std::intptr_t CGlobalsReportWnd::OnMessage(std::uint32_t message, std::intptr_t wParam,
                                           std::intptr_t /*lParam*/) {
  if (message < kMsgReportClick || message > kMsgReportEdit) return 0;
  const auto& notice = *reinterpret_cast<const ReportNotice*>(wParam);
  if (notice.id != kReportId) return 0;
  if (message == kMsgReportDoubleClick || message == kMsgReportEnter) OpenPositionOf(notice.row);
  if (message == kMsgReportHeaderRightClick) ShowHeaderMenu(notice.column, notice.screen);
  return 0;
}

void CGlobalsReportWnd::OpenPositionOf(int row) const {
  const CReportRow* clicked = report_->GetRows().GetAt(row);
  if (clicked == nullptr || clicked->IsGroup()) return;
  const std::string file = report_->GetValueAt(row, kGlobalsFile);
  const std::string line = report_->GetValueAt(row, kGlobalsLine);
  SendWindowMessage(hostWindow_, kMsgOpenFileAtLine, reinterpret_cast<std::intptr_t>(file.c_str()),
                    -std::intptr_t{ParseDecimal(line.c_str())});
}

}  // namespace tarn
