// The table `tarn`: the server's methods for scripts, created from the object's type information.

#include <algorithm>
#include <exception>
#include <limits>
#include <new>
#include <span>

#include "hosts/core/lua/ScriptRunner.h"
#include "hosts/core/lua/ScriptState.h"
#include "platform/text/Text.h"

namespace tarn::host {

namespace {

// Steps charged for a call out of the interpreter, roughly its cost in instructions.
constexpr std::int64_t kCallSteps = 1000;
constexpr const char* kObjectType = "tarn.object";
// Registry key of the method table.
constexpr const char* kServerTable = "tarn.server";

std::string ArgumentName(const ScriptMethod& method, std::size_t index) {
  std::string text = "argument " + std::to_string(index + 1);
  if (index < method.arguments.size()) text += " (" + method.arguments[index] + ")";
  return text + " of " + method.name;
}

const char* KindName(const Variant& value) {
  switch (value.GetKind()) {
    case Variant::Kind::Long:
      return "a number";
    case Variant::Kind::Object:
      return "an object";
    case Variant::Kind::Text:
      return value.AsText() ? "a string" : "nil";
    case Variant::Kind::Empty:
      break;
  }
  return "nil";
}

std::string CountText(const ScriptMethod& method, std::size_t given) {
  const std::size_t count = method.arguments.size();
  std::string text = method.name + " takes " + (count == 0 ? "no" : std::to_string(count)) +
                     (count == 1 ? " argument" : " arguments");
  for (std::size_t i = 0; i < count; ++i) text += (i == 0 ? " (" : ", ") + method.arguments[i];
  return text + (count == 0 ? ", not " : "), not ") + std::to_string(given);
}

std::string CallProblem(const ScriptMethod& method, const DispatchResult& answer,
                        const std::vector<Variant>& arguments) {
  const auto index = static_cast<std::size_t>(answer.argument);
  if (answer.status == DispatchStatus::WrongCount) return CountText(method, arguments.size());
  if (answer.status == DispatchStatus::WrongType && index < arguments.size()) {
    return ArgumentName(method, index) + " can't be " + KindName(arguments[index]);
  }
  return answer.text.find(method.name) == std::string::npos ? method.name + ": " + answer.text
                                                            : answer.text;
}

// --- Conversion of values. On error the description is stored in `problem`. ---

bool ReadNumber(lua_State* lua, int index, std::int32_t& number) {
  int isInteger = 0;
  const lua_Integer value = lua_tointegerx(lua, index, &isInteger);
  // 32-bit numbers, signed or unsigned.
  const bool fits = value >= std::numeric_limits<std::int32_t>::min() &&
                    value <= std::numeric_limits<std::uint32_t>::max();
  number = static_cast<std::int32_t>(static_cast<std::uint32_t>(value));
  return isInteger != 0 && fits;
}

const char* ReadText(lua_State* lua, int index, ScriptState& state) {
  std::size_t size = 0;
  const char* text = lua_tolstring(lua, index, &size);
  const std::string_view view(text, size);
  if (view.find('\0') != std::string_view::npos) return "can't contain a zero byte";
  state.arguments.emplace_back(view);
  return nullptr;
}

// Adds the value to the arguments. Returns nullptr, or a description of what is wrong with the
// value.
const char* ReadArgument(lua_State* lua, int index, ScriptState& state) {
  std::int32_t number = 0;
  switch (lua_type(lua, index)) {
    case LUA_TNIL:
      state.arguments.emplace_back(NullableText());
      return nullptr;
    case LUA_TBOOLEAN:
      state.arguments.emplace_back(std::int32_t{lua_toboolean(lua, index) != 0 ? 1 : 0});
      return nullptr;
    case LUA_TNUMBER:
      if (!ReadNumber(lua, index, number)) return "must be a 32-bit integer";
      state.arguments.emplace_back(number);
      return nullptr;
    case LUA_TSTRING:
      return ReadText(lua, index, state);
    case LUA_TUSERDATA:
      if (const void* object = luaL_testudata(lua, index, kObjectType)) {
        state.arguments.emplace_back(*static_cast<const DispatchPtr*>(object));
        return nullptr;
      }
      break;
    default:
      break;
  }
  return "can't be a value of this type";
}

bool ReadArguments(lua_State* lua, int first, ScriptState& state) noexcept {
  try {
    state.arguments.clear();
    state.problem.clear();
    for (int i = first; i <= lua_gettop(lua); ++i) {
      const char* wrong = ReadArgument(lua, i, state);
      if (wrong == nullptr) continue;
      state.problem =
          ArgumentName(*state.method, static_cast<std::size_t>(i - first)) + " " + wrong;
      if (lua_type(lua, i) != LUA_TNUMBER && lua_type(lua, i) != LUA_TSTRING) {
        state.problem += std::string(": ") + luaL_typename(lua, i);
      }
      return false;
    }
    return true;
  } catch (const std::exception& failure) {
    state.problem = failure.what();
    return false;
  }
}

int ReleaseObject(lua_State* lua) {
  static_cast<DispatchPtr*>(lua_touserdata(lua, 1))->~DispatchPtr();
  return 0;
}

int ObjectText(lua_State* lua) {
  lua_pushliteral(lua, "object");
  return 1;
}

void PushObject(lua_State* lua, const DispatchPtr& object) {
  void* place = lua_newuserdatauv(lua, sizeof(DispatchPtr), 0);
  new (place) DispatchPtr();
  luaL_setmetatable(lua, kObjectType);
  *static_cast<DispatchPtr*>(place) = object;
}

int PushResult(lua_State* lua, const Variant& result) {
  switch (result.GetKind()) {
    case Variant::Kind::Empty:
      return 0;
    case Variant::Kind::Long:
      lua_pushinteger(lua, result.AsLong());
      return 1;
    case Variant::Kind::Text:
      if (const NullableText& text = result.AsText()) {
        lua_pushlstring(lua, text->data(), text->size());
        return 1;
      }
      break;
    case Variant::Kind::Object:
      if (result.AsObject()) {
        PushObject(lua, result.AsObject());
        return 1;
      }
      break;
  }
  lua_pushnil(lua);
  return 1;
}

int RaiseProblem(lua_State* lua, ScriptState& state) {
  luaL_where(lua, 1);
  lua_pushlstring(lua, state.problem.data(), state.problem.size());
  lua_concat(lua, 2);
  return lua_error(lua);
}

// Upvalue: the method. `tarn.Method(...)` and `tarn:Method(...)` are equivalent.
int CallMethod(lua_State* lua) {
  ScriptState& state = ScriptState::Of(lua);
  ScriptState::Spend(lua, kCallSteps);
  state.method = static_cast<const ScriptMethod*>(lua_touserdata(lua, lua_upvalueindex(1)));
  lua_getfield(lua, LUA_REGISTRYINDEX, kServerTable);
  const bool hasSelf = lua_gettop(lua) > 1 && lua_rawequal(lua, 1, -1) != 0;
  lua_pop(lua, 1);
  if (!ReadArguments(lua, hasSelf ? 2 : 1, state)) return RaiseProblem(lua, state);
  const bool isDone = state.Call();
  ScriptState::Check(lua);
  return isDone ? PushResult(lua, state.result) : RaiseProblem(lua, state);
}

void PushMethod(lua_State* lua, const ScriptMethod& method) {
  lua_pushlightuserdata(lua, const_cast<ScriptMethod*>(&method));
  lua_pushcclosure(lua, CallMethod, 1);
}

const ScriptMethod* FindByName(ScriptState& state, const char* name) noexcept {
  try {
    DispatchId id = 0;
    return state.Server().GetIDsOfNames(name, id) ? state.FindMethod(id) : nullptr;
  } catch (const std::exception&) {
    return nullptr;
  }
}

// Called for names that aren't in the table verbatim: the server's lookup ignores letter case.
int FindMember(lua_State* lua) {
  const bool isName = lua_type(lua, 2) == LUA_TSTRING;
  const ScriptMethod* method =
      isName ? FindByName(ScriptState::Of(lua), lua_tostring(lua, 2)) : nullptr;
  if (method == nullptr) {
    return luaL_error(lua, "tarn has no method %s", luaL_tolstring(lua, 2, nullptr));
  }
  PushMethod(lua, *method);
  return 1;
}

int RefuseMember(lua_State* lua) {
  return luaL_error(lua, "the methods of tarn can't be changed");
}

int Print(lua_State* lua) {
  const int count = lua_gettop(lua);
  luaL_Buffer line;
  luaL_buffinit(lua, &line);
  for (int i = 1; i <= count; ++i) {
    if (i > 1) luaL_addchar(&line, '\t');
    luaL_tolstring(lua, i, nullptr);
    luaL_addvalue(&line);
  }
  luaL_pushresult(&line);
  std::size_t size = 0;
  const char* text = lua_tolstring(lua, -1, &size);
  ScriptState::Spend(lua, kCallSteps + static_cast<std::int64_t>(size));
  ScriptState::Of(lua).Print({text, size});
  ScriptState::Check(lua);
  return 0;
}

}  // namespace

bool ScriptState::Call() noexcept {
  budget_.HoldClock();
  try {
    const std::string name = method->name;  // a script that this one calls replaces `method`
    problem = Host() == nullptr ? std::string() : Host()->PrepareCall(name, arguments);
    if (problem.empty()) {
      CallServer();
      if (Host() != nullptr) Host()->OnCalled(name);
    }
  } catch (const std::exception& failure) {
    problem = method->name + ": " + failure.what();
  }
  arguments.clear();
  budget_.StartClock();
  return problem.empty();
}

void ScriptState::CallServer() {
  const bool runsFile =
      EqualNoCase(method->name, "ExecuteScript") && arguments.size() == 1 && arguments[0].AsText();
  if (runsFile) runner_.nextName_ = *arguments[0].AsText();
  runner_.innerFailure_.clear();
  const DispatchResult answer = server_->Invoke(method->id, arguments, result);
  runner_.nextName_.clear();
  problem = answer ? runner_.innerFailure_ : CallProblem(*method, answer, arguments);
}

void ScriptState::Print(std::string_view text) noexcept {
  budget_.HoldClock();
  try {
    std::string copy(text);
    // Log lines are zero-terminated strings.
    std::replace(copy.begin(), copy.end(), '\0', ' ');
    std::vector<std::string_view> lines = Split(copy, '\n');
    if (lines.empty()) lines.emplace_back();
    for (const std::string_view each : lines) {
      const std::string line(each);
      if (Host() != nullptr) Host()->ShowLine(line);
      Report(line);
    }
  } catch (const std::exception&) {
    // The line is lost, because there is no other way to report it.
  }
  budget_.StartClock();
}

void ScriptState::Report(const std::string& line) noexcept {
  try {
    DispatchId id = 0;
    Variant ignored;
    const Variant text(line);
    if (server_->GetIDsOfNames("ReportMessage", id)) {
      static_cast<void>(server_->Invoke(id, std::span(&text, 1), ignored));
    }
  } catch (const std::exception&) {
    // The message is lost here, too.
  }
}

void OpenScriptDispatch(lua_State* lua) {
  luaL_newmetatable(lua, kObjectType);
  const luaL_Reg object[] = {
      {"__gc", ReleaseObject}, {"__tostring", ObjectText}, {nullptr, nullptr}};
  luaL_setfuncs(lua, object, 0);
  lua_pushboolean(lua, 0);
  lua_setfield(lua, -2, "__metatable");
  lua_pop(lua, 1);

  lua_newtable(lua);
  for (const ScriptMethod& each : ScriptState::Of(lua).Methods()) {
    PushMethod(lua, each);
    lua_setfield(lua, -2, each.name.c_str());
  }
  lua_newtable(lua);
  const luaL_Reg members[] = {
      {"__index", FindMember}, {"__newindex", RefuseMember}, {nullptr, nullptr}};
  luaL_setfuncs(lua, members, 0);
  lua_pushboolean(lua, 0);
  lua_setfield(lua, -2, "__metatable");
  lua_setmetatable(lua, -2);
  lua_pushvalue(lua, -1);
  lua_setfield(lua, LUA_REGISTRYINDEX, kServerTable);
  lua_setglobal(lua, "tarn");
  lua_register(lua, "print", Print);
}

}  // namespace tarn::host
