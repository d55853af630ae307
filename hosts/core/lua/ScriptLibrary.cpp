// The language's own functions. Those that load files or machine code, reach out of the interpreter
// or stop its memory are left out. Those that may run for long without an instruction spend steps
// first: their length is known then, or they are written anew.

#include <algorithm>
#include <bit>

#include "hosts/core/lua/ScriptState.h"

namespace tarn::host {

namespace {

// Goes on as the original function, which is the upvalue, in the same frame: so its errors have the
// name and the place of the caller.
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

// A finalizer runs without bounds.
int SetMetatable(lua_State* lua) {
  if (lua_type(lua, 2) == LUA_TTABLE) {
    lua_pushliteral(lua, "__gc");
    if (lua_rawget(lua, 2) != LUA_TNIL) return luaL_error(lua, "scripts have no finalizers (__gc)");
    lua_pop(lua, 1);
  }
  return RunOriginal(lua);
}

// Upvalue: the script's handler. The end of a script is raised by the look at its bounds, and none
// is taken while a handler runs in there; so such an error has no handler.
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
  lua_rotate(lua, 3, 2);  // in front of the arguments
  if (lua_pcall(lua, count - 2, LUA_MULTRET, 2) == LUA_OK) return lua_gettop(lua) - 2;
  lua_pushboolean(lua, 0);
  lua_insert(lua, -2);
  return 2;
}

// --- Tables ---

// The length that the next function will see. One that a script computes may be another by then.
lua_Integer CheckLength(lua_State* lua) {
  luaL_checktype(lua, 1, LUA_TTABLE);
  if (luaL_getmetafield(lua, 1, "__len") != LUA_TNIL) {
    luaL_argerror(lua, 1, "a table with __len has no elements of its own");
  }
  return static_cast<lua_Integer>(lua_rawlen(lua, 1));
}

// How many integers there are from `first` to `last`, at most so many that no budget has them.
lua_Integer CountBetween(lua_Integer first, lua_Integer last) {
  if (last < first) return 0;
  const auto count = static_cast<lua_Unsigned>(last) - static_cast<lua_Unsigned>(first);
  return static_cast<lua_Integer>(std::min<lua_Unsigned>(count, LUA_MAXINTEGER - 1)) + 1;
}

// insert, remove: everything behind the place moves.
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

// --- What there is ---

void Open(lua_State* lua, const char* name, lua_CFunction open) {
  luaL_requiref(lua, name, open, 1);
  lua_pop(lua, 1);
}

// Replaces functions of the table on top; each has the original as its upvalue.
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
