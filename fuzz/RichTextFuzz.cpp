// The input is inserted as tool output into a line of rich text, and also parsed as rich text
// itself. The runs must cover the whole text without gaps, a line must show the text that it was
// created from, and earlier lines must be unchanged.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "platform/text/Text.h"
#include "widgets/RichTextCtrl.h"

namespace {

using tarn::RichText;

void Require(bool holds) {
  if (!holds) std::abort();
}

void CheckRuns(const RichText& read) {
  std::size_t end = 0;
  for (const tarn::RichTextRun& run : read.runs) {
    Require(run.range.start == end && run.range.end > end);
    end = run.range.end;
  }
  Require(end == read.text.size());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string input(reinterpret_cast<const char*>(data), size);
  CheckRuns(tarn::ReadRichText(input));
  CheckRuns(tarn::ReadRichText("{\\rtf1 " + input));

  const std::string text = tarn::ReplaceAll(input, "\\", "\\\\");
  const std::string line =
      "{\\rtf1 {\\colortbl ;\\red255\\green0\\blue0;} {\\field{\\*\\fldinst "
      "{ HYPERLINK file<" +
      text + "> }} {\\fldrslt {\\cf1\\ulnone " + text + "}}} \\par }";
  const RichText read = tarn::ReadRichText(line);
  CheckRuns(read);
  Require(read.text.size() == size + 3);  // a space before and after, and the newline
  if (size > 0) Require(read.runs.at(1).target && *read.runs[1].target == "file<" + input + ">");

  tarn::CRichTextCtrl control;
  control.AppendRichText(line);
  control.AppendRichText(line);
  Require(control.GetText() == read.text + read.text + "\n");
  return 0;
}
