#include "widgets/qt/RichTextInserter.h"

#include <algorithm>

#include "widgets/qt/QtColor.h"
#include "widgets/qt/QtText.h"

namespace tarn {

namespace {

QTextCharFormat ToFormat(const RichTextRun& run) {
  QTextCharFormat format;
  // Black means the desktop's text colour, which differs for a disabled view.
  if (run.color != 0) format.setForeground(ToTextColor(run.color));
  if (run.isBold) format.setFontWeight(QFont::Bold);
  if (run.target != nullptr) {
    format.setAnchor(true);
    format.setAnchorHref(ToQt(*run.target));
  }
  return format;
}

// Like ToQt(), but replaces the characters that a document uses for its own structure.
QString ToBlockText(std::string_view line) {
  QString text = ToQt(line);
  for (QChar& c : text) {
    const char16_t code = c.unicode();
    if (code == u'\r' || code == u'\x2028' || code == u'\x2029' || code == u'\xFDD0' ||
        code == u'\xFDD1' || code == u'\xFFFC') {
      c = QChar::ReplacementCharacter;
    }
  }
  return text;
}

}  // namespace

RichTextInserter::RichTextInserter(QTextCursor& insertionPoint, std::string_view insertedText,
                                   const std::vector<RichTextRun>& runs, std::size_t start)
    : cursor_(insertionPoint),
      text_(insertedText),
      run_(std::partition_point(runs.begin(), runs.end(), [start](const RichTextRun& each) {
        return each.range.end <= start;
      })) {}

void RichTextInserter::AddLine(TextRange line) {
  const std::string_view bytes = text_.substr(line.start, line.Length());
  const QString shown = ToBlockText(bytes);
  TextWalk walk(bytes);
  for (std::size_t byte = line.start; byte < line.end;) {
    const RichTextRun& look = RunAt(byte);
    byte = std::min(look.range.end, line.end);
    const int from = walk.Position();
    walk.GoToByte(byte - line.start);
    Add(QStringView(shown).mid(from, walk.Position() - from), look);
  }
}

void RichTextInserter::AddBreak(std::size_t at) {
  Add(u"\n", RunAt(at));
}

const RichTextRun& RichTextInserter::RunAt(std::size_t byte) {
  while (run_->range.end <= byte) ++run_;
  return *run_;
}

void RichTextInserter::Add(QStringView part, const RichTextRun& look) {
  const bool isSame = buffered_ != nullptr && buffered_->color == look.color &&
                      buffered_->isBold == look.isBold && buffered_->target == look.target;
  if (!isSame) Finish();
  buffered_ = &look;
  buffer_ += part;
}

void RichTextInserter::Finish() {
  if (!buffer_.isEmpty()) cursor_.insertText(buffer_, ToFormat(*buffered_));
  buffer_.clear();
}

}  // namespace tarn
