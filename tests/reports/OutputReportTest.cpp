#include "reports/OutputReport.h"

#include <gtest/gtest.h>

#include <random>

#include "output/BuildOutput.h"
#include "reports/OutputReportWnd.h"
#include "reports/ReportDefinition.h"
#include "reports/ReportFixture.h"
#include "support/AnsweringUser.h"
#include "support/RecordingHost.h"
#include "support/RecordingToolkit.h"

namespace tarn::test {
namespace {

class OutputReport : public ::testing::Test {
 public:
  OutputReport() {
    disk.AddFile("/it's \"a\"/resources/errors.bmp", BitmapBytes(48, 16));
    window = MakeWindow();
  }

  std::unique_ptr<COutputReportWnd> MakeWindow() {
    auto made = std::make_unique<COutputReportWnd>(disk, host.Handle());
    made->SetDefinition(*MakeOutputDefinition("/it's \"a\""));
    EXPECT_TRUE(made->Create(kStylePopup, {0, 0, 700, 200}, nullptr, 0));
    return made;
  }
  std::string Rows() { return RowsText(*window->GetReport()); }
  void Click(int row) {
    const int y = ReportLayout::kHeaderHeight + row * ReportLayout::kRowHeight;
    for (const MouseAction action : {MouseAction::Press, MouseAction::Release}) {
      if (!window) return;
      window->GetReport()->NotifyMouse({action, MouseButton::Left, {30, y}, false, false});
    }
  }

