// The desktop host: shows the main window and opens what the command line names.

#include <QApplication>
#include <clocale>

#include "hosts/desktop/IdeWindow.h"
#include "platform/files/FileSystem.h"
#include "platform/memory/LargePages.h"
#include "platform/qt/QtText.h"
#include "platform/qt/QtToolkit.h"

int main(int argc, char** argv) {
  tarn::PreferLargePages();
  QApplication application(argc, argv);
  // The toolkit has set the user's, in which numbers of files would read another way.
  std::setlocale(LC_ALL, "C");
  QApplication::setApplicationName("Tarn");
  QApplication::setApplicationVersion(TARN_VERSION);
  QGuiApplication::setDesktopFileName("org.tarn.Tarn");

  const tarn::QtToolkit toolkit;
  tarn::host::IdeWindow window(tarn::FileSystem::Native());
  if (!window.Start()) return 1;
  window.show();
  const QStringList arguments = QApplication::arguments();
  if (arguments.size() > 1) window.OpenProject(tarn::FromQt(arguments.at(1)));
  return QApplication::exec();
}
