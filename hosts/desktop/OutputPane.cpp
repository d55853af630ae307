#include "hosts/desktop/OutputPane.h"

#include <QFontDatabase>
#include <QScrollBar>
#include <QTextCursor>
#include <utility>

namespace tarn::host {

namespace {

// The oldest lines are dropped, for firmware that prints without end.
constexpr int kMostLines = 10000;

}  // namespace

OutputPane::OutputPane(QWidget* parent) : QPlainTextEdit(parent) {
  setReadOnly(true);
  setUndoRedoEnabled(false);
  setMaximumBlockCount(kMostLines);
  setFrameShape(QFrame::NoFrame);
  setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  setAccessibleName(tr("Program output"));
  setPlaceholderText(tr("What a simulator or another tool prints appears here while it runs."));
}

void OutputPane::Add(const std::string& bytes) {
  if (std::exchange(isStale_, false)) {
    clear();
    decoder_.resetState();
    if (onFirst) onFirst();
  }
  QScrollBar* const bar = verticalScrollBar();
  const bool isAtEnd = bar->value() == bar->maximum();
  QString text =
      decoder_.decode(QByteArrayView(bytes.data(), static_cast<qsizetype>(bytes.size())));
  text.remove(QLatin1Char('\r'));
  QTextCursor end(document());
  end.movePosition(QTextCursor::End);
  end.insertText(text);
  if (isAtEnd) bar->setValue(bar->maximum());
}

}  // namespace tarn::host
