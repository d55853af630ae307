#include "hosts/desktop/CodeEditor.h"

#include <QDragMoveEvent>
#include <QEvent>
#include <QFileInfo>
#include <QFontDatabase>
#include <QHelpEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QStringConverter>
#include <QToolTip>
#include <algorithm>
#include <vector>

#include "hosts/desktop/AssemblerLexer.h"
#include "platform/paths/Paths.h"
#include "platform/text/Hash.h"
#include "platform/text/Text.h"
#include "widgets/qt/QtColor.h"
#include "widgets/qt/QtText.h"

namespace tarn::host {

namespace {

constexpr int kNumberMargin = 0;
constexpr int kFoldMargin = 2;
constexpr int kHitIndicator = 8;
constexpr Color kHitColor = MakeColor(230, 140, 0);
constexpr int kHitAlpha = 70;
// Opacity of the selection colour in the current line.
constexpr float kCaretLineOnLight = 0.1F;
constexpr float kCaretLineOnDark = 0.22F;

QFont EditorFont() {
  QFont font("DejaVu Sans Mono");
  font.setStyleHint(QFont::Monospace);
  font.setPointSizeF(QFontDatabase::systemFont(QFontDatabase::FixedFont).pointSizeF());
  return font;
}

// Chooses a colour for line numbers that is less prominent than the text but still readable.
QColor NumberColour(const QPalette& colours) {
  constexpr double kLeastContrast = 4.5;
  constexpr float kStep = 0.05F;
  const QColor paper = colours.color(QPalette::Window);
  const QColor text = colours.color(QPalette::WindowText);
  QColor number = paper;
  for (float share = 0.5F; share <= 1 && ContrastOf(number, paper) < kLeastContrast;
       share += kStep) {
    number = Blend(paper, text, share);
  }
  return number;
}

constexpr std::string_view kMark = "\xEF\xBB\xBF";

// Stateless, so that a character truncated at the end is an error, too.
QString Decode(QByteArrayView bytes, bool& isUtf8) {
  QStringDecoder decoder(QStringDecoder::Utf8, QStringConverter::Flag::Stateless);
  const QString text = decoder(bytes);
  isUtf8 = !decoder.hasError();
  return isUtf8 ? text : QString::fromLatin1(bytes);
}

bool IsAnyOf(std::string_view extension, std::initializer_list<const char*> names) {
  return std::any_of(names.begin(), names.end(),
                     [&](const char* name) { return EqualNoCase(extension, name); });
}

bool IsAssembler(std::string_view extension) {
  return IsAnyOf(extension, {".s", ".asm", ".a51", ".inc"});
}

bool IsMakefile(const std::string& path) {
  return IsAnyOf(SplitPath(path).extension, {".mk"}) ||
         IsAnyOf(FileNameOf(path), {"makefile", "GNUmakefile"});
}

// Makefile rules require tabs, and assembler files usually align columns at terminal tab stops.
Indentation UsualIndentation(const std::string& path) {
  Indentation usual;
  usual.usesTabs = IsMakefile(path);
  if (IsAssembler(SplitPath(path).extension)) usual.width = 8;
  return usual;
}

}  // namespace

CodeEditor::CodeEditor(FileSystem& fileSystem, std::string filePath)
    : files_(fileSystem), path_(std::move(filePath)), problems_(new AnnotationLayout(*this)) {
  setUtf8(true);
  setFont(EditorFont());
  setMarginType(kNumberMargin, NumberMargin);
  setAutoIndent(true);
  setBackspaceUnindents(true);
  setBraceMatching(SloppyBraceMatch);
  setCaretLineVisible(true);
  SendScintilla(SCI_SETCARETLINEVISIBLEALWAYS, true);
  setFolding(PlainFoldStyle, kFoldMargin);
  setScrollWidth(1);
  setScrollWidthTracking(true);
  setAccessibleName(ToQt(FileNameOf(path_)));
  connect(this, &QsciScintilla::textChanged, this, [this] { ++revision_; });
  const auto fitNumbers = [this] {
    setMarginWidth(kNumberMargin, QString(QString::number(lines()).size() + 1, '9'));
  };
  connect(this, &QsciScintilla::linesChanged, this, fitNumbers);
  connect(this, &QsciScintilla::SCN_ZOOM, this, fitNumbers);
  indicatorDefine(StraightBoxIndicator, kHitIndicator);
  setIndicatorDrawUnder(true, kHitIndicator);
  ChooseLexer();
  Colour();
}

Status CodeEditor::Load() {
  const Result<std::string> read = files_.ReadWholeFile(path_);
  if (!read) return read.GetError();
  known_ = StatOnDisk();
  int line = 0;
  int column = 0;
  getCursorPosition(&line, &column);
  const auto top = static_cast<unsigned long>(SendScintilla(SCI_GETFIRSTVISIBLELINE));
  const QString text =
      Decode(QByteArrayView(read->data(), static_cast<qsizetype>(read->size())), isUtf8_);
  hasMark_ = isUtf8_ && read->starts_with(kMark);
  setEolMode(text.contains("\r\n") ? EolWindows : EolUnix);
  ShowIndentation(GuessIndentation(text, UsualIndentation(path_)));
  const std::vector<LineProblem> shown = problems_->Take();
  Fill(text.toUtf8());
  problems_->Add(shown);
  isInConflict_ = false;
  base_ = HashBytes(*read);
  setCursorPosition(std::min(line, lines() - 1), column);
  SendScintilla(SCI_SETFIRSTVISIBLELINE, top);
  return {};
}

// setText() and text() stop at a zero byte, so they can't be used.
void CodeEditor::Fill(const QByteArray& utf8) {
  SendScintilla(SCI_CLEARALL);
  SendScintilla(SCI_APPENDTEXT, static_cast<unsigned long>(utf8.size()), utf8.constData());
  SendScintilla(SCI_EMPTYUNDOBUFFER);
  setModified(false);
}

QString CodeEditor::GetText() const {
  const auto length = static_cast<qsizetype>(SendScintilla(SCI_GETLENGTH));
  const auto* const bytes =
      static_cast<const char*>(SendScintillaPtrResult(SCI_GETCHARACTERPOINTER));
  return QString::fromUtf8(bytes, length);
}

void CodeEditor::ShowIndentation(const Indentation& indentation) {
  setIndentationsUseTabs(indentation.usesTabs);
  setIndentationWidth(indentation.width);
  setTabWidth(indentation.width);
}

Status CodeEditor::Save() {
  // The user may have typed characters that a Latin-1 file can't represent.
  const std::optional<std::string> bytes = GetUnsaved().ToBytes();
  if (!bytes) {
    return Error{
        ErrorCode::Io,
        FromQt(tr("The text contains characters that the file's encoding can't represent.")),
        path_};
  }
  if (const Status written = files_.WriteWholeFile(path_, *bytes); !written) return written;
  known_ = StatOnDisk();
  base_ = HashBytes(*bytes);
  setModified(false);
  return {};
}

// Times are in milliseconds, because two versions written within a second often have the same size.
CodeEditor::DiskState CodeEditor::StatOnDisk() const {
  const QFileInfo file(ToQt(path_));
  return {file.lastModified(), file.size()};
}

void CodeEditor::FollowDisk() {
  // A deleted file is not a conflict.
  if (StatOnDisk() == known_ || !files_.Exists(path_)) return;
  if (isModified()) {
    isInConflict_ = true;
  } else {
    static_cast<void>(Load());
  }
}

UnsavedText CodeEditor::GetUnsaved() const {
  const auto length = static_cast<std::size_t>(SendScintilla(SCI_GETLENGTH));
  const auto* const bytes =
      static_cast<const char*>(SendScintillaPtrResult(SCI_GETCHARACTERPOINTER));
  return {path_, std::make_shared<const std::string>(bytes, length), base_, isUtf8_, hasMark_};
}

void CodeEditor::Restore(const UnsavedText& unsaved) {
  // Text typed in the meantime can be recovered with one undo.
  const bool isThere = isModified() || Load();
  isInConflict_ = isThere && base_ != unsaved.base;
  isUtf8_ = unsaved.isUtf8;
  hasMark_ = unsaved.hasMark;
  const auto size = static_cast<unsigned long>(unsaved.text->size());
  beginUndoAction();
  SendScintilla(SCI_TARGETWHOLEDOCUMENT);
  SendScintilla(SCI_REPLACETARGET, size, unsaved.text->data());
  endUndoAction();
  setEolMode(unsaved.text->find("\r\n") != std::string::npos ? EolWindows : EolUnix);
}

void CodeEditor::KeepMine() {
  known_ = StatOnDisk();
  if (const auto bytes = files_.ReadWholeFile(path_)) base_ = HashBytes(*bytes);
  isInConflict_ = false;
}

void CodeEditor::GoToLine(int line) {
  const int index = std::clamp(line - 1, 0, std::max(0, lines() - 1));
  setCursorPosition(index, 0);
  ensureLineVisible(index);
  setFocus();
}

// The component's own positions are offsets in UTF-8 bytes.
SearchHit CodeEditor::Selection() const {
  const auto start = SendScintilla(SCI_GETSELECTIONSTART);
  const auto end = SendScintilla(SCI_GETSELECTIONEND);
  const auto count = [this](long from, long to) {
    return static_cast<qsizetype>(
        SendScintilla(SCI_COUNTCODEUNITS, static_cast<unsigned long>(from), to));
  };
  return {count(0, start), count(start, end), {}};
}

void CodeEditor::Select(const SearchHit& place) {
  const long start = SendScintilla(SCI_POSITIONRELATIVECODEUNITS, 0UL, long{place.start});
  const long end = SendScintilla(SCI_POSITIONRELATIVECODEUNITS, static_cast<unsigned long>(start),
                                 long{place.length});
  ensureLineVisible(
      static_cast<int>(SendScintilla(SCI_LINEFROMPOSITION, static_cast<unsigned long>(start))));
  SendScintilla(SCI_SETSEL, static_cast<unsigned long>(start), end);
}

void CodeEditor::MarkHits(const QList<SearchHit>& hits) {
  SendScintilla(SCI_SETINDICATORCURRENT, kHitIndicator);
  SendScintilla(SCI_INDICATORCLEARRANGE, 0UL, SendScintilla(SCI_GETLENGTH));
  ForEachHit(hits, [this](const SearchHit&, long start, long end) {
    SendScintilla(SCI_INDICATORFILLRANGE, static_cast<unsigned long>(start), end - start);
  });
}

void CodeEditor::ReplaceHits(const QList<SearchHit>& hits) {
  beginUndoAction();
  long moved = 0;
  ForEachHit(hits, [&](const SearchHit& hit, long start, long end) {
    QString put = hit.replacement;
    if (eolMode() == EolWindows) put.replace("\n", "\r\n");
    const QByteArray bytes = put.toUtf8();
    SendScintilla(SCI_SETTARGETSTART, static_cast<unsigned long>(start + moved));
    SendScintilla(SCI_SETTARGETEND, static_cast<unsigned long>(end + moved));
    SendScintilla(SCI_REPLACETARGET, static_cast<unsigned long>(bytes.size()), bytes.constData());
    moved += static_cast<long>(bytes.size()) - (end - start);
  });
  endUndoAction();
}

// Calls `onHit` with each hit's byte offsets, computed before anything is changed.
void CodeEditor::ForEachHit(
    const QList<SearchHit>& hits,
    const std::function<void(const SearchHit& hit, long start, long end)>& onHit) {
  struct Range {
    long start;
    long end;
  };
  std::vector<Range> ranges;
  const QString all = hits.isEmpty() ? QString() : GetText();
  qsizetype units = 0;
  long bytes = 0;
  const auto bytesUpTo = [&](qsizetype place) {
    bytes += static_cast<long>(QStringView(all).mid(units, place - units).toUtf8().size());
    units = place;
    return bytes;
  };
  for (const SearchHit& hit : hits) {
    const long start = bytesUpTo(hit.start);
    ranges.push_back({start, bytesUpTo(hit.start + hit.length)});
  }
  for (std::size_t i = 0; i < ranges.size(); ++i) {
    onHit(hits[static_cast<qsizetype>(i)], ranges[i].start, ranges[i].end);
  }
}

void CodeEditor::changeEvent(QEvent* event) {
  QsciScintilla::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) Colour();
}

