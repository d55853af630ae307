#include "output/LogFile.h"

#include <string_view>
#include <utility>

namespace tarn {
namespace {

constexpr std::string_view kEmptyElementEnd = "/>";

// What stands behind the last child of a top element, as the writer ends it.
std::string ClosingOf(const CXmlNode& root) {
  return "\r\n</" + root.GetName() + ">";
}

bool SameStatus(const std::optional<FileStatus>& a, const FileStatus& b) {
  return a && a->size == b.size && a->modifiedSeconds == b.modifiedSeconds;
}

}  // namespace

void LogFileWriter::Save(const std::string& path, const std::string& head, const CXmlNode& root) {
  if (!Continue(path, head, root)) WriteWhole(path, head, root);
}

bool LogFileWriter::Continue(const std::string& path, const std::string& head,
                             const CXmlNode& root) {
  if (!last || last->path != path || last->head != head) return false;
  if (root.GetChildCount() == last->children) return SameStatus(disk.Examine(path), last->status);

  Written written = *std::exchange(last, std::nullopt);
  const std::string closing = ClosingOf(root);
  // The first child opens the element that an empty tree closes at once.
  std::string tail = written.children == 0 ? ">" : "";
  for (int i = written.children; i < root.GetChildCount(); ++i) {
    root.GetChild(i)->AppendText(tail, g_xmlDisplayOptions, 1);
  }
  tail += closing;
  const Result<FileStatus> status = disk.ContinueFile(path, written.status, written.keep, tail);
  const std::uint64_t size = written.keep + tail.size();
  if (!status || status->size != size) return false;
  written.children = root.GetChildCount();
  written.keep = size - closing.size();
  written.status = *status;
  last = std::move(written);
  return true;
}

void LogFileWriter::WriteWhole(const std::string& path, const std::string& head,
                               const CXmlNode& root) {
  last.reset();
  std::string text = head;
  root.AppendText(text, g_xmlDisplayOptions, 0);
  if (!disk.WriteScratchFile(path, text)) return;
  // Somebody else may have been at the file already; the next save is a whole one then.
  const std::optional<FileStatus> status = disk.Examine(path);
  if (!status || status->size != text.size()) return;
  const int children = root.GetChildCount();
  const std::size_t end = children == 0 ? kEmptyElementEnd.size() : ClosingOf(root).size();
  last = Written{path, head, children, text.size() - end, *status};
}

}  // namespace tarn