  testing::MemoryFileSystem disk;
  RecordingToolkit toolkit;
  RecordingHost host;
  std::unique_ptr<COutputReportWnd> window;
};

constexpr const char* kLog =
    "<Messages><message ShowInReport='YES' Icon='2' Description='bad' File='/a.c' Line='12'>"
    "<link>0</link></message>"
    "<message Icon='2' Description='unmarked'/>"
    "<message ShowInReport='no' Description='no'/>"
    "<Output>plain</Output>"
    "<message ShowInReport='yes' Icon='1' Description='odd' File='' Line=''/>"
    "<message ShowInReport='Yes' Icon='1' Description='helped' File='/b.c' Line='x' Help='h.htm'/>"
    "<message ShowInReport='Yes' Description='open' File='/c.c' Line='3' Expand='1'>"
    "<part Description='p'/></message></Messages>";

TEST_F(OutputReport, MarkedMessagesAreRows) {
  EXPECT_EQ(DefinitionText(*window->GetReport()),
            "Icon/Icon 16 auto #0\nDescription/Description 240 auto\nFile/File 240 auto sort\n"
            "Line/Line 80 auto\nHelp/Help 50 auto hidden\n");
  window->Update(*Tree(kLog), 1);
  EXPECT_EQ(Rows(), "#2|bad|/a.c|12|\n#1|odd|||\n#1|helped|/b.c|x|h.htm\n-|open|/c.c|3|\n.|p|||\n");
}

TEST_F(OutputReport, APositionThatHasColumnsOfItsOwnIsShownTwice) {
  window->Update(*Tree("<Messages>"
                       "<message ShowInReport='yes' Description='/a.c:12: error: 1 &lt; 2' "
                       "Contain='1 &lt; 2' File='/a.c' Line='12'/>"
                       "<message ShowInReport='yes' Description='ld: error: no' Contain='no'/>"
                       "</Messages>"),
                 1);
  const CReportRecords& records = window->GetReport()->GetRecords();
  const auto* const first =
      dynamic_cast<const CGenericTextItem*>(records.GetAt(0)->GetItem(kOutputDescription));
  EXPECT_EQ(first->GetCaption(), "1 < 2");
  EXPECT_EQ(first->GetValue(), "/a.c:12: error: 1 < 2");
  EXPECT_EQ(records.GetAt(1)->GetItem(kOutputDescription)->GetCaption(), "ld: error: no");
}

TEST_F(OutputReport, AClickTellsTheHostThePlaceThenTheHelp) {
  window->Update(*Tree(kLog), 1);
  const struct {
    std::function<void(OutputReport&)> act;
    std::vector<std::string> sent;
  } rows[] = {
      {[](OutputReport& t) { t.Click(0); }, {"OpenFileAtLine /a.c -12"}},
      {[](OutputReport& t) { t.Click(1); }, {"OpenFileAtLine \"\" 0"}},
      {[](OutputReport& t) { t.Click(2); }, {"OpenFileAtLine /b.c 0", "ShowHelp h.htm 0"}},
      {[](OutputReport& t) { t.Click(9); }, {}},
      {[](OutputReport& t) { t.Click(-1); }, {}},
      {[](OutputReport& t) {
         t.window->GetReport()->NotifyMouse(
             {MouseAction::DoubleClick, MouseButton::Left, {30, 20}, false, false});
       },
       {}},
      {[](OutputReport& t) {
         t.window->GetReport()->SelectRow(0);
         t.window->GetReport()->NotifyKey({kKeyEnter, false, false});
       },
       {"OpenFileAtLine /a.c -12"}},
  };
  for (const auto& row : rows) {
    row.act(*this);
    EXPECT_EQ(host.TakeLines(), row.sent);
  }
}

// Tool output is encoded in the tree, see EscapeXml; paths aren't.
TEST_F(OutputReport, AMessageReadsAsTheToolSaidIt) {
  window->Update(
      *Tree("<M><message ShowInReport='Yes' Description='&#8216;a&#8217; &lt;b&gt; &amp;lt; &foo;' "
            "File='/a&amp;b.c' Line='1' Expand='1'><header>&lt;p&gt;</header></message>"
            "<message ShowInReport='Yes'>&#124;</message></M>"),
      1);
  const std::string text =
      "\xE2\x80\x98"
      "a\xE2\x80\x99 <b> &lt; &foo;";
  EXPECT_EQ(Rows(), "-|" + text +
                        "|/a&amp;b.c|1|\n.|<p>|&lt;p&gt;|&lt;p&gt;|&lt;p&gt;\n"
                        "|||&#124;|&#124;|&#124;\n");
  const COutputReport& report = *window->GetReport();
  EXPECT_EQ(report.RecordToText(*report.GetRecords().GetAt(0)),
            "-1\t" + text + "\t/a&amp;b.c\t1\t\t");
  Click(0);
  EXPECT_EQ(host.TakeLines(), std::vector<std::string>{"OpenFileAtLine /a&amp;b.c -1"});
}

TEST_F(OutputReport, AHostThatFreesOrReplacesItInsideAClickHearsOfTheHelpAllTheSame) {
  for (const std::uint32_t message : {kMsgOpenFileAtLine, kMsgShowHelp}) {
    for (const bool frees : {false, true}) {
      for (const bool byKey : {false, true}) {
        window = MakeWindow();
        window->Update(*Tree(kLog), 1);
        host.actions[message] = [&] {
          host.actions.clear();
          if (frees) return window.reset();
          window->SetDefinition(*MakeOutputDefinition("/it's \"a\""));
          // A replaced report is destroyed at the next message, which a host's own message loop
          // processes.
          MessageLoop::ForCurrentThread()->Pump();
          window->Update(*Tree(kLog), 1);
        };
        if (byKey) {
          window->GetReport()->SelectRow(2);
          window->GetReport()->NotifyKey({kKeyEnter, false, false});
        } else {
          Click(2);
        }
        EXPECT_EQ(host.TakeLines(),
                  (std::vector<std::string>{"OpenFileAtLine /b.c 0", "ShowHelp h.htm 0"}));
        EXPECT_EQ(window == nullptr, frees);
      }
    }
  }
}

TEST_F(OutputReport, AWindowThatIsMadeAgainShowsItsColumnsOnce) {
  window->Update(*Tree(kLog), 1);
  const std::string columns = DefinitionText(*window->GetReport());
  const std::string rows = Rows();
  window->DestroyWindow();
  window->Update(*Tree("<M/>"), 2);
  ASSERT_TRUE(window->Create(kStylePopup, {0, 0, 700, 200}, nullptr, 0));
  EXPECT_EQ(DefinitionText(*window->GetReport()), columns);
  EXPECT_EQ(Rows(), "");
  window->Update(*Tree(kLog), 1);
  EXPECT_EQ(Rows(), rows);
}

TEST_F(OutputReport, AHostThatResetsOrDestroysItInsideAClickHearsOfTheHelpAllTheSame) {
  for (const bool destroys : {false, true}) {
    window->Update(*Tree(kLog), destroys ? 3 : 1);
    host.actions[kMsgOpenFileAtLine] = [&] {
      if (destroys) {
        window->DestroyWindow();
      } else {
        window->Update(*Tree("<output/>"), 2);
      }
    };
    Click(2);
    EXPECT_EQ(host.TakeLines(),
              (std::vector<std::string>{"OpenFileAtLine /b.c 0", "ShowHelp h.htm 0"}));
    if (!destroys) {
      EXPECT_EQ(Rows(), "");
    }
  }
}

// An incrementally updated report must show the same as one created from the whole tree, for any
// order of messages, resets, sorting and reloads.
TEST_F(OutputReport, AReportThatGrowsEqualsARebuiltOne) {
  std::mt19937 random(11);
  const auto any = [&random](int bound) {
    return static_cast<int>(random() % static_cast<unsigned>(bound));
  };
  const auto fresh = MakeWindow();
  auto root = std::make_unique<CXmlNode>();
  std::uint64_t generation = 0;
  for (int step = 0; step < 300; ++step) {
    for (int i = any(3); i > 0; --i) {
      CXmlNode& message = *root->AddChild("message", "text");
      if (any(3) > 0) message.AddAttr("ShowInReport", "Yes");
      message.AddAttr("Description", std::to_string(step));
      message.AddAttr("File", std::string(1, static_cast<char>('a' + any(6))));
      if (any(10) == 0) message.AddAttr("Expand", "1");
      message.AddChild("link", "0");
    }
    if (any(40) == 0) {
      // Often allocated at the same address.
      root = std::make_unique<CXmlNode>();
      ++generation;
    }
    if (any(25) == 0) window->GetReport()->GetReportHeader().NotifyClicked(kOutputFile);
    if (any(25) == 0) window->GetReport()->RemoveAllRows();
    if (any(25) == 0) window->GetReport()->Reload(Tree(kLog).get(), any(2) == 0, -1);
    const CReportColumn* sorted = window->GetReport()->GetColumns().GetSortColumn();
    fresh->GetReport()->GetColumns().SetSortColumn(
        sorted == nullptr ? nullptr : fresh->GetReport()->GetColumns().GetAt(sorted->GetIndex()),
        sorted == nullptr || sorted->IsSortedAscending());
    window->Update(*root, generation);
    fresh->GetReport()->Reload(root.get(), true, -1);
    ASSERT_EQ(Rows(), RowsText(*fresh->GetReport())) << "step " << step;
  }
}

TEST_F(OutputReport, AReloadByOthersDoesNotPassForWhatWasShown) {
  const auto log = Tree("<M><message ShowInReport='Yes' Description='own'/></M>");
  const auto other = Tree("<M><message ShowInReport='Yes' Description='other'/></M>");
  window->Update(*log, 1);
  window->GetReport()->Reload(other.get(), true, -1);
  EXPECT_EQ(Rows(), "|other|||\n");
  window->Update(*log, 1);
  EXPECT_EQ(Rows(), "|own|||\n");
}

TEST_F(OutputReport, TheHubEmptiesItWithAReset) {
  CBuildOutput hub(disk);
  hub.SetViews(nullptr, window.get());
  hub.SetLogFile("/log.xml");
  const auto run = [&](const char* messages) {
    disk.AddFile("/tool.xml", messages);
    hub.MergeToolFile("/tool.xml");
    hub.UpdateReport();
    return Rows();
  };
  EXPECT_EQ(run("<M><message ShowInReport='Yes' Description='1'/></M>"), "|1|||\n");
  EXPECT_EQ(run("<M><message ShowInReport='Yes' Description='2'/></M>"), "|1|||\n|2|||\n");
  // A tree of the same length as the previous one isn't the same tree.
  hub.ResetLog();
  EXPECT_EQ(run("<M><message ShowInReport='Yes' Description='3'/><message/></M>"), "|3|||\n");
  hub.ResetLog();
  EXPECT_EQ(run("<M><message/><message/><message ShowInReport='Yes' Description='4'/></M>"),
            "|4|||\n");
  hub.ResetLog();
  hub.UpdateReport();
  EXPECT_EQ(Rows(), "");
}

TEST_F(OutputReport, WithoutItsPictureItHasNoColumnsAndSaysSo) {
  AnsweringUser user(host.Handle());
  COutputReportWnd bare(disk, host.Handle());
  bare.Update(*Tree(kLog), 1);
  EXPECT_EQ(bare.GetReport(), nullptr);
  EXPECT_TRUE(bare.Create(kStylePopup, {0, 0, 300, 100}, nullptr, 0));
  bare.SetDefinition(*MakeOutputDefinition("/none/"));
  EXPECT_EQ(user.lines, std::vector<std::string>{"show: Resource not found []"});
  EXPECT_EQ(DefinitionText(*bare.GetReport()), "");
  bare.Update(*Tree(kLog), 1);
  bare.GetReport()->NotifyClicked({ReportHit::Area::Row, ReportHit::Part::Cell, 0, -1, -1});
  EXPECT_EQ(host.TakeLines(), std::vector<std::string>{"OpenFileAtLine \"\" 0"});
  // A later definition replaces the first.
  bare.SetDefinition(*MakeOutputDefinition("/it's \"a\""));
  bare.Update(*Tree(kLog), 1);
  EXPECT_EQ(RowsText(*bare.GetReport()).substr(0, 4), "#2|b");
  bare.NotifyResized({500, 50});
  EXPECT_EQ(bare.GetReport()->GetRect(), (Rect{0, 0, 500, 50}));
}

}  // namespace
}  // namespace tarn::test