bool CodeEditor::viewportEvent(QEvent* event) {
  if (event->type() != QEvent::ToolTip) return QsciScintilla::viewportEvent(event);
  const auto& help = static_cast<const QHelpEvent&>(*event);
  const QString text = problems_->TextAt(help.pos());
  // The tip stays visible as long as the mouse is in the same line.
  const int height = textHeight(0);
  const QRect row(0, help.y() - height / 2, viewport()->width(), height);
  if (text.isEmpty()) {
    QToolTip::hideText();
  } else {
    QToolTip::showText(help.globalPos(), text, viewport(), row);
  }
  return true;
}

void CodeEditor::mouseReleaseEvent(QMouseEvent* event) {
  QsciScintilla::mouseReleaseEvent(event);
  const bool isFollowing = event->button() == Qt::LeftButton &&
                           event->modifiers() == Qt::ControlModifier && !hasSelectedText();
  if (isFollowing && onFollowName) onFollowName();
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
  const std::string extension = SplitPath(path_).extension;
  QsciLexer* chosen = nullptr;
  if (IsAnyOf(extension, {".c", ".h", ".cpp", ".cc", ".cxx", ".hpp", ".hh"})) {
    chosen = new QsciLexerCPP(this);
  } else if (IsAssembler(extension)) {
    chosen = new AssemblerLexer(this);
  } else if (IsAnyOf(extension, {".lua"})) {
    chosen = new QsciLexerLua(this);
  } else if (IsMakefile(path_)) {
    chosen = new QsciLexerMakefile(this);
  } else if (IsAnyOf(extension,
                     {".tprj", ".tapp", ".xml", ".xslt", ".tools", ".options", ".config"})) {
    chosen = new QsciLexerXML(this);
  }
  if (chosen == nullptr) return;
  chosen->setDefaultFont(EditorFont());
  chosen->setFont(EditorFont());
  setLexer(chosen);
  if (HasConditions()) SetMacros({}, false);
}

