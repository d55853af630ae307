// Cost of the windows on screen compared with the simplest widgets that show the same: tree, log
// and report, each filled from XML or text in memory, and painted.

#include <QApplication>
#include <QHeaderView>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTextEdit>
#include <QTreeView>
#include <array>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "bench/Ratios.h"
#include "views/XmlTreeCtrl.h"
#include "widgets/ReportControl.h"
#include "widgets/RichTextCtrl.h"
#include "widgets/qt/QtToolkit.h"
#include "widgets/qt/WidgetPeer.h"
#include "xml/XmlNode.h"

namespace tarn {
namespace {

constexpr int kLines = 10'000;
constexpr int kGroupSize = 100;
constexpr int kRounds = 9;
constexpr int kPages = 200;
constexpr int kLinesAtOnce = 500;
constexpr QSize kSize(400, 600);

// Scrolls page by page from start to end.
double SecondsToScroll(QAbstractScrollArea& view) {
  QScrollBar& bar = *view.verticalScrollBar();
  if (bar.maximum() < kLines / 2) {
    std::fprintf(stderr, "only %d lines are shown\n", bar.maximum());
    std::exit(1);
  }
  return bench::SecondsOf([&] {
    for (int page = 0; page < kPages; ++page) {
      bar.setValue(bar.maximum() * page / (kPages - 1));
      view.viewport()->grab();
    }
  });
}

void Open(QWidget& widget) {
  widget.resize(kSize);
  widget.show();
  QCoreApplication::processEvents();
}

struct Times {
  std::vector<double> fill, scroll;
};

void Print(const char* what, const Times& ours, const Times& bare, double limit) {
  std::printf("%s, ms: filled %.1f (bare %.1f), %d pages %.1f (bare %.1f)\n", what,
              bench::Median(ours.fill) * 1e3, bench::Median(bare.fill) * 1e3, kPages,
              bench::Median(ours.scroll) * 1e3, bench::Median(bare.scroll) * 1e3);
  const std::string name = what;
  bench::PrintAtMost((name + ", filled and painted / bare").c_str(),
                     bench::Median(ours.fill) / bench::Median(bare.fill), limit);
  bench::PrintAtMost((name + ", scrolled / bare").c_str(),
                     bench::Median(ours.scroll) / bench::Median(bare.scroll), limit);
}

// --- Tree ---

// The minimal data of a tree model.
struct PlainNode {
  QString label;
  PlainNode* above = nullptr;
  int row = 0;
  std::vector<std::unique_ptr<PlainNode>> children;
};

class PlainModel : public QAbstractItemModel {
 public:
  explicit PlainModel(const CXmlNode& project) {
    auto child = std::make_unique<PlainNode>();
    Fill(*child, project);
    child->above = &root_;
    root_.children.push_back(std::move(child));
  }

  QModelIndex index(int row, int column, const QModelIndex& parent) const override {
    const PlainNode& above = At(parent);
    if (row >= static_cast<int>(above.children.size())) return {};
    return createIndex(row, column, above.children[static_cast<std::size_t>(row)].get());
  }
  QModelIndex parent(const QModelIndex& child) const override {
    PlainNode* const above = At(child).above;
    return above == nullptr || above == &root_ ? QModelIndex() : createIndex(above->row, 0, above);
  }
  int rowCount(const QModelIndex& parent) const override {
    return static_cast<int>(At(parent).children.size());
  }
  int columnCount(const QModelIndex&) const override { return 1; }
  QVariant data(const QModelIndex& index, int role) const override {
    return role == Qt::DisplayRole ? QVariant(At(index).label) : QVariant();
  }

 private:
  static void Fill(PlainNode& node, const CXmlNode& element) {
    node.label = QString::fromUtf8(element.GetAttrValue("Header"));
    for (int i = 0; i < element.GetChildCount(); ++i) {
      auto child = std::make_unique<PlainNode>();
      Fill(*child, *element.GetChild(i));
      child->above = &node;
      child->row = i;
      node.children.push_back(std::move(child));
    }
  }
  const PlainNode& At(const QModelIndex& index) const {
    return index.isValid() ? *static_cast<const PlainNode*>(index.internalPointer()) : root_;
  }

