#pragma once

#include <lua.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "hosts/core/lua/ScriptBudget.h"
#include "hosts/core/lua/ScriptHost.h"
#include "platform/automation/Dispatch.h"

namespace tarn::host {

class ScriptRunner;

// One method of the server as a script calls it.
struct ScriptMethod {
  std::string name;
  DispatchId id = 0;
  std::vector<std::string> arguments;
};

// One run of a script: an interpreter with nothing in it but what the bounds hold for.
//
// The interpreter leaves its functions by a jump, past all destructors. So no function that it
// calls keeps an object with a destructor on the stack; such objects live here.
class ScriptState {
 public:
  ScriptState(ScriptRunner& scriptRunner, IDispatch& serverObject);
  ScriptState(const ScriptState&) = delete;
  ScriptState& operator=(const ScriptState&) = delete;
  ~ScriptState();

  // Runs the text. Empty when it ended well, else what went wrong, with name and line.
  std::string Run(const std::string& text, const std::string& name);

  static ScriptState& Of(lua_State* lua) {
    return **static_cast<ScriptState**>(lua_getextraspace(lua));
  }
  // Ends the script when it has had enough; for functions that take long by themselves.
  static void Spend(lua_State* lua, std::int64_t steps);
  // The same at once, for functions that come back from outside.
  static void Check(lua_State* lua);
  // Raises the error that ends the script for good.
  static int Abort(lua_State* lua);

  ScriptBudget& Budget() { return budget; }
  ScriptHost* Host();
  IDispatch& Server() { return *server.Get(); }
  const std::vector<ScriptMethod>& Methods() const { return methods; }
  const ScriptMethod* FindMethod(DispatchId id) const;

  // Shows a text and writes it to the log of the server, a line at a time.
  void Print(std::string_view text) noexcept;
  // Writes it to the log alone.
  void Report(const std::string& text) noexcept;
  // Calls `method` with `arguments`; `result` or `problem` tells how it went.
  bool Call() noexcept;

  // Of the call that a script makes at present.
  const ScriptMethod* method = nullptr;
  std::vector<Variant> arguments;
  Variant result;
  std::string problem;
  ScriptBuild build;
  std::string hostText;

 private:
  static void* Allocate(void* context, void* block, std::size_t oldSize, std::size_t newSize);
  static void OnCount(lua_State* lua, lua_Debug*);
  static int SetUp(lua_State* lua);
  static int OnError(lua_State* lua);
  void CallServer();
  void NotePlace();
  std::string ErrorText(int status);

  ScriptRunner& runner;
  ScriptBudget& budget;
  DispatchPtr server;
  std::vector<ScriptMethod> methods;
  lua_State* lua = nullptr;
  std::string wholeText;
  std::string chunkName;
  bool isEnding = false;
  char lastPlace[LUA_IDSIZE + 24] = "";  // where memory ran out or the end was decided
};

// Puts into the environment of a new interpreter:
// the language's own functions, less and with bounds;
void OpenScriptLibrary(lua_State* lua);
// those for texts, called by the former;
void OpenScriptStrings(lua_State* lua);
// the server's methods as the table `tarn`, and `print`;
void OpenScriptDispatch(lua_State* lua);
// what the host can do, as the table `host`.
void OpenScriptHost(lua_State* lua);

}  // namespace tarn::host
