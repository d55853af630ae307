#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <thread>

#include "components/tools/ToolManager.h"
#include "components/values/OptionValues.h"
#include "platform/text/Text.h"
#include "support/TestEnvironment.h"

namespace tarn::tools {
namespace {

using ::testing::HasSubstr;

// A compiler that copies its source to its output after a pause that the source names, or once
// three of its kind have run ("meet"), and that counts how many run at the same time. If it fails,
// it lists what it has read, unless the source says otherwise.
constexpr const char* kCompiler =
    "out=$1 src=$2 dir=$3\n"
    "touch \"$dir/run.$$\"; set -- \"$dir\"/run.*; echo $# >> \"$dir/counts\"\n"
    "read pause < \"$src\"\n"
    "if [ \"$pause\" = meet ]; then\n"
    "  until [ $(wc -l < \"$dir/counts\") -ge 3 ]; do sleep 0.01; done\n"
    "else sleep \"$pause\"; fi\n"
    "if grep -q bad \"$src\"; then\n"
    "  rm \"$dir/run.$$\"; text=$(cat \"$src\"); at=$src:1; case $text in *placeless*) at=cc ;; "
    "esac\n"
    "  echo \"$at: error: bad\"\n"
    "  case $text in *unlisted*) ;; *cut*) printf 'o: %s' \"$src\" > \"$out.d\" ;;\n"
    "    *) echo \"o: $src $dir/h\" > \"$out.d\" ;; esac\n"
    "  case $text in *killed*) kill -9 $$ ;; esac; exit 1\n"
    "fi\n"
    "if grep -q flood \"$src\"; then yes \"$src:1: warning: odd\" | head -n 2000; fi\n"
    "echo \"$src:1: warning: odd\"\ncp \"$src\" \"$out\"; echo \"o: $src $dir/h\" > \"$out.d\"\n"
    "rm \"$dir/run.$$\"\n";

// Early runs by threads of a tool manager with real processes.
class EarlyRunsThread : public ::testing::Test {
 protected:
  EarlyRunsThread() {
    folder.Write("config/tools/t.tools",
                 "<T><Tool Name=\"cc\" Early=\"Yes\" RulesOnError=\"Yes\" Messages=\"m\" "
                 "Output=\"$(Build.OutputFile)\" "
                 "Rules=\"$(Output).d\"><Step Program=\"/bin/sh\"><Arg V=\"" +
                     folder / "cc.sh" + "\"/><Arg V=\"$(Output)\"/><Arg V=\"$(File)\"/><Arg V=\"" +
                     folder.Path() +
                     "\"/></Step><ByProduct File=\"$(OutputBase).i\"/></Tool><Tool "
                     "Name=\"late\"><Step Program=\"/bin/true\"/></Tool>"
                     "<Tool Name=\"plain\" Base=\"cc\" RulesOnError=\"No\"/>"
                     "<Messages Name=\"m\"><Line Template=\"^{SPECFILE}:{SPECLINE}: {SPECERROR}: "
                     "{SPECMESSAGE}\"/></Messages></T>");
    folder.Write("cc.sh", kCompiler);
    folder.Write("h", "");
    folder.Write("counts", "");
    values.Put("Application", "General", "ApplicationDir", folder.Path() + "/");
    manager->InitTools(folder.Path().c_str(), "", 0);
    manager->SetJobs(3);
  }
  ~EarlyRunsThread() override { manager->Release(); }

  bool Exists(const std::string& name) const { return std::filesystem::exists(folder / name); }
  std::string FileOf(const std::string& name) { return "\"" + folder / name + ".c\""; }
  std::string OptionsOf(const std::string& name) {
    values.Put("", "Build", "OutputFile", name + ".o");
    return values.ToText();
  }
  bool Prepare(const std::string& name, const char* tool = "cc") {
    return manager->PrepareTool(tool, FileOf(name).c_str(), OptionsOf(name).c_str()) != 0;
  }
  bool Await(const std::string& name, const char* tool = "cc") {
    return manager->AwaitTool(tool, FileOf(name).c_str(), OptionsOf(name).c_str()) != 0;
  }
  bool Run(const std::string& name, const char* tool = "cc") {
    return manager->RunTool(tool, FileOf(name).c_str(), OptionsOf(name).c_str(),
                            (folder / "m.xml").c_str()) != 0;
  }
  // A file that was written in the same tick of the clock as a run starts counts as changed since.
  static void AwaitTick() { std::this_thread::sleep_for(std::chrono::milliseconds(20)); }
  std::string Counts() const { return tarn::testing::ReadBytes(folder / "counts"); }

