// The desktop host: shows the main window and opens the files of the command line.

#include <QApplication>
#include <QCommandLineParser>
#include <QFileInfo>
#include <QIcon>
#include <QPalette>
#include <clocale>
#include <string>
#include <vector>

#include "hosts/core/LargePages.h"
#include "hosts/core/SignalHandler.h"
#include "hosts/desktop/IdeWindow.h"
#include "hosts/desktop/Translations.h"
#include "platform/files/FileSystem.h"
#include "widgets/qt/QtColor.h"
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

// Some desktops leave placeholders black in a dark theme. They then get a colour that can be read
// on any background, because the user may change the theme while the program runs.
void MakePlaceholdersReadable() {
  constexpr double kLeastContrast = 2;
  const QPalette desktop = QGuiApplication::palette();
  const QColor base = desktop.color(QPalette::Base);
  const QColor tone = desktop.color(QPalette::PlaceholderText);
  const QColor seen = tarn::Blend(base, tone, static_cast<float>(tone.alphaF()));
  if (tarn::ContrastOf(seen, base) >= kLeastContrast) return;
  // All other roles follow the desktop's palette.
  QPalette own;
  own.setColor(QPalette::PlaceholderText, QColor(Qt::gray));
  QApplication::setPalette(own);
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
  MakePlaceholdersReadable();

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
