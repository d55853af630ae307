#include "hosts/desktop/EditMenu.h"

#include <QCoreApplication>
#include <QInputDialog>
#include <QMenu>
#include <QMetaMethod>

#include "hosts/desktop/CodeEditor.h"
#include "hosts/desktop/DeclarationSearch.h"
#include "hosts/desktop/EditorTabs.h"
#include "hosts/desktop/FindBar.h"

namespace tarn::host {

namespace {

QString Translate(const char* text) {
  return QCoreApplication::translate("EditMenu", text);
}

struct TextCommand {
  const char* text;
  QKeySequence::StandardKey key;
  const char* method;  // name of the slot in all text widgets
};

constexpr TextCommand kTextCommands[] = {
    {QT_TRANSLATE_NOOP("EditMenu", "&Undo"), QKeySequence::Undo, "undo"},
    {QT_TRANSLATE_NOOP("EditMenu", "&Redo"), QKeySequence::Redo, "redo"},
    {nullptr, QKeySequence::UnknownKey, nullptr},
    {QT_TRANSLATE_NOOP("EditMenu", "Cu&t"), QKeySequence::Cut, "cut"},
    {QT_TRANSLATE_NOOP("EditMenu", "&Copy"), QKeySequence::Copy, "copy"},
    {QT_TRANSLATE_NOOP("EditMenu", "&Paste"), QKeySequence::Paste, "paste"},
    {QT_TRANSLATE_NOOP("EditMenu", "Select &all"), QKeySequence::SelectAll, "selectAll"},
};

bool Understands(const QWidget* widget, const char* method) {
  const QByteArray signature = QByteArray(method) + "()";
  return widget != nullptr && widget->metaObject()->indexOfMethod(signature) >= 0;
}

// Returns an action with the same shortcut in a parent of the focused widget, such as the options
// window's own undo; nullptr if there is none.
QAction* OwnAction(const QWidget* focused, const QAction& menuAction) {
  for (const QWidget* widget = focused; widget != nullptr; widget = widget->parentWidget()) {
    for (QAction* const action : widget->actions()) {
      if (action != &menuAction && action->shortcuts().contains(menuAction.shortcut())) {
        return action;
      }
    }
  }
  return nullptr;
}

void AddTextCommand(QMenu& menu, const TextCommand& command, QWidget& window, EditorTabs& editors) {
  QAction* const action = menu.addAction(Translate(command.text));
  action->setShortcut(command.key);
  // Limited to the editors: other windows use these keys differently, for example the tree for its
  // nodes.
  action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
  editors.addAction(action);
  const auto target = [&window, &editors, method = command.method]() -> QWidget* {
    QWidget* const focused = window.focusWidget();
    return Understands(focused, method) ? focused : editors.Current();
  };
  const auto own = [&window, action, method = command.method]() -> QAction* {
    QWidget* const focused = window.focusWidget();
    return Understands(focused, method) ? nullptr : OwnAction(focused, *action);
  };
  QObject::connect(action, &QAction::triggered, &menu, [own, target, method = command.method] {
    if (QAction* const instead = own()) {
      instead->trigger();
    } else if (QWidget* const widget = target()) {
      QMetaObject::invokeMethod(widget, method);
    }
  });
  QObject::connect(&menu, &QMenu::aboutToShow, action, [action, own, target, text = command.text] {
    const QAction* const instead = own();
    action->setText(instead != nullptr ? instead->text() : Translate(text));
    action->setEnabled(instead != nullptr ? instead->isEnabled() : target() != nullptr);
  });
  QObject::connect(&menu, &QMenu::aboutToHide, action, [action] { action->setEnabled(true); });
}

void AskForLine(QWidget& window, const EditorTabs& editors) {
  CodeEditor* const editor = editors.Current();
  if (editor == nullptr) return;
  int line = 0;
  int column = 0;
  editor->getCursorPosition(&line, &column);
  bool isChosen = false;
  const int chosen = QInputDialog::getInt(
      &window, Translate(QT_TRANSLATE_NOOP("EditMenu", "Go to line")),
      Translate(QT_TRANSLATE_NOOP("EditMenu", "Line (1 to %1):")).arg(editor->lines()), line + 1, 1,
      editor->lines(), 1, &isChosen);
  if (isChosen && editors.Current() == editor) editor->GoToLine(chosen);
}

}  // namespace

QMenu* MakeEditMenu(QWidget& window, EditorTabs& editors, FindBar& findBar,
                    DeclarationSearch& declarations) {
  auto* const menu = new QMenu(Translate(QT_TRANSLATE_NOOP("EditMenu", "&Edit")), &window);
  for (const TextCommand& each : kTextCommands) {
    if (each.text == nullptr) {
      menu->addSeparator();
    } else {
      AddTextCommand(*menu, each, window, editors);
    }
  }
  menu->addSeparator();
  const auto add = [&](const char* text, const QKeySequence& keys, std::function<void()> run) {
    QAction* const action = menu->addAction(Translate(text), keys, menu, std::move(run));
    QObject::connect(menu, &QMenu::aboutToShow, action,
                     [action, &editors] { action->setEnabled(editors.Current() != nullptr); });
    QObject::connect(menu, &QMenu::aboutToHide, action, [action] { action->setEnabled(true); });
  };
  add(QT_TRANSLATE_NOOP("EditMenu", "&Find..."), QKeySequence::Find,
      [&findBar] { findBar.Open(false); });
  add(QT_TRANSLATE_NOOP("EditMenu", "Find &next"), Qt::Key_F3, [&findBar] { findBar.Find(true); });
  add(QT_TRANSLATE_NOOP("EditMenu", "Find pre&vious"), Qt::SHIFT | Qt::Key_F3,
      [&findBar] { findBar.Find(false); });
  add(QT_TRANSLATE_NOOP("EditMenu", "R&eplace..."), Qt::CTRL | Qt::Key_H,
      [&findBar] { findBar.Open(true); });
  menu->addSeparator();
  add(QT_TRANSLATE_NOOP("EditMenu", "&Go to line..."), Qt::CTRL | Qt::Key_G,
      [&window, &editors] { AskForLine(window, editors); });
  add(QT_TRANSLATE_NOOP("EditMenu", "Go to &declaration"), Qt::Key_F12,
      [&declarations] { declarations.Go(); });
  return menu;
}

}  // namespace tarn::host
