#include <gtest/gtest.h>

#include <map>
#include <sstream>

#include "hosts/core/lua/ScriptRunner.h"
#include "platform/automation/DispatchTable.h"

namespace tarn::host {
namespace {

// A server with a few methods of each kind. Its log contains the output and the errors of scripts.
class FakeServer : public DispatchObject<FakeServer> {
 public:
  static const DispatchTable<FakeServer>& Table() {
    using M = FakeServer;
    static const DispatchTable<FakeServer> table({
        Method<&M::ReportMessage>("ReportMessage", 1, {"msg"}),
        Method<&M::ExecuteScript>("ExecuteScript", 2, {"scriptpath"}),
        Method<&M::Describe>("Describe", 3, {"text", "number"}),
        Method<&M::Self>("Self", 4, {}),
        Method<&M::IsSelf>("IsSelf", 5, {"object"}),
        Method<&M::Missing>("Missing", 6, {}),
        Method<&M::Stop>("Stop", 7, {}),
    });
    return table;
  }

  void ReportMessage(const char* text) { log += std::string(text) + "\n"; }
  std::int32_t ExecuteScript(const char* path) {
    if (!files.contains(path)) return 0;
    runner->Run(*this, files[path], "");
    return 1;
  }
  std::string Describe(const char* text, std::uint32_t number) {
    return std::string(text == nullptr ? "null" : text) + "," + std::to_string(number);
  }
  DispatchPtr Self() { return DispatchPtr(this); }
  std::int32_t IsSelf(IDispatch* object) { return object == this ? 1 : 0; }
  DispatchResult Missing() { return {DispatchStatus::NotImplemented, "not there yet", -1}; }
  void Stop() { runner->RequestStop(); }

