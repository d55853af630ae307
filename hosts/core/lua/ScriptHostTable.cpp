// The table `host`: the host's services for scripts.

#include <algorithm>
#include <exception>
#include <optional>
#include <string>
#include <vector>

#include "hosts/core/lua/ScriptState.h"
#include "platform/text/Suggest.h"

namespace tarn::host {

namespace {

constexpr std::int64_t kHostCallSteps = 1000;

// Runs `work` with the script's clock stopped.
template <class Work>
void Ask(lua_State* lua, Work work) {
  ScriptState::Spend(lua, kHostCallSteps);
  ScriptState& state = ScriptState::Of(lua);
  state.Budget().HoldClock();
  try {
    state.problem.clear();
    work(state);
  } catch (const std::exception& failure) {
    state.problem = failure.what();
  }
  state.Budget().StartClock();
  ScriptState::Check(lua);
  if (!state.problem.empty()) luaL_error(lua, "%s", state.problem.c_str());
}

// Rejects surplus arguments, because the caller expects something that the function doesn't do.
void CheckCount(lua_State* lua, int most) {
  if (lua_gettop(lua) > most) luaL_argerror(lua, most + 1, "too many arguments");
}

std::optional<std::string> OrNothing(const char* text) {
  return text == nullptr ? std::nullopt : std::optional<std::string>(text);
}

// Returns true if `work` is not a kind of work, and stores the error in hostText.
bool IsUnknownWork(ScriptState& state, const std::string& work) {
  const std::vector<std::string> works = {"build", "rebuild", "clean"};
  if (std::find(works.begin(), works.end(), work) != works.end()) return false;
  const std::string hint = SuggestionText(work, works);
  state.hostText = "invalid option '" + work + "'" + (hint.empty() ? "" : ";" + hint);
  return true;
}

int Build(lua_State* lua) {
  CheckCount(lua, 2);
  const char* work = luaL_optstring(lua, 1, "build");
  const char* application = luaL_optstring(lua, 2, nullptr);
  ScriptState& script = ScriptState::Of(lua);
  if (IsUnknownWork(script, work)) return luaL_argerror(lua, 1, script.hostText.c_str());
  Ask(lua, [=](ScriptState& state) {
    state.build = state.Host()->Build(work, OrNothing(application));
    state.problem = state.build.problem;
  });
  const ScriptBuild& build = ScriptState::Of(lua).build;
  lua_pushlstring(lua, build.end.data(), build.end.size());
  lua_pushinteger(lua, build.toolsRun);
  lua_pushinteger(lua, build.toolsFailed);
  return 3;
}

int PushText(lua_State* lua) {
  const std::string& text = ScriptState::Of(lua).hostText;
  lua_pushlstring(lua, text.data(), text.size());
  return 1;
}

int Wait(lua_State* lua) {
  CheckCount(lua, 0);
  Ask(lua, [](ScriptState& state) { state.hostText = state.Host()->WaitForBuild(); });
  return PushText(lua);
}

int Size(lua_State* lua) {
  CheckCount(lua, 1);
  const char* application = luaL_checkstring(lua, 1);
  Ask(lua, [=](ScriptState& state) {
    const ScriptSize size = state.Host()->GetSize(application);
    state.hostText = size.text;
    state.problem = size.problem;
  });
  return PushText(lua);
}

// Without a second argument the options of the active configuration are copied.
int AddConfiguration(lua_State* lua) {
  CheckCount(lua, 2);
  const char* name = luaL_checkstring(lua, 1);
  const char* from = luaL_optstring(lua, 2, nullptr);
  Ask(lua, [=](ScriptState& state) {
    state.problem = state.Host()->AddConfiguration(name, OrNothing(from));
  });
  return 0;
}

}  // namespace

void OpenScriptHost(lua_State* lua) {
  const luaL_Reg functions[] = {{"build", Build},
                                {"wait", Wait},
                                {"size", Size},
                                {"add_configuration", AddConfiguration},
                                {nullptr, nullptr}};
  luaL_newlib(lua, functions);
  lua_setglobal(lua, "host");
}

}  // namespace tarn::host
