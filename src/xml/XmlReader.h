#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "xml/XmlArena.h"
#include "xml/XmlLoss.h"
#include "xml/XmlNode.h"
#include "xml/XmlParseInfo.h"

namespace tarn {

// Parser that fills a node from a zero-terminated string. For use inside the xml folder only; the
// public function is `CXmlNode::Load()`.
//
// Single forward pass without recursion. Every Read function takes its start position and returns
// the position after what it read, or nullptr on error. Open elements are kept on an explicit stack
// of levels, so that call depth doesn't depend on the nesting of the input. Children of all open
// elements are collected in one shared list; when an element ends, its children are moved together
// into an array of exactly the right size.
class XmlReader {
 public:
  // `lossListener` may be nullptr. It has no cost as long as nothing is lost.
  explicit XmlReader(CXmlParseInfo& parseInfo, XmlLossListener* lossListener = nullptr);

  // Parses `text` into `node`; for the result see `CXmlNode::Load()`.
  const char* Read(CXmlNode& node, const char* text);

 private:
  // Bytes of the input.
  using Span = std::string_view;
  using ByteSet = std::array<bool, 256>;
  // Run of text that will be stored.
  struct Run {
    Span text;
    bool isBlank = false;    // white space only, and still white space after decoding
    bool isEncoded = false;  // decoding may change it
  };
  // Attribute of the current start tag.
  struct AttrSpan {
    const XmlInternedName* name;
    Run value;
  };
  // Open element.
  struct Level {
    CXmlNode* node;
    std::unique_ptr<CXmlNode> owned;  // same node; nullptr for the caller's node
    std::size_t firstWaiting;
    char* valuePlace;  // space for the value in the node's block; nullptr if none
    std::size_t valueRoom;
    Span blank;             // last white-space run, stored at the end unless text follows
    bool hasText;           // the value isn't white space, so later runs are dropped
    const char* textStart;  // start of the value's run; nullptr while it is white space
  };

  // Reads the start of a child or of the caller's node: the parent's close tag, which isn't
  // consumed; a comment or CDATA section, which is added to the parent; or an element.
  const char* ReadStart(const char* p);
  // Skips processing instructions and reads comments and CDATA sections, until one is added to the
  // tree, which sets `placedOne`.
  const char* ReadSpecialNodes(const char* p, bool& placedOne);
  const char* ReadElement(const char* p);
  const char* ReadAttributes(const char* p, const XmlInternedName& element);
  // Reads the end of a start tag and the first run of text after it.
  const char* ReadTagEnd(const char* p, bool& isOpen, Run& text);
  const char* ReadText(const char* p, Run& text) const;
  // Reads the input after a complete child. Returns true if it was the close tag of the level.
  bool ReadAfterChild(const char*& p);
  const char* ReadCloseTag(const char* p, bool& closesLevel);

  bool IsReadingTop() const { return levels_.empty(); }
  // Returns the position of the first `end` that isn't escaped by a backslash, or of the
  // terminator. `end` is a quote or "<".
  const char* FindUnescaped(const char* p, char end, bool& isEncoded) const;

  bool PlaceSpecial(std::string_view name, CXmlNodeType type, Span text);
  // Both take ownership of `name` and of the names in `attrs`.
  void FillTop(const XmlInternedName* name, const Run& text, bool isOpen);
  void PlaceElement(const XmlInternedName* name, const Run& text, bool isOpen);
  // Adds a complete node to the list of children that wait for their parents' ends.
  void Wait(std::unique_ptr<CXmlNode> node);
  void CloseLevel();
  // Stores a run in a level that has no text yet.
  void TakeText(Level& level, const Run& text);
  void StoreBlank(Level& level);
  void StoreValue(Level& level, const Run& text);

  // --- XmlReaderLosses.cpp: reports to the listener what isn't stored in the tree ---

  void Lose(XmlLoss loss, const char* position, std::string_view name = {}) {
    if (losses_) ReportLoss(loss, position, name);
  }
  void ReportLoss(XmlLoss loss, const char* position, std::string_view name);
  // Reports that the bytes from `begin` to `end` aren't stored.
  void LoseText(const char* begin, const char* end) {
    if (losses_) ReportSkipped({begin, end});
  }
  // Reports that the input ends at `p`, inside an element.
  void LoseEnd(const char* p) {
    if (losses_ && !hasEnded_) ReportEnd(p);
  }
  // Returns the first byte that isn't white space, or nullptr if there is none.
  static const char* FindFirstLost(Span text);
  void ReportSkipped(Span text);
  void ReportEnd(const char* p);
  void ReportSpecial(const char* position, Span text, bool isInstruction, bool isPlaced);
  void ReportElementName(const char* tag, const XmlInternedName& name);
  // Reports the element that was just added; an open one has a level already.
  void ReportElement(const char* tag, bool isOpen, bool isTop);
  void ReportRepeats(const char* tag);
  void ReportValue(const Level& level);
  void ReportTail(const char* text, const char* p);

  // Writes the decoded text to `out`, which must have room for it. Returns its length.
  std::size_t Store(char* out, const Run& text) const;
  std::string Stored(const Run& text) const;

  CXmlParseInfo& info_;
  XmlLossListener* losses_;
  bool hasEnded_ = false;           // the end of the input inside an element was reported
  const CXmlEntityTable* decoder_;  // nullptr if references aren't decoded
  ByteSet decodable_{};             // bytes at which decoding may change something
  ByteSet textStops_;               // bytes at which FindUnescaped must check more closely
  bool blankStaysBlank_ = true;     // no reference begins with white space
  XmlNameCache& names_;
  XmlArena arena_;
  CXmlNode* top_ = nullptr;
  std::vector<Level> levels_;
  std::vector<std::unique_ptr<CXmlNode>> waiting_;
  std::vector<AttrSpan> attrs_;    // attributes of the current start tag
  std::size_t attrTextBytes_ = 0;  // bytes that their values need
  bool mayRepeat_ = false;         // two of them may have the same name
};

}  // namespace tarn
