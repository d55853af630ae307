#include <nlohmann/json.hpp>

#include "hosts/cli/Commands.h"
#include "hosts/cli/DisplayText.h"
#include "hosts/core/TargetPackages.h"
#include "platform/automation/ClassStore.h"
#include "platform/automation/ServerLibrary.h"
#include "platform/modules/Modules.h"
#include "platform/paths/Paths.h"

namespace tarn::host {

namespace {

struct RegisterOptions {
  bool forAll = false;  // --system
};

constexpr const char* kServerClass = "TarnProjectManager.ProjectManager";

std::string ToString(ClassScope scope) {
  return scope == ClassScope::User ? "this user" : "all users";
}

std::string TargetsFolder(CommandContext& context) {
  const std::string root = HostFolders::FromEnvironment(context.Files()).application;
  return CanonicalPath(JoinPath(root, "targets"));
}

int ComplainOf(CommandContext& context, const char* what, bool adds, const Error& failure) {
  context.Complain(
      std::string(what) + " can't be " + (adds ? "registered" : "unregistered") + ": " +
      failure.place + ": " + failure.text +
      (context.Own<RegisterOptions>().forAll ? ". --system requires root privileges." : ""));
  return kExitCannotOpen;
}

// Registers or unregisters the server of this installation by calling the library's own entry
// point. Returns 0, or an exit code after printing the error.
int CallServer(CommandContext& context, bool adds) {
  const std::string library = ModuleFolder() + "/" + ModuleFileName("TarnProjectManager");
  const auto code = CallServerEntry(library, adds ? "DllRegisterServer" : "DllUnregisterServer");
  if (!code) {
    context.Complain("This installation is incomplete: " + code.GetError().text);
    return kExitCannotOpen;
  }
  if (*code == 0) return kExitDone;
  return ComplainOf(context, "The server", adds, ClassStore::Native().LastFailure());
}

// Prints one line that reports what was done.
void PrintDone(CommandContext& context, bool adds, bool wasThere, bool changed,
               const std::string& what) {
  const std::string done = adds ? (changed ? "registered" : "already registered")
                                : (wasThere ? "unregistered" : "wasn't registered");
  context.Out().PrintLine(done + " for " + ToString(ClassStore::Native().GetScope()) + "  " + what);
}

// After unregistering: reports a registration in the other scope, if there is one.
void PrintWhatIsLeft(CommandContext& context, ClassStore& store) {
  const auto left = store.FindLibrary(kServerClass);
  if (!left) return;
  const bool forAll = store.GetScope() == ClassScope::User;
  context.Remark("It is still registered for " +
                 ToString(forAll ? ClassScope::Machine : ClassScope::User) + ", as " +
                 Printable(*left));
}

int RunRegister(CommandContext& context, bool adds) {
  ClassStore& store = ClassStore::Native();
  store.SetScope(context.Own<RegisterOptions>().forAll ? ClassScope::Machine : ClassScope::User);
  const std::string folder = TargetsFolder(context);
  TargetPackages targets(context.Files(), store.GetPath(), folder);
  const auto before = store.FindLibraryInScope(kServerClass);
  const std::vector<std::string> targetsBefore = targets.ListRegistered();
  if (const int code = CallServer(context, adds); code != kExitDone) return code;
  if (const Status done = adds ? targets.Register() : targets.Unregister(); !done) {
    return ComplainOf(context, "The targets", adds, done.GetError());
  }
  const auto after = store.FindLibraryInScope(kServerClass);
  const std::vector<std::string> targetsAfter = targets.ListRegistered();
  if (context.Asked().json) {
    PrintJson(context, {{"class", kServerClass},
                        {"scope", context.Own<RegisterOptions>().forAll ? "system" : "user"},
                        {"registered", after.has_value()},
                        {"library", after.value_or("")},
                        {"targets", targetsAfter},
                        {"changed", before != after || targetsBefore != targetsAfter}});
    return kExitDone;
  }
  if (!context.Asked().quiet) {
    const std::string library = Printable((adds ? after : before).value_or(""));
    PrintDone(context, adds, before.has_value(), before != after,
              std::string(kServerClass) + (library.empty() ? "" : "  " + library));
    if (!targetsBefore.empty() || !targetsAfter.empty()) {
      PrintDone(context, adds, true, targetsBefore != targetsAfter,
                "targets  " + Printable(folder));
    }
  }
  if (!adds) PrintWhatIsLeft(context, store);
  return kExitDone;
}

void DeclareRegister(CommandArguments& arguments) {
  arguments.Flag("--system", arguments.Own<RegisterOptions>().forAll,
                 "For all users of this computer");
}

}  // namespace

CommandSpec RegisterCommand() {
  return {
      .name = "register",
      .group = CommandGroup::Integration,
      .help = "Register this installation's server",
      .examples = {{"tarn register", "for this user"},
                   {"tarn register --system", "for all users; as root"}},
      .declare = DeclareRegister,
      .run = [](CommandContext& context) { return RunRegister(context, true); },
  };
}

CommandSpec UnregisterCommand() {
  return {
      .name = "unregister",
      .group = CommandGroup::Integration,
      .help = "Unregister this installation's server",
      .declare = DeclareRegister,
      .run = [](CommandContext& context) { return RunRegister(context, false); },
  };
}

}  // namespace tarn::host
