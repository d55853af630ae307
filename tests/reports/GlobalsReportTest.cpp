#include <gtest/gtest.h>

#include "project/ProjectViews.h"
#include "reports/GlobalsReportWnd.h"
#include "reports/ReportDefinition.h"
#include "reports/ReportFixture.h"
#include "reports/SymbolFile.h"
#include "support/RecordingHost.h"
#include "support/RecordingToolkit.h"

namespace tarn::test {
namespace {

class Globals : public ::testing::Test {
 protected:
  Globals() {
    disk.AddFile("/c/resources/globals.bmp", BitmapBytes(80, 16));
    window = std::make_unique<CGlobalsReportWnd>(disk, host.Handle(), "/c/");
    EXPECT_TRUE(window->Create(kStylePopup, {0, 0, 600, 200}, nullptr, 0));
  }

  std::string Rows() { return RowsText(window->GetReport()); }
  // Returns true if the file was read.
  bool Load(const char* path) {
    disk.TakeOperations();
    EXPECT_EQ(window->Load(path), 1);
    return !disk.Operations("read").empty();
  }

  testing::MemoryFileSystem disk;
  RecordingToolkit toolkit;
  RecordingHost host;
  std::unique_ptr<CGlobalsReportWnd> window;
};

TEST(SymbolFile, DoublesAndDefinitionsAreLeftOut) {
  const struct {
    const char* text;
    const char* tree;
  } rows[] = {
      {"<g a='1'>v<dEF/><x Header='n'/></g>", "g[a=1]'v'(x[Header=n])"},
      {"<g><x Header='Foo' DeclFile='A.c' DeclLine='1'/><y Header='foo' DeclFile='a.C' "
       "DeclLine='1'/><y Header='foo' DeclFile='a.c' DeclLine='2'/></g>",
       "g(x[Header=Foo][DeclFile=A.c][DeclLine=1] y[Header=foo][DeclFile=a.c][DeclLine=2])"},
      {"<g dwarf='no'><x Header='n' DeclFile='f' DeclLine='1'/><x Header='n' DeclFile='f' "
       "DeclLine='1'/></g>",
       "g[dwarf=no](x[Header=n][DeclFile=f][DeclLine=1] x[Header=n][DeclFile=f][DeclLine=1])"},
      {"<g><x Header='n' DeclLine='1'/><x Header='n' DeclLine='1'/><x Header='n' DeclFile='' "
       "DeclLine='1'/></g>",
       "g(x[Header=n][DeclLine=1] x[Header=n][DeclLine=1] x[Header=n][DeclFile=][DeclLine=1])"},
      // The parts of a key are separated.
      {"<g><x Header='ab' DeclFile='c' DeclLine='1'/><x Header='a' DeclFile='bc' "
       "DeclLine='1'/></g>",
       "g(x[Header=ab][DeclFile=c][DeclLine=1] x[Header=a][DeclFile=bc][DeclLine=1])"},
      {"<g><x Header='n'>t<y><z/></y></x><!--c--></g>", "g(x[Header=n]'t')"},
      {"<g><x Header='n'/><y Head", "g(x[Header=n] y)"},
      {"", ""},
      {"no markup", ""},
  };
  for (const auto& row : rows) EXPECT_EQ(Dump(*ReadSymbols(row.text)), row.tree) << row.text;
}

TEST_F(Globals, AFileIsReadAgainWheneverItMayHaveChanged) {
  EXPECT_EQ(window->GetSymbols(), nullptr);
  disk.AddFile("/p/a.xml", "<g><x Header='one'/></g>");
  disk.AddFile("/q/a.xml", "<g><x Header='two'/></g>");
  disk.AddFile("/p/b.xml", "<g><x Header='thr'/></g>");
  EXPECT_TRUE(Load("/p/a.xml"));
  EXPECT_EQ(Rows(), "|one|||\n");
  EXPECT_FALSE(Load("/p/a.xml"));
  EXPECT_FALSE(Load("/P/A.xml"));
  EXPECT_EQ(Rows(), "|one|||\n");
  EXPECT_TRUE(Load("/q/a.xml")) << "another folder, the same second";
  EXPECT_EQ(Rows(), "|two|||\n");
  EXPECT_TRUE(Load("/p/b.xml"));
  EXPECT_TRUE(Load("/p/a.xml"));
  disk.Advance(1);
  disk.AddFile("/p/a.xml", "<g><x Header='new'/></g>");
  EXPECT_TRUE(Load("/p/a.xml"));
  EXPECT_EQ(Rows(), "|new|||\n");
  disk.AddFile("/p/a.xml", "<g><x Header='newer'/></g>");
  EXPECT_TRUE(Load("/p/a.xml")) << "another size in the same second";

  EXPECT_FALSE(Load(nullptr));
  EXPECT_EQ(Rows(), "");
  EXPECT_NE(window->GetSymbols(), nullptr);
  EXPECT_TRUE(Load("/p/a.xml"));
  EXPECT_EQ(Rows(), "|newer|||\n");
  EXPECT_TRUE(Load("/p/none.xml"));
  EXPECT_EQ(Rows(), "");
  disk.FailOn("read", "/p/a.xml", ErrorCode::Io);
  EXPECT_TRUE(Load("/p/a.xml"));
  EXPECT_EQ(Rows(), "");
  disk.ClearFailures();
  EXPECT_TRUE(Load("/p/a.xml"));
  EXPECT_EQ(Rows(), "|newer|||\n");
}

TEST_F(Globals, ADoubleClickOrEnterOpensTheDeclaration) {
  EXPECT_EQ(DefinitionText(window->GetReport()),
            "Icon/Icon 20 #0 sort\nName/Header 80 auto sort\nDefinition/Desc 400 auto sort\n"
            "File/DeclFile 248 auto sort hidden\nLine/DeclLine 40 auto hidden\n");
  disk.AddFile("/a.xml",
               "<g><f Icon='3' Header='main' Desc='int()' DeclFile='/m.c' DeclLine='7'/>"
               "<v Header='nowhere' highlight='1'>text</v></g>");
  window->LoadGlobals("/a.xml");
  EXPECT_EQ(Rows(), "#3|main|int()|/m.c|7\n|nowhere|text|text|text\n");
  EXPECT_EQ(ColorsText(window->GetReport(), 1), "- ff/ffffff ff/ffffff ff/ffffff ff/ffffff ");
  const auto mouse = [this](MouseAction action, int row) {
    const int y = ReportLayout::kHeaderHeight + row * ReportLayout::kRowHeight;
    window->GetReport().NotifyMouse({action, MouseButton::Left, {30, y}, false, false});
    return host.TakeLines();
  };
  using Lines = std::vector<std::string>;
  EXPECT_EQ(mouse(MouseAction::DoubleClick, 0), Lines{"OpenFileAtLine /m.c -7"});
  EXPECT_EQ(mouse(MouseAction::DoubleClick, 1), Lines{"OpenFileAtLine text 0"});
  EXPECT_EQ(mouse(MouseAction::DoubleClick, 5), Lines{});
  mouse(MouseAction::Press, 0);
  EXPECT_EQ(mouse(MouseAction::Release, 0), Lines{});
  window->GetReport().NotifyKey({kKeyEnter, false, false});
  EXPECT_EQ(host.TakeLines(), Lines{"OpenFileAtLine /m.c -7"});
  host.actions[kMsgOpenFileAtLine] = [this] { window->DestroyWindow(); };
  EXPECT_EQ(mouse(MouseAction::DoubleClick, 0), Lines{"OpenFileAtLine /m.c -7"});
}

constexpr const char* kMenu =
    "menu at 35,10: Columns {[x] Icon 500 | [x] Name 501 | [x] Definition 502 | File 503 | Line "
    "504} | Arrange by {Icon 100 | Name 101 | Definition 102 | -} | Sort &Ascending 2 | "
    "Sort &Descending 3 | - | Group by Field 4 | Group by box 5 | - | Remove Column 1 | - | "
    "Best Fit 7 | Alignment {[x] Align Left 201 | Align Right 202 | Align Center 203}";

TEST_F(Globals, TheMenuOfAHeadArrangesTheReport) {
  const char* const kColumns = "Icon 20 | Name 80 | Definition 400 | -File 248 | -Line 40";
  const char* const kRows = "#2|b|x|/f|10\n#10|A|y|/f|9\n";
  const struct {
    int column;
    int command;
    const char* columns;
    const char* rows;
  } table[] = {
      {1, 0, kColumns, kRows},
      {1, 2, "Icon 20 | Name 80 ^ | Definition 400 | -File 248 | -Line 40",
       "#10|A|y|/f|9\n#2|b|x|/f|10\n"},
      {1, 3, "Icon 20 | Name 80 v | Definition 400 | -File 248 | -Line 40", kRows},
      {0, 2, "Icon 20 ^ | Name 80 | Definition 400 | -File 248 | -Line 40", kRows},
      {1, 102, "Icon 20 | Name 80 | Definition 400 ^ | -File 248 | -Line 40", kRows},
      {1, 104, kColumns, kRows},
      {1, 1, "Icon 20 | -Name 80 | Definition 400 | -File 248 | -Line 40", kRows},
      {1, 503, "Icon 20 | Name 80 | Definition 400 | File 248 | -Line 40", kRows},
      {1, 500, "-Icon 20 | Name 80 | Definition 400 | -File 248 | -Line 40", kRows},
      {1, 4, "Icon 20 | Name 80 {1} | Definition 400 | -File 248 | -Line 40",
       "-Name: A\n.#10|A|y|/f|9\n-Name: b\n.#2|b|x|/f|10\n"},
      {1, 7, "Icon 20 | Name 40 | Definition 400 | -File 248 | -Line 40", kRows},
      {1, 6, kColumns, kRows},
      {1, 505, kColumns, kRows},
      {-1, 2, kColumns, kRows},
      {-1, 7, kColumns, kRows},
  };
  disk.AddFile("/a.xml",
               "<g><s Icon='2' Header='b' Desc='x' DeclFile='/f' DeclLine='10'/>"
               "<s Icon='10' Header='A' Desc='y' DeclFile='/f' DeclLine='9'/></g>");
  for (const auto& row : table) {
    window = std::make_unique<CGlobalsReportWnd>(disk, host.Handle(), "/c/");
    ASSERT_TRUE(window->Create(kStylePopup, {0, 0, 600, 200}, nullptr, 0));
    window->Load("/a.xml");
    toolkit.menuAnswers = {row.command};
    window->GetReport().GetReportHeader().NotifyRightClicked(row.column, {35, 10});
    EXPECT_EQ(ColumnsText(window->GetReport()), row.columns) << row.command;
    EXPECT_EQ(Rows(), row.rows) << row.command;
    EXPECT_EQ(window->GetReport().IsGroupByVisible(), row.command == 4) << row.command;
    const std::vector<std::string> menus = toolkit.TakeLines();
    ASSERT_EQ(menus.size(), 1u);
    if (row.column == 1) {
      EXPECT_EQ(menus.front(), kMenu);
    }
  }
  // The next menu shows the choices made.
  for (const int command : {5, 202, 0}) {
    toolkit.TakeLines();
    toolkit.menuAnswers = {command};
    window->GetReport().GetReportHeader().ShowItemsInGroups(command == 0);
    window->GetReport().GetReportHeader().NotifyRightClicked(1, {35, 10});
  }
  const std::string menu = toolkit.TakeLines().at(0);
  for (const char* part :
       {"[x] Group by box 5", "Group by Field 4 (off)", "{Align Left 201 | [x] Align Right 202"}) {
    EXPECT_NE(menu.find(part), std::string::npos) << menu;
  }
}

// Names that are equal, that differ in case or in length; a name of one megabyte; nested symbols.
TEST_F(Globals, ManyHostileSymbolsAreShown) {
  constexpr int kCount = 10000;
  std::string file = "<g>";
  for (int i = 0; i < kCount; ++i) {
    const std::string name = i % 2 == 0 ? "same" : "Same" + std::to_string(i);
    file += "<s Icon='" + std::to_string(i - 5) + "' Header='" + name +
            "' DeclFile='}{&lt;' DeclLine='99999999999'/>";
  }
  file += "<s Header='" + std::string(1 << 20, 'x') + "'/>";
  for (int i = 0; i < 1500; ++i) file += "<s Header='deep'>";
  disk.AddFile("/a.xml", file);
  EXPECT_TRUE(Load("/a.xml"));
  CGlobalsReport& report = window->GetReport();
  EXPECT_EQ(report.GetRows().GetCount(), kCount / 2 + 3);
  report.GetReportHeader().NotifyClicked(kGlobalsName);
  toolkit.menuAnswers = {4, 7};
  report.GetReportHeader().NotifyRightClicked(kGlobalsName, {});
  report.GetReportHeader().NotifyRightClicked(kGlobalsName, {});
  EXPECT_EQ(report.GetRows().GetCount(), 2 * (kCount / 2 + 3));
  EXPECT_EQ(report.GetColumns().GetAt(kGlobalsName)->GetWidth(), CReportColumn::kMaxWidth);
  disk.Advance(1);
  disk.AddFile("/a.xml", "<g/>");
  EXPECT_TRUE(Load("/a.xml"));
  EXPECT_EQ(Rows(), "");
}

TEST_F(Globals, SymbolsThatCameBeforeTheWindowAreShown) {
  disk.AddFile("/a.xml", "<g><x Header='one'/></g>");
  window = std::make_unique<CGlobalsReportWnd>(disk, host.Handle(), "/c/");
  EXPECT_TRUE(Load("/a.xml"));
  for (int i = 0; i < 2; ++i) {
    ASSERT_TRUE(window->Create(kStylePopup, {0, 0, 600, 200}, nullptr, 0));
    EXPECT_FALSE(Load("/a.xml"));
    EXPECT_EQ(Rows(), "|one|||\n");
    window->DestroyWindow();
  }
}

TEST_F(Globals, TheHostMayFreeTheWindowOrReloadItWhileItIsAsked) {
  disk.AddFile("/a.xml", "<g><x Header='b' DeclFile='/f' DeclLine='1'/><x Header='a'/></g>");
  disk.AddFile("/b.xml", "<g><x Header='d'/><x Header='c'/></g>");
  struct Actor : RecordingToolkit {
    int TrackMenu(const CMenu&, Point, CWnd&) override { return act(), 2; }
    std::function<void()> act;
  } actor;
  const auto make = [this] {
    window = std::make_unique<CGlobalsReportWnd>(disk, host.Handle(), "/c/");
    ASSERT_TRUE(window->Create(kStylePopup, {0, 0, 600, 200}, nullptr, 0));
    window->Load("/a.xml");
    window->GetReport().SelectRow(0);
  };
  const auto doAll = [&](const std::function<void()>& act) {
    actor.act = act;
    host.actions[kMsgOpenFileAtLine] = act;
    make();
    window->GetReport().NotifyMouse(
        {MouseAction::DoubleClick, MouseButton::Left, {30, 25}, false, false});
    make();
    window->GetReport().NotifyKey({kKeyEnter, false, false});
    make();
    window->GetReport().GetReportHeader().NotifyRightClicked(1, {1, 1});
  };
  doAll([this] { window.reset(); });
  EXPECT_EQ(window, nullptr);
  doAll([this] { window->Load("/b.xml"); });
  EXPECT_EQ(Rows(), "|c|||\n|d|||\n") << "the menu sorts what is there";
  doAll([this] { window->Load(nullptr); });
  EXPECT_EQ(Rows(), "");
}

TEST_F(Globals, AMenuThatOutlivesTheWindowDoesNothing) {
  struct Destroyer : RecordingToolkit {
    int TrackMenu(const CMenu&, Point, CWnd& owner) override {
      owner.DestroyWindow();
      return 1;
    }
  } destroyer;
  window->GetReport().GetReportHeader().NotifyRightClicked(1, {1, 1});
  EXPECT_FALSE(window->IsCreated());
  EXPECT_EQ(ColumnsText(window->GetReport()),
            "Icon 20 | Name 80 | Definition 400 | -File 248 | -Line 40");
}

TEST_F(Globals, TheViewsFindSymbolsInTheLoadedTree) {
  ProjectViews views;
  EXPECT_EQ(views.GetSymbolInfo("main"), "");
  views.globals = window.get();
  EXPECT_EQ(views.GetSymbolInfo("main"), "");
  disk.AddFile("/a.xml", "<g><f Header='main' DeclLine='7'/></g>");
  views.LoadGlobals("/a.xml");
  EXPECT_EQ(views.GetSymbolInfo("MAIN"), "\r\n<f Header=\"main\" DeclLine=\"7\" />");
  EXPECT_EQ(views.GetSymbolInfo("other"), "");
}

}  // namespace
}  // namespace tarn::test
