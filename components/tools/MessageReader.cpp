#include "components/tools/MessageReader.h"

#include "platform/paths/Paths.h"

namespace tarn::tools {

namespace {

// Bounds the memory used if a program keeps entering folders.
constexpr std::size_t kMaxFolders = 100;

Severity SeverityOf(LineKind kind) {
  if (kind == LineKind::Error) return Severity::Error;
  return kind == LineKind::Warning ? Severity::Warning : Severity::Plain;
}

bool Fails(Failing failing, bool isErrorStream) {
  return failing == Failing::Always || (failing == Failing::OnErrorStream && isErrorStream);
}

}  // namespace

ToolMessage MessageReader::Read(const std::string& line, bool isErrorStream) {
  ToolMessage message;
  message.text = line;
  Diagnostic found;
  found.message = line;
  for (const auto& rules : lists_) {
    const auto effect = rules->Match(line, found);
    if (!effect) continue;
    const std::string file = found.file.empty() ? "" : Absolute(found.file);
    Change(effect->folder, file);
    if (effect->folder != FolderChange::None) break;
    message.severity = SeverityOf(found.kind);
    message.failsStep =
        message.severity == Severity::Error && Fails(effect->failing, isErrorStream);
    if (message.severity != Severity::Plain) message.content = found.message;
    message.file = file;
    message.line = found.line;
    break;
  }
  return message;
}

std::string MessageReader::Absolute(const std::string& file) const {
  const std::string full = IsRelativePath(file) ? JoinPath(folders_.back(), file) : file;
  return fileSystem_ == nullptr ? CanonicalPath(full) : fileSystem_->Canonical(full);
}

void MessageReader::Change(FolderChange change, const std::string& folder) {
  if (change == FolderChange::Enter && folders_.size() < kMaxFolders) folders_.push_back(folder);
  if (change == FolderChange::Leave && folders_.size() > 1) folders_.pop_back();
}

}  // namespace tarn::tools
