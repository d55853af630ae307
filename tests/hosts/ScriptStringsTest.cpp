// The string functions available to scripts, compared with those of the language's own library.

#include <gtest/gtest.h>

#include <algorithm>
#include <lua.hpp>
#include <random>

#include "hosts/core/lua/ScriptRunner.h"
#include "platform/automation/DispatchTable.h"

namespace tarn::host {
namespace {

class LogServer : public DispatchObject<LogServer> {
 public:
  static const DispatchTable<LogServer>& Table() {
    static const DispatchTable<LogServer> table(
        {Method<&LogServer::ReportMessage>("ReportMessage", 1, {"msg"})});
    return table;
  }
  void ReportMessage(const char* text) { log += std::string(text) + "\n"; }
  std::string log;
};

// Returns a script that prints the value of an expression, or its error.
std::string ScriptFor(const std::string& expression) {
  return "local function show(ok, ...)\n"
         "  local all = {...}\n"
         "  for i = 1, select('#', ...) do all[i] = tostring(all[i]) end\n"
         "  if not ok then all[1] = all[1]:match(': (.*)') or all[1] end\n"
         "  return tostring(ok) .. '|' .. table.concat(all, '|')\n"
         "end\n"
         "local function list(...)\n"
         "  local all = {}\n"
         "  for a, b in string.gmatch(...) do all[#all + 1] = tostring(a) .. '/' .. tostring(b) "
         "end\n"
         "  return table.concat(all, ' ')\n"
         "end\n"
         "print(show(pcall(function() return " +
         expression + " end)))";
}

std::string RunBounded(const std::string& script) {
  DispatchPtr object = DispatchPtr::Adopt(std::make_unique<LogServer>().release());
  ScriptRunner runner(nullptr);
  runner.Run(*object.Get(), script, "t");
  return static_cast<LogServer&>(*object.Get()).log;
}

int Keep(lua_State* lua) {
  std::size_t size = 0;
  const char* text = luaL_checklstring(lua, 1, &size);
  auto* log = static_cast<std::string*>(lua_touserdata(lua, lua_upvalueindex(1)));
  log->append(text, std::find(text, text + size, '\0')).append("\n");
  return 0;
}

std::string RunOriginal(const std::string& script) {
  std::string log;
  lua_State* lua = luaL_newstate();
  luaL_openlibs(lua);
  lua_pushlightuserdata(lua, &log);
  lua_pushcclosure(lua, Keep, 1);
  lua_setglobal(lua, "print");
  if (luaL_loadbuffer(lua, script.data(), script.size(), "=t") != LUA_OK ||
      lua_pcall(lua, 0, 0, 0) != LUA_OK) {
    log = lua_tostring(lua, -1);
  }
  lua_close(lua);
  return log;
}

TEST(ScriptStrings, AnswerAsTheOriginalsDo) {
  const char* const expressions[] = {
      "string.find('hello world', 'wor')",
      "string.find('a.b', '.', 2, true)",
      "string.find('aaabaaab', 'aab', 4), string.find('ababac', 'abac'), string.find('aab', 'ab')",
      "string.find('a.b', '', 4), string.find('a.b', '', 5)",
      "string.find('abc', 'b', -1), string.find('abc', 'b', -9), string.find('', '^')",
      "string.find('  x = 12;', '(%w+)%s*=%s*(%d+)')",
      "string.match('2024-05-06', '(%d+)-(%d+)-(%d+)')",
      "string.match('key = value', '^(%w+)%s*=%s*(.-)%s*$')",
      "string.match('abc', '()b()'), string.match('abc', '((a)(b))')",
      "string.match('THE (quick) fox', '%((%a+)%)'), string.match('f(a(b)c)d', '%b()')",
      "string.gsub('THE (quick) fox', '%f[%a]%a+', string.lower)",
      "string.match('\"a\" \\'b\\'', '([\"\\'])(.-)%1'), string.match('xx', '(x)%1')",
      "string.match('a]b-c^d', '[]^-]+', 2), string.match('x-y', '[a-]', 2)",
      "string.match('a%b', '[%%]'), string.match('x1', '[%a][%D%d]')",
      "string.match('x', '[^%s]'), #string.match('\\0y', '%z'), string.match('ab', 'a?b?c?$')",
      "string.gsub('hello', '', '-'), string.gsub('abc', '%w', '%0%0', 2)",
      "string.gsub('abc def', '(%w+) (%w+)', '%2 %1'), string.gsub('a', 'a', '%%')",
      "string.gsub('$name is $age', '%$(%w+)', {name = 'Bo', age = 7})",
      "string.gsub('abc', '%w', function(c) if c == 'b' then return false end return c .. 1 end)",
      "string.gsub('hello world', '^h', 'H'), string.gsub('abab', '^ab', 'x')",
      "string.gsub('abc', 'b*', 'x'), string.gsub('', 'x*', '-'), string.gsub('aaa', 'a-', 'b')",
      "list('k=v, a=b', '(%w+)=(%w+)'), list('abc', ''), list('a1b2', '%a()', 2)",
      "list('^a^a', '^a'), list('aXbX', '[^X]*'), list('abc', '.', -1), list('abc', '.', 9)",
      "string.rep('ab', 3), string.rep('a', 3, ', '), string.rep('x', 0), string.rep('x', -1)",
      "string.rep('x', 1, 'sep'), string.rep('', 5, '-'), string.rep('', 100)",
      "string.gsub('x', 'x', '%2')",
      "string.gsub('x', 'x', '%a')",
      "string.gsub('x', 'x', function() return {} end)",
      "string.gsub('x', 'x')",
      "string.find('x', nil)",
      "string.match('x', ('(x?)'):rep(33))",
      "string.match(('x'):rep(300), ('x?'):rep(300) .. 'y')",
      "string.rep('x', 1 << 62, 'yy')",
      "('%d items'):format(3), ('x'):byte(), #('x'):rep(70000)",
  };
  std::vector<std::string> all(std::begin(expressions), std::end(expressions));
  for (const char* pattern : {"(", "x)", "[a", "[%", "%", "%b(", "%f", "%1", "(x%1)"}) {
    all.push_back("string.match('x', '" + std::string(pattern) + "')");
  }
  for (const std::string& each : all) {
    const std::string script = ScriptFor(each);
    EXPECT_EQ(RunBounded(script), RunOriginal(script)) << each;
  }
}

// Random patterns and texts over few letters, so that most of them match somewhere.
TEST(ScriptStrings, ArbitraryPatternsMatchTheSame) {
  const char* const pieces[] = {"a",    "b",     ".",     "%a", "[ab]", "[^a]", "(", ")",
                                "()",   "*",     "+",     "-",  "?",    "^",    "$", "%1",
                                "%bab", "%f[a]", "[]-a]", "%%", "[%",   "%2"};
  std::mt19937 random(7);
  const auto pick = [&random](std::size_t count) { return random() % count; };
  std::string script =
      "local function show(...) local all = {...} for i = 1, select('#', ...) do "
      "all[i] = tostring(all[i]) end print(table.concat(all, '|')) end\n";
  for (int i = 0; i < 3000; ++i) {
    std::string text, pattern;
    for (std::size_t n = pick(9); n > 0; --n) text += "ab]-"[pick(4)];
    for (std::size_t n = pick(6); n > 0; --n) pattern += pieces[pick(std::size(pieces))];
    const std::string arguments = "'" + text + "', '" + pattern + "'";
    script += "show(pcall(string.find, " + arguments + "))\n";
    script += "show(pcall(string.gsub, " + arguments + ", '<%0>'))\n";
  }
  const std::string bounded = RunBounded(script);
  const std::string original = RunOriginal(script);
  const auto [at, other] =
      std::mismatch(bounded.begin(), bounded.end(), original.begin(), original.end());
  if (at == bounded.end() && other == original.end()) return;
  const auto line = std::count(bounded.begin(), at, '\n');
  std::size_t start = script.find("show(pcall");
  for (auto i = line; i > 0; --i) start = script.find('\n', start) + 1;
  ADD_FAILURE() << script.substr(start, script.find('\n', start) - start);
}

}  // namespace
}  // namespace tarn::host
