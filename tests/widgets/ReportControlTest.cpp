#include "widgets/ReportControl.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "support/ReportDump.h"
#include "widgets/Toolkit.h"

namespace tarn::test {
namespace {

// Records the notifications of the peer as text.
struct RecordingPeer : ReportPeer {
  explicit RecordingPeer(std::string& text) : lines(text) {}
  void OnColumnsChanged() override { lines += "columns; "; }
  void OnRowsReset() override { lines += "reset; "; }
  void OnRowsAppended(int first) override { lines += "rows " + std::to_string(first) + "-; "; }
  void OnRowChanged(int row) override { lines += "row " + std::to_string(row) + "; "; }
  void OnSelectionChanged() override { lines += "selection; "; }
  void OnRowShown(int row) override { lines += "show " + std::to_string(row) + "; "; }
  void OnEditWanted(int row, int column) override {
    lines += "edit " + std::to_string(row) + "," + std::to_string(column) + "; ";
  }
  std::string& lines;
};

struct PeerToolkit : WindowToolkit {
  PeerToolkit() { SetCurrent(this); }
  ~PeerToolkit() override { SetCurrent(nullptr); }
  using WindowToolkit::MakePeer;
  std::unique_ptr<ReportPeer> MakePeer(CReportControl&) override {
    return std::make_unique<RecordingPeer>(lines);
  }
  Size MeasureText(const Font&, std::string_view text) override {
    ++measured;
    const auto wide = std::count(text.begin(), text.end(), 'W');
    return {8 * (static_cast<int>(text.size()) + static_cast<int>(wide)), 16};
  }
  std::string Take() { return std::exchange(lines, {}); }
  std::string lines;
  int measured = 0;
};

class Report : public ::testing::Test {
 public:
  Report() { MakeReport(); }

  void MakeReport() {
    report = std::make_unique<CReportControl>();
    AddColumn("Icon", 20, false, 0);
    AddColumn("Name", 80, true, CReportColumn::kNoIcon);
    AddColumn("File", 100, true, CReportColumn::kNoIcon);
    report->GetColumns().GetAt(0)->SetEditable(true);
    report->GetColumns().GetAt(1)->SetEditable(true);
    report->GetColumns().GetAt(2)->SetTreeColumn(true);
    report->AllowEdit(true);
    report->Create(kStyleChild | kStyleVisible, {10, 20, 310, 140}, &owner, 7);
    toolkit.Take();
  }

  void AddColumn(const char* caption, int width, bool sortable, int icon) {
    const int index = report->GetColumns().GetCount();
    report->AddColumn(std::make_unique<CReportColumn>(index, caption, width, caption[0] == 'F',
                                                      icon, sortable, true));
  }
  // Icon -1 and -2 mean check boxes, unchecked and checked.
  static std::unique_ptr<CReportRecord> Make(int icon, const char* name, const char* file) {
    auto record = std::make_unique<CReportRecord>();
    CReportRecordItem& first = *record->AddItem(std::make_unique<CReportRecordItem>());
    first.SetHasCheckbox(icon < 0);
    first.SetChecked(icon == -2);
    if (icon >= 0) first.SetIconIndex(icon);
    for (const char* text : {name, file}) {
      record->AddItem(std::make_unique<CReportRecordItem>())->SetOwnCaption(text);
    }
    return record;
  }
  CReportRecord& Add(int icon, const char* name, const char* file) {
    return *report->AddRecord(Make(icon, name, file));
  }
  void Fill() {
    CReportRecord& b = Add(10, "b", "x.c");
    b.GetChildren().Add(Make(0, "b2", "X.C"));
    b.GetChildren().Add(Make(0, "b1", "y.c"));
    Add(9, "A", "y.c");
    Add(-1, "a", "X.c");
    report->Populate();
    toolkit.Take();
  }
  void Key(int key, bool shift = false) { report->NotifyKey({key, shift, false}); }
  void Mouse(MouseAction action, int x, int y, MouseButton button = MouseButton::Left,
             bool shift = false, bool control = false) {
    report->NotifyMouse({action, button, {x, y}, shift, control});
  }
  void Click(int x, int y, bool shift = false, bool control = false) {
    Mouse(MouseAction::Press, x, y, MouseButton::Left, shift, control);
    if (report) Mouse(MouseAction::Release, x, y, MouseButton::Left, shift, control);
  }

