#pragma once

#include "hosts/desktop/Scintilla.h"

namespace tarn::host {

// Syntax highlighting of assembler sources (see StyleAssembler), with the colours used for C
// sources.
class AssemblerLexer : public QsciLexerCustom {
 public:
  explicit AssemblerLexer(QObject* parent) : QsciLexerCustom(parent) {}

  const char* language() const override { return "Assembler"; }
  QString description(int style) const override;
  QColor defaultColor(int style) const override;
  void styleText(int start, int end) override;
};

}  // namespace tarn::host
