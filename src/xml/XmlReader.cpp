#include "xml/XmlReader.h"

#include <array>
#include <cstring>
#include <initializer_list>
#include <utility>

#include "xml/XmlPiece.h"
#include "xml/XmlText.h"

namespace tarn {
namespace {

// What may stand in front of an element. Compared without regard to case.
struct Special {
  std::string_view open;
  const char* close;
  std::string_view name;  // of the node that keeps the text; empty when it isn't kept
  CXmlNodeType type;
};
constexpr Special kSpecials[] = {{"<?", "?>", "", XmlElement},
                                 {"<!--", "-->", "#COMMENT", XmlComment},
                                 {"<![CDATA[", "]]>", "#CDATA", XmlCData}};

const char* SkipSpace(const char* p) {
  while (IsXmlSpace(*p)) ++p;
  return p;
}

// Which bytes end a scan; the terminator always does.
using ByteSet = std::array<bool, 256>;

constexpr ByteSet MakeSet(std::string_view bytes) {
  ByteSet set{};
  set[0] = true;
  for (const char c : bytes) set[static_cast<unsigned char>(c)] = true;
  return set;
}

constexpr ByteSet kNameEnds = MakeSet(" />\t\r\n");
constexpr ByteSet kAttrNameEnds = MakeSet(" =");
constexpr ByteSet kPlainValueEnds = MakeSet(" >");
constexpr ByteSet kCloseNameEnds = MakeSet(" >");
constexpr ByteSet kProtectedEnds = MakeSet("\\\"'<");

// The first byte of the set, or the terminator.
const char* FindAny(const char* p, const ByteSet& ends) {
  while (!ends[static_cast<unsigned char>(*p)]) ++p;
  return p;
}

// The first `end` that no backslash protects, or the terminator. `end` is a quote or "<".
const char* FindUnescaped(const char* p, char end) {
  for (;; ++p) {
    p = FindAny(p, kProtectedEnds);
    if (*p == end || !*p) return p;
    if (*p == '\\' && p[1]) ++p;
  }
}

bool StartsWith(const char* p, std::string_view open) {
  for (const char c : open) {
    const char upper = *p >= 'a' && *p <= 'z' ? static_cast<char>(*p - 'a' + 'A') : *p;
    if (upper != c) return false;
    ++p;
  }
  return true;
}

std::string Joined(std::initializer_list<std::string_view> parts) {
  std::string out;
  for (const std::string_view part : parts) out += part;
  return out;
}

std::string_view MakeSpan(const char* begin, const char* end) {
  return begin < end ? std::string_view(begin, end) : std::string_view();
}

}  // namespace

XmlReader::XmlReader(CXmlParseInfo& parseInfo)
    : info(parseInfo), decoder(parseInfo.decodeEntities ? parseInfo.entityTable : nullptr) {}

const char* XmlReader::Read(CXmlNode& node, const char* text) {
  top = &node;
  const char* p = ReadStart(text);
  while (p && !levels.empty()) {
    const std::size_t depth = levels.size();
    if (*p) {
      p = ReadStart(p);
    } else {
      CloseLevel();  // the text ends inside the element
    }
    if (levels.size() > depth) continue;
    while (p && !levels.empty() && ReadBehindChild(p)) CloseLevel();
  }
  while (!levels.empty()) CloseLevel();
  return p;
}

const char* XmlReader::ReadStart(const char* p) {
  if (*p != '<') p = std::strchr(p, '<');
  if (!p || p[1] == '/') return p;
  bool placedOne = false;
  p = ReadSpecialNodes(p, placedOne);
  if (!p || placedOne) return p;
  if (!*p || levels.size() >= CXmlNode::kMaxReadDepth) return nullptr;
  // Not always a "<": behind a processing instruction anything may stand.
  return ReadElement(p + 1);
}

const char* XmlReader::ReadSpecialNodes(const char* p, bool& placedOne) {
  for (bool readOne = true; readOne;) {
    readOne = false;
    for (const Special& special : kSpecials) {
      p = SkipSpace(p);
      if (!StartsWith(p, special.open)) continue;
      const char* end = std::strstr(p, special.close);
      if (!end) return nullptr;
      const Span text = MakeSpan(p + special.open.size(), end);
      p = end + std::strlen(special.close);
      readOne = true;
      if (special.name.empty()) continue;
      placedOne = PlaceSpecial(special.name, special.type, text);
      if (placedOne) return p;
    }
  }
  return p;
}

const char* XmlReader::ReadElement(const char* p) {
  const char* end = FindAny(p, kNameEnds);
  if (!*end) return nullptr;
  const bool keepsOldName = IsReadingTop() && end == p;
  const XmlName* name = keepsOldName ? CopyName(top->name) : AcquireName(MakeSpan(p, end));

  Span text;
  bool isOpen = false;
  attrs.clear();
  p = ReadAttributes(end, *name);
  if (p) p = ReadTagEnd(p, isOpen, text);
  // An element that failed half way keeps what it has.
  if (IsReadingTop()) {
    FillTop(name, text, isOpen);
  } else {
    PlaceElement(name, text, isOpen);
  }
  return p;
}

const char* XmlReader::ReadAttributes(const char* p, const XmlName& element) {
  while (*p) {
    p = SkipSpace(p);
    if (*p == '>' || *p == '/') return p;
    const char* end = FindAny(p, kAttrNameEnds);
    if (!*end) {
      info.RecordError(p, kXmlErrorAttribute,
                       Joined({"<", element.View(), "> attribute has error "}));
      return nullptr;
    }
    attrs.push_back({AcquireName(MakeSpan(p, end)), Span()});
    p = SkipSpace(end);
    if (*p != '=') continue;
    p = SkipSpace(p + 1);
    const bool isQuoted = *p == '"' || *p == '\'';
    end = isQuoted ? FindUnescaped(p + 1, *p) : FindAny(p, kPlainValueEnds);
    attrs.back().value = MakeSpan(isQuoted ? p + 1 : p, end);
    p = isQuoted && *end ? end + 1 : end;
  }
  return nullptr;
}

const char* XmlReader::ReadTagEnd(const char* p, bool& isOpen, Span& text) {
  if (*p == '/') {
    if (p[1] == '>') return p + 2;
    info.RecordError(p + 1, kXmlErrorUnclosedElement, "Element must be closed.");
    return nullptr;
  }
  isOpen = true;
  if (IsReadingTop() && !IsBlank(top->value)) return p;
  const char* end = FindUnescaped(p + 1, '<');
  text = MakeSpan(p + 1, end);
  return end;
}

bool XmlReader::ReadBehindChild(const char*& p) {
  Level& level = levels.back();
  if (p[0] == '<' && p[1] == '/') {
    bool closesLevel = false;
    p = ReadCloseTag(p + 2, closesLevel);
    return closesLevel;
  }
  if (*p != '<' && IsBlank(level.node->value)) {
    const char* end = FindUnescaped(p, '<');
    StoreValue(level, MakeSpan(p, end));
    p = end;
  }
  return false;
}

const char* XmlReader::ReadCloseTag(const char* p, bool& closesLevel) {
  p = SkipSpace(p);
  const char* end = FindAny(p, kCloseNameEnds);
  const std::string_view name = levels.back().node->NameView();
  if (!*end) {
    info.RecordError(p, kXmlErrorUnclosedTag, Joined({"it must be closed with </", name, ">"}));
    return nullptr;
  }
  const Span closed = MakeSpan(p, end);
  closesLevel = closed == name;
  if (closesLevel || info.forceParse) return end + 1;
  info.RecordError(
      end + 1, kXmlErrorForeignTag,
      "'<" + std::string(name) + "> ... </" + std::string(closed) + ">' is not wel-formed.");
  return nullptr;
}

bool XmlReader::PlaceSpecial(std::string_view name, CXmlNodeType type, Span text) {
  if (IsReadingTop() && !top->parent) return false;
  XmlPiece piece(AcquireName(name), type, 0, XmlPiece::TextBytes(text.size()));
  if (!text.empty()) {
    std::memcpy(piece.NextText(), text.data(), text.size());
    piece.SetValue(piece.EndText(text.size(), text.size()));
  }
  if (IsReadingTop()) {
    top->parent->AppendChild(piece.Take());
  } else {
    waiting.push_back(piece.Take());
  }
  return true;
}

void XmlReader::FillTop(const XmlName* name, Span text, bool isOpen) {
  ReleaseName(top->name);
  top->name = name;
  CXmlAttr* last = nullptr;
  for (const AttrSpan& attr : attrs) {
    last = top->AddAttrBehind(last, attr.name->View(), Stored(attr.value));
    ReleaseName(attr.name);
  }
  if (!isOpen) return;
  levels.push_back({top, nullptr, 0, nullptr, 0});
  if (IsBlank(top->value)) StoreValue(levels.back(), text);
}

void XmlReader::PlaceElement(const XmlName* name, Span text, bool isOpen) {
  std::size_t textBytes = XmlPiece::TextBytes(text.size());
  for (const AttrSpan& attr : attrs) textBytes += XmlPiece::TextBytes(attr.value.size());

  XmlPiece piece(name, XmlElement, attrs.size(), textBytes);
  const auto place = [&](Span span) {
    if (span.empty()) return EmptyText();
    const std::size_t length = Store(piece.NextText(), span);
    return piece.EndText(length, span.size());
  };
  for (const AttrSpan& attr : attrs) piece.AddAttr(attr.name, place(attr.value));
  char* valuePlace = text.empty() ? nullptr : piece.NextText();
  piece.SetValue(place(text));

  auto node = piece.Take();
  if (isOpen) {
    CXmlNode* borrowed = node.get();
    levels.push_back({borrowed, std::move(node), waiting.size(), valuePlace, text.size()});
  } else {
    Wait(std::move(node));
  }
}

// Without a name there is no element, and whatever was read into it goes.
void XmlReader::Wait(std::unique_ptr<CXmlNode> node) {
  if (!node->NameView().empty()) waiting.push_back(std::move(node));
}

void XmlReader::CloseLevel() {
  Level level = std::move(levels.back());
  levels.pop_back();
  if (waiting.size() > level.firstWaiting) {
    level.node->ReserveChildren(waiting.size() - level.firstWaiting);
    for (std::size_t i = level.firstWaiting; i < waiting.size(); ++i) {
      level.node->AppendChild(std::move(waiting[i]));
    }
    waiting.resize(level.firstWaiting);
  }
  if (level.owned) Wait(std::move(level.owned));
}

void XmlReader::StoreValue(Level& level, Span text) {
  CXmlNode& node = *level.node;
  if (text.empty()) {
    // What is there already is decoded once more.
    if (decoder && *node.value) node.SetValue(decoder->Decode(node.value));
  } else if (text.size() <= level.valueRoom) {
    FreeText(node.value);
    level.valuePlace[Store(level.valuePlace, text)] = '\0';
    node.value = level.valuePlace;
  } else {
    node.SetValue(Stored(text));
  }
}

std::size_t XmlReader::Store(char* out, Span text) const {
  if (decoder) return decoder->DecodeTo(out, text);
  std::memcpy(out, text.data(), text.size());
  return text.size();
}

std::string XmlReader::Stored(Span text) const {
  std::string out(text);
  if (decoder) out.resize(decoder->DecodeTo(out.data(), out));
  return out;
}

// --- The face ---

const char* CXmlNode::Load(const char* text, CXmlParseInfo& parseInfo) {
  Clear();
  return text ? XmlReader(parseInfo).Read(*this, text) : nullptr;
}

const char* CXmlNode::LoadWithFullEntities(const char* text) {
  CXmlParseInfo parseInfo;
  parseInfo.entityTable = &g_xmlEntitiesFull;
  return Load(text, parseInfo);
}

}  // namespace tarn
