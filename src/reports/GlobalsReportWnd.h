#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "project/ProjectViews.h"
#include "reports/GlobalsReport.h"
#include "widgets/Menu.h"

namespace tarn {

// Window of the globals: the symbols that the linker stage wrote for an application. A double click
// opens a symbol's declaration in the host; a right click on a column header opens a menu.
class CGlobalsReportWnd : public CWnd, public IGlobalsWindow {
 public:
  // `fileSystem` is borrowed; `host` is 0 for no host. For `configFolder` see
  // `MakeGlobalsDefinition()`.
  CGlobalsReportWnd(FileSystem& fileSystem, WindowHandle host, const std::string& configFolder);
  ~CGlobalsReportWnd() override;

  // Shows the symbols in the file; nothing if the file can't be read or `path` is null. The current
  // file isn't read again if its time and size are unchanged. Always returns 1.
  std::int32_t Load(const char* path);
  // Replaces the rows of the report by the symbols below `root`.
  void SetRows(const CXmlNode& root);

  void LoadGlobals(const std::string& path) override { Load(path.c_str()); }
  const CXmlNode* GetSymbols() override { return symbols_.get(); }

  CGlobalsReport& GetReport() { return *report_; }

 protected:
  bool OnCreate() override;
  void OnSize(Size size) override;
  std::intptr_t OnMessage(std::uint32_t message, std::intptr_t wParam,
                          std::intptr_t lParam) override;

 private:
  static constexpr int kReportId = 100;

  // File whose symbols are shown.
  struct LoadedFile {
    std::string path;
    FileStatus status;
  };

  void OpenPositionOf(int row) const;
  // Defined in GlobalsMenu.cpp.
  CMenu MakeHeaderMenu(int column) const;
  void ShowHeaderMenu(int column, Point screen);
  void RunHeaderCommand(int command, int column);
  void SortBy(const CReportColumn* column, bool ascending);

  FileSystem& files_;
  const WindowHandle hostWindow_;
  std::unique_ptr<CGlobalsReport> report_;
  std::unique_ptr<CXmlNode> symbols_;
  std::optional<LoadedFile> loaded_;
};

}  // namespace tarn
