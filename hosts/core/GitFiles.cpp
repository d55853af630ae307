#include "hosts/core/GitFiles.h"

#include "platform/paths/Paths.h"

namespace tarn::host {

namespace {

struct GitFile {
  const char* name;
  const char* text;
};

constexpr GitFile kFiles[] = {
    {".gitignore",
     "# Build outputs\n"
     "/build/\n"
     "*.tstate\n"
     "*.tlog\n"
     "*.tlock\n"
     "*-Globals.*.xml\n"
     "# Copies of files that were replaced or could not be written\n"
     "*.bak\n"
     "*.orig\n"
     "*.unsaved\n"
     "# Left by programs that were killed\n"
     ".tarn-*\n"},
    {".gitattributes",
     "# Tarn writes these with CR LF, and keeps LF where a file has it\n"
     "*.tprj text eol=crlf merge=tarn\n"
     "*.tapp text eol=crlf merge=tarn\n"},
};

}  // namespace

Result<bool> IsInGitRepository(FileSystem& files, const std::string& folder) {
  for (std::string each = folder; !each.empty(); each = FolderOf(each)) {
    Result<bool> exists = files.CheckExists(JoinPath(each, ".git"));
    if (!exists || *exists) return exists;
    if (FolderOf(each) == each) break;
  }
  return false;
}

std::vector<NewFile> MakeGitFiles(const std::string& folder) {
  std::vector<NewFile> list;
  for (const GitFile& each : kFiles) list.push_back({JoinPath(folder, each.name), each.text, true});
  return list;
}

}  // namespace tarn::host
