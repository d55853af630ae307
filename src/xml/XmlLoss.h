#pragma once

#include <cstdint>
#include <string_view>

namespace tarn {

class CXmlNode;

// Parts of the input that the tolerant parser leaves out of a tree, or reads with a meaning that
// the author can't have intended. None of them occurs in a file written by `CXmlNode::ToString()`,
// except KeptText and StoredCData.
enum class XmlLoss : std::uint8_t {
  SkippedText,        // text that isn't stored: before the root, or after an element's first run
  KeptText,           // text that became the value of an element; a loss only if none is allowed
  ProtectedTag,       // a backslash before "<" made a tag part of the text
  Instruction,        // a processing instruction, except for the XML declaration before the root
  StoredCData,        // a CDATA section; it is stored in the tree
  UnknownMarkup,      // "<!" that begins neither a comment nor a CDATA section
  BadElementName,     // an empty name, or one with characters that a name can't have
  BadAttribute,       // without a value, with a bad name, or unquoted but containing quotes
  RepeatedAttribute,  // only the first attribute of that name is found
  OpenElement,        // the input ends inside an element
  BrokenTag,          // an incomplete tag
  OpenMarkup,         // a comment, CDATA section or processing instruction without an end
  ForeignCloseTag,    // a close tag names an element other than the open one
  TooDeep,            // elements nest deeper than CXmlNode::kMaxReadDepth
  NoElement,          // the input has no element
  Trailing,           // anything except comments after the root
};

// Receives the losses of a parse, approximately in document order.
class XmlLossListener {
 public:
  // Called for each loss. `position` points into the parsed string. `name` is the name of the lost
  // part, or of the element that contains it, and is valid during the call. `element` is the
  // element that contains the lost part, nullptr at the root; its parents are set, but its children
  // are complete only for KeptText.
  virtual void OnLoss(XmlLoss loss, const char* position, std::string_view name,
                      const CXmlNode* element) = 0;
  // Called in document order for each element that was added to the tree, before its children are
  // read. `position` is that of its start tag.
  virtual void OnElement(const char* /*position*/, const CXmlNode& /*element*/) {}

 protected:
  ~XmlLossListener() = default;
};

}  // namespace tarn
