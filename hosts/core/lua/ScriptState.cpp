#include "hosts/core/lua/ScriptState.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "hosts/core/lua/ScriptRunner.h"

namespace tarn::host {

namespace {

// Instructions between two checks of the budget.
constexpr int kCountPeriod = 1000;
constexpr std::size_t kBytesPerStep = 64;
constexpr int kMaxCallers = 10;  // that an error lists

const char* AbortText(ScriptAbort abort) {
  switch (abort) {
    case ScriptAbort::Steps:
      return "the script takes too many steps";
    case ScriptAbort::Time:
      return "the script takes too long";
    case ScriptAbort::Stopped:
      return "interrupted";
    case ScriptAbort::None:
      break;
  }
  return "ended";
}

// Skips a byte order mark and a first line that names an interpreter. The line break stays, so that
// line numbers are unchanged.
std::string_view WithoutHead(std::string_view text) {
  if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
  if (text.starts_with("#")) text.remove_prefix(std::min(text.find('\n'), text.size()));
  return text;
}

// Finds the innermost Lua function at or above `level`. Allocates nothing, so it works when out of
// memory.
bool FindScriptLine(lua_State* lua, int& level, lua_Debug& caller) {
  for (; lua_getstack(lua, level, &caller) != 0; ++level) {
    if (lua_getinfo(lua, "Sl", &caller) != 0 && caller.currentline > 0) return true;
  }
  caller.short_src[0] = '\0';
  return false;
}

}  // namespace

ScriptState::ScriptState(ScriptRunner& scriptRunner, IDispatch& serverObject)
    : runner(scriptRunner), budget(scriptRunner.budget), server(&serverObject) {
  for (const MethodInfo& each : serverObject.GetMethods()) {
    methods.push_back({std::string(each.name), each.id, {}});
    for (const std::string_view name : each.arguments) methods.back().arguments.emplace_back(name);
  }
}

ScriptState::~ScriptState() {
  if (lua != nullptr) lua_close(lua);
}

ScriptHost* ScriptState::Host() {
  return runner.host;
}

const ScriptMethod* ScriptState::FindMethod(DispatchId id) const {
  const auto found = std::find_if(methods.begin(), methods.end(),
                                  [id](const ScriptMethod& each) { return each.id == id; });
  return found == methods.end() ? nullptr : &*found;
}

std::string ScriptState::Run(const std::string& text, const std::string& name) {
  chunkName = "=" + name;
  wholeText = WithoutHead(text);
  lua = lua_newstate(Allocate, this);
  if (lua == nullptr) return name + ": not enough memory";
  *static_cast<ScriptState**>(lua_getextraspace(lua)) = this;
  lua_sethook(lua, OnCount, LUA_MASKCOUNT, kCountPeriod);
  lua_pushcfunction(lua, OnError);
  lua_pushcfunction(lua, SetUp);
  int status = lua_pcall(lua, 0, 0, 1);
  if (status == LUA_OK) {
    status = luaL_loadbufferx(lua, wholeText.data(), wholeText.size(), chunkName.c_str(), "t");
  }
  // Each run is charged one period, so that many short scripts are limited as well.
  if (status == LUA_OK && budget.Spend(kCountPeriod)) status = lua_pcall(lua, 0, 0, 1);
  // Some calls end a script without executing another instruction, so the abort is checked in
  // addition to the status.
  const bool isGood = status == LUA_OK && budget.GetAbort() == ScriptAbort::None;
  std::string error = isGood ? std::string() : ErrorText(status);
  lua_close(std::exchange(lua, nullptr));
  return error;
}

int ScriptState::SetUp(lua_State* lua) {
  OpenScriptLibrary(lua);
  OpenScriptDispatch(lua);
  if (Of(lua).Host() != nullptr) OpenScriptHost(lua);
  return 0;
}

std::string ScriptState::ErrorText(int status) {
  const std::string place = lastPlace[0] == '\0' ? chunkName.substr(1) + ": " : lastPlace;
  if (budget.GetAbort() != ScriptAbort::None) return place + AbortText(budget.GetAbort());
  if (status == LUA_ERRMEM) {
    return place + "the script needs more than " + std::to_string(runner.limits.memory >> 20) +
           " MB of memory";
  }
  const char* text = lua_tostring(lua, -1);
  return text == nullptr ? chunkName.substr(1) + ": unknown error" : text;
}

// --- Limits ---

void* ScriptState::Allocate(void* context, void* block, std::size_t oldSize, std::size_t newSize) {
  auto& state = *static_cast<ScriptState*>(context);
  if (block == nullptr) oldSize = 0;  // then it is the kind of object
  if (newSize == 0) {
    std::free(block);
    state.budget.GiveMemory(oldSize);
    return nullptr;
  }
  if (newSize > oldSize) {
    if (!state.budget.TakeMemory(newSize - oldSize)) {
      state.NotePlace();
      return nullptr;
    }
    const bool isIn =
        state.budget.Spend(static_cast<std::int64_t>((newSize - oldSize) / kBytesPerStep));
    // A hook may be set at any time, and the next instruction then aborts the script.
    if (!isIn && state.lua != nullptr) lua_sethook(state.lua, OnCount, LUA_MASKCOUNT, 1);
  }
  void* result = std::realloc(block, newSize);
  if (result == nullptr) {
    if (newSize > oldSize) state.budget.GiveMemory(newSize - oldSize);
    // Shrinking a block must never fail.
    return newSize > oldSize ? nullptr : block;
  }
  if (newSize < oldSize) state.budget.GiveMemory(oldSize - newSize);
  return result;
}

void ScriptState::NotePlace() {
  lua_Debug caller;
  int level = 0;
  if (lua == nullptr || !FindScriptLine(lua, level, caller)) return;
  std::snprintf(lastPlace, sizeof(lastPlace), "%s:%d: ", caller.short_src, caller.currentline);
}

void ScriptState::OnCount(lua_State* lua, lua_Debug*) {
  ScriptState& state = Of(lua);
  if (state.budget.GetAbort() == ScriptAbort::None && state.budget.Spend(kCountPeriod)) return;
  Abort(lua);
}

void ScriptState::Spend(lua_State* lua, std::int64_t steps) {
  if (!Of(lua).budget.Spend(steps)) Abort(lua);
}

void ScriptState::Check(lua_State* lua) {
  if (!Of(lua).budget.Look()) Abort(lua);
}

int ScriptState::Abort(lua_State* lua) {
  ScriptState& state = Of(lua);
  if (!std::exchange(state.isEnding, true)) state.NotePlace();
  // If the script catches this error, the next instruction raises it again.
  lua_sethook(lua, OnCount, LUA_MASKCOUNT, 1);
  lua_pushliteral(lua, "the script has to end");
  return lua_error(lua);
}

// Message handler: converts the error value to a string and appends the callers. Runs on the stack
// of the error.
int ScriptState::OnError(lua_State* lua) {
  lua_Debug caller;
  int level = 1;
  bool isFound = FindScriptLine(lua, level, caller);
  luaL_tolstring(lua, 1, nullptr);
  lua_pushfstring(lua, "%s:", caller.short_src);
  const std::size_t prefix = lua_rawlen(lua, -1);
  // Not every error includes its position.
  const bool hasPlace = std::strncmp(lua_tostring(lua, -2), lua_tostring(lua, -1), prefix) == 0;
  if (isFound && !hasPlace) {
    lua_pushfstring(lua, "%d: ", caller.currentline);
    lua_concat(lua, 2);
    lua_insert(lua, -2);
    lua_concat(lua, 2);
  } else {
    lua_pop(lua, 1);
  }
  for (int lines = 0; isFound && lines < kMaxCallers; ++lines) {
    isFound = FindScriptLine(lua, ++level, caller);
    if (!isFound) break;
    lua_pushfstring(lua, "\n  called from %s:%d", caller.short_src, caller.currentline);
    lua_concat(lua, 2);
  }
  return 1;
}

}  // namespace tarn::host
