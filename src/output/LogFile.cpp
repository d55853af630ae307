#include "output/LogFile.h"

#include <string_view>
#include <utility>

#include "xml/XmlEscape.h"
#include "xml/XmlNode.h"

namespace tarn {
namespace {

constexpr std::string_view kEmptyElementEnd = "/>";

// Returns the markup after the last child of a top element, as the XML writer ends it.
std::string ClosingOf(const CXmlNode& root) {
  return "\r\n</" + root.GetName() + ">";
}

bool SameStatus(const std::optional<FileStatus>& a, const FileStatus& b) {
  return a && a->size == b.size && a->modifiedSeconds == b.modifiedSeconds;
}

bool HoldsMarkup(const CXmlNode& node) {
  const bool isText = node.GetType() == XmlElement;
  if (isText && FindBareMarkup(node.ValueView(), 0) != std::string_view::npos) return true;
  for (int i = 0; i < node.GetChildCount(); ++i) {
    if (HoldsMarkup(*node.GetChild(i))) return true;
  }
  return false;
}

void EncodeMarkup(CXmlNode& node) {
  if (node.GetType() == XmlElement) {
    std::string text = node.GetValue();
    for (std::size_t at = 0; (at = FindBareMarkup(text, at)) != text.npos;) {
      text.replace(at, 1, "&lt;");
    }
    node.SetValue(text);
  }
  for (CXmlNode* const child : node.GetChildren()) EncodeMarkup(*child);
}

// Appends the node as the XML writer does, but encodes a "<" in element text, which a path or the
// host may contain: in the file it can't be distinguished from a tag unless a backslash protects
// it.
void AppendElement(const CXmlNode& node, std::string& text, int depth) {
  if (!HoldsMarkup(node)) return node.AppendText(text, g_xmlDisplayOptions, depth);
  CXmlNode encoded;
  encoded.CopyFrom(node);
  EncodeMarkup(encoded);
  encoded.AppendText(text, g_xmlDisplayOptions, depth);
}

}  // namespace

Status LogFileWriter::Save(const std::string& path, const std::string& head, const CXmlNode& root) {
  return Continue(path, head, root) ? Status() : WriteWhole(path, head, root);
}

bool LogFileWriter::Continue(const std::string& path, const std::string& head,
                             const CXmlNode& root) {
  if (!last_ || last_->path != path || last_->head != head) return false;
  if (root.GetChildCount() == last_->children)
    return SameStatus(disk_.Examine(path), last_->status);

  Written written = *std::exchange(last_, std::nullopt);
  const std::string closing = ClosingOf(root);
  // An empty tree is written as an empty-element tag; the first child opens it.
  std::string tail = written.children == 0 ? ">" : "";
  for (int i = written.children; i < root.GetChildCount(); ++i) {
    AppendElement(*root.GetChild(i), tail, 1);
  }
  tail += closing;
  const Result<FileStatus> status = disk_.ContinueFile(path, written.status, written.keep, tail);
  const std::uint64_t size = written.keep + tail.size();
  if (!status || status->size != size) return false;
  written.children = root.GetChildCount();
  written.keep = size - closing.size();
  written.status = *status;
  last_ = std::move(written);
  return true;
}

Status LogFileWriter::WriteWhole(const std::string& path, const std::string& head,
                                 const CXmlNode& root) {
  last_.reset();
  std::string text = head;
  AppendElement(root, text, 0);
  if (Status written = disk_.WriteScratchFile(path, text); !written) return written;
  // Another process may already have changed the file; the next save then rewrites it.
  const std::optional<FileStatus> status = disk_.Examine(path);
  if (!status || status->size != text.size()) return {};
  const int children = root.GetChildCount();
  const std::size_t end = children == 0 ? kEmptyElementEnd.size() : ClosingOf(root).size();
  last_ = Written{path, head, children, text.size() - end, *status};
  return {};
}

}  // namespace tarn
