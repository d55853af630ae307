#pragma once

#include <string>

#include "xml/XmlNode.h"

namespace tarn::test {

inline std::string Visible(std::string_view text) {
  std::string out;
  for (const char c : text) {
    const auto blank = std::string_view("\t\r\n").find(c);
    out += blank == std::string_view::npos ? std::string(1, c) : std::string("\\") + "trn"[blank];
  }
  return out;
}

// Returns a tree on one line: name, [attribute=value] for each attribute, 'value' unless empty,
// children in brackets.
inline std::string Dump(const CXmlNode& node) {
  std::string out = node.GetName();
  for (const CXmlAttr& attr : node.Attributes()) {
    out += "[" + Visible(attr.GetName()) + "=" + Visible(attr.GetValue()) + "]";
  }
  if (!node.GetValue().empty()) out += "'" + Visible(node.GetValue()) + "'";
  for (int i = 0; i < node.GetChildCount(); ++i) {
    out += (i == 0 ? "(" : " ") + Dump(*node.GetChild(i));
  }
  return node.GetChildCount() > 0 ? out + ")" : out;
}

// Parses a tree that must be valid.
inline std::unique_ptr<CXmlNode> Tree(const char* text) {
  auto node = std::make_unique<CXmlNode>();
  CXmlParseInfo info;
  if (!node->Load(text, info)) node->SetName("FAILED TO READ");
  return node;
}

// Returns the tree as XML on one line.
inline std::string Flat(const CXmlNode& node) {
  CXmlDisplayOptions options;
  options.newline = false;
  return node.ToString(options);
}

}  // namespace tarn::test
