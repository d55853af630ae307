#include "hosts/desktop/AssemblerLexer.h"

#include <iterator>
#include <string>

#include "hosts/desktop/AssemblerStyles.h"

namespace tarn::host {

namespace {

struct StyleRow {
  const char* description;
  QRgb color;
};

// Indexed by style.
constexpr StyleRow kStyles[] = {
    {"Default", 0x000000},      {"Comment", 0x007f00},   {"Block comment", 0x007f00},
    {"Label", 0x7f0000},        {"Directive", 0x7f5f00}, {"Mnemonic", 0x00007f},
    {"Register", 0x3060a0},     {"Number", 0x007f7f},    {"String", 0x7f007f},
    {"Preprocessor", 0x7f7f00},
};

const StyleRow* RowOf(int style) {
  return style >= 0 && style < static_cast<int>(std::size(kStyles)) ? &kStyles[style] : nullptr;
}

}  // namespace

QString AssemblerLexer::description(int style) const {
  const StyleRow* const row = RowOf(style);
  return row == nullptr ? QString() : QString(row->description);
}

QColor AssemblerLexer::defaultColor(int style) const {
  const StyleRow* const row = RowOf(style);
  return row == nullptr ? QsciLexerCustom::defaultColor(style) : QColor(row->color);
}

void AssemblerLexer::styleText(int start, int end) {
  using Base = QsciScintillaBase;
  QsciScintilla& shown = *editor();
  const bool isInComment = start > 0 && shown.SendScintilla(Base::SCI_GETSTYLEAT, start - 1) ==
                                            static_cast<long>(AssemblerStyle::BlockComment);
  std::string text(static_cast<std::size_t>(end - start) + 1, '\0');
  shown.SendScintilla(Base::SCI_GETTEXTRANGE, start, end, text.data());
  text.pop_back();
  const std::string styles = StyleAssembler(text, isInComment);
  shown.SendScintilla(Base::SCI_STARTSTYLING, start);
  shown.SendScintilla(Base::SCI_SETSTYLINGEX, static_cast<unsigned long>(styles.size()),
                      styles.c_str());
}

}  // namespace tarn::host
