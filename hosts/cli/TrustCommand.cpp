#include <nlohmann/json.hpp>

#include "hosts/cli/Commands.h"
#include "hosts/cli/DisplayText.h"
#include "hosts/core/HostFolders.h"
#include "hosts/core/TrustedFolders.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"

namespace tarn::host {

namespace {

struct TrustOptions {
  bool list = false;
  bool revoke = false;
};

int Refuse(CommandContext& context, const Error& error) {
  context.Complain(context.ShowResolved(error.place) + ": " + Printable(error.text) + ".");
  return kExitCannotOpen;
}

int ListFolders(CommandContext& context, const TrustedFolders& trusted) {
  const auto list = trusted.Read();
  if (!list) return Refuse(context, list.GetError());
  if (context.Asked().json) {
    PrintJson(context, {{"folders", *list}, {"file", trusted.GetPath()}});
    return kExitDone;
  }
  for (const std::string& each : *list) context.Out().PrintLine(Printable(each));
  return kExitDone;
}

// Returns the folder of a project file, or the folder itself. Returns an empty string after
// printing the error if there is none; a deleted folder can still be removed from the list.
std::string FindFolder(CommandContext& context, const TrustedFolders& trusted) {
  std::string path = context.Asked().project;
  if (path.empty() || IsRelativePath(path)) path = JoinPath(context.StartFolder(), path);
  path = context.Files().Canonical(path);
  if (path.size() > 1 && path.ends_with(kSeparator)) path.pop_back();
  if (EqualNoCase(ExtensionOf(path), ".tprj") && context.Files().Examine(path)) {
    path = FolderOf(context.Files().ResolveLinks(path));
  }
  const bool isListed = context.Own<TrustOptions>().revoke && trusted.Find(path) == path;
  if (isListed || context.Files().IsFolder(path)) return context.Files().ResolveLinks(path);
  if (const std::string why = context.WhyUnusable(path); !why.empty()) {
    context.Complain(context.ShowFailure(path, "trusted", why) + ".");
    return {};
  }
  context.Complain(context.Show(path) + " is neither a folder nor a project file.");
  return {};
}

void Report(CommandContext& context, const std::string& folder, const std::string& line,
            bool isTrusted, bool hasChanged) {
  if (context.Asked().json) {
    PrintJson(context, {{"folder", folder}, {"trusted", isTrusted}, {"changed", hasChanged}});
  } else if (!context.Asked().quiet) {
    context.Out().PrintLine(Printable(line));
  }
}

int Revoke(CommandContext& context, TrustedFolders& trusted, const std::string& folder) {
  const Status removed = trusted.Remove(folder);
  const bool isUnlisted = !removed && removed.GetError().code == ErrorCode::NotFound;
  if (!removed && !isUnlisted) return Refuse(context, removed.GetError());
  const std::string above = trusted.Find(folder);
  if (!above.empty()) {
    context.Remark(folder + " is still trusted because it is in " + above +
                   ". `tarn trust --revoke " + above + "` removes that from the list.");
  }
  const std::string line =
      isUnlisted ? folder + " was not in the list" : "no longer trusted: " + folder;
  Report(context, folder, line, !above.empty(), !isUnlisted);
  return kExitDone;
}

int RunTrust(CommandContext& context) {
  const HostFolders folders = HostFolders::FromEnvironment(context.Files());
  TrustedFolders trusted(context.Files(), folders.state);
  if (context.Own<TrustOptions>().list) return ListFolders(context, trusted);
  const std::string folder = FindFolder(context, trusted);
  if (folder.empty()) return kExitUsage;
  if (context.Own<TrustOptions>().revoke) return Revoke(context, trusted, folder);
  const bool wasTrusted = !trusted.Find(folder).empty();
  if (const Status added = trusted.Add(folder); !added) return Refuse(context, added.GetError());
  Report(context, folder, (wasTrusted ? "already trusted: " : "trusted: ") + folder, true,
         !wasTrusted);
  return kExitDone;
}

}  // namespace

CommandSpec TrustCommand() {
  return {
      .name = "trust",
      .group = CommandGroup::Integration,
      .help = "Let projects in a folder run programs and write outside it",
      .examples = {{"tarn trust", "the current folder and everything below it"},
                   {"tarn trust --list", "show what is trusted"},
                   {"tarn trust --revoke vendor", "stop trusting this folder"}},
      .declare =
          [](CommandArguments& arguments) {
            TrustOptions& own = arguments.Own<TrustOptions>();
            const Argument path =
                arguments
                    .Positional("PROJECT", arguments.Common().project,
                                "Folder, with everything below it, or that of a project file")
                    .NotEmpty();
            const Argument revoke =
                arguments.Flag("--revoke", own.revoke, "Stop trusting the folder");
            arguments.Flag("--list", own.list, "Show the trusted folders")
                .Excludes(path)
                .Excludes(revoke);
          },
      .run = RunTrust,
  };
}

}  // namespace tarn::host
