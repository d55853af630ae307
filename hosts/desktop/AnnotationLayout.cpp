#include "hosts/desktop/AnnotationLayout.h"

#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <utility>

#include "widgets/qt/QtColor.h"

namespace tarn::host {

namespace {

constexpr int kSymbolMargin = 1;
constexpr int kMarginWidth = 18;
constexpr int kSymbolSize = 14;
// Symbols with higher numbers are drawn over those with lower ones.
constexpr int kWarningMarker = 1;
constexpr int kErrorMarker = 2;
constexpr int kWarningWave = 9;
constexpr int kErrorWave = 10;
constexpr Color kWarningColor = MakeColor(190, 130, 0);
constexpr Color kErrorColor = MakeColor(205, 30, 30);
// More messages would make the tool tip larger than the screen.
constexpr int kTipMessages = 8;
constexpr qsizetype kTipLine = 100;

using Base = QsciScintillaBase;

// The symbols differ in shape as well as in colour.
QImage Symbol(bool isError, qreal ratio) {
  const int size = static_cast<int>(kSymbolSize * ratio);
  QImage image(size, size, QImage::Format_ARGB32);
  image.fill(Qt::transparent);
  image.setDevicePixelRatio(ratio);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  if (isError) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(214, 48, 49));
    painter.drawEllipse(QRectF(1, 1, 12, 12));
    painter.setPen(QPen(Qt::white, 1.6, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(4.8, 4.8), QPointF(9.2, 9.2));
    painter.drawLine(QPointF(9.2, 4.8), QPointF(4.8, 9.2));
    return image;
  }
  QPainterPath triangle(QPointF(7, 1.8));
  triangle.lineTo(13, 12.4);
  triangle.lineTo(1, 12.4);
  triangle.closeSubpath();
  const QColor amber(240, 173, 0);
  painter.setPen(QPen(amber, 1.4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.setBrush(amber);
  painter.drawPath(triangle);
  const QColor ink(45, 35, 0);
  painter.setPen(QPen(ink, 1.6, Qt::SolidLine, Qt::RoundCap));
  painter.drawLine(QPointF(7, 5.4), QPointF(7, 8.6));
  painter.drawPoint(QPointF(7, 11));
  return image;
}

// Returns rich text with explicit line breaks, because a tool tip by itself would wrap much
// shorter, and even inside command-line options.
QString BrokenUp(QStringView message) {
  QString lines;
  while (message.size() > kTipLine) {
    const qsizetype blank = message.first(kTipLine + 1).lastIndexOf(u' ');
    const qsizetype length = blank > 0 ? blank : kTipLine;
    lines += message.first(length).toString().toHtmlEscaped() + "<br>";
    message = message.sliced(length).trimmed();
  }
  return lines + message.toString().toHtmlEscaped();
}

}  // namespace

AnnotationLayout::AnnotationLayout(QsciScintilla& shownIn) : QObject(&shownIn), editor_(shownIn) {
  editor_.setMarginType(kSymbolMargin, QsciScintilla::SymbolMargin);
  editor_.setMarginWidth(kSymbolMargin, kMarginWidth);
  editor_.setMarginMarkerMask(kSymbolMargin, 1 << kWarningMarker | 1 << kErrorMarker);
  for (const int wave : {kWarningWave, kErrorWave}) {
    editor_.indicatorDefine(QsciScintilla::SquiggleLowIndicator, wave);
  }
  connect(&editor_, &Base::SCN_MODIFIED, this,
          [this](int position, int kind, const char*, int, int linesAdded) {
            if (linesAdded != 0) OnModified(position, kind, linesAdded);
          });
}

void AnnotationLayout::Add(const std::vector<LineProblem>& more) {
  const int last = std::max(0, editor_.lines() - 1);
  for (const LineProblem& each : more) {
    problems_.push_back(each);
    problems_.back().line = std::clamp(each.line, 0, last);
    Mark(problems_.back());
  }
}

void AnnotationLayout::Mark(const LineProblem& problem) {
  const auto line = static_cast<unsigned long>(problem.line);
  const long shown = editor_.SendScintilla(Base::SCI_MARKERGET, line);
  if ((shown & 1 << kErrorMarker) != 0) return;
  if (problem.isError) {
    editor_.SendScintilla(Base::SCI_MARKERDELETE, line, long{kWarningMarker});
  } else if ((shown & 1 << kWarningMarker) != 0) {
    return;
  }
  editor_.SendScintilla(Base::SCI_MARKERADD, line,
                        long{problem.isError ? kErrorMarker : kWarningMarker});
  const long start = editor_.SendScintilla(Base::SCI_GETLINEINDENTPOSITION, line);
  const long end = editor_.SendScintilla(Base::SCI_GETLINEENDPOSITION, line);
  if (end <= start) return;
  editor_.SendScintilla(Base::SCI_SETINDICATORCURRENT, problem.isError ? kErrorWave : kWarningWave);
  editor_.SendScintilla(Base::SCI_INDICATORFILLRANGE, static_cast<unsigned long>(start),
                        end - start);
}

void AnnotationLayout::Clear() {
  static_cast<void>(Take());
}

std::vector<LineProblem> AnnotationLayout::Take() {
  if (problems_.empty()) return {};
  for (const int marker : {kWarningMarker, kErrorMarker}) {
    editor_.SendScintilla(Base::SCI_MARKERDELETEALL, marker);
  }
  for (const int wave : {kWarningWave, kErrorWave}) {
    editor_.SendScintilla(Base::SCI_SETINDICATORCURRENT, wave);
    editor_.SendScintilla(Base::SCI_INDICATORCLEARRANGE, 0UL,
                          editor_.SendScintilla(Base::SCI_GETLENGTH));
  }
  return std::exchange(problems_, {});
}

void AnnotationLayout::Colour() {
  const qreal ratio = editor_.devicePixelRatioF();
  editor_.SendScintilla(Base::SCI_RGBAIMAGESETSCALE, static_cast<int>(100 * ratio));
  editor_.markerDefine(Symbol(false, ratio), kWarningMarker);
  editor_.markerDefine(Symbol(true, ratio), kErrorMarker);
  editor_.setIndicatorForegroundColor(ToTextColor(kWarningColor), kWarningWave);
  editor_.setIndicatorForegroundColor(ToTextColor(kErrorColor), kErrorWave);
}

// Mirrors how the component moves its markers, which carry no messages: text inserted at the start
// of a line moves that line down, and deleted lines pass their markers to the line before.
void AnnotationLayout::OnModified(int position, int kind, int linesAdded) {
  if (problems_.empty()) return;
  const auto start = static_cast<unsigned long>(position);
  const auto line = static_cast<int>(editor_.SendScintilla(Base::SCI_LINEFROMPOSITION, start));
  if ((kind & Base::SC_MOD_INSERTTEXT) != 0) {
    const bool isAtStart = editor_.SendScintilla(Base::SCI_POSITIONFROMLINE,
                                                 static_cast<unsigned long>(line)) == position;
    const int firstMoved = isAtStart ? line : line + 1;
    for (LineProblem& each : problems_) {
      if (each.line >= firstMoved) each.line += linesAdded;
    }
  } else if ((kind & Base::SC_MOD_DELETETEXT) != 0) {
    for (LineProblem& each : problems_) {
      if (each.line > line) each.line = std::max(line, each.line + linesAdded);
    }
  }
}

QString AnnotationLayout::TextAt(QPoint place) const {
  const int line = problems_.empty() ? -1 : LineAt(place);
  QString texts;
  int count = 0;
  for (const LineProblem& each : problems_) {
    if (each.line != line) continue;
    if (++count > kTipMessages) {
      texts += QChar(0x2026);
      break;
    }
    texts += "<div style='white-space:nowrap'>" + BrokenUp(each.message) + "</div>";
  }
  return texts.isEmpty() ? QString() : "<qt>" + texts + "</qt>";
}

// Returns -1 if the position is to the right of or below the text.
int AnnotationLayout::LineAt(QPoint place) const {
  const auto x = static_cast<unsigned long>(std::max(0, place.x()));
  const long position = editor_.SendScintilla(Base::SCI_POSITIONFROMPOINT, x, long{place.y()});
  const auto line =
      editor_.SendScintilla(Base::SCI_LINEFROMPOSITION, static_cast<unsigned long>(position));
  const long end =
      editor_.SendScintilla(Base::SCI_GETLINEENDPOSITION, static_cast<unsigned long>(line));
  const long bottom = editor_.SendScintilla(Base::SCI_POINTYFROMPOSITION, 0UL, end) +
                      editor_.SendScintilla(Base::SCI_TEXTHEIGHT, static_cast<unsigned long>(line));
  const long right = editor_.SendScintilla(Base::SCI_POINTXFROMPOSITION, 0UL, end);
  int margins = 0;
  for (int margin = 0; margin <= 2; ++margin) margins += editor_.marginWidth(margin);
  const bool isInside = place.y() < bottom && (place.x() < margins || place.x() <= right);
  return isInside ? static_cast<int>(line) : -1;
}

}  // namespace tarn::host
