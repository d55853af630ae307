#pragma once

#include <cstdint>
#include <string_view>

namespace tarn {

class CXmlNode;

// What the tolerant parser leaves out of a tree, or reads in a meaning that the author of the text
// can't have had. None of it occurs in a text that CXmlNode::ToString has written, except KeptText
// and StoredCData.
enum class XmlLoss : std::uint8_t {
  SkippedText,     // text that is stored nowhere: before the root, or after an element's first run
  KeptText,        // text that became the value of an element; a loss only if none belongs there
  ProtectedTag,    // a backslash before "<" made a tag part of a text
  Instruction,     // a processing instruction; the XML declaration before the root doesn't count
  StoredCData,     // a CDATA section; it is in the tree
  UnknownMarkup,   // "<!" that begins neither a comment nor a CDATA section
  BadElementName,  // no name, or one with other characters than a name has
  BadAttribute,    // an attribute without a value, or with such a name, or an unquoted one with
                   // quotes
  RepeatedAttribute,  // only the first one of that name is found
  OpenElement,        // the text ends inside an element
  BrokenTag,          // a tag that is not complete
  OpenMarkup,         // a comment, CDATA section or processing instruction without an end
  ForeignCloseTag,    // a close tag names another element than the open one
  TooDeep,            // elements nest deeper than CXmlNode::kMaxReadDepth
  NoElement,          // the text holds no element
  Trailing,           // anything except comments after the root
};

// Receives what a parse loses, in about the order of the text.
class XmlLossListener {
 public:
  // `position` points into the parsed text. `name` is the name of what was lost, or of the element
  // that holds it, and lives for the call. `element` is the element that holds it, its parents set
  // and its children complete for KeptText alone; null at the root.
  virtual void OnLoss(XmlLoss loss, const char* position, std::string_view name,
                      const CXmlNode* element) = 0;
  // An element was placed in the tree, in the order of the text; its children are not there yet.
  // `position` is that of its start tag.
  virtual void OnElement(const char* /*position*/, const CXmlNode& /*element*/) {}

 protected:
  ~XmlLossListener() = default;
};

}  // namespace tarn
