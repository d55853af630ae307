// The language's standard library, restricted. Functions that load files or machine code, leave the
// interpreter or control its memory are removed. Functions that may run for long without executing
// an instruction are charged in advance if their cost is known, or are reimplemented.

#include <algorithm>
#include <bit>

#include "hosts/core/lua/ScriptState.h"

namespace tarn::host {

namespace {

// Continues as the original function, stored as the upvalue, in the same frame, so that its errors
// have the name and the position of the caller.
int RunOriginal(lua_State* lua) {
  return lua_tocfunction(lua, lua_upvalueindex(1))(lua);
}

// --- Basic functions ---

int Load(lua_State* lua) {
  luaL_checktype(lua, 1, LUA_TSTRING);
  std::size_t size = 0;
  const char* text = lua_tolstring(lua, 1, &size);
  const char* name = luaL_optstring(lua, 2, text);
  const bool hasEnvironment = !lua_isnone(lua, 4);
  if (luaL_loadbufferx(lua, text, size, name, "t") != LUA_OK) {
    lua_pushnil(lua);
    lua_insert(lua, -2);
    return 2;
  }
  if (hasEnvironment) {
    lua_pushvalue(lua, 4);
    if (lua_setupvalue(lua, -2, 1) == nullptr) lua_pop(lua, 1);
  }
  return 1;
}

// Finalizers run outside of the limits, so they are rejected.
int SetMetatable(lua_State* lua) {
  if (lua_type(lua, 2) == LUA_TTABLE) {
    lua_pushliteral(lua, "__gc");
    if (lua_rawget(lua, 2) != LUA_TNIL) return luaL_error(lua, "scripts have no finalizers (__gc)");
    lua_pop(lua, 1);
  }
  return RunOriginal(lua);
}

// Upvalue: the script's handler. An abort is raised by the count hook, which is disabled while a
// handler runs inside it; so the handler isn't called for such an error.
int HandleError(lua_State* lua) {
  lua_settop(lua, 1);
  if (ScriptState::Of(lua).Budget().GetAbort() != ScriptAbort::None) return 1;
  lua_pushvalue(lua, lua_upvalueindex(1));
  lua_insert(lua, 1);
  lua_call(lua, 1, 1);
  return 1;
}

// xpcall(function, handler, ...)
int CallProtected(lua_State* lua) {
  const int count = lua_gettop(lua);
  luaL_checktype(lua, 2, LUA_TFUNCTION);
  lua_pushvalue(lua, 2);
  lua_pushcclosure(lua, HandleError, 1);
  lua_replace(lua, 2);
  lua_pushboolean(lua, 1);
  lua_pushvalue(lua, 1);
  lua_rotate(lua, 3, 2);  // before the arguments
  if (lua_pcall(lua, count - 2, LUA_MULTRET, 2) == LUA_OK) return lua_gettop(lua) - 2;
  lua_pushboolean(lua, 0);
  lua_insert(lua, -2);
  return 2;
}

// --- Tables ---

// Returns the length that the original function will use. __len is rejected because it may return a
// different value the second time.
lua_Integer CheckLength(lua_State* lua) {
  luaL_checktype(lua, 1, LUA_TTABLE);
  if (luaL_getmetafield(lua, 1, "__len") != LUA_TNIL) {
    luaL_argerror(lua, 1, "a table with __len has no elements of its own");
  }
  return static_cast<lua_Integer>(lua_rawlen(lua, 1));
}

// Returns the number of integers from `first` to `last`, capped at a number that exceeds every
// budget.
lua_Integer CountBetween(lua_Integer first, lua_Integer last) {
  if (last < first) return 0;
  const auto count = static_cast<lua_Unsigned>(last) - static_cast<lua_Unsigned>(first);
  return static_cast<lua_Integer>(std::min<lua_Unsigned>(count, LUA_MAXINTEGER - 1)) + 1;
}

// insert, remove: charges for all elements after the position, which are moved.
template <int PlaceArguments>
int ShiftTable(lua_State* lua) {
  const lua_Integer length = CheckLength(lua);
  int isInteger = 0;
  const lua_Integer place = lua_tointegerx(lua, 2, &isInteger);
  const bool hasPlace = lua_gettop(lua) >= PlaceArguments && isInteger != 0;
  ScriptState::Spend(lua, hasPlace ? CountBetween(place, length) : 1);
  return RunOriginal(lua);
}

int SortTable(lua_State* lua) {
  const lua_Integer length = CheckLength(lua);
  const auto levels = static_cast<lua_Integer>(std::bit_width(static_cast<lua_Unsigned>(length)));
  ScriptState::Spend(lua, length > LUA_MAXINTEGER / 64 ? LUA_MAXINTEGER : length * levels);
  return RunOriginal(lua);
}

// concat(table, separator, first, last), unpack(table, first, last)
template <int FirstArgument>
int JoinTable(lua_State* lua) {
  const lua_Integer length = CheckLength(lua);
  const lua_Integer first = luaL_optinteger(lua, FirstArgument, 1);
  const lua_Integer last = luaL_optinteger(lua, FirstArgument + 1, length);
  ScriptState::Spend(lua, CountBetween(first, last));
  return RunOriginal(lua);
}

int MoveTable(lua_State* lua) {
  ScriptState::Spend(lua, CountBetween(luaL_checkinteger(lua, 2), luaL_checkinteger(lua, 3)));
  return RunOriginal(lua);
}

// --- Set-up ---

void Open(lua_State* lua, const char* name, lua_CFunction open) {
  luaL_requiref(lua, name, open, 1);
  lua_pop(lua, 1);
}

// Replaces functions of the table on top of the stack; each has the original as its upvalue.
void Replace(lua_State* lua, std::initializer_list<luaL_Reg> functions) {
  for (const luaL_Reg& each : functions) {
    lua_getfield(lua, -1, each.name);
    lua_pushcclosure(lua, each.func, 1);
    lua_setfield(lua, -2, each.name);
  }
}

void Remove(lua_State* lua, std::initializer_list<const char*> names) {
  for (const char* name : names) {
    lua_pushnil(lua);
    lua_setfield(lua, -2, name);
  }
}

void OpenClock(lua_State* lua) {
  luaL_requiref(lua, "os", luaopen_os, 0);
  lua_newtable(lua);
  for (const char* name : {"time", "clock", "date"}) {
    lua_getfield(lua, -2, name);
    lua_setfield(lua, -2, name);
  }
  lua_setglobal(lua, "os");
  lua_pop(lua, 1);
}

}  // namespace

void OpenScriptLibrary(lua_State* lua) {
  Open(lua, "_G", luaopen_base);
  Open(lua, LUA_STRLIBNAME, luaopen_string);
  Open(lua, LUA_TABLIBNAME, luaopen_table);
  Open(lua, LUA_MATHLIBNAME, luaopen_math);
  Open(lua, LUA_UTF8LIBNAME, luaopen_utf8);
  OpenClock(lua);

  lua_pushglobaltable(lua);
  Remove(lua, {"collectgarbage", "dofile", "loadfile", "warn"});
  Replace(lua, {{"load", Load}, {"setmetatable", SetMetatable}, {"xpcall", CallProtected}});
  lua_pop(lua, 1);

  lua_getglobal(lua, LUA_TABLIBNAME);
  Replace(lua, {{"insert", ShiftTable<3>},
                {"remove", ShiftTable<2>},
                {"sort", SortTable},
                {"concat", JoinTable<3>},
                {"unpack", JoinTable<2>},
                {"move", MoveTable}});
  lua_pop(lua, 1);
  OpenScriptStrings(lua);
}

}  // namespace tarn::host
