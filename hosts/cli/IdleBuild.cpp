#include "hosts/cli/IdleBuild.h"

#include <cstdint>
#include <string_view>

#include "hosts/core/Surroundings.h"
#include "platform/modules/Modules.h"
#include "platform/paths/Paths.h"
#include "platform/settings/Settings.h"
#include "platform/text/Hash.h"

namespace tarn::host {

namespace {

// Number of files with answers. A hash of command line and folder selects one, and the last build
// replaces it, so the files don't accumulate.
constexpr std::uint64_t kSlots = 64;

std::string JoinWords(const std::vector<std::string>& words) {
  std::string text = TARN_VERSION;
  for (const std::string& word : words) text.append(1, '\0').append(word);
  return text;
}

std::string BytesOf(std::uint64_t hash) {
  return {reinterpret_cast<const char*>(&hash), sizeof hash};
}

}  // namespace

IdleBuild::IdleBuild(const std::vector<std::string>& words)
    : disk_(FileSystem::Native()),
      key_(BytesOf(HashBytes(JoinWords(words), HashBytes(DescribeSurroundings())))) {
  const std::string state = SettingsFolders::FromEnvironment().userState;
  const std::uint64_t slot = HashBytes(JoinWords(words), HashBytes(disk_.CurrentFolder())) % kSlots;
  if (!state.empty()) path_ = JoinPath(state, "idle/" + std::to_string(slot) + ".answers");
}

bool IdleBuild::IsRepeated() {
  if (path_.empty()) return false;
  const Result<std::string> kept = disk_.ReadOwnFile(path_);
  return kept && kept->starts_with(key_) &&
         AreSameAnswers(disk_, std::string_view(*kept).substr(key_.size()));
}

void IdleBuild::Record() {
  // Before the recording, which the new folder would make incomplete.
  if (path_.empty() || !disk_.CreateFolders(FolderOf(path_))) return;
  // Never destroyed: threads may still use it while the process exits.
  recorder_ = std::make_unique<RecordingFileSystem>(disk_).release();
  FileSystem::ReplaceNative(*recorder_);
  // A new version of the program may decide differently.
  static constexpr char kInProgram = 0;
  for (const void* const place :
       {static_cast<const void*>(&kInProgram), reinterpret_cast<const void*>(&ModuleFolder)}) {
    static_cast<void>(recorder_->Examine(ModulePathOf(place)));
  }
}

void IdleBuild::Keep() {
  if (recorder_ == nullptr) return;
  if (const auto answers = recorder_->GetAnswers()) {
    static_cast<void>(disk_.WriteOwnFile(path_, key_ + *answers));
  }
}

}  // namespace tarn::host