  PlainNode root_;
};

std::unique_ptr<CXmlNode> MakeProject() {
  std::string text = "<Project Header='P'>";
  for (int i = 0; i < kLines; ++i) {
    const std::string number = std::to_string(i);
    if (i % kGroupSize == 0) text += "<Group Header='group " + number + "'>";
    text += "<File Header='source file " + number + ".c' Path='src\\" + number + ".c'/>";
    if (i % kGroupSize == kGroupSize - 1) text += "</Group>";
  }
  auto project = std::make_unique<CXmlNode>();
  project->LoadWithFullEntities((text + "</Project>").c_str());
  return project;
}

// Returns a green square of 16 by 16 pixels.
std::shared_ptr<const Bitmap> MakePicture() {
  constexpr std::uint32_t kSide = 16;
  std::string bytes = "BM";
  const auto number = [&](std::uint32_t value, int width) {
    for (int i = 0; i < width; ++i) bytes.push_back(static_cast<char>(value >> (8 * i)));
  };
  for (const std::uint32_t value : {54 + 3 * kSide * kSide, 0U, 54U, 40U, kSide, kSide}) {
    number(value, 4);
  }
  for (const std::uint32_t value : {1U, 24U}) number(value, 2);
  for (int i = 0; i < 6; ++i) number(0, 4);
  for (std::uint32_t i = 0; i < kSide * kSide; ++i) number(0x208020, 3);
  return ReadBitmap(bytes);
}

void ExpandAll(CTreeCtrl& tree, CTreeItem* item) {
  if (item->HasChildren()) tree.Expand(*item, true);
  for (int i = 0; i < tree.GetItemCount(item); ++i) ExpandAll(tree, tree.GetItemAt(item, i));
}

void MeasureTree(const CXmlNode& project, Times& ours, Times& bare) {
  {
    CXmlTreeCtrl tree;
    tree.Create(2, kStylePopup | kTreeHasButtons | kTreeLinesAtRoot, {}, nullptr, 100);
    for (const char* const name : {"Project", "Group", "File"}) tree.AddImage(name, MakePicture());
    auto* const view = qobject_cast<QTreeView*>(WidgetOf(tree));
    Open(*view);
    CXmlNode& shown = const_cast<CXmlNode&>(project);
    ours.fill.push_back(bench::SecondsOf([&] {
      tree.SetXmlRoot(&shown);
      ExpandAll(tree, tree.GetRootItem());
      QCoreApplication::processEvents();
      view->grab();
    }));
    ours.scroll.push_back(SecondsToScroll(*view));
  }
  QTreeView view;
  view.setHeaderHidden(true);
  view.setUniformRowHeights(true);
  Open(view);
  std::unique_ptr<PlainModel> model;
  bare.fill.push_back(bench::SecondsOf([&] {
    model = std::make_unique<PlainModel>(project);
    view.setModel(model.get());
    view.expandAll();
    QCoreApplication::processEvents();
    view.grab();
  }));
  bare.scroll.push_back(SecondsToScroll(view));
}

// --- Log ---

struct LogLine {
  std::string text;
  std::string target;  // link target of the line, or empty
};

std::vector<LogLine> MakeLog() {
  std::vector<LogLine> lines;
  for (int i = 0; i < kLines; ++i) {
    const std::string number = std::to_string(i);
    if (i % 4 == 3) {
      lines.push_back({"src/ring_buffer.c:" + number + ":7: warning: unused variable 'n'",
                       "/home/u/demo/src/ring_buffer.c " + number});
    } else {
      lines.push_back({"avr-gcc -c -mmcu=atmega328p -Os -Wall -o ring_buffer" + number + ".o", ""});
    }
  }
  return lines;
}

std::string ToRichText(const LogLine& line) {
  const std::string head = "{\\rtf1{\\colortbl;\\red0\\green0\\blue0;\\red200\\green100\\blue0;}";
  if (line.target.empty()) return head + "\\cf1 " + line.text + "\\par}";
  return head + "\\cf2 {\\field{\\*\\fldinst { HYPERLINK file " + line.target + " }} {\\fldrslt " +
         line.text + "}}\\par}";
}

// Lines are added one event after the other, like the output of a tool.
void MeasureLog(const std::vector<LogLine>& lines, Times& ours, Times& bare) {
  {
    CRichTextCtrl control;
    control.Create(kStylePopup, {}, nullptr, 100);
    auto* const view = qobject_cast<QPlainTextEdit*>(WidgetOf(control));
    Open(*view);
    ours.fill.push_back(bench::SecondsOf([&] {
      int count = 0;
      for (const LogLine& line : lines) {
        control.AppendRichText(ToRichText(line));
        if (++count % kLinesAtOnce == 0) QCoreApplication::processEvents();
      }
      while (view->blockCount() <= kLines) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
      }
      view->grab();
    }));
    ours.scroll.push_back(SecondsToScroll(*view));
  }
  QTextEdit view;
  view.setReadOnly(true);
  view.setUndoRedoEnabled(false);
  view.setLineWrapMode(QTextEdit::NoWrap);
  Open(view);
  bare.fill.push_back(bench::SecondsOf([&] {
    QTextCharFormat plain;
    QTextCharFormat link;
    link.setForeground(QColor(200, 100, 0));
    link.setAnchor(true);
    QTextCursor cursor(view.document());
    int count = 0;
    for (const LogLine& line : lines) {
      if (count % kLinesAtOnce == 0) cursor.beginEditBlock();
      if (line.target.empty()) {
        cursor.insertText(QString::fromStdString(line.text), plain);
      } else {
        link.setAnchorHref(QString::fromStdString(line.target));
        cursor.insertText(QString::fromStdString(line.text), link);
      }
      cursor.insertText(QStringLiteral("\n"), plain);
      if (++count % kLinesAtOnce != 0) continue;
      cursor.endEditBlock();
      view.verticalScrollBar()->setValue(view.verticalScrollBar()->maximum());
      QCoreApplication::processEvents();
    }
    view.grab();
  }));
  bare.scroll.push_back(SecondsToScroll(view));
}

// --- Report ---

class PlainTable : public QAbstractTableModel {
 public:
  explicit PlainTable(const std::vector<LogLine>& shownLines) {
    for (const LogLine& line : shownLines) {
      rows_.push_back({QString::fromStdString(line.text), QString::fromStdString(line.target)});
    }
  }
  int rowCount(const QModelIndex& parent) const override {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
  }
  int columnCount(const QModelIndex&) const override { return 2; }
  QVariant data(const QModelIndex& index, int role) const override {
    if (role != Qt::DisplayRole) return {};
    return rows_[static_cast<std::size_t>(index.row())][index.column()];
  }

