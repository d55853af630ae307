#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "xml/XmlLoss.h"
#include "xml/XmlNode.h"
#include "xml/XmlPages.h"
#include "xml/XmlParseInfo.h"

namespace tarn {

// One forward pass over a terminated text that fills a node. Inside the xml folder only; the face
// is CXmlNode::Load.
//
// Every reading step takes the position where it starts and gives the one behind what it read, or
// null when the parse has failed. Open elements stand in a list of levels, so that the depth of a
// text costs no stack. The children of all open elements wait in one list and go to their parent
// together when it ends, into an array of just the right size.
class XmlReader {
 public:
  // `lossListener` may be null. It costs nothing while nothing is lost.
  explicit XmlReader(CXmlParseInfo& parseInfo, XmlLossListener* lossListener = nullptr);

  const char* Read(CXmlNode& node, const char* text);

 private:
  // Bytes of the source text.
  using Span = std::string_view;
  using ByteSet = std::array<bool, 256>;
  // A text that will be stored.
  struct Run {
    Span text;
    bool isBlank = false;    // nothing but white space, and decoded no more than that
    bool isEncoded = false;  // decoding may change it
  };
  struct AttrSpan {
    const XmlName* name;
    Run value;
  };
  struct Level {
    CXmlNode* node;
    std::unique_ptr<CXmlNode> owned;  // the same node; null for the one that the caller holds
    std::size_t firstWaiting;
    char* valuePlace;  // room for the value in the node's own memory; null when there is none
    std::size_t valueRoom;
    Span blank;    // the last blank run, stored when the level ends: mostly a better one comes
    bool hasText;  // the value is not blank, so no further run counts
    const char* textStart;  // of the run that became the value; null while it is blank
  };

  // What a child, or the caller's node, begins with: the parent's close tag, which it leaves
  // standing, a comment or CDATA section, which it places in the parent, or an element.
  const char* ReadStart(const char* p);
  const char* ReadSpecialNodes(const char* p, bool& placedOne);
  const char* ReadElement(const char* p);
  const char* ReadAttributes(const char* p, const XmlName& element);
  // Reads the end of a start tag and the first run of text behind it.
  const char* ReadTagEnd(const char* p, bool& isOpen, Run& text);
  const char* ReadText(const char* p, Run& text) const;
  // Reads what stands behind a complete child; true when it was the close tag of the level.
  bool ReadBehindChild(const char*& p);
  const char* ReadCloseTag(const char* p, bool& closesLevel);

  bool IsReadingTop() const { return levels.empty(); }
  // The first `end` that no backslash protects, or the terminator. `end` is a quote or "<".
  const char* FindUnescaped(const char* p, char end, bool& isEncoded) const;

  bool PlaceSpecial(std::string_view name, CXmlNodeType type, Span text);
  // Take over `name` and the names in `attrs`.
  void FillTop(const XmlName* name, const Run& text, bool isOpen);
  void PlaceElement(const XmlName* name, const Run& text, bool isOpen);
  void Wait(std::unique_ptr<CXmlNode> node);
  void CloseLevel();
  // Takes a run into a level without text so far.
  void TakeText(Level& level, const Run& text);
  void StoreBlank(Level& level);
  void StoreValue(Level& level, const Run& text);

  // --- XmlReaderLosses.cpp: what the tree doesn't hold, for the listener ---

  void Lose(XmlLoss loss, const char* position, std::string_view name = {}) {
    if (losses) ReportLoss(loss, position, name);
  }
  void ReportLoss(XmlLoss loss, const char* position, std::string_view name);
  // The bytes from `begin` to `end` are stored nowhere.
  void LoseText(const char* begin, const char* end) {
    if (losses) ReportSkipped({begin, end});
  }
  // The text ends at `p`, where it must not.
  void LoseEnd(const char* p) {
    if (losses && !hasEnded) ReportEnd(p);
  }
  // The first byte that is more than white space; nullptr if there is none.
  static const char* FindFirstLost(Span text);
  void ReportSkipped(Span text);
  void ReportEnd(const char* p);
  void ReportSpecial(const char* position, Span text, bool isInstruction, bool isPlaced);
  void ReportElementName(const char* tag, const XmlName& name);
  // The element that was just placed; an open one has a level already.
  void ReportElement(const char* tag, bool isOpen, bool isTop);
  void ReportRepeats(const char* tag);
  void ReportValue(const Level& level);
  void ReportTail(const char* text, const char* p);

  // Copies a text, decoded, to `out`, which has room for it, and gives its length there.
  std::size_t Store(char* out, const Run& text) const;
  std::string Stored(const Run& text) const;

  CXmlParseInfo& info;
  XmlLossListener* losses;
  bool hasEnded = false;           // the end of the text inside an element was reported
  const CXmlEntityTable* decoder;  // null when references stay as they are
  ByteSet decodable{};             // bytes at which decoding may change something
  ByteSet textStops;               // bytes at which FindUnescaped must look closer
  bool blankStaysBlank = true;     // no reference begins with white space
  XmlNameCache& names;
  XmlPages pages;
  CXmlNode* top = nullptr;
  std::vector<Level> levels;
  std::vector<std::unique_ptr<CXmlNode>> waiting;
  std::vector<AttrSpan> attrs;    // of the start tag that is being read
  std::size_t attrTextBytes = 0;  // what their values need
  bool mayRepeat = false;         // two of them may have the same name
};

}  // namespace tarn
