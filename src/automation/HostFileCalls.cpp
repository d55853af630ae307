#include "automation/HostFileCalls.h"

#include "output/MessageTable.h"
#include "platform/paths/Paths.h"
#include "platform/settings/IniFile.h"
#include "platform/text/Text.h"
#include "project/FileAccess.h"

namespace tarn {

namespace {

// Capacity of a caller's buffer of 260 bytes without the terminating zero.
constexpr std::size_t kLongestIniValue = 259;

}  // namespace

std::string HostFileCalls::WholePath(const std::string& path) const {
  return IsRelativePath(path) ? JoinPath(model_.GetFiles().CurrentFolder(), path) : path;
}

std::string HostFileCalls::ReadIniValue(const char* section, const char* key,
                                        const char* iniPath) const {
  const Result<std::string> text = model_.GetFiles().ReadWholeFile(OrEmpty(iniPath));
  if (!text || section == nullptr || key == nullptr) return {};
  std::string value = IniFile(*text).Read(section, key).value_or(std::string());
  if (value.size() > kLongestIniValue) value.resize(kLongestIniValue);
  return value;
}

// Returns true if an untrusted project requests access to a file outside its folder. The refusal is
// logged.
bool HostFileCalls::RefusesIniFile(const std::string& path) {
  const std::string whole = WholePath(path);
  ProjectTrust& trust = model_.Protection().GetTrust();
  if (model_.Protection().MayWriteOutside() || !trust.RefusesWrite(whole)) return false;
  trust.Refuse(trust.RequestFor(TrustRequestKind::Write, whole));
  model_.Services().output->WriteMessage(
      kRowCannotSave, {whole}, "it is outside the folder of the project, which is not trusted");
  return true;
}

void HostFileCalls::WriteIniValue(const char* section, const char* key, const char* value,
                                  const char* iniPath) {
  const std::string path = OrEmpty(iniPath);
  if (path.empty() || section == nullptr) return;
  if (RefusesIniFile(path)) return;
  FileSystem& files = model_.GetFiles();
  GetFileAccess(files, path, kMustBeWritable | kCreateFolder);
  const Result<std::string> text = files.ReadWholeFile(path);
  const bool isNew = !text && text.GetError().code == ErrorCode::NotFound;
  IniFile store = text ? IniFile(*text) : IniFile();
  Status saved = text || isNew ? Status() : Status(text.GetError());
  if (saved && key == nullptr) {
    store.RemoveSection(section);
  } else if (saved && value == nullptr) {
    store.Remove(section, key);
  } else if (saved && !store.Write(section, key, value)) {
    saved = Error{ErrorCode::InvalidName, "it has no form for that value", path};
  }
  if (saved) saved = files.WriteWholeFile(path, store.ToText());
  if (!saved) {
    model_.Services().output->WriteMessage(kRowCannotSave, {path}, saved.GetError().text);
  }
}

std::string HostFileCalls::CheckScript(const std::string& path) {
  const std::string whole = WholePath(path);
  ProjectTrust& trust = model_.Protection().GetTrust();
  if (!trust.RefusesProgram(whole)) return {};
  const TrustRequest request{TrustRequestKind::Script, whole};
  trust.Refuse(request);
  return "the project wants to " + Describe(request) + ", and its folder is not trusted";
}

std::int32_t HostFileCalls::ExecuteScript(const std::string& path) {
  if (const std::string refusal = CheckScript(path); !refusal.empty()) {
    model_.Host().AddLogError(refusal);
    return 0;
  }
  const Result<std::string> script = model_.GetFiles().ReadWholeFile(path);
  if (!script) return script.GetError().code == ErrorCode::Io ? 1 : 0;
  model_.Host().SendHost(kMsgRunScript, *script, 0);
  return 1;
}

}  // namespace tarn