 private:
  std::vector<std::array<QString, 2>> rows_;
};

void MeasureReport(const std::vector<LogLine>& lines, Times& ours, Times& bare) {
  {
    CReportControl report;
    for (const char* const caption : {"Description", "File"}) {
      report.AddColumn(std::make_unique<CReportColumn>(report.GetColumns().GetCount(), caption,
                                                       kSize.width() / 2, true, -1, true, true));
    }
    report.Create(kStylePopup, {}, nullptr, 100);
    Open(*WidgetOf(report));
    auto* const view = WidgetOf(report)->findChild<QTreeView*>();
    ours.fill.push_back(bench::SecondsOf([&] {
      for (const LogLine& line : lines) {
        CReportRecord& record = *report.AddRecord(std::make_unique<CReportRecord>());
        record.AddItem(std::make_unique<CReportRecordItem>())->SetOwnCaption(line.text);
        record.AddItem(std::make_unique<CReportRecordItem>())->SetOwnCaption(line.target);
      }
      report.Populate();
      QCoreApplication::processEvents();
      view->grab();
    }));
    ours.scroll.push_back(SecondsToScroll(*view));
  }
  QTreeView view;
  view.setUniformRowHeights(true);
  view.setRootIsDecorated(false);
  Open(view);
  std::unique_ptr<PlainTable> model;
  bare.fill.push_back(bench::SecondsOf([&] {
    model = std::make_unique<PlainTable>(lines);
    view.setModel(model.get());
    view.header()->resizeSection(0, kSize.width() / 2);
    QCoreApplication::processEvents();
    view.grab();
  }));
  bare.scroll.push_back(SecondsToScroll(view));
}

}  // namespace
}  // namespace tarn

int main(int argc, char** argv) {
  using namespace tarn;
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  std::setlocale(LC_ALL, "C");
  const QtToolkit toolkit;
  const std::unique_ptr<CXmlNode> project = MakeProject();
  const std::vector<LogLine> lines = MakeLog();
  struct {
    Times ours, bare;
  } tree, log, report;
  for (int round = 0; round < kRounds; ++round) {
    MeasureTree(*project, tree.ours, tree.bare);
    MeasureLog(lines, log.ours, log.bare);
    MeasureReport(lines, report.ours, report.bare);
  }
  Print("tree of 10,000 nodes", tree.ours, tree.bare, 1.2);
  Print("log of 10,000 lines", log.ours, log.bare, 1.5);
  Print("report of 10,000 rows", report.ours, report.bare, 1.2);
  return 0;
}
