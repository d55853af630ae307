#pragma once

#include <QString>
#include <QTextCharFormat>
#include <QTextCursor>
#include <string_view>
#include <vector>

#include "widgets/RichText.h"

namespace tarn {

// Puts a rich text at the end of a document, line by line, what looks the same in one go. Linear in
// the text, however many runs a line has. Text, runs and cursor are borrowed.
class RichTextInserter {
 public:
  // From the byte `start` on.
  RichTextInserter(QTextCursor& insertionPoint, std::string_view insertedText,
                   const std::vector<RichTextRun>& runs, std::size_t start);

  // What follows, without the newline behind it.
  void AddLine(TextRange line);
  // The newline at that byte.
  void AddBreak(std::size_t at);
  // All of it stands in the document.
  void Finish();

 private:
  const RichTextRun& RunAt(std::size_t byte);
  void Add(QStringView part, const RichTextRun& look);

  QTextCursor& cursor;
  const std::string_view text;
  std::vector<RichTextRun>::const_iterator run;
  const RichTextRun* buffered = nullptr;  // how the buffer looks
  QString buffer;
};

}  // namespace tarn
