#include "hosts/desktop/CodeEditor.h"

#include <QDragMoveEvent>
#include <QEvent>
#include <QFontDatabase>
#include <QMimeData>
#include <QStringConverter>
#include <algorithm>

#include "platform/paths/Paths.h"
#include "platform/qt/QtFont.h"
#include "platform/qt/QtText.h"
#include "platform/text/Text.h"

namespace tarn::host {

namespace {

constexpr int kNumberMargin = 0;
constexpr int kFoldMargin = 2;
constexpr int kTabWidth = 4;

QFont EditorFont() {
  QFont font("DejaVu Sans Mono");
  font.setStyleHint(QFont::Monospace);
  font.setPointSizeF(QFontDatabase::systemFont(QFontDatabase::FixedFont).pointSizeF());
  return font;
}

QString Decode(const std::string& bytes, bool& isUtf8) {
  QStringDecoder decoder(QStringDecoder::Utf8);
  const QString text = decoder(QByteArrayView(bytes.data(), static_cast<qsizetype>(bytes.size())));
  isUtf8 = !decoder.hasError();
  return isUtf8 ? text : QString::fromLatin1(bytes.data(), static_cast<qsizetype>(bytes.size()));
}

bool IsAnyOf(std::string_view extension, std::initializer_list<const char*> names) {
  return std::any_of(names.begin(), names.end(),
                     [&](const char* name) { return EqualNoCase(extension, name); });
}

}  // namespace

CodeEditor::CodeEditor(FileSystem& fileSystem, std::string filePath)
    : files(fileSystem), path(std::move(filePath)) {
  setUtf8(true);
  setFont(EditorFont());
  setMarginType(kNumberMargin, NumberMargin);
  setTabWidth(kTabWidth);
  setAutoIndent(true);
  setBraceMatching(SloppyBraceMatch);
  setCaretLineVisible(true);
  setFolding(PlainFoldStyle, kFoldMargin);
  setScrollWidth(1);
  setScrollWidthTracking(true);
  setAccessibleName(ToQt(FileNameOf(path)));
  connect(this, &QsciScintilla::linesChanged, this, [this] {
    setMarginWidth(kNumberMargin, QString(QString::number(lines()).size() + 1, '9'));
  });
  ChooseLexer();
  Colour();
}

Status CodeEditor::Load() {
  const Result<std::string> read = files.ReadWholeFile(path);
  if (!read) return read.GetError();
  known = files.Examine(path);
  int line = 0;
  int column = 0;
  getCursorPosition(&line, &column);
  const QString text = Decode(*read, isUtf8);
  setEolMode(text.contains("\r\n") ? EolWindows : EolUnix);
  setText(text);
  setModified(false);
  setCursorPosition(std::min(line, lines() - 1), column);
  return {};
}

Status CodeEditor::Save() {
  // What was typed into a file of single bytes may need more than these.
  const QString typed = text();
  if (!isUtf8 && QString::fromLatin1(typed.toLatin1()) != typed) {
    return Error{ErrorCode::Io,
                 FromQt(tr("The text holds characters that the file's encoding can't write.")),
                 path};
  }
  const std::string bytes = isUtf8 ? FromQt(typed) : typed.toLatin1().toStdString();
  if (const Status written = files.WriteWholeFile(path, bytes); !written) return written;
  known = files.Examine(path);
  setModified(false);
  return {};
}

bool CodeEditor::IsChangedOutside() {
  const auto now = files.Examine(path);
  if (!now || !known) return now.has_value() != known.has_value();
  return now->modifiedSeconds != known->modifiedSeconds || now->size != known->size;
}

void CodeEditor::GoToLine(int line) {
  const int index = std::clamp(line - 1, 0, std::max(0, lines() - 1));
  setCursorPosition(index, 0);
  ensureLineVisible(index);
  setFocus();
}

void CodeEditor::changeEvent(QEvent* event) {
  QsciScintilla::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) Colour();
}

void CodeEditor::dragEnterEvent(QDragEnterEvent* event) {
  event->mimeData()->hasUrls() ? event->ignore() : QsciScintilla::dragEnterEvent(event);
}

void CodeEditor::dragMoveEvent(QDragMoveEvent* event) {
  event->mimeData()->hasUrls() ? event->ignore() : QsciScintilla::dragMoveEvent(event);
}

void CodeEditor::dropEvent(QDropEvent* event) {
  event->mimeData()->hasUrls() ? event->ignore() : QsciScintilla::dropEvent(event);
}

void CodeEditor::ChooseLexer() {
  const std::string extension = SplitPath(path).extension;
  QsciLexer* chosen = nullptr;
  if (IsAnyOf(extension, {".c", ".h", ".cpp", ".cc", ".cxx", ".hpp", ".hh", ".inc"})) {
    chosen = new QsciLexerCPP(this);
  } else if (IsAnyOf(extension, {".lua"})) {
    chosen = new QsciLexerLua(this);
  } else if (IsAnyOf(extension, {".mk"})) {
    chosen = new QsciLexerMakefile(this);
  } else if (IsAnyOf(extension,
                     {".tprj", ".tapp", ".xml", ".xslt", ".tools", ".options", ".config"})) {
    chosen = new QsciLexerXML(this);
  }
  if (chosen == nullptr) return;
  chosen->setDefaultFont(EditorFont());
  chosen->setFont(EditorFont());
  setLexer(chosen);
}

// The lexers' colours are made for paper that is white; on dark paper their brightness turns over.
void CodeEditor::Colour() {
  const QPalette colours = palette();
  const QColor paper = colours.color(QPalette::Base);
  if (QsciLexer* const used = lexer()) {
    used->setDefaultPaper(paper);
    used->setPaper(paper);
    for (int style = 0; style < 128; ++style) {
      if (used->description(style).isEmpty()) continue;
      used->setColor(ToTextColor(FromQtColor(used->defaultColor(style))), style);
    }
  } else {
    setPaper(paper);
    setColor(colours.color(QPalette::Text));
  }
  setCaretForegroundColor(colours.color(QPalette::Text));
  setCaretLineBackgroundColor(colours.color(QPalette::AlternateBase));
  setMarginsBackgroundColor(colours.color(QPalette::Window));
  setMarginsForegroundColor(colours.color(QPalette::Disabled, QPalette::WindowText));
  setFoldMarginColors(colours.color(QPalette::Window), colours.color(QPalette::Window));
  setSelectionBackgroundColor(colours.color(QPalette::Highlight));
  setSelectionForegroundColor(colours.color(QPalette::HighlightedText));
}

}  // namespace tarn::host
