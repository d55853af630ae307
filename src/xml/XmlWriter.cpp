#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "xml/XmlNode.h"

namespace tarn {
namespace {

// Serializes a tree into one growing buffer in a single pass. Open elements are kept on an explicit
// stack of levels, so that call depth doesn't depend on the depth of the tree.
class XmlWriter {
 public:
  XmlWriter(std::string& buffer, const CXmlDisplayOptions& displayOptions)
      : out_(buffer),
        options_(displayOptions),
        encoder_(options_.encodeEntities ? options_.entityTable : nullptr),
        valueStart_{'=', options_.quoteChar},
        valueEnd_{options_.quoteChar, ' '} {}

  void Write(const CXmlNode& root, int depth) {
    startDepth_ = depth;
    Open(root);
    while (!levels_.empty()) {
      const CXmlNode& node = *levels_.back().node;
      if (const CXmlNode* child = node.GetChild(levels_.back().nextChild)) {
        ++levels_.back().nextChild;
        Open(*child);
      } else {
        CloseParent(node);
        levels_.pop_back();
      }
    }
  }

 private:
  struct Level {
    const CXmlNode* node;
    int nextChild;
  };

  // A nameless element would be read as the close tag of its parent, so it isn't written.
  static bool IsWritten(const CXmlNode& node) {
    return node.GetType() != XmlElement || !node.NameView().empty();
  }

  static bool HasWrittenChildren(const CXmlNode& node) {
    for (int i = 0; const CXmlNode* child = node.GetChild(i); ++i) {
      if (IsWritten(*child)) return true;
    }
    return false;
  }

  // Writes a complete node, or writes the start tag of a node with children and opens its level.
  void Open(const CXmlNode& node) {
    if (!IsWritten(node)) return;
    NewLine(startDepth_ + static_cast<int>(levels_.size()));
    if (node.GetType() == XmlComment) {
      out_.append("<!--").append(node.ValueView()).append("-->");
    } else if (node.GetType() == XmlCData) {
      out_.append("<![CDATA[");
      node.AppendValue(out_);
      out_.append("]]>");
    } else {
      OpenElement(node);
    }
  }

  void OpenElement(const CXmlNode& node) {
    out_.append(1, '<').append(node.NameView());
    if (node.GetFirstAttr()) out_ += ' ';
    for (const CXmlAttr& attr : node.Attributes()) {
      out_.append(attr.NameView()).append(valueStart_, 2);
      WriteValue(attr.ValueView());
      out_.append(valueEnd_, 2);
    }
    const bool isParent = HasWrittenChildren(node);
    if (!isParent && !*node.ValueText()) {
      out_ += "/>";
      return;
    }
    out_ += '>';
    if (isParent) {
      levels_.push_back({&node, 0});
    } else {
      WriteValue(node.ValueView());
      CloseTag(node);
    }
  }

  void CloseParent(const CXmlNode& node) {
    const int depth = startDepth_ + static_cast<int>(levels_.size());
    if (*node.ValueText()) {
      NewLine(depth);
      WriteValue(node.ValueView());
    }
    NewLine(depth - 1);
    CloseTag(node);
  }

  void CloseTag(const CXmlNode& node) { out_.append("</").append(node.NameView()).append(1, '>'); }

  void NewLine(int depth) {
    if (!options_.newline) return;
    const std::size_t length = kLineEnd.size() + static_cast<std::size_t>(std::max(depth, 0));
    if (indent_.size() < length) indent_.resize(length, '\t');
    out_.append(indent_.data(), length);
  }

  void WriteValue(std::string_view value) {
    const std::size_t start = out_.size();
    if (encoder_) {
      encoder_->EncodeTo(out_, value);
    } else {
      out_.append(value);
    }
    // An odd run of backslashes at the end would escape the quote or tag after the value.
    std::size_t run = 0;
    while (start + run < out_.size() && out_[out_.size() - 1 - run] == '\\') ++run;
    if (run % 2 == 1) out_ += '\\';
  }

  static constexpr std::string_view kLineEnd = "\r\n";

  std::string& out_;
  const CXmlDisplayOptions& options_;
  const CXmlEntityTable* encoder_;  // nullptr if strings are written unchanged
  const char valueStart_[2];
  const char valueEnd_[2];
  int startDepth_ = 0;
  std::string indent_{kLineEnd};  // line end and as many tabs as any line needed so far
  std::vector<Level> levels_;
};

}  // namespace

std::string CXmlNode::ToString(const CXmlDisplayOptions& options) const {
  std::string out;
  AppendText(out, options, options.tabDepth);
  return out;
}

void CXmlNode::AppendText(std::string& out, const CXmlDisplayOptions& options, int depth) const {
  XmlWriter(out, options).Write(*this, depth);
}

}  // namespace tarn
