#include "output/LogFile.h"

#include <gtest/gtest.h>

#include <functional>
#include <random>

#include "output/BuildOutput.h"
#include "output/MessageTable.h"
#include "support/MemoryFileSystem.h"
#include "support/TestEnvironment.h"
#include "xml/XmlNode.h"

namespace tarn {
namespace {

using testing::MemoryFileSystem;

constexpr const char* kLogPath = "/tmp/log.xml";
const std::string kXmlLine = "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\r\n";
const std::string kSaved =
    kXmlLine + "<?xml-stylesheet type=\"text/xsl\" href=\"message.xslt\"?>\r\n";
const std::string kReset =
    kXmlLine + "<?xml-stylesheet href=\"message.xslt\" type=\"text/xsl\"?>\r\n";

struct LogFile : ::testing::Test {
  LogFile() { hub.SetLogFile(kLogPath); }
  ~LogFile() override { FreeMessageTexts(); }

  std::string Bytes() const { return disk.BytesOf(kLogPath).value_or("(no file)"); }
  // Returns the file operations since the last call.
  std::string Writes() {
    std::string writes;
    for (const std::string& line : disk.TakeOperations()) {
      if (!line.starts_with("examine")) writes += line + ";";
    }
    return writes;
  }
  void Add(const char* text) {
    hub.AddOutput(text);
    hub.SaveLog();
  }
  // Simulates a change by another process that keeps the size, at a different time.
  void SpoilAt(std::int64_t seconds) {
    disk.Advance(seconds);
    disk.AddFile(kLogPath, std::string(disk.BytesOf(kLogPath).value_or("").size(), 'x'));
  }
  void SaveWhileFailing(const char* verb) {
    disk.FailOn(verb, kLogPath, ErrorCode::NoSpace);
    hub.SaveLog();
    disk.ClearFailures();
  }

  MemoryFileSystem disk;
  CBuildOutput hub{disk};
};

TEST_F(LogFile, HoldsExactlyTheBytesOfTheFormat) {
  hub.SaveLog();
  EXPECT_EQ(Bytes(), kSaved + "\r\n<Messages/>");
  Add("say \"|\"");
  EXPECT_EQ(Bytes(), kSaved +
                         "\r\n<Messages>\r\n\t<Output>say &quot;&slash;&quot;</Output>\r\n"
                         "</Messages>");
  hub.ResetLog();
  EXPECT_EQ(Bytes(), kReset + "\r\n<output/>");
  hub.SaveLog();
  EXPECT_EQ(Bytes(), kSaved + "\r\n<output/>");
  SetMessageText(kRowFileMissing, "no %s");
  hub.WriteMessage(kRowFileMissing, {"/b\\"});
  Add("");
  EXPECT_EQ(Bytes(), kSaved +
                         "\r\n<output>\r\n\t<message Description=\"no /b\\\\\" Icon=\"2\" >"
                         "\r\n\t\t<link>0</link>\r\n\t\t<type>1</type>"
                         "\r\n\t\t<header>no /b\\\\</header>\r\n\t\tno /b\\\\\r\n\t</message>"
                         "\r\n\t<Output/>\r\n</output>");
  hub.DeleteLogFile();
  EXPECT_EQ(Bytes(), "(no file)");
}

TEST_F(LogFile, RefersToTheStyleSheetByPathUntilOneWithMessagesWasFound) {
  const std::pair<const char*, std::string> cases[] = {{nullptr, "/c/message.xslt"},
                                                       {"<a/>", "/c/message.xslt"},
                                                       {"<a><Messages/></a>", "message.xslt"}};
  disk.AddFile("/c/projectmanager.config", "");
  for (const auto& [messageFile, reference] : cases) {
    if (messageFile != nullptr) disk.AddFile("/c/message.xslt", messageFile);
    hub.Initialise("/c/projectmanager.config", 0);
    hub.SaveLog();
    EXPECT_EQ(Bytes(), kXmlLine + "<?xml-stylesheet type=\"text/xsl\" href=\"" + reference +
                           "\"?>\r\n\r\n<Messages/>");
  }
}

TEST_F(LogFile, WritesOnlyWhatIsNew) {
  hub.SaveLog();
  EXPECT_EQ(Writes(), "write /tmp/log.xml;");
  hub.SaveLog();
  EXPECT_EQ(Writes(), "");
  hub.AddOutput("x");
  Add("y");
  EXPECT_EQ(Writes(), "tail /tmp/log.xml;");
  hub.SaveLog();
  EXPECT_EQ(Writes(), "");
}

TEST_F(LogFile, EqualsAFullRewriteAfterAnySteps) {
  SetMessageText(kRowFileMissing, "no %s");
  disk.AddFile("/t.xml", "<t><message a='1'><b/>c\\</message><![CDATA[d]]></t>");
  const std::function<void(LogFile&)> steps[] = {
      [](LogFile& t) { t.hub.ResetLog(); },
      [](LogFile& t) { t.hub.WriteMessage(kRowFileMissing, {"p\\"}); },
      [](LogFile& t) { t.hub.MergeToolFile("/t.xml"); },
      [](LogFile& t) { t.hub.AddOutput("\"\n|"); },
      [](LogFile& t) { t.hub.AddOutput(""); },
      [](LogFile& t) { t.disk.Advance(1); },
      [](LogFile& t) { t.disk.Erase(kLogPath); },
      [](LogFile& t) { t.disk.AddFile(kLogPath, "somebody else's"); },
      [](LogFile& t) { t.SpoilAt(1); },
      [](LogFile& t) { t.SpoilAt(-1000); },
      [](LogFile& t) { t.SaveWhileFailing("tail"); },
      [](LogFile& t) { t.SaveWhileFailing(""); },
  };
  for (unsigned seed = 1; seed <= 300; ++seed) {
    std::mt19937 random(seed);
    std::string trace = "seed " + std::to_string(seed);
    for (int i = 0; i < 30; ++i) {
      const std::size_t step = random() % std::size(steps);
      trace += " " + std::to_string(step);
      steps[step](*this);
      if (random() % 2 == 0) continue;
      hub.SaveLog();
      ASSERT_EQ(Bytes(), kSaved + hub.GetRoot().ToString(g_xmlDisplayOptions)) << trace;
    }
    hub.ResetLog();
    ASSERT_EQ(Bytes(), kReset + "\r\n<output/>") << trace;
  }
}

TEST_F(LogFile, DoesNotReachThroughALinkOnTheRealDisk) {
  const testing::ScratchFolder scratch;
  scratch.Write("other", "precious");
  std::filesystem::create_symlink(scratch / "other", scratch / "log.xml");

  CBuildOutput writing(FileSystem::Native());
  writing.SetLogFile(scratch / "log.xml");
  for (const char* text : {"x", "y"}) {
    writing.AddOutput(text);
    writing.SaveLog();
  }
  EXPECT_EQ(testing::ReadBytes(scratch / "other"), "precious");
  EXPECT_EQ(testing::ReadBytes(scratch / "log.xml"),
            kSaved + writing.GetRoot().ToString(g_xmlDisplayOptions));
}

}  // namespace
}  // namespace tarn
