// Drives the main window by commands on standard input, for tests that need it in a separate
// process, such as one that is killed. Replies to each line with "ok" or "failed". The end of the
// input closes the window.
//
//   open FILE             opens a project or a file to edit
//   type TEXT             types into the current editor at the cursor
//   add FILE              adds a file to the project
//   option NODE KEY TEXT  sets an option of a node, such as C.Compiler.Defines
//   save                  saves everything
//   wait MILLISECONDS     waits
//   press NAME            presses a button of the current dialog, by object name
//   kill                  ends the process with SIGKILL

#include <signal.h>
#include <unistd.h>

#include <QAction>
#include <QApplication>
#include <QElapsedTimer>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QSocketNotifier>
#include <QTimer>
#include <clocale>
#include <functional>
#include <iostream>
#include <map>
#include <string>

#include "hosts/desktop/CodeEditor.h"
#include "hosts/desktop/IdeWindow.h"
#include "hosts/desktop/OptionsGrid.h"
#include "hosts/desktop/OptionsWindow.h"
#include "platform/files/FileSystem.h"
#include "widgets/qt/QtText.h"
#include "widgets/qt/QtToolkit.h"

namespace {

using tarn::host::IdeWindow;

constexpr int kLimitMs = 20000;

void Wait(int milliseconds) {
  QEventLoop loop;
  QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
  loop.exec();
}

bool WaitUntil(const std::function<bool()>& done) {
  QElapsedTimer time;
  time.start();
  while (!done() && time.elapsed() < kLimitMs) Wait(5);
  return done();
}

class Driver {
 public:
  explicit Driver(IdeWindow& drivenWindow) : window_(drivenWindow) {}

  bool Run(const std::string& line) {
    const std::size_t space = line.find(' ');
    const std::string name = line.substr(0, space);
    const std::string rest = space == std::string::npos ? std::string() : line.substr(space + 1);
    const std::map<std::string, std::function<bool()>> commands = {
        {"open", [&] { return Open(rest); }},
        {"type", [&] { return Type(rest); }},
        {"add", [&] { return window_.Session().Manager().AddExistingItem(rest) != 0; }},
        {"option", [&] { return SetOption(rest); }},
        {"save", [&] { return Save(); }},
        {"wait", [&] { return Wait(std::stoi(rest)), true; }},
        {"press", [&] { return Press(rest); }},
        {"kill", [] { return kill(getpid(), SIGKILL) == 0; }},
    };
    const auto found = commands.find(name);
    return found != commands.end() && found->second();
  }

 private:
  bool Open(const std::string& path) {
    window_.OpenPaths({path});
    return true;
  }
  bool Type(const std::string& text) {
    tarn::host::CodeEditor* const editor = window_.Editors().Current();
    if (editor == nullptr) return false;
    editor->insert(tarn::ToQt(text));
    return true;
  }
  bool SetOption(const std::string& words) {
    const std::size_t first = words.find(' ');
    const std::size_t second = words.find(' ', first + 1);
    window_.Session().Inspector().SelectNodeByKey(words.substr(0, first));
    auto& model = window_.Options().Grid().Model();
    const std::string key = words.substr(first + 1, second - first - 1);
    const auto value = [&] { return model.Find(key).siblingAtColumn(1); };
    return WaitUntil([&] { return value().isValid(); }) &&
           model.setData(value(), tarn::ToQt(words.substr(second + 1)), Qt::EditRole);
  }
  bool Save() {
    for (QAction* const action : window_.findChildren<QAction*>()) {
      if (action->shortcut() != QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_S)) continue;
      action->trigger();
      return window_.Session().TakeSaveReport().problems.empty();
    }
    return false;
  }
  bool Press(const std::string& name) {
    QPushButton* button = nullptr;
    WaitUntil([&] {
      QWidget* const dialog = QApplication::activeModalWidget();
      if (dialog != nullptr) button = dialog->findChild<QPushButton*>(tarn::ToQt(name));
      return button != nullptr;
    });
    if (button != nullptr) button->click();
    return button != nullptr;
  }

  IdeWindow& window_;
};

}  // namespace

int main(int argc, char** argv) {
  QApplication::setDesktopSettingsAware(false);
  QApplication application(argc, argv);
  std::setlocale(LC_ALL, "C");
  const tarn::QtToolkit toolkit;
  IdeWindow window(tarn::FileSystem::Native());
  if (!window.Start()) return 1;
  window.show();
  Driver driver(window);
  // Questions not handled by a line are cancelled.
  QTimer questions;
  QObject::connect(&questions, &QTimer::timeout, &window, [] {
    if (auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
      std::cerr << tarn::FromQt(box->text()) << std::endl;
      box->reject();
    }
  });
  questions.start(50);
  std::string pending;
  QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
  QObject::connect(&input, &QSocketNotifier::activated, &window, [&] {
    char bytes[4096];
    const ssize_t count = read(STDIN_FILENO, bytes, sizeof bytes);
    if (count <= 0) {
      input.setEnabled(false);
      window.close();
      return;
    }
    pending.append(bytes, static_cast<std::size_t>(count));
    input.setEnabled(false);  // a command may run the event loop
    for (std::size_t end = 0; (end = pending.find('\n')) != std::string::npos;) {
      const std::string line = pending.substr(0, end);
      pending.erase(0, end + 1);
      std::cout << (driver.Run(line) ? "ok" : "failed") << std::endl;
    }
    input.setEnabled(true);
  });
  return QApplication::exec();
}
