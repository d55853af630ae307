#include <nlohmann/json.hpp>

#include "hosts/cli/Commands.h"
#include "hosts/cli/DisplayText.h"
#include "platform/automation/ClassStore.h"
#include "platform/automation/ServerLibrary.h"

namespace tarn::host {

namespace {

constexpr const char* kServerClass = "TarnProjectManager.ProjectManager";

std::string WordOf(ClassScope scope) {
  return scope == ClassScope::User ? "this user" : "all users";
}

// The server knows itself what there is to write; it is this installation's own, whichever is
// registered. 0, or an exit code with everything said.
int CallServer(CommandContext& context, bool adds) {
  const std::string library = ModuleFolder() + "/libTarnProjectManager.so";
  const auto code = CallServerEntry(library, adds ? "DllRegisterServer" : "DllUnregisterServer");
  if (!code) {
    context.Complain("This installation isn't complete: " + code.GetError().text);
    return kExitCannotOpen;
  }
  if (*code == 0) return kExitDone;
  const ClassStore& store = ClassStore::Native();
  const Error& failure = store.LastFailure();
  context.Complain("The server can't be " + std::string(adds ? "registered" : "unregistered") +
                   ": " + failure.place + ": " + failure.text +
                   (context.Asked().forAll ? ". --system needs the rights of root." : ""));
  return kExitCannotOpen;
}

// What holds behind an unregistration: the other scope may still know the class.
void TellWhatIsLeft(CommandContext& context, ClassStore& store) {
  const auto left = store.FindLibrary(kServerClass);
  if (!left) return;
  const bool forAll = store.GetScope() == ClassScope::User;
  context.Remark("It is still registered for " +
                 WordOf(forAll ? ClassScope::Machine : ClassScope::User) + ", as " +
                 Printable(*left));
}

}  // namespace

int RunRegister(CommandContext& context) {
  const bool adds = context.Asked().command == "register";
  ClassStore& store = ClassStore::Native();
  store.SetScope(context.Asked().forAll ? ClassScope::Machine : ClassScope::User);
  const auto before = store.FindLibraryInScope(kServerClass);
  if (const int code = CallServer(context, adds); code != kExitDone) return code;
  const auto after = store.FindLibraryInScope(kServerClass);
  if (context.Asked().json) {
    PrintJson(context, {{"class", kServerClass},
                        {"scope", context.Asked().forAll ? "system" : "user"},
                        {"registered", after.has_value()},
                        {"library", after.value_or("")},
                        {"changed", before != after}});
    return kExitDone;
  }
  if (!context.Asked().quiet) {
    const std::string library = Printable((adds ? after : before).value_or(""));
    const std::string what = adds ? (before == after ? "already registered" : "registered")
                                  : (before ? "unregistered" : "wasn't registered");
    context.Out().PrintLine(what + " for " + WordOf(store.GetScope()) + "  " + kServerClass +
                            (library.empty() ? "" : "  " + library));
  }
  if (!adds) TellWhatIsLeft(context, store);
  return kExitDone;
}

}  // namespace tarn::host
