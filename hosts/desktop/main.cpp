// The desktop host: shows the main window and opens the files of the command line.

#include <QApplication>
#include <QCommandLineParser>
#include <QFileInfo>
#include <QIcon>
#include <clocale>
#include <string>
#include <vector>

#include "hosts/core/LargePages.h"
#include "hosts/core/SignalHandler.h"
#include "hosts/desktop/IdeWindow.h"
#include "hosts/desktop/Translations.h"
#include "platform/files/FileSystem.h"
#include "widgets/qt/QtText.h"
#include "widgets/qt/QtToolkit.h"

namespace {

void Describe(QCommandLineParser& parser) {
  parser.setApplicationDescription(
      QCoreApplication::translate("main", "Opens a project and files to edit."));
  parser.addPositionalArgument(
      "files", QCoreApplication::translate("main", "Project (.tprj) and source files."),
      "[FILE...]");
  parser.addHelpOption();
  parser.addVersionOption();
}

// Handles --help and --version, which must work without a display; they end the program here.
void AnswerInTerminal(int& argc, char** argv) {
  const QCoreApplication terminal(argc, argv);
  tarn::host::LoadTranslations(QLocale());
  QCommandLineParser parser;
  Describe(parser);
  // Unknown options may be the toolkit's.
  parser.parse(QCoreApplication::arguments());
  if (parser.isSet("help")) parser.showHelp();
  if (parser.isSet("version")) parser.showVersion();
}

}  // namespace

int main(int argc, char** argv) {
  QCoreApplication::setApplicationName("Tarn");
  QCoreApplication::setApplicationVersion(TARN_VERSION);
  AnswerInTerminal(argc, argv);
  tarn::host::PreferLargePages();
  QApplication application(argc, argv);
  // The toolkit has activated the user's locale, in which numbers in files would be parsed
  // differently.
  std::setlocale(LC_ALL, "C");
  QGuiApplication::setDesktopFileName("org.tarn.Tarn");
  tarn::host::LoadTranslations(QLocale());

  QApplication::setWindowIcon(
      QIcon::fromTheme("org.tarn.Tarn", QIcon(QStringLiteral(":/icons/org.tarn.Tarn.svg"))));

  QCommandLineParser parser;
  Describe(parser);
  parser.process(application);
  // Paths are made absolute, because the server changes the working folder.
  std::vector<std::string> paths;
  for (const QString& file : parser.positionalArguments()) {
    paths.push_back(tarn::FromQt(QFileInfo(file).absoluteFilePath()));
  }

  tarn::host::IgnoreFailedWriteSignals();
  const tarn::QtToolkit toolkit;
  tarn::host::IdeWindow window(tarn::FileSystem::Native());
  if (!window.Start()) return 1;
  window.show();
  const tarn::host::SignalHandler interrupts([&window] {
    QMetaObject::invokeMethod(
        &window, [&window] { window.close(); }, Qt::QueuedConnection);
  });
  window.OpenPaths(paths);
  return QApplication::exec();
}