  PeerToolkit toolkit;
  ReportOwner owner;
  std::unique_ptr<CReportControl> report;
};

TEST_F(Report, RowsAreSortedBlindToCaseAndStableAndPicturesByNumber) {
  Fill();
  const struct {
    int column;
    bool ascending;
    const char* rows;
  } table[] = {
      {-1, true, "+#10|b|x.c\n#9|A|y.c\n[ ]|a|X.c\n"},
      {1, true, "#9|A|y.c\n[ ]|a|X.c\n+#10|b|x.c\n"},
      {1, false, "+#10|b|x.c\n#9|A|y.c\n[ ]|a|X.c\n"},
      {2, true, "+#10|b|x.c\n[ ]|a|X.c\n#9|A|y.c\n"},
      {0, true, "[ ]|a|X.c\n#9|A|y.c\n+#10|b|x.c\n"},
      {0, false, "+#10|b|x.c\n#9|A|y.c\n[ ]|a|X.c\n"},
  };
  for (const auto& row : table) {
    report->GetColumns().SetSortColumn(report->GetColumns().GetAt(row.column), row.ascending);
    report->SortRows();
    EXPECT_EQ(RowsText(*report), row.rows) << row.column << row.ascending;
  }
  // Children are sorted among themselves.
  report->GetColumns().SetSortColumn(report->GetColumns().GetAt(1), true);
  report->GetRecords().GetAt(0)->SetExpanded(true);
  report->Populate();
  EXPECT_EQ(RowsText(*report), "#9|A|y.c\n[ ]|a|X.c\n-#10|b|x.c\n.#0|b1|y.c\n.#0|b2|X.C\n");
}

TEST_F(Report, RowsWithOneValueStandBelowItAndCanBeClosed) {
  Fill();
  report->GetColumns().GetGroupsOrder().Add(report->GetColumns().GetAt(2));
  report->Populate();
  EXPECT_EQ(RowsText(*report), "-File: x.c\n.+#10|b|x.c\n.[ ]|a|X.c\n-File: y.c\n.#9|A|y.c\n");
  report->GetColumns().GetGroupsOrder().Add(report->GetColumns().GetAt(0));
  report->Populate();
  EXPECT_EQ(RowsText(*report),
            "-File: X.c\n.-Icon: 0\n..[ ]|a|X.c\n.-Icon: 10\n..+#10|b|x.c\n"
            "-File: y.c\n.-Icon: 9\n..#9|A|y.c\n");
  report->NotifyOpened(0, false);
  report->NotifyOpened(2, false);
  EXPECT_EQ(RowsText(*report), "+File: X.c\n-File: y.c\n.+Icon: 9\n");
  report->NotifyOpened(0, true);
  EXPECT_EQ(RowsText(*report),
            "-File: X.c\n.-Icon: 0\n..[ ]|a|X.c\n.-Icon: 10\n..+#10|b|x.c\n"
            "-File: y.c\n.+Icon: 9\n");
  report->GetColumns().GetGroupsOrder().Clear();
  report->GetReportHeader().ShowItemsInGroups(true);
  report->GetReportHeader().NotifyClicked(1);
  report->GetReportHeader().NotifyClicked(1);
  EXPECT_EQ(RowsText(*report), "-Name: b\n.+#10|b|x.c\n-Name: A\n.#9|A|y.c\n.[ ]|a|X.c\n");
  EXPECT_EQ(ColumnsText(*report), "Icon 20 | Name 80 v | File 100");
}

// Each action starts with a fresh report of 300 by 120 pixels whose first record has two children.
TEST_F(Report, WhatTheUserDoesReachesTheOwnerAndTheState) {
  constexpr const char* kPlain = "+#10|b|x.c\n#9|A|y.c\n[ ]|a|X.c\n";
  const struct {
    const char* name;
    std::function<void(Report&)> act;
    const char* reported;
    const char* drawn;
    const char* rows;
  } table[] = {
      {"click", [](Report& r) { r.Click(30, 40); }, "selection 7:1,-1; click 7:1,1; ",
       "selection; ", "+#10|b|x.c\n*>#9|A|y.c\n[ ]|a|X.c\n"},
      {"click behind the rows", [](Report& r) { r.Click(30, 90); }, "click 7:-1,-1; ", "", kPlain},
      {"press and release elsewhere",
       [](Report& r) {
         r.Mouse(MouseAction::Press, 30, 40);
         r.Mouse(MouseAction::Release, 30, 56);
       },
       "selection 7:1,-1; ", "selection; ", "+#10|b|x.c\n*>#9|A|y.c\n[ ]|a|X.c\n"},
      {"double click",
       [](Report& r) {
         r.Click(30, 40);
         r.Mouse(MouseAction::DoubleClick, 30, 40);
         r.Mouse(MouseAction::Release, 30, 40);
       },
       "selection 7:1,-1; click 7:1,1; double 7:1,1; ", "selection; ",
       "+#10|b|x.c\n*>#9|A|y.c\n[ ]|a|X.c\n"},
      {"click on a check box", [](Report& r) { r.Click(5, 56); },
       "selection 7:2,-1; check 7:2,0; click 7:2,0; ", "selection; row 2; ",
       "+#10|b|x.c\n#9|A|y.c\n*>[x]|a|X.c\n"},
      {"selection with Shift and Control",
       [](Report& r) {
         r.Click(30, 24);
         r.Click(30, 56, true);
         r.Click(30, 40, false, true);
       },
       "selection 7:0,-1; click 7:0,1; selection 7:2,-1; click 7:2,1; selection 7:1,-1; "
       "click 7:1,1; ",
       "selection; selection; selection; ", "*+#10|b|x.c\n>#9|A|y.c\n*[ ]|a|X.c\n"},
      {"a press keeps several rows, a click doesn't",
       [](Report& r) {
         r.Click(30, 24);
         r.Click(30, 56, true);
         r.owner.TakeLines();
         r.Mouse(MouseAction::Press, 30, 40);
         EXPECT_EQ(r.owner.TakeLines(), "");
         r.Mouse(MouseAction::Release, 30, 40);
       },
       "selection 7:1,-1; click 7:1,1; ", "selection; selection; selection; ",
       "+#10|b|x.c\n*>#9|A|y.c\n[ ]|a|X.c\n"},
      {"click on a header", [](Report& r) { r.Click(30, 10); }, "", "columns; reset; ",
       "#9|A|y.c\n[ ]|a|X.c\n+#10|b|x.c\n"},
      {"click on one that doesn't sort", [](Report& r) { r.Click(5, 10); }, "", "", kPlain},
      {"right click on a header",
       [](Report& r) { r.Mouse(MouseAction::Release, 150, 10, MouseButton::Right); },
       "header 7:-1,2 at 160,30; ", "", kPlain},
      {"right click on a row",
       [](Report& r) { r.Mouse(MouseAction::Release, 150, 40, MouseButton::Right); }, "", "",
       kPlain},
      {"opened and closed by keys",
       [](Report& r) {
         for (const int key : {kKeyDown, kKeyRight, kKeyRight, kKeyDown, kKeyLeft}) r.Key(key);
       },
       "selection 7:0,-1; selection 7:1,-1; selection 7:2,-1; selection 7:0,-1; ",
       "show 0; selection; reset; show 1; selection; show 2; selection; show 0; selection; ",
       "*>-#10|b|x.c\n.#0|b2|X.C\n.#0|b1|y.c\n#9|A|y.c\n[ ]|a|X.c\n"},
      {"what is closed takes the focus",
       [](Report& r) {
         for (const int key : {kKeyDown, kKeyRight, kKeyRight}) r.Key(key);
         r.toolkit.Take();
         r.owner.TakeLines();
         r.report->NotifyOpened(0, false);
       },
       "", "reset; selection; show 0; ", "*>+#10|b|x.c\n#9|A|y.c\n[ ]|a|X.c\n"},
      {"extended by keys",
       [](Report& r) {
         r.Key(kKeyHome);
         r.Key(kKeyEnd, true);
         r.Key(kKeyUp, true);
       },
       "selection 7:0,-1; selection 7:2,-1; selection 7:1,-1; ",
       "show 0; selection; show 2; selection; show 1; selection; ",
       "*+#10|b|x.c\n*>#9|A|y.c\n[ ]|a|X.c\n"},
      {"a page down ticks the last",
       [](Report& r) {
         r.Key(kKeyPageDown);
         r.Key(kKeySpace);
         r.Key(kKeyEnter);
       },
       "selection 7:2,-1; check 7:2,0; enter 7:2,-1; ", "show 2; selection; row 2; ",
       "+#10|b|x.c\n#9|A|y.c\n*>[x]|a|X.c\n"},
      {"edit by key",
       [](Report& r) {
         r.Key(kKeyHome);
         r.Key(kKeyF2);
         r.report->NotifyEdited(0, 1, "new");
       },
       "selection 7:0,-1; edit 7:0,1; ", "show 0; selection; edit 0,1; row 0; ",
       "*>+#10|new|x.c\n#9|A|y.c\n[ ]|a|X.c\n"},
      {"edit of what can't be",
       [](Report& r) {
         r.report->NotifyEdited(0, 2, "new");
         r.report->NotifyEdited(0, 0, "new");
         r.report->NotifyEdited(9, 1, "new");
         r.report->AllowEdit(false);
         r.report->NotifyEdited(0, 1, "new");
         r.report->NotifyCheckToggled(2, 0);
       },
       "", "", kPlain},
      {"selected by the toolkit",
       [](Report& r) {
         r.report->NotifySelected({2, 0, 2, 99, -4}, 2);
       },
       "selection 7:2,-1; ", "selection; ", "*+#10|b|x.c\n#9|A|y.c\n*>[ ]|a|X.c\n"},
  };
  for (const auto& row : table) {
    report->RemoveAllRecords();
    report->GetColumns().SetSortColumn(nullptr, true);
    report->AllowEdit(true);
    Fill();
    owner.TakeLines();
    row.act(*this);
    EXPECT_EQ(owner.TakeLines(), row.reported) << row.name;
    EXPECT_EQ(toolkit.Take(), row.drawn) << row.name;
    EXPECT_EQ(RowsText(*report), row.rows) << row.name;
  }
}

// Every message handler may refill the report or destroy it.
TEST_F(Report, AnOwnerThatRefillsOrDestroysItInsideAMessageEndsTheAction) {
  const std::pair<const char*, std::function<void(Report&)>> actions[] = {
      {"selection", [](Report& r) { r.Click(30, 40); }},
      {"click", [](Report& r) { r.Click(30, 40); }},
      {"check", [](Report& r) { r.Click(5, 56); }},
      {"double", [](Report& r) { r.Mouse(MouseAction::DoubleClick, 30, 40); }},
      {"header", [](Report& r) { r.Mouse(MouseAction::Release, 30, 10, MouseButton::Right); }},
      {"enter",
       [](Report& r) {
         r.report->SelectRow(0);
         r.Key(kKeyEnter);
       }},
      {"edit", [](Report& r) { r.report->NotifyEdited(0, 1, "new"); }},
      {"selection", [](Report& r) { r.Key(kKeyDown); }},
  };
  for (const bool destroys : {false, true}) {
    for (const auto& [name, act] : actions) {
      Fill();
      owner.onMessage = [&, word = std::string(name)](std::uint32_t) {
        const std::string lines = owner.TakeLines();
        if (lines.find(word) == std::string::npos) return;
        report->RemoveAllRecords();
        if (destroys) {
          // A window that is destroyed by its own event is retired by its owner.
          owner.Retire(std::move(report));
        } else {
          Add(1, "only", "one");
          report->Populate();
        }
      };
      act(*this);
      owner.onMessage = nullptr;
      EXPECT_EQ(owner.TakeLines(), "") << name << destroys << ": nothing may follow";
      if (destroys) {
        ASSERT_EQ(report, nullptr) << name;
        MessageLoop::ForCurrentThread()->Pump();
        MakeReport();
      } else {
        EXPECT_EQ(RowsText(*report), "#1|only|one\n") << name;
        report->RemoveAllRecords();
      }
    }
  }
}

TEST_F(Report, AClickThatEndsASelectionIsNoneInTheReportThatTookItsPlace) {
  Fill();
  report->NotifySelected({0, 1}, 1);
  Mouse(MouseAction::Press, 30, 40);
  owner.TakeLines();
  owner.onMessage = [this](std::uint32_t) {
    report->RemoveAllRecords();
    Add(1, "only", "one");
    report->Populate();
  };
  Mouse(MouseAction::Release, 30, 40);
  EXPECT_EQ(owner.TakeLines(), "selection 7:1,-1; ");
  EXPECT_EQ(RowsText(*report), "#1|only|one\n");
}

// Adding records one at a time, in any state of the report, must yield the same rows as a full
// rebuild, and the peer may be notified of appended rows only if all changes are at the end.
TEST_F(Report, AddedRecordsGiveTheRowsOfAFreshStart) {
  std::mt19937 random(7);
  const auto any = [&random](int bound) {
    return static_cast<int>(random() % static_cast<unsigned>(bound));
  };
  for (int round = 0; round < 200; ++round) {
    report->RemoveAllRecords();
    report->GetColumns().GetGroupsOrder().Clear();
    const int mode = any(4);
    if (mode == 1) report->GetColumns().GetGroupsOrder().Add(report->GetColumns().GetAt(any(3)));
    report->GetColumns().SetSortColumn(report->GetColumns().GetAt(mode == 2 ? any(3) : -1),
                                       any(2) == 0);
    report->Populate();
    for (int step = 0; step < 12; ++step) {
      for (int added = any(3); added > 0; --added) {
        const std::string name(1, static_cast<char>('a' + any(5)));
        CReportRecord& record = Add(any(4) - 2, name.c_str(), any(2) == 0 ? "x.c" : "y.c");
        if (mode != 3 || any(3) > 0) continue;
        record.GetChildren().Add(Make(1, "child", ""));
        record.SetExpanded(any(2) == 0);
      }
      if (step == 6 && any(3) == 0) {
        report->GetColumns().SetSortColumn(report->GetColumns().GetAt(1), false);
      }
      if (any(4) == 0) report->NotifySelected({any(5), any(5)}, any(5));
      toolkit.Take();
      const int before = report->GetRows().GetCount();
      report->PopulateAdded();
      const std::string drawn = toolkit.Take();
      const std::string rows = RowsText(*report);
      const bool isLonger = report->GetRows().GetCount() > before;
      if (mode == 0 && step < 6) {
        EXPECT_EQ(drawn, isLonger ? "rows " + std::to_string(before) + "-; " : "");
      }
      report->Populate();
      ASSERT_EQ(rows, RowsText(*report)) << "round " << round << ", step " << step;
    }
  }
}

TEST_F(Report, ColumnsShareWhatIsLeftAndFitTheirContent) {
  Fill();
  const auto spans = [this] {
    std::string text;
    for (const auto& span : report->GetLayout().LayOutColumns()) {
      text += std::to_string(span.column) + ":" + std::to_string(span.left) + "+" +
              std::to_string(span.width) + " ";
    }
    return text;
  };
  EXPECT_EQ(spans(), "0:0+20 1:20+80 2:100+200 ");
  report->GetColumns().GetAt(1)->SetVisible(false);
  EXPECT_EQ(spans(), "0:0+20 2:20+280 ");
  report->GetColumns().GetAt(1)->SetVisible(true);
  report->GetReportHeader().NotifyResized(2, 400);
  EXPECT_EQ(spans(), "0:0+20 1:20+80 2:100+200 ");
  report->NotifyResized({120, 120});
  EXPECT_EQ(spans(), "0:0+20 1:20+80 2:100+40 ");
  report->NotifyResized({300, 120});
  report->GetReportHeader().NotifyResized(2, 100);
  report->GetReportHeader().NotifyResized(0, 50);
  EXPECT_EQ(spans(), "0:0+50 1:50+80 2:130+170 ");
  report->GetReportHeader().NotifyResized(1, 400);
  EXPECT_EQ(spans(), "0:0+50 1:50+400 2:450+40 ");
  for (int i = 0; i < 3; ++i) {
    report->GetReportHeader().BestFit(*report->GetColumns().GetAt(i));
  }
  EXPECT_EQ(ColumnsText(*report), "Icon 40 | Name 40 | File 48");
  report->GetColumns().GetAt(2)->SetTreeColumn(false);
  report->GetColumns().GetAt(1)->SetTreeColumn(true);
  report->GetRecords().GetAt(0)->SetExpanded(true);
  report->Populate();
  report->GetReportHeader().BestFit(*report->GetColumns().GetAt(1));
  EXPECT_EQ(ColumnsText(*report), "Icon 40 | Name 56 | File 48");
}

TEST_F(Report, FitsTheLongestTextsAndThoseInSightOfManyRows) {
  constexpr int kRows = 5000;
  for (int row = 0; row < kRows; ++row) Add(0, row == kRows - 1 ? "the longest" : "another", "");
  CReportColumn& name = *report->GetColumns().GetAt(1);
  report->Populate();
  toolkit.measured = 0;
  report->GetReportHeader().BestFit(name);
  EXPECT_EQ(name.GetWidth(), 11 * 8 + 2 * ReportLayout::kCellMargin);
  EXPECT_LT(toolkit.measured, kRows / 2);
  // Shorter than most.
  report->GetItemAt(7, 1)->SetOwnCaption("WWWWWW");
  report->NotifyScrolled(5);
  report->GetReportHeader().BestFit(name);
  EXPECT_EQ(name.GetWidth(), 12 * 8 + 2 * ReportLayout::kCellMargin);
}

TEST_F(Report, PointsFindCellsOpenersLinksAndTheGroupBox) {
  Fill();
  report->GetColumns().GetAt(2)->SetTreeColumn(false);
  EXPECT_FALSE(report->CanOpen(*report->GetRows().GetAt(0)));
  report->GetColumns().GetAt(1)->SetTreeColumn(true);
  CReportRecordItem& item = *report->GetItemAt(1, 2);
  item.AddHyperlink(std::make_unique<CReportHyperlink>(2, 1));
  const auto at = [this](int x, int y) {
    static constexpr const char* kAreas[] = {"nowhere", "box", "header", "row"};
    static constexpr const char* kParts[] = {"", " opener", " check"};
    const ReportHit hit = report->HitTest({x, y});
    return std::string(kAreas[static_cast<int>(hit.area)]) + kParts[static_cast<int>(hit.part)] +
           " " + std::to_string(hit.row) + "," + std::to_string(hit.column) + "," +
           std::to_string(hit.hyperlink);
  };
  EXPECT_EQ(at(30, 19), "header -1,1,-1");
  EXPECT_EQ(at(30, 20), "row opener 0,1,-1");
  EXPECT_EQ(at(30, 36), "row 1,1,-1");
  EXPECT_EQ(at(5, 52), "row check 2,0,-1");
  EXPECT_EQ(at(104 + 15, 36), "row 1,2,-1");
  EXPECT_EQ(at(104 + 16, 36), "row 1,2,0");
  EXPECT_EQ(at(104 + 24, 36), "row 1,2,-1");
  EXPECT_EQ(at(300, 36), "nowhere -1,-1,-1");
  EXPECT_EQ(at(5, 68), "nowhere -1,-1,-1");
  report->ShowGroupBy(true);
  EXPECT_EQ(at(30, 31), "box -1,-1,-1");
  EXPECT_EQ(at(30, 32), "header -1,1,-1");
  report->NotifyScrolled(1);
  EXPECT_EQ(at(104 + 16, 52), "row 1,2,0");
  report->Populate();
  EXPECT_EQ(report->GetTopRow(), 1) << "the same rows stay where they are";
  report->RemoveAllRecords();
  EXPECT_EQ(at(5, 68), "nowhere -1,-1,-1");
  Fill();
  EXPECT_EQ(report->GetTopRow(), 1) << "so do rows that are made anew";
  report->RemoveAllRecords();
  report->Populate();
  EXPECT_EQ(report->GetTopRow(), 0);
}

TEST_F(Report, SelectedRowsAreGoneThroughInOrderAndGoWithTheirRecords) {
  Fill();
  report->NotifySelected({2, 0}, 2);
  std::string seen;
  const CReportSelectedRows& rows = report->GetSelectedRows();
  for (int at = rows.GetFirstSelectedRowPosition(); at >= 0;) {
    seen += rows.GetNextSelectedRow(at)->GetRecord()->GetItem(1)->GetCaption();
  }
  EXPECT_EQ(seen, "ba");
  report->GetReportHeader().NotifyClicked(1);
  EXPECT_EQ(RowsText(*report), "#9|A|y.c\n*>[ ]|a|X.c\n*+#10|b|x.c\n");
  report->RemoveAllRecords();
  EXPECT_EQ(rows.GetCount(), 0);
  EXPECT_EQ(rows.GetFirstSelectedRowPosition(), -1);
  EXPECT_EQ(RowsText(*report), "");
}

}  // namespace
}  // namespace tarn::test
