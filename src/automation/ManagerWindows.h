#pragma once

#include <memory>

#include "automation/Installation.h"
#include "output/BuildOutput.h"
#include "output/OutputEdit.h"
#include "reports/ClassWnd.h"
#include "reports/GlobalsReportWnd.h"
#include "reports/OutputReportWnd.h"
#include "views/ProjectWnd.h"

namespace tarn {

// The windows of a manager: log, build report, project tree, classes and globals. Creates them and
// offers them to the host for docking. Main thread only.
//
// The windows use the objects that they are created for until Detach(), which has to be called
// before the first of these objects is destroyed.
class ManagerWindows {
 public:
  // `fileSystem` and `userSettings` are borrowed and must outlive this object; `hostWindow` is the
  // main frame of the host, 0 for no host.
  ManagerWindows(FileSystem& fileSystem, Settings& userSettings, WindowHandle hostWindow);

  // Creates the windows of the log and of the build report, and connects them to `buildOutput`,
  // which is borrowed.
  void CreateOutputViews(CBuildOutput& buildOutput);
  // Creates the windows of the project and connects them to `projectModel`. It and `properties` are
  // borrowed. `keeper` owns this object; see CProjectWnd::SetKeeper().
  void CreateProjectWindows(CProjectModel& projectModel, CPropertyManagerDriver& properties,
                            const Installation& installation, IDispatch* keeper);
  // After this call the windows use neither the model nor the drivers nor the build output.
  void Detach();
  // Like Detach(), but for the project window only, which must no longer use its keeper.
  void DetachProjectWindow();

  // Return the window handle, 0 if the window doesn't exist. The first two also offer the windows
  // to the host.
  std::int32_t ShowProjectWindow() const;
  std::int32_t ShowOutputWindow() const;
  std::int32_t GetReportWindow() const;

 private:
  void Announce(CWnd* window, const char* title, int id) const;

  FileSystem& files_;
  Settings& settings_;
  const WindowHandle host_;
  CBuildOutput* output_ = nullptr;
  CProjectModel* model_ = nullptr;
  std::unique_ptr<COutputEdit> logView_;
  std::unique_ptr<COutputReportWnd> reportView_;
  std::unique_ptr<CProjectWnd> projectWindow_;
  std::unique_ptr<CClassWnd> classWindow_;
  std::unique_ptr<CGlobalsReportWnd> globalsWindow_;
};

}  // namespace tarn
