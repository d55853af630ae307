#include "reports/GenericReport.h"

#include <gtest/gtest.h>

#include "platform/text/Text.h"
#include "reports/ReportFixture.h"
#include "support/AnsweringUser.h"
#include "support/ManualClock.h"
#include "support/RecordingToolkit.h"

namespace tarn::test {
namespace {

using std::chrono::milliseconds;

// Counts the ticks of its waiting timer.
struct WaitingReport : CGenericReport {
  using CGenericReport::CGenericReport;
  ~WaitingReport() override { DestroyWindow(); }
  void OnWaitingTimer(int timerId) override { ticks += timerId == 601 ? 1 : 1000; }
  int ticks = 0;
};

class GenericReport : public ::testing::Test {
 protected:
  GenericReport() : user(owner.GetHandle()) {
    disk.AddFile("/r/icons.bmp", BitmapBytes(48, 16));
    disk.AddFile("/r/ticks.bmp", BitmapBytes(32, 16));
    disk.AddFile("/r/broken.bmp", "GIF");
  }

  // Creates the report. Returns false if its window couldn't be created.
  bool Make(const std::string& definition, bool drags = false, bool trees = false) {
    const auto node = Tree(definition.c_str());
    report = std::make_unique<WaitingReport>(disk, owner.GetHandle(), node.get(), drags, trees);
    return report->Create(kStyleChild, {0, 0, 300, 200}, &owner, 1);
  }

