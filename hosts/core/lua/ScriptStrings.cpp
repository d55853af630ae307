// The functions of the string library whose running time is unbounded, reimplemented with the
// bounded matcher.

#include <algorithm>
#include <cstring>
#include <string_view>
#include <vector>

#include "hosts/core/lua/ScriptPattern.h"
#include "hosts/core/lua/ScriptState.h"

namespace tarn::host {

namespace {

std::string_view TextAt(lua_State* lua, int index) {
  std::size_t size = 0;
  const char* text = luaL_checklstring(lua, index, &size);
  return {text, size};
}

// Converts a position, counted from 1 or, if negative, from the end, to an offset, which may be
// past the end.
std::size_t StartOffset(lua_Integer position, std::size_t size) {
  if (position > 0) return static_cast<std::size_t>(position) - 1;
  if (position == 0 || position < -static_cast<lua_Integer>(size)) return 0;
  return size - static_cast<std::size_t>(-position);
}

// Returns the matcher's result, or raises its error. A matcher whose budget is exhausted returns
// "no match".
std::size_t MatchAt(lua_State* lua, ScriptPattern& pattern, std::size_t offset) {
  ScriptState::Spend(lua, 1);
  const std::size_t end = pattern.MatchAt(offset);
  if (pattern.GetWrongCapture() >= 0) {
    luaL_error(lua, "%s %%%d", pattern.GetProblem(), pattern.GetWrongCapture());
  }
  if (pattern.GetProblem() != nullptr) luaL_error(lua, "%s", pattern.GetProblem());
  ScriptState::Spend(lua, 0);
  return end;
}

// Pushes one capture; if there are none, the first one is the whole match.
void PushCapture(lua_State* lua, const ScriptPattern& pattern, int index, std::string_view text,
                 std::size_t start, std::size_t end) {
  if (index >= pattern.GetCaptureCount()) {
    if (index != 0) luaL_error(lua, "invalid capture index %%%d", index + 1);
    lua_pushlstring(lua, text.data() + start, end - start);
    return;
  }
  const ScriptPattern::Capture& capture = pattern.GetCapture(index);
  if (capture.length == ScriptPattern::kPosition) {
    lua_pushinteger(lua, static_cast<lua_Integer>(capture.start) + 1);
  } else if (capture.length == ScriptPattern::kOpen) {
    luaL_error(lua, "unfinished capture");
  } else {
    lua_pushlstring(lua, text.data() + capture.start, capture.length);
  }
}

// Pushes all captures, at least `least` of them, and returns their number.
int PushCaptures(lua_State* lua, const ScriptPattern& pattern, int least, std::string_view text,
                 std::size_t start, std::size_t end) {
  const int count = pattern.GetCaptureCount() > least ? pattern.GetCaptureCount() : least;
  luaL_checkstack(lua, count, "too many captures");
  for (int i = 0; i < count; ++i) PushCapture(lua, pattern, i, text, start, end);
  return count;
}

// Returns the offset of the first `what` at or after `start`, or npos. Knuth-Morris-Pratt: linear
// for all inputs, unlike the searches of the C++ standard library. Skips to the first byte by
// memchr.
std::size_t FindLinear(std::string_view text, std::string_view what, std::size_t start) {
  if (what.size() < 2 || what.size() > text.size() - start) return text.find(what, start);
  // For each length of a partial match, the length of the longest shorter one that ends with it.
  std::vector<std::size_t> shorter(what.size() + 1, 0);
  for (std::size_t i = 1, length = 0; i < what.size(); ++i) {
    while (length > 0 && what[i] != what[length]) length = shorter[length];
    if (what[i] == what[length]) ++length;
    shorter[i + 1] = length;
  }
  std::size_t matched = 0;
  for (std::size_t i = start; i < text.size(); ++i) {
    if (matched == 0) {
      i = text.find(what[0], i);
      if (i == text.npos) return text.npos;
    }
    while (matched > 0 && text[i] != what[matched]) matched = shorter[matched];
    if (text[i] == what[matched]) ++matched;
    if (matched == what.size()) return i + 1 - matched;
  }
  return text.npos;
}

int FindPlain(lua_State* lua, std::string_view text, std::string_view what, std::size_t start) {
  ScriptState::Spend(lua, static_cast<std::int64_t>((text.size() - start + what.size()) / 8));
  const std::size_t found = FindLinear(text, what, start);
  if (found == text.npos) {
    lua_pushnil(lua);
    return 1;
  }
  const auto at = static_cast<lua_Integer>(found);
  lua_pushinteger(lua, at + 1);
  lua_pushinteger(lua, at + static_cast<lua_Integer>(what.size()));
  return 2;
}

int FindOrMatch(lua_State* lua, bool isFind) {
  const std::string_view text = TextAt(lua, 1);
  std::string_view what = TextAt(lua, 2);
  const std::size_t start = StartOffset(luaL_optinteger(lua, 3, 1), text.size());
  if (start > text.size()) {
    lua_pushnil(lua);
    return 1;
  }
  const bool isPlain =
      lua_toboolean(lua, 4) != 0 || what.find_first_of("^$*+?.([%-") == std::string_view::npos;
  if (isFind && isPlain) return FindPlain(lua, text, what, start);
  const bool isAnchored = what.starts_with('^');
  if (isAnchored) what.remove_prefix(1);
  ScriptPattern pattern(text, what, ScriptState::Of(lua).Budget());
  for (std::size_t at = start; at <= text.size(); ++at) {
    const std::size_t end = MatchAt(lua, pattern, at);
    if (end != ScriptPattern::kNone) {
      if (!isFind) return PushCaptures(lua, pattern, 1, text, at, end);
      lua_pushinteger(lua, static_cast<lua_Integer>(at) + 1);
      lua_pushinteger(lua, static_cast<lua_Integer>(end));
      return 2 + PushCaptures(lua, pattern, 0, text, at, end);
    }
    if (isAnchored) break;
  }
  lua_pushnil(lua);
  return 1;
}

int Find(lua_State* lua) {
  return FindOrMatch(lua, true);
}

int Match(lua_State* lua) {
  return FindOrMatch(lua, false);
}

// Upvalues: text, pattern, next start, end of the last match (-1: none yet).
int NextMatch(lua_State* lua) {
  const std::string_view text = TextAt(lua, lua_upvalueindex(1));
  const std::string_view what = TextAt(lua, lua_upvalueindex(2));
  const auto start = static_cast<std::size_t>(lua_tointeger(lua, lua_upvalueindex(3)));
  const lua_Integer lastEnd = lua_tointeger(lua, lua_upvalueindex(4));
  ScriptPattern pattern(text, what, ScriptState::Of(lua).Budget());
  for (std::size_t at = start; at <= text.size(); ++at) {
    const std::size_t end = MatchAt(lua, pattern, at);
    if (end == ScriptPattern::kNone || static_cast<lua_Integer>(end) == lastEnd) continue;
    lua_pushinteger(lua, static_cast<lua_Integer>(end));
    lua_copy(lua, -1, lua_upvalueindex(3));
    lua_replace(lua, lua_upvalueindex(4));
    return PushCaptures(lua, pattern, 1, text, at, end);
  }
  // No more matches, also if called again.
  lua_pushinteger(lua, static_cast<lua_Integer>(text.size()) + 1);
  lua_replace(lua, lua_upvalueindex(3));
  return 0;
}

int MatchAll(lua_State* lua) {
  const std::string_view text = TextAt(lua, 1);
  TextAt(lua, 2);
  const std::size_t start = StartOffset(luaL_optinteger(lua, 3, 1), text.size());
  lua_settop(lua, 2);
  lua_pushinteger(lua, static_cast<lua_Integer>(std::min(start, text.size() + 1)));
  lua_pushinteger(lua, -1);
  lua_pushcclosure(lua, NextMatch, 4);
  return 1;
}

// Appends a replacement string, in which %1 is a capture, %0 the match and %% a percent sign.
void AddReplacement(lua_State* lua, luaL_Buffer& out, const ScriptPattern& pattern,
                    std::string_view text, std::size_t start, std::size_t end) {
  const std::string_view form = TextAt(lua, 3);
  ScriptState::Spend(lua, static_cast<std::int64_t>(form.size() / 16));
  for (std::size_t i = 0; i < form.size(); ++i) {
    if (form[i] != '%') {
      luaL_addchar(&out, form[i]);
      continue;
    }
    ++i;
    if (i < form.size() && form[i] == '%') {
      luaL_addchar(&out, '%');
    } else if (i < form.size() && form[i] == '0') {
      luaL_addlstring(&out, text.data() + start, end - start);
    } else if (i < form.size() && form[i] >= '1' && form[i] <= '9') {
      PushCapture(lua, pattern, form[i] - '1', text, start, end);
      luaL_tolstring(lua, -1, nullptr);
      lua_remove(lua, -2);
      luaL_addvalue(&out);
    } else {
      luaL_error(lua, "invalid use of '%%' in replacement string");
    }
  }
}

// Appends the replacement of a match: an expanded string, a table's value or a function's result;
// false and nil leave the match unchanged.
void AddValue(lua_State* lua, luaL_Buffer& out, const ScriptPattern& pattern, std::string_view text,
              std::size_t start, std::size_t end) {
  const int type = lua_type(lua, 3);
  if (type == LUA_TNUMBER || type == LUA_TSTRING) {
    AddReplacement(lua, out, pattern, text, start, end);
    return;
  }
  if (type == LUA_TTABLE) {
    PushCapture(lua, pattern, 0, text, start, end);
    lua_gettable(lua, 3);
  } else {
    lua_pushvalue(lua, 3);
    const int count = PushCaptures(lua, pattern, 1, text, start, end);
    lua_call(lua, count, 1);
  }
  if (lua_toboolean(lua, -1) == 0) {
    lua_pop(lua, 1);
    luaL_addlstring(&out, text.data() + start, end - start);
  } else if (lua_isstring(lua, -1) == 0) {
    luaL_error(lua, "invalid replacement value (a %s)", luaL_typename(lua, -1));
  } else {
    luaL_addvalue(&out);
  }
}

int Substitute(lua_State* lua) {
  const std::string_view text = TextAt(lua, 1);
  std::string_view what = TextAt(lua, 2);
  const int type = lua_type(lua, 3);
  luaL_argexpected(
      lua,
      type == LUA_TNUMBER || type == LUA_TSTRING || type == LUA_TTABLE || type == LUA_TFUNCTION, 3,
      "string/function/table");
  const lua_Integer limit = luaL_optinteger(lua, 4, static_cast<lua_Integer>(text.size()) + 1);
  const bool isAnchored = what.starts_with('^');
  if (isAnchored) what.remove_prefix(1);
  ScriptPattern pattern(text, what, ScriptState::Of(lua).Budget());
  luaL_Buffer out;
  luaL_buffinit(lua, &out);
  std::size_t at = 0;
  std::size_t lastEnd = ScriptPattern::kNone;
  lua_Integer count = 0;
  while (count < limit) {
    const std::size_t end = MatchAt(lua, pattern, at);
    if (end != ScriptPattern::kNone && end != lastEnd) {
      ++count;
      AddValue(lua, out, pattern, text, at, end);
      at = lastEnd = end;
    } else if (at < text.size()) {
      luaL_addchar(&out, text[at++]);
    } else {
      break;
    }
    if (isAnchored) break;
  }
  luaL_addlstring(&out, text.data() + at, text.size() - at);
  luaL_pushresult(&out);
  lua_pushinteger(lua, count);
  return 2;
}

// The original allocates nothing for an empty string, so no limit would apply to its loop.
int Repeat(lua_State* lua) {
  const std::string_view text = TextAt(lua, 1);
  const lua_Integer count = luaL_checkinteger(lua, 2);
  std::size_t separatorSize = 0;
  const char* separator = luaL_optlstring(lua, 3, "", &separatorSize);
  if (count <= 0 || text.size() + separatorSize == 0) {
    lua_pushliteral(lua, "");
    return 1;
  }
  const std::size_t each = text.size() + separatorSize;
  if (static_cast<lua_Unsigned>(count) > static_cast<std::size_t>(LUA_MAXINTEGER) / each) {
    return luaL_error(lua, "resulting string too large");
  }
  const std::size_t whole = each * static_cast<std::size_t>(count) - separatorSize;
  luaL_Buffer out;
  char* to = luaL_buffinitsize(lua, &out, whole);
  ScriptState::Spend(lua, count / 8);
  for (lua_Integer i = 1; i <= count; ++i) {
    std::memcpy(to, text.data(), text.size());
    to += text.size();
    if (i == count) break;
    std::memcpy(to, separator, separatorSize);
    to += separatorSize;
  }
  luaL_pushresultsize(&out, whole);
  return 1;
}

}  // namespace

void OpenScriptStrings(lua_State* lua) {
  lua_getglobal(lua, LUA_STRLIBNAME);
  lua_pushnil(lua);
  lua_setfield(lua, -2, "dump");
  const luaL_Reg functions[] = {{"find", Find},       {"match", Match}, {"gmatch", MatchAll},
                                {"gsub", Substitute}, {"rep", Repeat},  {nullptr, nullptr}};
  luaL_setfuncs(lua, functions, 0);
  lua_pop(lua, 1);
}

}  // namespace tarn::host