  const tarn::testing::ScratchFolder folder;
  OptionValues values{"C"};
  ToolManager* const manager = new ToolManager(ToolEnvironment::Native());
};

TEST_F(EarlyRunsThread, ResultsWaitUntilTheyAreRequestedInAnyOrder) {
  std::vector<std::string> names;
  for (int i = 0; i < 12; ++i) {
    names.push_back("s" + std::to_string(i));
    folder.Write(names.back() + ".c", i < 3 ? "meet\n" : "0\n");
  }
  AwaitTick();
  for (const std::string& name : names) EXPECT_TRUE(Prepare(name));
  EXPECT_FALSE(Prepare("s3")) << "its output is already being made";
  for (const std::string& name : names) {
    EXPECT_TRUE(Await(name)) << name;
    EXPECT_TRUE(Run(name));
    EXPECT_THAT(tarn::testing::ReadBytes(folder / "m.xml"), HasSubstr(name + ".c:1: warning: odd"));
    EXPECT_THAT(manager->TakeBuildInformation(), HasSubstr(folder / name + ".o"));
  }
  std::set<std::string> counts;
  for (const std::string& line : SplitLines(Counts())) counts.insert(line);
  EXPECT_TRUE(counts.contains("3")) << Counts();
  EXPECT_FALSE(counts.contains("4")) << Counts();
  EXPECT_FALSE(Await("s1")) << "a result is delivered once";
}

TEST_F(EarlyRunsThread, AResultThatIsNotWhatARunWouldMakeNowIsRemoved) {
  const struct {
    const char* name;
    const char* source;
    std::function<void()> change;
  } rows[] = {
      {"flood", "0 flood\n", [] {}},
      {"source", "0\n", [this] { folder.Write("source.c", "0 x\n"); }},
      {"header", "0\n", [this] { folder.Write("h", "new"); }},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    folder.Write(std::string(row.name) + ".c", row.source);
    AwaitTick();
    ASSERT_TRUE(Prepare(row.name));
    const std::size_t before = Counts().size();
    while (Counts().size() == before) std::this_thread::yield();
    AwaitTick();
    row.change();
    EXPECT_FALSE(Await(row.name));
    EXPECT_FALSE(Exists(std::string(row.name) + ".o"));
    EXPECT_TRUE(Run(row.name));
  }
}

TEST_F(EarlyRunsThread, AFailureIsFinalIfWhatTheToolHasReadIsKnownAndUnchanged) {
  const struct {
    const char* source;
    bool isFinal;
    std::function<void()> change = [] {};
    const char* tool = "cc";
  } rows[] = {
      {"0 bad", true},
      {"0 bad", false, [this] { folder.Write("h", "new"); }},
      {"0 bad unlisted", false},
      {"0 bad cut", false},
      {"0 bad placeless", false},
      {"0 bad killed", false},
      {"0 bad .incbin \"x\"", false},
      {"0 bad", false, [] {}, "plain"},
  };
  std::size_t number = 0;
  for (const auto& row : rows) {
    SCOPED_TRACE(row.source + std::string(row.tool));
    const std::string name = "f" + std::to_string(number++);
    folder.Write(name + ".c", row.source + std::string("\n"));
    AwaitTick();
    const std::size_t before = SplitLines(Counts()).size();
    ASSERT_TRUE(Prepare(name, row.tool));
    while (SplitLines(Counts()).size() == before) std::this_thread::yield();
    AwaitTick();
    row.change();
    EXPECT_EQ(Await(name, row.tool), row.isFinal);
    EXPECT_FALSE(Run(name, row.tool));
    EXPECT_EQ(SplitLines(Counts()).size(), before + (row.isFinal ? 1 : 2));
    EXPECT_THAT(tarn::testing::ReadBytes(folder / "m.xml"), HasSubstr("error: bad"));
    EXPECT_EQ(manager->TakeBuildInformation(), "");
    EXPECT_FALSE(Exists(name + ".o.d")) << "left by a failed run";
  }
}

TEST_F(EarlyRunsThread, NothingIsLeftOfDroppedAndStoppedRuns) {
  for (const char* name : {"a", "b", "c", "d"}) {
    folder.Write(std::string(name) + ".c", name == std::string("a") ? "0\n" : "30\n");
  }
  AwaitTick();
  for (const char* name : {"a", "b", "c", "d"}) ASSERT_TRUE(Prepare(name));
  ASSERT_TRUE(Await("a"));
  manager->DropTools();
  for (const char* name : {"a", "b", "c", "d"}) EXPECT_FALSE(Exists(std::string(name) + ".o"));
  ASSERT_TRUE(Prepare("b"));
  std::thread stopper([this] {
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    manager->StopTools();
  });
  EXPECT_FALSE(Await("b"));
  EXPECT_FALSE(Run("b"));
  stopper.join();
  EXPECT_FALSE(Prepare("b")) << "until tools are resumed";
  manager->ResumeTools();
  folder.Write("b.c", "0\n");
  EXPECT_TRUE(Prepare("b"));
}

TEST_F(EarlyRunsThread, OtherToolsWaitForTheirTurn) {
  folder.Write("a.c", "0\n");
  EXPECT_FALSE(Prepare("a", "late"));
  EXPECT_FALSE(Prepare("a", "unknown"));
  manager->SetJobs(1);
  EXPECT_FALSE(Prepare("a"));
  EXPECT_TRUE(Run("a"));
}

}  // namespace
}  // namespace tarn::tools
