#pragma once

#include <QString>
#include <QTextCharFormat>
#include <QTextCursor>
#include <string_view>
#include <vector>

#include "widgets/RichText.h"

namespace tarn {

// Appends rich text to a document line by line, combining adjacent runs of the same format. Linear
// in the text, regardless of the number of runs. Text, runs and cursor are borrowed.
class RichTextInserter {
 public:
  // Starts at the byte `start`.
  RichTextInserter(QTextCursor& insertionPoint, std::string_view insertedText,
                   const std::vector<RichTextRun>& runs, std::size_t start);

  // Appends the next line, without its newline.
  void AddLine(TextRange line);
  // Appends the newline at that byte.
  void AddBreak(std::size_t at);
  // Flushes the buffer into the document.
  void Finish();

 private:
  // Run that contains the byte. Offsets must not decrease between calls.
  const RichTextRun& RunAt(std::size_t byte);
  void Add(QStringView part, const RichTextRun& look);

  QTextCursor& cursor_;
  const std::string_view text_;
  std::vector<RichTextRun>::const_iterator run_;
  const RichTextRun* buffered_ = nullptr;  // format of the buffer
  QString buffer_;
};

}  // namespace tarn
