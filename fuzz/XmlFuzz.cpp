// Any text into the reader; what came out is edited, copied, written and read again.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "xml/XmlNode.h"

namespace {

using tarn::CXmlDisplayOptions;
using tarn::CXmlNode;
using tarn::CXmlParseInfo;

void Require(bool holds) {
  if (!holds) std::abort();
}

struct LossCounter : tarn::XmlLossListener {
  void OnLoss(tarn::XmlLoss, const char*, std::string_view, const CXmlNode*) override { ++count; }
  void OnElement(const char*, const CXmlNode& element) override {
    Require(!element.NameView().empty());
  }
  int count = 0;
};

bool IsBlank(std::string_view text) {
  return text.find_first_not_of(" \t\r\n\v\f") == text.npos;
}

// The same elements, attributes and texts, blank ones and the line ends that reading drops aside.
void RequireSame(const CXmlNode& a, const CXmlNode& b) {
  Require(a.GetName() == b.GetName() && a.GetType() == b.GetType());
  Require(a.GetAttrCount() == b.GetAttrCount() && a.GetChildCount() == b.GetChildCount());
  Require(IsBlank(a.ValueView()) == IsBlank(b.ValueView()));
  const tarn::CXmlAttr* other = b.GetFirstAttr();
  for (const tarn::CXmlAttr& attr : a.Attributes()) {
    Require(attr.GetName() == other->GetName());
    other = other->GetNext();
  }
  for (int i = 0; i < a.GetChildCount(); ++i) RequireSame(*a.GetChild(i), *b.GetChild(i));
}

// A text of which nothing was lost survives being written and read again, and nothing is lost then.
void CheckLosses(const std::string& text) {
  CXmlParseInfo info;
  CXmlNode node;
  LossCounter losses;
  if (!node.Load(text.c_str(), info, losses) || losses.count > 0) return;
  const std::string written = node.ToString(tarn::g_xmlDisplayOptions);
  CXmlNode again;
  Require(again.Load(written.c_str(), info, losses) != nullptr);
  Require(losses.count == 0);
  RequireSame(node, again);
}

// A text of the writer is read whole and written as it stands.
void CheckWriting(const CXmlNode& node) {
  CXmlDisplayOptions options;
  options.newline = false;
  options.entityTable = &tarn::g_xmlEntitiesFull;
  const std::string text = node.ToString(options);
  CXmlNode copy;
  copy.CopyFrom(node);
  Require(copy.ToString(options) == text);
  CXmlNode read;
  read.LoadWithFullEntities(text.c_str());
  static_cast<void>(read.ToString(tarn::g_xmlDisplayOptions));
}

// Touches every kind of storage: texts that lie inside a node and texts of their own. Copies are
// made near the top alone: each doubles what lies below, in a deep tree beyond all measure.
void Edit(CXmlNode& node, int level) {
  for (const char* value : {"", "a value longer than what was read before", "x"}) {
    if (tarn::CXmlAttr* first = node.GetFirstAttr()) {
      node.SetAttrValue(first->NameView(), value);
      node.SetAttrValue("added", first->ValueText());
      node.RemoveAttr(node.GetAttrAt(1));
      Require(!node.GetFirstAttr() || node.GetFirstAttr()->GetParent() == &node);
    }
    node.SetValue(value);
  }
  if (CXmlNode* child = node.GetChild(node.GetChildCount() / 2)) {
    Edit(*child, level + 1);
    if (level < 4) node.AppendCopy(*child);
    node.AppendChild(node.DetachChild(child));
    node.RemoveChild(node.GetChild(0));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  // Exactly as long as the text, so that a read behind its end is seen. The first byte chooses.
  const std::string text(reinterpret_cast<const char*>(data) + 1, size - 1);
  CXmlParseInfo info;
  info.forceParse = (data[0] & 1) != 0;
  if ((data[0] & 2) != 0) info.entityTable = &tarn::g_xmlEntitiesFull;
  CXmlNode node;
  const char* end = node.Load(text, info);
  if (end) {
    Require(end >= text.c_str() && end <= text.c_str() + text.size());
  } else if (info.errorOccurred) {
    Require(info.errorPosition >= text.c_str() && info.errorPosition <= text.c_str() + text.size());
  }
  CheckLosses(text);
  CheckWriting(node);
  Edit(node, 0);
  CheckWriting(node);
  return 0;
}
