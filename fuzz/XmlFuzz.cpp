// The input is parsed; the result is edited, copied, written and parsed again.
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

// Compares elements, attributes and text, except for white-space text and the line ends that
// parsing drops.
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

// A file that was parsed without losses must survive writing and parsing, again without losses.
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

// A file that the writer produced must be parsed completely and written unchanged.
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

// Uses every kind of storage: strings inside a node's block and on the heap. Copies are made only
// near the root: each copy doubles the subtree, which would grow without bound in a deep tree.
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
  // A buffer of exact size, so that a read after its end is detected. The first byte selects
  // options.
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
