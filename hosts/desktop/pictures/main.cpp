// Makes the screenshots of the documentation: drives the real main window with a copy of the
// installed example, and captures the screen at each step.
//
//   desktop_pictures FOLDER

#include <tarn/commands.h>

#include <QAction>
#include <QApplication>
#include <QDockWidget>
#include <QEventLoop>
#include <QKeyEvent>
#include <QLocale>
#include <QPalette>
#include <QScreen>
#include <QStyle>
#include <QStyleFactory>
#include <QTimer>
#include <QTreeView>
#include <clocale>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <sstream>
#include <stdexcept>
#include <string>

#include "hosts/desktop/CodeEditor.h"
#include "hosts/desktop/IdeWindow.h"
#include "hosts/desktop/Translations.h"
#include "platform/files/FileSystem.h"
#include "widgets/qt/QtText.h"
#include "widgets/qt/QtToolkit.h"

namespace {

namespace fs = std::filesystem;
using tarn::host::BuildEnd;
using tarn::host::IdeWindow;

constexpr int kLimitMs = 30000;
// Time until everything is drawn and only the cursor blinks.
constexpr int kSettleMs = 600;
constexpr QSize kSize{1440, 900};

void Wait(int milliseconds) {
  QEventLoop loop;
  QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
  loop.exec();
}

void WaitUntil(const std::function<bool()>& done, const char* what) {
  for (int waited = 0; !done(); waited += 20) {
    if (waited > kLimitMs) throw std::runtime_error(std::string("timed out waiting for ") + what);
    Wait(20);
  }
}

class Photographer {
 public:
  explicit Photographer(fs::path target) : folder_(std::move(target)) {
    fs::create_directories(folder_);
  }
  void Take(const char* name) const {
    Wait(kSettleMs);
    const fs::path file = folder_ / (std::string(name) + ".png");
    const QPixmap picture =
        QGuiApplication::primaryScreen()->grabWindow(0).copy(QRect(QPoint(), kSize));
    if (!picture.save(QString::fromStdString(file.string()))) {
      throw std::runtime_error(file.string() + " can't be written");
    }
    std::cout << file.string() << std::endl;
  }

 private:
  fs::path folder_;
};

QPalette DarkPalette() {
  QPalette palette(QColor(45, 46, 48));
  palette.setColor(QPalette::Base, QColor(30, 31, 33));
  palette.setColor(QPalette::AlternateBase, QColor(38, 39, 41));
  palette.setColor(QPalette::Text, QColor(220, 221, 222));
  palette.setColor(QPalette::WindowText, QColor(220, 221, 222));
  palette.setColor(QPalette::ButtonText, QColor(220, 221, 222));
  palette.setColor(QPalette::ToolTipBase, QColor(60, 61, 64));
  palette.setColor(QPalette::ToolTipText, QColor(220, 221, 222));
  palette.setColor(QPalette::PlaceholderText, QColor(140, 141, 143));
  palette.setColor(QPalette::Highlight, QColor(44, 100, 160));
  palette.setColor(QPalette::HighlightedText, Qt::white);
  palette.setColor(QPalette::Link, QColor(110, 170, 240));
  for (const auto role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText}) {
    palette.setColor(QPalette::Disabled, role, QColor(120, 121, 123));
  }
  return palette;
}

void Raise(const IdeWindow& window, const char* dock) {
  window.findChild<QDockWidget*>(dock)->raise();
}

void Build(IdeWindow& window) {
  window.Commands().Run(TARN_CMD_BUILD_ALL);
  WaitUntil([&] { return !window.Commands().IsBuilding(); }, "the end of a build");
}

void NextProblem(const IdeWindow& window) {
  for (QAction* const action : window.findChildren<QAction*>()) {
    if (action->shortcut() == QKeySequence(Qt::Key_F4)) return action->trigger();
  }
  throw std::runtime_error("no key leads to problems");
}

void Replace(const fs::path& file, const std::string& text, const std::string& by) {
  std::stringstream bytes;
  bytes << std::ifstream(file, std::ios::binary).rdbuf();
  std::string all = bytes.str();
  const std::size_t at = all.find(text);
  if (at == all.npos) throw std::runtime_error("no \"" + text + "\" in " + file.string());
  std::ofstream(file, std::ios::binary) << all.replace(at, text.size(), by);
}

void ChooseProcessor(const QWidget& dialog, const QString& typed) {
  auto* const targets = dialog.findChild<QTreeView*>();
  targets->setFocus();
  for (const QChar letter : typed) {
    QKeyEvent press(QEvent::KeyPress, Qt::Key_unknown, {}, QString(letter));
    QApplication::sendEvent(targets, &press);
  }
}

void TakeWizard(IdeWindow& window, const Photographer& camera) {
  std::string failure;
  // Runs inside the modal dialog's own event loop.
  QTimer::singleShot(0, &window, [&] {
    try {
      WaitUntil([] { return QApplication::activeModalWidget() != nullptr; }, "the wizard");
      ChooseProcessor(*QApplication::activeModalWidget(), "328p");
      camera.Take("wizard");
    } catch (const std::exception& caught) {
      failure = caught.what();
    }
    if (QWidget* const dialog = QApplication::activeModalWidget()) dialog->close();
  });
  window.Commands().Run(TARN_CMD_NEW_APPLICATION);
  if (!failure.empty()) throw std::runtime_error(failure);
}

void TakeAll(const fs::path& scratch, const Photographer& camera) {
  const fs::path project = scratch / "blinky-avr";
  fs::create_directories(scratch);
  fs::copy(TARN_SOURCE_DIR "/share/examples/blinky-avr", project, fs::copy_options::recursive);
  const tarn::QtToolkit toolkit;
  IdeWindow window(tarn::FileSystem::Native());
  if (!window.Start()) throw std::runtime_error("the installation is incomplete");
  window.setGeometry(QRect(QPoint(), kSize));
  window.show();
  camera.Take("welcome");

  window.OpenProject(project / "blinky-avr.tprj");
  window.OpenPaths({project / "src/main.c"});
  camera.Take("open");

  Build(window);
  Raise(window, "dock4004");
  camera.Take("built");
  Raise(window, "dock4015");
  camera.Take("globals");

  TakeWizard(window, camera);

  QApplication::setPalette(DarkPalette());
  Raise(window, "dock4004");
  camera.Take("dark");
  QApplication::setPalette(QApplication::style()->standardPalette());

  Replace(project / "src/drivers/led.c", ";", "");
  Build(window);
  Raise(window, "dock4006");
  NextProblem(window);
  camera.Take("error");
  window.close();
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: desktop_pictures FOLDER" << std::endl;
    return 2;
  }
  const fs::path target = fs::absolute(argv[1]);
  const fs::path scratch = fs::temp_directory_path() / "tarn-pictures";
  fs::remove_all(scratch);
  setenv("TARN_ROOT", TARN_SOURCE_DIR "/share", 1);
  setenv("TARN_SETTINGS", (scratch / "settings").c_str(), 1);
  QApplication::setDesktopSettingsAware(false);
  QApplication application(argc, argv);
  std::setlocale(LC_ALL, "C");
  QApplication::setApplicationName("Tarn");
  tarn::host::LoadTranslations(QLocale::c());
  QApplication::setStyle(QStyleFactory::create("Fusion"));
  int code = 0;
  try {
    TakeAll(scratch, Photographer(target));
  } catch (const std::exception& failure) {
    std::cerr << "desktop_pictures: " << failure.what() << std::endl;
    code = 1;
  }
  fs::current_path("/");
  std::error_code ignored;
  fs::remove_all(scratch, ignored);
  return code;
}