bool CodeEditor::HasConditions() const {
  return qobject_cast<QsciLexerCPP*>(lexer()) != nullptr;
}

void CodeEditor::SetMacros(const std::string& macros, bool areComplete) {
  constexpr unsigned long kGivenMacros = 4;  // keyword list that the lexer uses for macros
  SendScintilla(SCI_SETKEYWORDS, kGivenMacros, macros.c_str());
  SendScintilla(SCI_SETPROPERTY, "lexer.cpp.track.preprocessor", areComplete ? "1" : "0");
  SendScintilla(SCI_COLOURISE, 0UL, -1L);
}

// The lexers' colours assume a white background; on a dark one their lightness is inverted.
void CodeEditor::Colour() {
  const QPalette colours = palette();
  const QColor paper = colours.color(QPalette::Base);
  if (QsciLexer* const used = lexer()) {
    used->setDefaultPaper(paper);
    used->setPaper(paper);
    const QColor plain = colours.color(QPalette::Text);
    used->setDefaultColor(plain);
    for (int style = 0; style < 128; ++style) {
      if (used->description(style).isEmpty()) continue;
      const QColor own = used->defaultColor(style);
      used->setColor(own == plain ? plain : ToTextColor(FromQtColor(own)), style);
    }
  } else {
    setPaper(paper);
    setColor(colours.color(QPalette::Text));
  }
  setCaretForegroundColor(colours.color(QPalette::Text));
  setCaretLineBackgroundColor(Blend(paper, colours.color(QPalette::Highlight),
                                    IsDarkPalette() ? kCaretLineOnDark : kCaretLineOnLight));
  setMarginsBackgroundColor(colours.color(QPalette::Window));
  setMarginsForegroundColor(NumberColour(colours));
  setFoldMarginColors(colours.color(QPalette::Window), colours.color(QPalette::Window));
  setSelectionBackgroundColor(colours.color(QPalette::Highlight));
  QColor hit = ToTextColor(kHitColor);
  hit.setAlpha(kHitAlpha);
  setIndicatorForegroundColor(hit, kHitIndicator);
  setSelectionForegroundColor(colours.color(QPalette::HighlightedText));
  problems_->Colour();
}

}  // namespace tarn::host
