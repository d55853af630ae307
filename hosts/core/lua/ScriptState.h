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

// A method of the server as seen by a script.
struct ScriptMethod {
  std::string name;
  DispatchId id = 0;
  std::vector<std::string> arguments;
};

// One run of a script: an interpreter that contains only functions covered by the limits.
//
// The interpreter leaves its functions with longjmp, skipping all destructors. So a function called
// by it must not have an object with a destructor on the stack; such objects are members of this
// class.
class ScriptState {
 public:
  ScriptState(ScriptRunner& scriptRunner, IDispatch& serverObject);
  ScriptState(const ScriptState&) = delete;
  ScriptState& operator=(const ScriptState&) = delete;
  ~ScriptState();

  // Runs the script. Returns an empty string on success, else the error with name and line.
  std::string Run(const std::string& text, const std::string& name);

  static ScriptState& Of(lua_State* lua) {
    return **static_cast<ScriptState**>(lua_getextraspace(lua));
  }
  // Charges steps and aborts the script if the budget is exhausted; for functions that take long by
  // themselves.
  static void Spend(lua_State* lua, std::int64_t steps);
  // Checks the budget immediately; for functions that return from outside the interpreter.
  static void Check(lua_State* lua);
  // Raises the error that ends the script and can't be caught.
  static int Abort(lua_State* lua);

  ScriptBudget& Budget() { return budget_; }
  ScriptHost* Host();
  IDispatch& Server() { return *server_.Get(); }
  const std::vector<ScriptMethod>& Methods() const { return methods_; }
  const ScriptMethod* FindMethod(DispatchId id) const;

  // Shows a text and writes it to the server's log, line by line.
  void Print(std::string_view text) noexcept;
  // Writes the text to the log only.
  void Report(const std::string& text) noexcept;
  // Calls `method` with `arguments` and stores the outcome in `result`, or in `problem` on error.
  bool Call() noexcept;

  // The call that the script is currently making.
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
  void RecordPosition();
  std::string ErrorText(int status);

  ScriptRunner& runner_;
  ScriptBudget& budget_;
  DispatchPtr server_;
  std::vector<ScriptMethod> methods_;
  lua_State* lua_ = nullptr;
  std::string wholeText_;
  std::string chunkName_;
  bool isEnding_ = false;
  char lastPlace_[LUA_IDSIZE + 24] = "";  // where memory ran out or the abort was raised
};

// The following functions fill the environment of a new interpreter. Adds the language's standard
// library, restricted and with limits.
void OpenScriptLibrary(lua_State* lua);
// Adds the string functions; called by OpenScriptLibrary.
void OpenScriptStrings(lua_State* lua);
// Adds the table `tarn` with the server's methods, and `print`.
void OpenScriptDispatch(lua_State* lua);
// Adds the table `host` with the host's services.
void OpenScriptHost(lua_State* lua);

}  // namespace tarn::host
