#include <string>
#include <vector>

#include "hosts/cli/Commands.h"
#include "hosts/cli/DisplayText.h"
#include "platform/files/FileTexts.h"
#include "platform/paths/Paths.h"

namespace tarn::host {

namespace {

struct MergeFileOptions {
  std::string base, ours, theirs;  // files
};

// Returns the exit code that version control expects of a merge driver: 0 if the file is merged, 1
// if it has conflicts.
int RunMergeFile(CommandContext& context) {
  // Starting the server changes the working folder.
  MergeFileOptions own = context.Own<MergeFileOptions>();
  for (std::string* path : {&own.base, &own.ours, &own.theirs}) {
    if (IsRelativePath(*path)) *path = JoinPath(context.StartFolder(), *path);
  }
  if (const int code = context.StartSession(); code != kExitDone) return code;
  std::vector<std::string> texts;
  for (const std::string& path : {own.base, own.theirs, own.ours}) {
    auto text = context.Files().ReadWholeFile(path);
    if (!text) {
      context.Complain(context.ShowFailure(path, "read", text.GetError().text) + ".");
      return kExitCannotOpen;
    }
    texts.push_back(std::move(*text));
  }
  const auto list =
      SplitFileTexts(context.Session().Inspector().MergeTexts(texts[0], texts[1], texts[2]));
  if (!list || list->empty() || list->front().path != "text") {
    const std::string side = list && !list->empty() ? list->front().text : std::string();
    context.Complain(context.ShowResolved(side == "base"     ? own.base
                                          : side == "theirs" ? own.theirs
                                                             : own.ours) +
                     " is damaged; nothing was merged.");
    return kExitCannotOpen;
  }
  const std::string& merged = list->front().text;
  if (merged != texts[2]) {
    const Status written = context.Files().WriteWholeFile(own.ours, merged);
    if (!written) {
      context.Complain(context.ShowFailure(own.ours, "written", written.GetError().text) + ".");
      return kExitCannotOpen;
    }
  }
  std::vector<std::string> lines;
  for (std::size_t i = 1; i < list->size(); ++i) {
    const FileText& each = (*list)[i];
    lines.push_back("  " + Printable(each.path.empty() ? "the file itself" : each.path) + ": " +
                    Printable(each.text));
  }
  if (lines.empty()) return kExitDone;
  context.Complain("Both sides have changed, and OURS is kept:", lines);
  return kExitBuildFailed;
}

}  // namespace

CommandSpec MergeFileCommand() {
  return {
      .name = "merge-file",
      .group = CommandGroup::Integration,
      .help = "Merge two versions of a file of a project, for version control",
      .examples = {{"tarn merge-file base.tapp ours.tapp theirs.tapp", "as git calls it"}},
      .declare =
          [](CommandArguments& arguments) {
            MergeFileOptions& own = arguments.Own<MergeFileOptions>();
            arguments.Positional("BASE", own.base, "The version that both were made from")
                .Required();
            arguments.Positional("OURS", own.ours, "One version; receives the result").Required();
            arguments.Positional("THEIRS", own.theirs, "The other version").Required();
          },
      .run = RunMergeFile,
  };
}

}  // namespace tarn::host
