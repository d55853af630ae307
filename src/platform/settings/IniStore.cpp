#include "platform/settings/IniStore.h"

#include "platform/paths/Paths.h"

namespace tarn {

IniFile ReadIniStore(FileSystem& files, const std::string& path) {
  const Result<std::string> text = files.ReadWholeFile(path);
  return text ? IniFile(*text) : IniFile();
}

Status EditIniStore(FileSystem& files, const std::string& path,
                    const std::function<bool(IniFile& store)>& edit) {
  const Result<std::string> before = files.ReadWholeFile(path);
  if (!before && before.GetError().code != ErrorCode::NotFound) return before.GetError();
  IniFile store = before ? IniFile(*before) : IniFile();
  if (!edit(store)) return Error{ErrorCode::InvalidName, "a line can't hold that value", path};
  const std::string after = store.ToText();
  if (after == (before ? *before : std::string())) return {};
  if (const Status made = files.CreateFolders(FolderOf(path)); !made) return made;
  return files.WriteWholeFile(path, after);
}

}  // namespace tarn
