// The first line of the input is a pattern, the rest the subject. The bounded matcher must
// terminate, respect the bounds of the subject, and return the same result as the script language's
// own matcher if that also terminates quickly.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <lua.hpp>
#include <string_view>

#include "hosts/core/lua/ScriptPattern.h"

namespace {

using tarn::host::ScriptPattern;

void Require(bool holds) {
  if (!holds) std::abort();
}

// Runs the original matcher; the result is at the top of the stack: the start, nil, or an error
// message.
bool FindByOriginal(lua_State* lua, std::string_view text, std::string_view pattern) {
  lua_settop(lua, 0);
  lua_getglobal(lua, "string");
  lua_getfield(lua, -1, "find");
  lua_pushlstring(lua, text.data(), text.size());
  lua_pushlstring(lua, pattern.data(), pattern.size());
  return lua_pcall(lua, 2, 2, 0) == LUA_OK;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static lua_State* const lua = [] {
    lua_State* made = luaL_newstate();
    luaL_openlibs(made);
    return made;
  }();
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  const std::size_t line = std::min(input.find('\n'), input.size());
  const std::string_view pattern = input.substr(0, line);
  const std::string_view text = input.substr(std::min(line + 1, input.size()));
  // The caller removes an anchor and handles plain strings itself.
  if (pattern.starts_with('^') || pattern.find_first_of("$*+?.([%-") == pattern.npos) return 0;

  tarn::host::ScriptBudget budget;
  tarn::host::ScriptLimits limits;
  limits.steps = 200'000;
  budget.Begin(limits);
  budget.StartClock();
  ScriptPattern matcher(text, pattern, budget);
  std::size_t start = 0;
  std::size_t end = ScriptPattern::kNone;
  bool isOpen = false;
  for (; start <= text.size() && end == ScriptPattern::kNone; ++start) {
    end = matcher.MatchAt(start);
    if (matcher.GetProblem() != nullptr || !budget.Spend(1)) break;
    if (end != ScriptPattern::kNone) break;
  }
  if (end != ScriptPattern::kNone) {
    Require(start <= end && end <= text.size());
    for (int i = 0; i < matcher.GetCaptureCount(); ++i) {
      const ScriptPattern::Capture& capture = matcher.GetCapture(i);
      isOpen = isOpen || capture.length == ScriptPattern::kOpen;
      const bool isText = capture.length < ScriptPattern::kPosition;
      Require(capture.start <= text.size());
      Require(!isText || capture.length <= text.size() - capture.start);
    }
  }
  if (budget.GetAbort() != tarn::host::ScriptAbort::None) return 0;
  // An unfinished capture is detected when it is read.
  const bool isGood = FindByOriginal(lua, text, pattern);
  Require(isGood == (matcher.GetProblem() == nullptr && !isOpen));
  if (!isGood) return 0;
  Require(lua_isnil(lua, -2) == (end == ScriptPattern::kNone));
  if (end == ScriptPattern::kNone) return 0;
  Require(lua_tointeger(lua, -2) == static_cast<lua_Integer>(start) + 1);
  Require(lua_tointeger(lua, -1) == static_cast<lua_Integer>(end));
  return 0;
}
