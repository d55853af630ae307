#include "output/BuildOutput.h"

#include <gtest/gtest.h>

#include "RecordingViews.h"
#include "output/MessageTable.h"
#include "support/MemoryFileSystem.h"

namespace tarn {
namespace {

using Lines = std::vector<std::string>;
using test::Flat;

constexpr const char* kConfig = "/config/projectmanager.config";
constexpr const char* kLog = "/tmp/log.xml";

struct BuildOutput : ::testing::Test {
  BuildOutput() {
    disk.AddFile(kConfig, "");
    disk.AddFile("/config/message.xslt",
                 R"(<sheet><Messages><m Id="0x20006" String="No '%s'"/>)"
                 R"(<m Id="0x2000A" String="%s %s"/><m Id="0x20013" String="Rebuild%n"/>)"
                 "</Messages></sheet>");
    hub.Initialise(kConfig, views.window);
    hub.SetViews(&views, &views);
  }

  // Returns the notifications of views and host, followed by the writes of the log file.
  Lines Events() {
    Lines events = views.Take();
    for (const std::string& line : disk.TakeOperations()) {
      if (line.starts_with("write") || line.starts_with("tail")) events.push_back(line);
    }
    return events;
  }

  testing::MemoryFileSystem disk;
  test::RecordingViews views;
  CBuildOutput hub{disk};
};

TEST_F(BuildOutput, TellsEveryoneOfARowAsItsKindAsksFor) {
  hub.SetLogFile(kLog);
  const struct {
    const char* name;
    int row;
    Lines events;
  } cases[] = {
      {"an error is in log file and report at once",
       kRowFileMissing,
       {R"(log <message Description="No 'a&slash;b'" Icon="2" ><link>0</link><type>1</type>)"
        "<header>No 'a&slash;b'</header>No 'a&slash;b'</message>",
        "host No 'a|b'", "report of 1", "write /tmp/log.xml"}},
      {"a heading waits; an argument that is missing does no harm",
       kRowApplicationStarts,
       {R"(log <message Description="a&slash;b " Icon="5" ><link>0</link><type>5</type>)"
        "<header>a&slash;b </header>a&slash;b </message>",
        "host a|b "}},
      {"a note waits; neither a surplus argument nor a foreign format does harm",
       kRowOperationRebuild,
       {R"(log <message Description="Rebuild%n" Icon="0" ><link>0</link><type>3</type>)"
        "<header>Rebuild%n</header>Rebuild%n</message>",
        "host Rebuild%n"}},
      {"a row without a text", kRowBusyQuestion, {}},
      {"no row", kMessageCount, {}},
  };
  for (const auto& c : cases) {
    Events();
    hub.WriteMessage(c.row, {"a|b"});
    EXPECT_EQ(Events(), c.events) << c.name;
  }
  EXPECT_EQ(hub.GetRoot().GetChildCount(), 3);
}

TEST_F(BuildOutput, SavesEachMessageAndMergesOnlyAsTheFlagsSay) {
  disk.AddFile("/tool.xml", "<x><message/></x>");
  EXPECT_EQ(hub.GetFlags(), 33u);
  hub.MergeToolFile("/tool.xml");
  EXPECT_EQ(Events(), Lines()) << "no log file, no merge";
  hub.SetFlagBits(CBuildOutput::kSaveEachMessage);
  hub.AddOutput("nowhere to save");
  EXPECT_EQ(Events(), Lines{"log <Output>nowhere to save</Output>"});

  hub.SetLogFile(kLog);
  EXPECT_EQ(hub.GetFlags(), 2u);
  hub.MergeToolFile("/tool.xml");
  EXPECT_EQ(Events(), Lines{"log <message/>"});
  hub.SetFlagBits(CBuildOutput::kSaveEachMessage);
  hub.AddOutput("x");
  hub.MergeToolFile("/tool.xml");
  hub.WriteMessage(kRowOperationRebuild);
  EXPECT_EQ(disk.Operations("write").size() + disk.Operations("tail").size(), 3u);
}

TEST_F(BuildOutput, MergesWhatCanBeReadOfAToolFile) {
  const struct {
    const char* name;
    std::string file;
    const char* tree;
  } cases[] = {
      {"any top element; attributes, children and comments",
       R"(<x><message Icon="2" Odd="1"><link>err://a.c:1</link>t</message><!--c--></x>)",
       R"(<Messages><message Icon="2" Odd="1" ><link>err://a.c:1</link>t</message><!--c--></Messages>)"},
      {"in front of the damage", "<x><message/><message></x>",
       "<Messages><message/><message/></Messages>"},
      {"in front of a zero byte", std::string("<x><message/>\0<message/></x>", 28),
       "<Messages><message/></Messages>"},
      {"no XML", "error: a.c", "<Messages/>"},
  };
  for (const auto& c : cases) {
    CBuildOutput merging(disk);
    merging.SetLogFile(kLog);
    disk.AddFile("/tool.xml", c.file);
    merging.MergeToolFile("/tool.xml");
    merging.MergeToolFile("/missing.xml");
    EXPECT_EQ(Flat(merging.GetRoot()), c.tree) << c.name;
  }
}

TEST_F(BuildOutput, HoldsNoElementWhileTheHostAnswersWithAReset) {
  struct : WindowTarget {
    CBuildOutput* hub = nullptr;
    std::intptr_t OnWindowMessage(std::uint32_t, std::intptr_t, std::intptr_t) override {
      hub->ResetLog();
      hub->AddOutput("x");
      return 0;
    }
  } host;
  host.hub = &hub;
  const WindowHandle window = RegisterWindow(host);
  hub.Initialise(kConfig, window);
  hub.SetLogFile(kLog);
  hub.WriteMessage(kRowFileMissing, {"a"});
  UnregisterWindow(window);
  EXPECT_EQ(Flat(hub.GetRoot()), "<output><Output>x</Output></output>");
  const Lines events = Events();
  EXPECT_EQ(Lines(events.begin() + 1, events.end()),
            (Lines{"clear", "log <Output>x</Output>", "report of 1", "write /tmp/log.xml",
                   "write /tmp/log.xml"}));
}

}  // namespace
}  // namespace tarn