  testing::MemoryFileSystem disk;
  ManualClock clock;
  RecordingToolkit toolkit;
  ReportOwner owner;
  AnsweringUser user;
  std::unique_ptr<WaitingReport> report;
};

constexpr const char* kTwoColumns =
    "<Report><Def Header='d' NbCol='2'><Col Type='PT_STRING' Header='A' Edit='1' Sortable='1'/>"
    "<Col Type='PT_STRING' Header='B' Name='Bee'/></Def><Rows>";

std::string Written(CGenericReport& report) {
  CXmlNode node;
  node.SetName("Top");
  report.Serialize(node, true);
  return Dump(node);
}

TEST_F(GenericReport, ADefinitionGivesItsColumns) {
  const struct {
    const char* definition;  // children of Def
    const char* columns;
    const char* asked;
  } rows[] = {
      {"NbCol='3'><A Header='a'/><B Header='b'/><C Header='c'/><D Header='d'/><E/>",
       "a/a 50 auto\nb/b 50 auto\nc/c 50 auto\n", ""},
      {"NbCol='9'><A Header='a'/>", "a/a 50 auto\n", ""},
      {"><A Header='a'/>", "", ""},
      {"NbCol='2'><!--note--><A Header='a'/>", "/ 50 auto\na/a 50 auto\n", ""},
      {"NbCol='1'><Col Type='pt_string' Header='Definition' Name='Desc' sizeCache='DDDD' Edit='1' "
       "Sortable='1' Visible='0' AutoSize='0' HyperLink='' Icon='/r/icons.bmp'/>",
       "Definition/Desc 32 sort edit hidden link\n", ""},
      {"NbCol='2'><Col Type='PT_BOOL' Header='Check' sizeCache='30' Edit='1' AutoSize='1' "
       "Sortable='0' Icon='/r/ticks.bmp'/><Col Type='PT_BOOL' Header='b'/>",
       "Check/Check 30 #0 sort edit\nb/b 50 sort\n", ""},
      {"NbCol='2'><Col Type='PT_BOOL' Header='b' Icon='/r/broken.bmp'/>"
       "<Col Type='PT_BOOL' Header='c' Icon='/r/none.bmp'/>",
       "b/b 50 sort\nc/c 50 sort\n", ""},
      {"NbCol='3'><Col Type='PT_ICON' Header='i' sizeCache='20' Edit='1' Icon='\\r\\icons.bmp'/>"
       "<Col Type='PT_BOOL' Header='Check' Icon='/r/ticks.bmp'/><Col Header='x' Edit='1'/>",
       "i/i 20 auto #0\nCheck/Check 50 #3 sort\nx/x 50 auto\n", ""},
      {"NbCol='3'><Col Header='a'/><Col Type='PT_ICON' Header='i' Icon='/r/none.bmp'/>"
       "<Col Header='c'/>",
       "a/a 50 auto\n", "show: Resource not found []"},
      {"NbCol='1'><Col Type='PT_ICON' Header='i'/>", "", "show: Resource not found []"},
      {"NbCol='2'><Col Type='PT_BOOL' Header='a' sizeCache='-9'/>"
       "<Col Type='PT_BOOL' Header='b' sizeCache='2000000000'/>",
       "a/a 0 sort\nb/b 32767 sort\n", ""},
      {"NbCol='1'><Col Type='OTHER' Header='i' sizeCache='DD' Edit='1' Icon='/r/none.bmp'/>",
       "i/i 50 auto\n", ""},
  };
  for (const auto& row : rows) {
    user.lines.clear();
    EXPECT_TRUE(Make(std::string("<Report><dEF ") + row.definition + "</dEF></Report>"));
    EXPECT_EQ(DefinitionText(*report), row.columns) << row.definition;
    EXPECT_EQ(user.lines.empty() ? "" : user.lines.front(), row.asked) << row.definition;
  }
  EXPECT_FALSE(Make("<Report/>"));
  EXPECT_FALSE(report->IsCreated());
  EXPECT_TRUE(Make("<Report><Other/></Report>"));
  CGenericReport bare(disk, 0, nullptr, false, false);
  EXPECT_FALSE(bare.Create(kStyleChild, {}, &owner, 2));
  bare.SetDefinition(*Tree("<Report><Def NbCol='1'><Col Header='a'/></Def></Report>"));
  EXPECT_EQ(DefinitionText(bare), "a/a 50 auto\n");
  bare.SetDefinition(*Tree("<Report><Def NbCol='1'><Col Header='b'/></Def></Report>"));
  EXPECT_EQ(DefinitionText(bare), "b/b 50 auto\n");
  ASSERT_TRUE(bare.Create(kStyleChild, {}, &owner, 2));
  EXPECT_EQ(DefinitionText(bare), "b/b 50 auto\n");
}

TEST_F(GenericReport, PicturesAreThoseOfTheDefinitionInForce) {
  const char* const kIcon =
      "<Report><Def NbCol='1'><Col Type='PT_ICON' Icon='/r/%s.bmp'/></Def>"
      "</Report>";
  ASSERT_TRUE(Make(FormatMessageText(kIcon, std::vector<std::string>{"icons"})));
  EXPECT_EQ(report->GetImageList()->GetCount(), 3);
  report->SetDefinition(*Tree(FormatMessageText(kIcon, std::vector<std::string>{"ticks"}).c_str()));
  EXPECT_EQ(report->GetImageList()->GetCount(), 2);
  report->SetDefinition(*Tree("<Report><Def/></Report>"));
  EXPECT_EQ(report->GetImageList(), nullptr);
}

TEST_F(GenericReport, NumbersOfColumnsThatAreNoneAreHarmless) {
  const std::pair<const char*, int> rows[] = {{"-1", 0},         {"-2147483648", 0},
                                              {"2147483647", 2}, {"99999999999999999999", 2},
                                              {"0x2", 0},        {"2;", 2}};
  for (const auto& [number, count] : rows) {
    ASSERT_TRUE(Make(std::string("<Report><Def NbCol='") + number +
                     "'><A Header='a'/><A Header='b'/></Def><Rows><R a='1' b='2'/></Rows>"
                     "</Report>"));
    EXPECT_EQ(report->GetColumns().GetCount(), count) << number;
    EXPECT_EQ(report->GetRows().GetCount(), 1) << number;
  }
}

TEST_F(GenericReport, RowsLieAsDeepAsAFileCan) {
  constexpr int kDepth = 1900;
  std::string rows;
  for (int i = 0; i < kDepth; ++i) rows += "<R A='a' Expand='1'>";
  for (int i = 0; i < kDepth; ++i) rows += "</R>";
  ASSERT_TRUE(Make(kTwoColumns + rows + "</Rows></Report>", false, true));
  EXPECT_EQ(report->GetRows().GetCount(), kDepth);
  EXPECT_NE(Written(*report).find("Expand=" + std::string(kDepth - 1, '1') + "]"),
            std::string::npos);
  report->NotifyOpened(0, false);
  EXPECT_EQ(report->GetRows().GetCount(), 1);
}

TEST_F(GenericReport, ColumnsMayGoWhileRowsAreSortedAndGroupedByThem) {
  ASSERT_TRUE(
      Make("<Report><Def NbCol='2'><Col Type='PT_STRING' Header='A' Sortable='1'/>"
           "<Col Type='PT_STRING' Header='B' HyperLink=''/></Def><Rows><R A='1' B='x'/>"
           "<R A='2' B='y'/></Rows></Report>",
           true));
  CReportColumns& columns = report->GetColumns();
  columns.GetGroupsOrder().Add(columns.GetAt(1));
  columns.GetGroupsOrder().Add(columns.GetAt(0));
  report->GetReportHeader().NotifyClicked(0);
  report->NotifySelected({0, 1, 2}, 2);
  report->SetDefinition(
      *Tree("<Report><Def NbCol='1'><Col Type='PT_STRING' Header='C'/></Def>"
            "</Report>"));
  // The old rows stay until the report is populated, regardless of user input in the meantime.
  for (int y = 0; y < 200; y += 8) {
    for (const MouseAction action :
         {MouseAction::Press, MouseAction::Release, MouseAction::DoubleClick}) {
      report->NotifyMouse({action, MouseButton::Left, {5, y}, false, false});
    }
  }
  for (const int key : {kKeyHome, kKeyRight, kKeyLeft, kKeyEnd, kKeySpace, kKeyF2, kKeyEnter}) {
    report->NotifyKey({key, false, false});
  }
  report->Populate();
  EXPECT_EQ(report->GetRows().GetCount(), 2);
  EXPECT_FALSE(report->GetRows().GetAt(0)->IsGroup());
  EXPECT_EQ(columns.GetSortColumn(), nullptr);
  EXPECT_EQ(Written(*report),
            "Top(Report(Def[NbCol=1](Col[Type=PT_STRING][Header=C]) "
            "Rows(Row[C=1] Row[C=2])))");
}

TEST_F(GenericReport, ARowTakesItsCellsFromAttributesAndElseItsText) {
  const char* const kColumns =
      "<Def NbCol='4'><Col Type='PT_ICON' Header='Icon' Icon='/r/icons.bmp'/>"
      "<Col Type='PT_BOOL' Header='Tick' Name='cHECK' Icon='/r/ticks.bmp'/>"
      "<Col Type='PT_STRING' Header='Text' Name='T' HyperLink='no'/>"
      "<Col Type='PT_BOOL' Header='Plain'/></Def>";
  const struct {
    const char* rows;
    const char* shown;
    const char* colors;  // of the first row
  } table[] = {
      {"<Row Icon='2' cHECK='TRUE' T='t' Plain='p'/>", "#2|[x]|t|p\n", "- - - - "},
      {"<Row Icon='x' cHECK='yes'>a\tb<!--c-->\t</Row>", "#0|[ ]|ab|ab\n", "- - - - "},
      {"<Any/>", "|[ ]||\n", "- - - - "},
      {"<Row T='' Plain='p'>text</Row>", "|[ ]||p\n", "- - - - "},
      {"<Row T='t' highlight='1' ForeColor='0xFF0000'/>", "|[ ]|t|\n", "- - ff/ffffff ff/ffffff "},
      {"<Row T='t' highlight='2' ForeColor='0xFF0000'/>", "|[ ]|t|\n",
       "- - ff0000/ffffff ff0000/ffffff "},
      {"<Row T='t' BkgndColor='255'/>", "|[ ]|t|\n", "- - 0/ff 0/ff "},
      {"<Row T='t' BkgndColor='0xFF' ForeColor=''/>", "|[ ]|t|\n", "- - 0/ff 0/ff "},
      {"<Row T='t' BkgndColor='' ForeColor='7'/>", "|[ ]|t|\n", "- - 7/ffffff 7/ffffff "},
      {"<Row T='a' Expand='1'><Row T='b' Expand='1'><X T='c'/></Row><Row T='d'/></Row>"
       "<Row T='e' Expand='10'><Row T='f'/></Row><Row T='g' Expand='1'/>",
       "-|[ ]|a|\n.-|[ ]|b|\n..|[ ]|c|\n.|[ ]|d|\n+|[ ]|e|\n|[ ]|g|\n", "- - - - "},
      {"<!--none--><Row T='t'/>", "|[ ]|t|\n", "- - - - "},
  };
  for (const auto& row : table) {
    ASSERT_TRUE(
        Make("<Report>" + std::string(kColumns) + "<rows>" + row.rows + "</rows></Report>"));
    EXPECT_EQ(RowsText(*report), row.shown) << row.rows;
    EXPECT_EQ(ColorsText(*report, 0), row.colors) << row.rows;
  }
  const CReportRecordItem& linked = *report->GetItemAt(0, 2);
  EXPECT_EQ(linked.FindHyperlink(0), 0);
  EXPECT_EQ(linked.FindHyperlink(1), -1);
  EXPECT_EQ(report->GetItemAt(0, 3)->GetHyperlinkCount(), 0);
}

TEST_F(GenericReport, ATextItemShowsItsCaptionOrItsValueInAFormat) {
  CGenericTextItem item("v", 1, 2);
  EXPECT_EQ(item.GetCaption(), "v");
  item.SetFormat("<%s%n%d>");
  EXPECT_EQ(item.GetCaption(), "<v%n>");
  item.SetOwnCaption("own");
  EXPECT_EQ(item.GetCaption() + item.GetValue(), "ownv");
  item.OnEditChanged("new");
  EXPECT_EQ(item.GetCaption() + item.GetValue(), "ownnew");
}

TEST_F(GenericReport, WhatIsWrittenHasTheOuterRowsAndTheShapeOfTheRest) {
  ASSERT_TRUE(Make(std::string(kTwoColumns) +
                       "<Row A='1' Bee='x' Expand='1'><Row A='2'><Row A='3' Expand='1'><Row A='4'/>"
                       "</Row></Row><Row A='5'/></Row><Row A='6'>text</Row></Rows></Report>",
                   false, true));
  EXPECT_EQ(DefinitionText(*report), "A/A 50 auto sort edit tree\nB/Bee 50 auto\n");
  const std::string head =
      "Top(Report(Def[Header=d][NbCol=2](Col[Type=PT_STRING][Header=A][Edit=1][Sortable=1] "
      "Col[Type=PT_STRING][Header=B][Name=Bee]) Rows";
  EXPECT_EQ(Written(*report), head + "(Row[Expand=101][A=1][Bee=x] Row[A=6][Bee=text])))");
  report->GetRecords().GetAt(0)->GetChildren().GetAt(0)->GetChildren().GetAt(0)->SetExpanded(false);
  CXmlNode stored;
  report->Serialize(stored, true);
  EXPECT_EQ(stored.FindDescendant("Row")->GetAttrValue("Expand"), std::string("100"));
  // After loading, the record is collapsed and has no children; the sort column stays.
  report->GetColumns().SetSortColumn(report->GetColumns().GetAt(0), false);
  report->Serialize(stored, false);
  EXPECT_EQ(RowsText(*report), "6|text\n1|x\n");
  report->Serialize(*Tree("<Report><Def/></Report>"), false);
  EXPECT_EQ(RowsText(*report), "");
  EXPECT_EQ(report->GetColumns().GetCount(), 2);
}

TEST_F(GenericReport, ReloadingReplacesOrAppendsAndSortsOnce) {
  ASSERT_TRUE(Make(std::string(kTwoColumns) + "<Row A='b'/><Row A='a'/></Rows></Report>"));
  const auto more = Tree("<R><Row A='c'/><Row A='B'/></R>");
  EXPECT_TRUE(report->Reload(more.get(), false, -1));
  EXPECT_EQ(RowsText(*report), "b|\na|\nc|\nB|\n");
  report->Reload(nullptr, false, 0);
  EXPECT_EQ(RowsText(*report), "a|\nb|\nB|\nc|\n");
  report->GetColumns().SetSortColumn(report->GetColumns().GetAt(0), false);
  report->Reload(nullptr, false, 0);
  EXPECT_EQ(RowsText(*report), "c|\nb|\nB|\na|\n") << "it was the sorted one already";
  report->Reload(more.get(), true, 9);
  EXPECT_EQ(RowsText(*report), "c|\nB|\n");
  report->ReloadFromChild(*Tree("<X><a/><b><Row A='n'/></b></X>"));
  EXPECT_EQ(RowsText(*report), "n|\n");
  EXPECT_FALSE(report->Validate(*more));
  report->ReloadFromChild(*Tree("<X><a/></X>"));
  EXPECT_EQ(RowsText(*report), "");
  report->Reload(more.get(), false, -1);
  report->RemoveAllRows();
  EXPECT_EQ(RowsText(*report) + Written(*report).substr(Written(*report).find(" Rows")), " Rows))");
}

TEST_F(GenericReport, TheWaitingTimerRunsExactlyWhileTheLastRowWaits) {
  ASSERT_TRUE(Make(std::string(kTwoColumns) + "<Row WaitingProcess=''/></Rows></Report>"));
  const struct {
    const char* rows;
    int ticks;
  } table[] = {
      {nullptr, 1},
      {"<R><Row WaitingProcess='1'/><Row/></R>", 0},
      {"<R><Row/><Row WaitingProcess='1'/><!--end--></R>", 1},
      {"<R/>", 0},
  };
  for (const auto& row : table) {
    if (row.rows != nullptr) report->Reload(Tree(row.rows).get(), true, -1);
    report->ticks = 0;
    clock.Advance(milliseconds(9));
    EXPECT_EQ(report->ticks, 0);
    clock.Advance(milliseconds(1));
    EXPECT_EQ(report->ticks, row.ticks) << OrEmpty(row.rows);
  }
  // Removed rows don't keep the timer running either.
  for (const bool all : {true, false}) {
    report->Reload(Tree("<R><Row WaitingProcess=''/></R>").get(), true, -1);
    if (all) report->RemoveAllRows();
    if (!all) report->Reload(nullptr, true, -1);
    report->ticks = 0;
    clock.Advance(milliseconds(50));
    EXPECT_EQ(report->ticks, 0) << all;
  }
}

TEST_F(GenericReport, APressOnASelectedRowDragsTheTextOfAllOfThem) {
  for (const bool drags : {true, false}) {
    ASSERT_TRUE(Make(std::string(kTwoColumns) +
                         "<Row A='a' Bee='x'/><Row A='b' Bee='y'/><Row A='c' Bee='z'/></Rows>"
                         "</Report>",
                     drags));
    report->NotifySelected({0, 2}, 2);
    toolkit.TakeLines();
    const auto press = [this](int y) {
      report->NotifyMouse({MouseAction::Press, MouseButton::Left, {5, y}, false, false});
    };
    press(25);
    press(5);    // the header
    press(150);  // below the rows
    press(45);
    const std::vector<std::string> dragged = {"drag a\tx\t\nc\tz\t\n", "drag b\ty\t\n"};
    EXPECT_EQ(toolkit.TakeLines(), drags ? dragged : std::vector<std::string>());
  }
  // The owner may destroy the report before the drag begins.
  ASSERT_TRUE(Make(std::string(kTwoColumns) + "<Row A='a'/></Rows></Report>", true));
  owner.onMessage = [this](std::uint32_t) { owner.Retire(std::move(report)); };
  report->NotifyMouse({MouseAction::Press, MouseButton::Left, {5, 25}, false, false});
  EXPECT_EQ(report, nullptr);
  EXPECT_TRUE(toolkit.TakeLines().empty());
}

}  // namespace
}  // namespace tarn::test