  std::string log;
  std::map<std::string, std::string> files;
  ScriptRunner* runner = nullptr;
};

struct Trial {
  ScriptOutcome outcome;
  std::string log;
};

Trial Try(const std::string& text, ScriptLimits limits = {}, const std::string& name = "t.lua") {
  DispatchPtr object = DispatchPtr::Adopt(std::make_unique<FakeServer>().release());
  auto& server = static_cast<FakeServer&>(*object.Get());
  ScriptRunner runner(nullptr, limits);
  server.runner = &runner;
  server.files = {{"self.lua", text},
                  {"good.lua", "print('inside')"},
                  {"bad.lua", "\nerror('inside')"},
                  {"endless.lua", "while true do end"}};
  Trial trial;
  trial.outcome = runner.Run(*object.Get(), text, name);
  trial.log = server.log;
  EXPECT_FALSE(runner.IsRunning());
  // The interpreter has released all objects that it received.
  EXPECT_EQ(server.AddRef(), 2u);
  server.Release();
  return trial;
}

TEST(Script, ValuesArriveAsTheyAreAndLinesStandInTheLog) {
  const struct {
    const char* script;
    const char* log;
  } cases[] = {
      {"print('a', 1, nil, true)", "a\t1\tnil\ttrue\n"},
      {"print('one\\ntwo\\0three')", "one\ntwo three\n"},
      {"print(tarn.Describe('x', 7), tarn:Describe('', 0x8112))", "x,7\t,33042\n"},
      {"print(tarn.Describe(nil, -1), tarn.describe('x', 2.0))", "null,4294967295\tx,2\n"},
      {"print(tarn.Describe('x', 0xFFFFFFFF), tarn.Describe('x', true))", "x,4294967295\tx,1\n"},
      {"local me = tarn.Self() print(me, tarn.IsSelf(me), type(me))", "object\t1\tuserdata\n"},
      {"print(tarn.ReportMessage('line'))", "line\n\n"},
      {"local n = 0 for _ in pairs(tarn) do n = n + 1 end print(n)", "7\n"},
      {"#!/usr/bin/tarn run\nprint(load('return 1 + 1')())", "2\n"},
      {"print(load('return x', 'n', 't', {x = 3})(), load('x x'))",
       "3\tnil\t[string \"x x\"]:1: syntax error near 'x'\n"},
      {"print(tarn.ExecuteScript('good.lua'), tarn.ExecuteScript('none.lua'))", "inside\n1\t0\n"},
      {"print(os.time{year = 2020, month = 1, day = 1, hour = 12} > 0, os.date('%Y', 0) > '1')",
       "true\ttrue\n"},
  };
  for (const auto& each : cases) {
    const Trial trial = Try(each.script);
    EXPECT_EQ(trial.outcome.error, "") << each.script;
    EXPECT_EQ(trial.log, each.log) << each.script;
  }
}

TEST(Script, ErrorsSayWhereAndWhat) {
  const struct {
    const char* script;
    const char* error;
  } cases[] = {
      {"\nprint(x.y)", "t.lua:2: attempt to index a nil value (global 'x')"},
      {"print(\n'a'", "t.lua:2: ')' expected (to close '(' at line 1) near <eof>"},
      {"local function f() error('bad') end\nf()", "t.lua:1: bad\n  called from t.lua:2"},
      {"\nerror({})", "t.lua:2: table: "},
      {"error(setmetatable({}, {__tostring = function() return 'own' end}))", "t.lua:1: own"},
      {"table.sort({1, 'x'})", "t.lua:1: attempt to compare "},
      {"tarn.Describe('x')", "t.lua:1: Describe takes 2 arguments (text, number), not 1"},
      {"tarn.Self(1)", "t.lua:1: Self takes no arguments, not 1"},
      {"tarn.Describe(3, 3)", "t.lua:1: argument 1 (text) of Describe can't be a number"},
      {"tarn.Describe('x', nil)", "t.lua:1: argument 2 (number) of Describe can't be nil"},
      {"tarn.Describe({}, 3)",
       "t.lua:1: argument 1 (text) of Describe can't be a value of this type: table"},
      {"tarn.Describe('x', 1.5)",
       "t.lua:1: argument 2 (number) of Describe must be a 32-bit integer"},
      {"tarn.Describe('x', 1 << 32)",
       "t.lua:1: argument 2 (number) of Describe must be a 32-bit integer"},
      {"tarn.Describe('x\\0y', 1)",
       "t.lua:1: argument 1 (text) of Describe can't contain a zero byte"},
      {"tarn.Missing()", "t.lua:1: Missing: not there yet"},
      {"tarn.Nothing()", "t.lua:1: tarn has no method Nothing"},
      {"tarn.Extra = 1", "t.lua:1: the methods of tarn can't be changed"},
      {"table.concat({{}})", "t.lua:1: invalid value (table) at index 1 in table for 'concat'"},
      {"table.insert(nil, 1)", "t.lua:1: bad argument #1 to 'insert' (table expected, got nil)"},
      {"tarn.ExecuteScript('bad.lua')", "t.lua:1: bad.lua:2: inside"},
  };
  for (const auto& each : cases) {
    const Trial trial = Try(each.script);
    EXPECT_EQ(trial.outcome.end, ScriptEnd::Failed) << each.script;
    EXPECT_TRUE(trial.outcome.error.starts_with(each.error)) << trial.outcome.error;
    EXPECT_TRUE(trial.log.ends_with(trial.outcome.error + "\n")) << trial.log;
  }
  EXPECT_EQ(Try("error('x')", {}, "").outcome.error, "script:1: x");
}

TEST(Script, NothingLeadsOutOfTheInterpreter) {
  // Functions that must be missing, and calls that must be refused.
  std::istringstream missing(
      "io require package debug dofile loadfile os.execute os.remove os.rename os.tmpname "
      "os.getenv "
      "os.exit os.setlocale string.dump coroutine collectgarbage host warn "
      "getmetatable('').__index.dump");
  for (std::string each; missing >> each;) {
    EXPECT_EQ(Try("print(" + each + ")").log, "nil\n") << each;
  }
  const struct {
    const char* script;
    const char* error;
  } refused[] = {
      {"assert(load('\\27Lua'))", "attempt to load a binary chunk (mode is 't')"},
      {"assert(load('\\27Lua', 'x', 'b'))", "attempt to load a binary chunk (mode is 't')"},
      {"load(function() return ' ' end)", "string expected, got function"},
      {"setmetatable({}, {__gc = function() end})", "scripts have no finalizers"},
      {"setmetatable(tarn, {})", "cannot change a protected metatable"},
      {"getmetatable(tarn.Self()).__gc(tarn.Self())", "attempt to index a boolean value"},
      {"table.insert(setmetatable({}, {__len = function() return 1 << 62 end}), 1, 1)",
       "a table with __len"},
  };
  for (const auto& each : refused) {
    const std::string error = Try(each.script).outcome.error;
    EXPECT_NE(error.find(each.error), std::string::npos) << error;
  }
  EXPECT_NE(Try("\x1bLua").outcome.error.find("binary chunk"), std::string::npos);
}

TEST(Script, NoScriptRunsForEver) {
  const struct {
    const char* script;
    int line;
  } cases[] = {
      {"while true do end", 1},
      {"\nwhile true do pcall(function() while true do end end) end", 2},
      {"local function f() pcall(f) return f() end f()", 1},
      {"return pcall(function() while true do end end)", 1},
      {"xpcall(function() while true do end end, function() while true do end end)", 1},
      {"while true do xpcall(error, function() while true do end end) end", 1},
      {"local x <close> = setmetatable({}, {__close = function() while true do end end})", 1},
      {"error(setmetatable({}, {__tostring = function() while true do end end}))", 1},
      {"string.find(('a'):rep(3000), '.-.-.-.-.-b')", 1},
      {"string.gsub(('a'):rep(100000), '.', function() string.rep('x', 1000) end)", 1},
      {"for _ in string.gmatch(('('):rep(100000), '%b()') do end", 1},
      {"string.rep('', 1 << 62) while true do string.rep('x', 1000000) end", 1},
      {"local s = ('x'):rep(1000000) while true do local t = s .. 'y' end", 1},
      {"table.move({}, 1, 1 << 62, 1)", 1},
      {"table.concat({}, '', 1, 1 << 62)", 1},
      {"local t = {} for i = 61, 0, -1 do t[1 << i] = 1 end table.insert(t, 1, 1)", 1},
      {"local t = {} for i = 61, 0, -1 do t[1 << i] = 1 end table.remove(t, 1.0)", 1},
      {"local t = {} for i = 61, 0, -1 do t[1 << i] = 1 end table.sort(t)", 1},
      {"while true do tarn.ExecuteScript('good.lua') end", 1},
      {"pcall(tarn.ExecuteScript, 'endless.lua') while true do end", 1},
      {"while true do print() end", 1},
  };
  ScriptLimits limits;
  limits.steps = 2'000'000;
  for (const auto& each : cases) {
    const Trial trial = Try(each.script, limits);
    EXPECT_EQ(trial.outcome.end, ScriptEnd::Failed) << each.script;
    EXPECT_EQ(trial.outcome.error,
              "t.lua:" + std::to_string(each.line) + ": the script takes too many steps")
        << each.script;
  }
  limits = {};
  limits.time = std::chrono::milliseconds(0);
  EXPECT_EQ(Try("while true do end", limits).outcome.error, "t.lua:1: the script takes too long");
}

TEST(Script, MemoryIsBoundedAlsoAcrossScripts) {
  ScriptLimits limits;
  limits.memory = 2u << 20;
  const std::string tooMuch = "the script needs more than 2 MB of memory";
  for (const char* script :
       {"local t = {} while true do t[#t + 1] = {} end", "string.rep('x', 1 << 30)",
        "local s = 'x' while true do s = s .. s end",
        "local t = {} for i = 1, 1e9 do t[i] = i end"}) {
    EXPECT_EQ(Try(script, limits).outcome.error, "t.lua:1: " + tooMuch) << script;
  }
  // It can be caught like any other error.
  EXPECT_EQ(Try("print(pcall(string.rep, 'x', 1 << 30))", limits).log,
            "false\tnot enough memory\n");
  const std::string half = "local s = ('x'):rep(750000)\n";
  EXPECT_EQ(Try(half, limits).outcome.error, "");
  EXPECT_EQ(Try(half + "tarn.ExecuteScript('self.lua')", limits).outcome.error,
            "t.lua:2: self.lua:1: " + tooMuch);
}

TEST(Script, ScriptsThatRunThemselvesEnd) {
  ScriptLimits limits;
  limits.depth = 3;
  EXPECT_EQ(
      Try("\ntarn.ExecuteScript('self.lua')", limits).outcome.error,
      "t.lua:2: self.lua:2: self.lua:2: self.lua: scripts call each other more than 3 levels deep");
  const Trial caught = Try("print(pcall(tarn.ExecuteScript, 'self.lua'))", limits);
  EXPECT_EQ(caught.outcome.error, "");
  EXPECT_TRUE(caught.log.ends_with("true\t1\ntrue\t1\n")) << caught.log;
}

TEST(Script, AStopEndsAScriptThatCatchesEverything) {
  const Trial trial = Try("tarn.Stop()\nwhile true do pcall(function() while true do end end) end");
  EXPECT_EQ(trial.outcome.end, ScriptEnd::Stopped);
  EXPECT_EQ(trial.outcome.error, "t.lua:1: interrupted");
  EXPECT_EQ(trial.log, "t.lua:1: interrupted\n");
}

}  // namespace
}  // namespace tarn::host
