#pragma once

#include <memory>

#include "output/OutputViews.h"
#include "reports/OutputReport.h"

namespace tarn {

// Window of the build report. A click on a row notifies the host of the source position, and of the
// help page if the message has one.
class COutputReportWnd : public CWnd, public IReportView {
 public:
  // `fileSystem` is borrowed; `host` is 0 for no host.
  COutputReportWnd(FileSystem& fileSystem, WindowHandle host);
  ~COutputReportWnd() override;

  // Creates the report; Update() is a no-op before this call. See `MakeOutputDefinition()`.
  void SetDefinition(const CXmlNode& node);
  void Update(const CXmlNode& root, std::uint64_t generation) override;

  // Returns nullptr until SetDefinition() was called.
  COutputReport* GetReport() { return report_.get(); }

 protected:
  bool OnCreate() override;
  void OnSize(Size size) override;
  std::intptr_t OnMessage(std::uint32_t message, std::intptr_t wParam,
                          std::intptr_t lParam) override;

 private:
  static constexpr int kReportId = 100;
  bool CreateReport();
  void OpenPositionOf(int row) const;

  FileSystem& files_;
  std::unique_ptr<COutputReport> report_;
  const WindowHandle hostWindow_;
};

}  // namespace tarn
