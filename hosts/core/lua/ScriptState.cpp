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
    : runner_(scriptRunner), budget_(scriptRunner.budget_), server_(&serverObject) {
  for (const MethodInfo& each : serverObject.GetMethods()) {
    methods_.push_back({std::string(each.name), each.id, {}});
    for (const std::string_view name : each.arguments) methods_.back().arguments.emplace_back(name);
  }
}

ScriptState::~ScriptState() {
  if (lua_ != nullptr) lua_close(lua_);
}

ScriptHost* ScriptState::Host() {
  return runner_.host_;
}

const ScriptMethod* ScriptState::FindMethod(DispatchId id) const {
  const auto found = std::find_if(methods_.begin(), methods_.end(),
                                  [id](const ScriptMethod& each) { return each.id == id; });
  return found == methods_.end() ? nullptr : &*found;
}

std::string ScriptState::Run(const std::string& text, const std::string& name) {
  chunkName_ = "=" + name;
  wholeText_ = WithoutHead(text);
  lua_ = lua_newstate(Allocate, this);
  if (lua_ == nullptr) return name + ": not enough memory";
  *static_cast<ScriptState**>(lua_getextraspace(lua_)) = this;
  lua_sethook(lua_, OnCount, LUA_MASKCOUNT, kCountPeriod);
  lua_pushcfunction(lua_, OnError);
  lua_pushcfunction(lua_, SetUp);
  int status = lua_pcall(lua_, 0, 0, 1);
  if (status == LUA_OK) {
    status = luaL_loadbufferx(lua_, wholeText_.data(), wholeText_.size(), chunkName_.c_str(), "t");
  }
  // Each run is charged one period, so that many short scripts are limited as well.
  if (status == LUA_OK && budget_.Spend(kCountPeriod)) status = lua_pcall(lua_, 0, 0, 1);
  // Some calls end a script without executing another instruction, so the abort is checked in
  // addition to the status.
  const bool isGood = status == LUA_OK && budget_.GetAbort() == ScriptAbort::None;
  std::string error = isGood ? std::string() : ErrorText(status);
  lua_close(std::exchange(lua_, nullptr));
  return error;
}

int ScriptState::SetUp(lua_State* lua) {
  OpenScriptLibrary(lua);
  OpenScriptDispatch(lua);
  if (Of(lua).Host() != nullptr) OpenScriptHost(lua);
  return 0;
}

std::string ScriptState::ErrorText(int status) {
  const std::string place = lastPlace_[0] == '\0' ? chunkName_.substr(1) + ": " : lastPlace_;
  if (budget_.GetAbort() != ScriptAbort::None) return place + AbortText(budget_.GetAbort());
  if (status == LUA_ERRMEM) {
    return place + "the script needs more than " + std::to_string(runner_.limits_.memory >> 20) +
           " MB of memory";
  }
  const char* text = lua_tostring(lua_, -1);
  return text == nullptr ? chunkName_.substr(1) + ": unknown error" : text;
}

// --- Limits ---

void* ScriptState::Allocate(void* context, void* block, std::size_t oldSize, std::size_t newSize) {
  auto& state = *static_cast<ScriptState*>(context);
  if (block == nullptr) oldSize = 0;  // then it is the kind of object
  if (newSize == 0) {
    std::free(block);
    state.budget_.GiveMemory(oldSize);
    return nullptr;
  }
  if (newSize > oldSize) {
    if (!state.budget_.TakeMemory(newSize - oldSize)) {
      state.RecordPosition();
      return nullptr;
    }
    const bool isIn =
        state.budget_.Spend(static_cast<std::int64_t>((newSize - oldSize) / kBytesPerStep));
    // A hook may be set at any time, and the next instruction then aborts the script.
    if (!isIn && state.lua_ != nullptr) lua_sethook(state.lua_, OnCount, LUA_MASKCOUNT, 1);
  }
  void* result = std::realloc(block, newSize);
  if (result == nullptr) {
    if (newSize > oldSize) state.budget_.GiveMemory(newSize - oldSize);
    // Shrinking a block must never fail.
    return newSize > oldSize ? nullptr : block;
  }
  if (newSize < oldSize) state.budget_.GiveMemory(oldSize - newSize);
  return result;
}

void ScriptState::RecordPosition() {
  lua_Debug caller;
  int level = 0;
  if (lua_ == nullptr || !FindScriptLine(lua_, level, caller)) return;
  std::snprintf(lastPlace_, sizeof(lastPlace_), "%s:%d: ", caller.short_src, caller.currentline);
}

void ScriptState::OnCount(lua_State* lua, lua_Debug*) {
  ScriptState& state = Of(lua);
  if (state.budget_.GetAbort() == ScriptAbort::None && state.budget_.Spend(kCountPeriod)) return;
  Abort(lua);
}

void ScriptState::Spend(lua_State* lua, std::int64_t steps) {
  if (!Of(lua).budget_.Spend(steps)) Abort(lua);
}

void ScriptState::Check(lua_State* lua) {
  if (!Of(lua).budget_.Poll()) Abort(lua);
}

int ScriptState::Abort(lua_State* lua) {
  ScriptState& state = Of(lua);
  if (!std::exchange(state.isEnding_, true)) state.RecordPosition();
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
