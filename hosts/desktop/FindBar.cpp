#include "hosts/desktop/FindBar.h"

#include <QBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QToolButton>
#include <algorithm>
#include <limits>

#include "hosts/desktop/CodeEditor.h"
#include "hosts/desktop/EditorTabs.h"
#include "hosts/desktop/SearchField.h"

namespace tarn::host {

namespace {

constexpr int kPauseMs = 200;
constexpr int kCountWidth = 130;
// More hits than a user would step through.
constexpr qsizetype kMostShown = 10000;

QToolButton* IconButton(Qt::ArrowType arrow, const QString& tip, QWidget* parent) {
  auto* const button = new QToolButton(parent);
  button->setArrowType(arrow);
  button->setAutoRaise(true);
  button->setToolTip(tip);
  button->setAccessibleName(tip);
  return button;
}

}  // namespace

FindBar::FindBar(EditorTabs& editorTabs, QWidget* parent)
    : QWidget(parent),
      editors(editorTabs),
      pattern(new SearchField(tr("Find"), this)),
      replacement(new SearchField(tr("Replace with"), this)),
      replaceRow(new QWidget(this)),
      count(new QLabel(this)) {
  setObjectName("findBar");
  pattern->setAccessibleName(tr("Text to find"));
  replacement->setAccessibleName(tr("Replace with"));
  count->setMinimumWidth(kCountWidth);
  count->setTextFormat(Qt::PlainText);
  auto* const rows = new QVBoxLayout(this);
  rows->setContentsMargins(6, 4, 6, 4);
  rows->setSpacing(4);
  auto* const row = new QHBoxLayout;
  row->addWidget(pattern, 1);
  matchCase = AddSwitch("Aa", tr("Match case"));
  wholeWord = AddSwitch("|ab|", tr("Whole words only"));
  expression = AddSwitch(".*", tr("Regular expression"));
  QToolButton* const before = IconButton(Qt::UpArrow, tr("Previous match"), this);
  QToolButton* const next = IconButton(Qt::DownArrow, tr("Next match"), this);
  auto* const close = new QToolButton(this);
  close->setText(QString(QChar(0x2715)));
  close->setAutoRaise(true);
  close->setToolTip(tr("Close"));
  close->setAccessibleName(tr("Close"));
  for (QWidget* const each : std::initializer_list<QWidget*>{matchCase, wholeWord, expression,
                                                             before, next, count, close}) {
    row->addWidget(each);
  }
  rows->addLayout(row);
  auto* const second = new QHBoxLayout(replaceRow);
  second->setContentsMargins(0, 0, 0, 0);
  auto* const one = new QPushButton(tr("&Replace"), replaceRow);
  auto* const all = new QPushButton(tr("Replace &all"), replaceRow);
  second->addWidget(replacement, 1);
  second->addWidget(one);
  second->addWidget(all);
  rows->addWidget(replaceRow);
  later.setSingleShot(true);
  connect(&later, &QTimer::timeout, this, [this] { Search(kMostShown); });
  connect(pattern, &QLineEdit::textChanged, this, [this] { Search(kMostShown); });
  connect(before, &QToolButton::clicked, this, [this] { Find(false); });
  connect(next, &QToolButton::clicked, this, [this] { Find(true); });
  connect(close, &QToolButton::clicked, this, [this] { Close(); });
  connect(one, &QPushButton::clicked, this, [this] { Replace(); });
  connect(all, &QPushButton::clicked, this, [this] { ReplaceAll(); });
  connect(&editors, &QTabWidget::currentChanged, this, [this] { Follow(); });
  setFocusProxy(pattern);
  hide();
}

QToolButton* FindBar::AddSwitch(const QString& text, const QString& tip) {
  auto* const button = new QToolButton(this);
  button->setText(text);
  button->setCheckable(true);
  button->setAutoRaise(true);
  button->setToolTip(tip);
  button->setAccessibleName(tip);
  connect(button, &QToolButton::toggled, this, [this] { Search(kMostShown); });
  return button;
}

void FindBar::Open(bool withReplacement) {
  CodeEditor* const editor = editors.Current();
  if (editor == nullptr) return;
  const QString selected = editor->selectedText();
  replaceRow->setVisible(withReplacement);
  show();
  Follow();
  if (!selected.isEmpty() && !selected.contains('\n')) pattern->setText(selected);
  pattern->selectAll();
  pattern->setFocus();
}

void FindBar::Close() {
  hide();
  result = {};
  if (CodeEditor* const editor = editors.Current()) {
    editor->MarkHits({});
    editor->setFocus();
  }
}

// Switches to the editor that is current now.
void FindBar::Follow() {
  disconnect(followed);
  disconnect(followedPlace);
  CodeEditor* const editor = editors.Current();
  if (!isVisible()) return;
  if (editor == nullptr) {
    Close();
    return;
  }
  followed = connect(editor, &QsciScintilla::textChanged, this, [this] { later.start(kPauseMs); });
  followedPlace = connect(editor, &QsciScintilla::selectionChanged, this, [this] { ShowCount(); });
  Search(kMostShown);
}

void FindBar::Search(qsizetype most) {
  later.stop();
  CodeEditor* const editor = editors.Current();
  if (editor == nullptr) return;
  const SearchOptions options{pattern->text(), matchCase->isChecked(), wholeWord->isChecked(),
                              expression->isChecked()};
  result = SearchText(editor->GetText(), options, replacement->text(), most);
  editor->MarkHits(isVisible() ? result.hits : QList<SearchHit>());
  ShowCount();
}

void FindBar::ShowCount() {
  const CodeEditor* const editor = editors.Current();
  const bool isNone = result.hits.isEmpty() && !pattern->text().isEmpty();
  if (!result.problem.isEmpty() || editor == nullptr || pattern->text().isEmpty()) {
    count->setText(result.problem);
    count->setToolTip(result.problem);
    return;
  }
  const QString all = QString::number(result.hits.size()) + (result.isCut ? "+" : "");
  const SearchHit selected = editor->Selection();
  const auto at = std::find_if(result.hits.begin(), result.hits.end(), [&](const SearchHit& hit) {
    return hit.start == selected.start && hit.length == selected.length;
  });
  if (isNone) {
    count->setText(tr("Not found"));
  } else if (at == result.hits.end()) {
    count->setText(tr("%1 found").arg(all));
  } else {
    count->setText(tr("%1 of %2").arg(at - result.hits.begin() + 1).arg(all));
  }
}

void FindBar::Find(bool isForward) {
  CodeEditor* const editor = editors.Current();
  if (editor == nullptr) return;
  if (pattern->text().isEmpty()) {
    Open(false);
    return;
  }
  Search(kMostShown);
  if (result.hits.isEmpty()) return;
  const SearchHit selected = editor->Selection();
  if (isForward) {
    const auto next = std::find_if(result.hits.begin(), result.hits.end(), [&](const auto& hit) {
      return hit.start >= selected.start + selected.length;
    });
    editor->Select(next == result.hits.end() ? result.hits.front() : *next);
  } else {
    const auto before =
        std::find_if(result.hits.rbegin(), result.hits.rend(),
                     [&](const auto& hit) { return hit.start + hit.length <= selected.start; });
    editor->Select(before == result.hits.rend() ? result.hits.back() : *before);
  }
  ShowCount();
}

void FindBar::Replace() {
  CodeEditor* const editor = editors.Current();
  if (editor == nullptr) return;
  Search(kMostShown);
  const SearchHit selected = editor->Selection();
  for (const SearchHit& hit : result.hits) {
    if (hit.start != selected.start || hit.length != selected.length) continue;
    const qsizetype before = editor->GetText().size();
    editor->ReplaceHits({hit});
    // Continue after the replacement, which may contain the search text.
    editor->Select({hit.start + hit.length + editor->GetText().size() - before, 0, {}});
    break;
  }
  Find(true);
}

void FindBar::ReplaceAll() {
  CodeEditor* const editor = editors.Current();
  if (editor == nullptr) return;
  Search(std::numeric_limits<qsizetype>::max());
  const qsizetype replaced = result.hits.size();
  editor->ReplaceHits(result.hits);
  Search(kMostShown);
  count->setText(tr("%n replaced", nullptr, static_cast<int>(replaced)));
}

void FindBar::keyPressEvent(QKeyEvent* event) {
  const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (event->key() == Qt::Key_Escape) {
    Close();
  } else if (isEnter && focusWidget() == replacement) {
    Replace();
  } else if (isEnter) {
    Find((event->modifiers() & Qt::ShiftModifier) == 0);
  } else {
    QWidget::keyPressEvent(event);
  }
}

}  // namespace tarn::host
