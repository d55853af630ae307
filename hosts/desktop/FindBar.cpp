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

constexpr int kSearchDelayMs = 200;
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
      editors_(editorTabs),
      pattern_(new SearchField(tr("Find"), this)),
      replacement_(new SearchField(tr("Replace with"), this)),
      replaceRow_(new QWidget(this)),
      count_(new QLabel(this)) {
  setObjectName("findBar");
  pattern_->setAccessibleName(tr("Text to find"));
  replacement_->setAccessibleName(tr("Replace with"));
  count_->setMinimumWidth(kCountWidth);
  count_->setTextFormat(Qt::PlainText);
  auto* const rows = new QVBoxLayout(this);
  rows->setContentsMargins(6, 4, 6, 4);
  rows->setSpacing(4);
  auto* const row = new QHBoxLayout;
  row->addWidget(pattern_, 1);
  matchCase_ = AddSwitch("Aa", tr("Match case"));
  wholeWord_ = AddSwitch("|ab|", tr("Whole words only"));
  expression_ = AddSwitch(".*", tr("Regular expression"));
  QToolButton* const before = IconButton(Qt::UpArrow, tr("Previous match"), this);
  QToolButton* const next = IconButton(Qt::DownArrow, tr("Next match"), this);
  auto* const close = new QToolButton(this);
  close->setText(QString(QChar(0x2715)));
  close->setAutoRaise(true);
  close->setToolTip(tr("Close"));
  close->setAccessibleName(tr("Close"));
  for (QWidget* const each : std::initializer_list<QWidget*>{matchCase_, wholeWord_, expression_,
                                                             before, next, count_, close}) {
    row->addWidget(each);
  }
  rows->addLayout(row);
  auto* const second = new QHBoxLayout(replaceRow_);
  second->setContentsMargins(0, 0, 0, 0);
  auto* const one = new QPushButton(tr("&Replace"), replaceRow_);
  auto* const all = new QPushButton(tr("Replace &all"), replaceRow_);
  second->addWidget(replacement_, 1);
  second->addWidget(one);
  second->addWidget(all);
  rows->addWidget(replaceRow_);
  later_.setSingleShot(true);
  connect(&later_, &QTimer::timeout, this, [this] { Search(kMostShown); });
  connect(pattern_, &QLineEdit::textChanged, this, [this] { Search(kMostShown); });
  connect(before, &QToolButton::clicked, this, [this] { Find(false); });
  connect(next, &QToolButton::clicked, this, [this] { Find(true); });
  connect(close, &QToolButton::clicked, this, [this] { Close(); });
  connect(one, &QPushButton::clicked, this, [this] { Replace(); });
  connect(all, &QPushButton::clicked, this, [this] { ReplaceAll(); });
  connect(&editors_, &QTabWidget::currentChanged, this, [this] { Follow(); });
  setFocusProxy(pattern_);
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
  CodeEditor* const editor = editors_.Current();
  if (editor == nullptr) return;
  const QString selected = editor->selectedText();
  replaceRow_->setVisible(withReplacement);
  show();
  Follow();
  if (!selected.isEmpty() && !selected.contains('\n')) pattern_->setText(selected);
  pattern_->selectAll();
  pattern_->setFocus();
}

void FindBar::Close() {
  hide();
  result_ = {};
  if (CodeEditor* const editor = editors_.Current()) {
    editor->MarkHits({});
    editor->setFocus();
  }
}

// Switches to the editor that is current now.
void FindBar::Follow() {
  disconnect(followed_);
  disconnect(followedPlace_);
  CodeEditor* const editor = editors_.Current();
  if (!isVisible()) return;
  if (editor == nullptr) {
    Close();
    return;
  }
  followed_ =
      connect(editor, &QsciScintilla::textChanged, this, [this] { later_.start(kSearchDelayMs); });
  followedPlace_ = connect(editor, &QsciScintilla::selectionChanged, this, [this] { ShowCount(); });
  Search(kMostShown);
}

void FindBar::Search(qsizetype most) {
  later_.stop();
  CodeEditor* const editor = editors_.Current();
  if (editor == nullptr) return;
  const SearchOptions options{pattern_->text(), matchCase_->isChecked(), wholeWord_->isChecked(),
                              expression_->isChecked()};
  result_ = SearchText(editor->GetText(), options, replacement_->text(), most);
  editor->MarkHits(isVisible() ? result_.hits : QList<SearchHit>());
  ShowCount();
}

void FindBar::ShowCount() {
  const CodeEditor* const editor = editors_.Current();
  const bool isNone = result_.hits.isEmpty() && !pattern_->text().isEmpty();
  if (!result_.problem.isEmpty() || editor == nullptr || pattern_->text().isEmpty()) {
    count_->setText(result_.problem);
    count_->setToolTip(result_.problem);
    return;
  }
  const QString all = QString::number(result_.hits.size()) + (result_.isCut ? "+" : "");
  const SearchHit selected = editor->Selection();
  const auto at = std::find_if(result_.hits.begin(), result_.hits.end(), [&](const SearchHit& hit) {
    return hit.start == selected.start && hit.length == selected.length;
  });
  if (isNone) {
    count_->setText(tr("Not found"));
  } else if (at == result_.hits.end()) {
    count_->setText(tr("%1 found").arg(all));
  } else {
    count_->setText(tr("%1 of %2").arg(at - result_.hits.begin() + 1).arg(all));
  }
}

void FindBar::Find(bool isForward) {
  CodeEditor* const editor = editors_.Current();
  if (editor == nullptr) return;
  if (pattern_->text().isEmpty()) {
    Open(false);
    return;
  }
  Search(kMostShown);
  if (result_.hits.isEmpty()) return;
  const SearchHit selected = editor->Selection();
  if (isForward) {
    const auto next = std::find_if(result_.hits.begin(), result_.hits.end(), [&](const auto& hit) {
      return hit.start >= selected.start + selected.length;
    });
    editor->Select(next == result_.hits.end() ? result_.hits.front() : *next);
  } else {
    const auto before =
        std::find_if(result_.hits.rbegin(), result_.hits.rend(),
                     [&](const auto& hit) { return hit.start + hit.length <= selected.start; });
    editor->Select(before == result_.hits.rend() ? result_.hits.back() : *before);
  }
  ShowCount();
}

void FindBar::Replace() {
  CodeEditor* const editor = editors_.Current();
  if (editor == nullptr) return;
  Search(kMostShown);
  const SearchHit selected = editor->Selection();
  for (const SearchHit& hit : result_.hits) {
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
  CodeEditor* const editor = editors_.Current();
  if (editor == nullptr) return;
  Search(std::numeric_limits<qsizetype>::max());
  const qsizetype replaced = result_.hits.size();
  editor->ReplaceHits(result_.hits);
  Search(kMostShown);
  count_->setText(tr("%n replaced", nullptr, static_cast<int>(replaced)));
}

void FindBar::keyPressEvent(QKeyEvent* event) {
  const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (event->key() == Qt::Key_Escape) {
    Close();
  } else if (isEnter && focusWidget() == replacement_) {
    Replace();
  } else if (isEnter) {
    Find((event->modifiers() & Qt::ShiftModifier) == 0);
  } else {
    QWidget::keyPressEvent(event);
  }
}

}  // namespace tarn::host
