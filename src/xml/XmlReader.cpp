#include "xml/XmlReader.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <utility>

#include "xml/XmlNodeBuilder.h"
#include "xml/XmlString.h"

namespace tarn {
namespace {

// Bloom filter of names: proves at almost no cost that no two attributes have the same name.
class NameFilter {
 public:
  // Returns false if the name was not added before; true if it may have been.
  bool Add(const XmlInternedName* name) {
    const auto bit = std::uint64_t{1} << ((reinterpret_cast<std::uintptr_t>(name) >> 4) % 64);
    const bool isKnown = (bits_ & bit) != 0;
    bits_ |= bit;
    return isKnown;
  }

 private:
  std::uint64_t bits_ = 0;
};

// Markup that may precede an element. Compared case-insensitively.
struct Special {
  std::string_view open;
  const char* close;
  std::string_view name;  // name of the node that stores the text; empty if it isn't stored
  CXmlNodeType type;
};
constexpr Special kSpecials[] = {{"<?", "?>", "", XmlElement},
                                 {"<!--", "-->", "#COMMENT", XmlComment},
                                 {"<![CDATA[", "]]>", "#CDATA", XmlCData}};

// Set of bytes that end a scan. The terminator always does.
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
constexpr ByteSet kSpace = [] {
  ByteSet set{};
  for (std::size_t i = 0; i < set.size(); ++i) set[i] = IsXmlSpace(static_cast<char>(i));
  return set;
}();

bool IsIn(const ByteSet& set, char c) {
  return set[static_cast<unsigned char>(c)];
}

// Returns the position of the first byte in the set, or of the terminator.
const char* FindAny(const char* p, const ByteSet& ends) {
  while (!IsIn(ends, *p)) ++p;
  return p;
}

const char* SkipSpace(const char* p) {
  while (IsIn(kSpace, *p)) ++p;
  return p;
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

XmlReader::XmlReader(CXmlParseInfo& parseInfo, XmlLossListener* lossListener)
    : info_(parseInfo),
      losses_(lossListener),
      decoder_(parseInfo.decodeEntities ? parseInfo.entityTable : nullptr),
      textStops_(kProtectedEnds),
      names_(XmlNameCache::OfThisThread()) {
  if (!decoder_) return;
  decodable_ = decoder_->Decodable();
  for (std::size_t i = 0; i < textStops_.size(); ++i) textStops_[i] |= decodable_[i];
  for (const CXmlEntity& row : decoder_->Rows()) {
    if (!row.reference.empty() && IsXmlSpace(row.reference[0])) blankStaysBlank_ = false;
  }
}

const char* XmlReader::Read(CXmlNode& node, const char* text) {
  top_ = &node;
  const char* p = ReadStart(text);
  while (p && !levels_.empty()) {
    const std::size_t depth = levels_.size();
    if (*p) {
      p = ReadStart(p);
    } else {
      LoseEnd(p);
      CloseLevel();  // the input ends inside the element
    }
    if (levels_.size() > depth) continue;
    while (p && !levels_.empty() && ReadAfterChild(p)) CloseLevel();
  }
  while (!levels_.empty()) CloseLevel();
  if (losses_ && p) ReportTail(text, p);
  return p;
}

const char* XmlReader::ReadStart(const char* p) {
  if (*p != '<') {
    const char* start = p;
    p = std::strchr(p, '<');
    const char* const end = p ? p : start + std::strlen(start);
    LoseText(start, end);
    if (!p) LoseEnd(end);
  }
  if (!p || p[1] == '/') return p;
  if (p[1] == '!' || p[1] == '?') {
    bool placedOne = false;
    p = ReadSpecialNodes(p, placedOne);
    if (!p || placedOne) return p;
  }
  if (!*p) LoseEnd(p);
  if (levels_.size() >= CXmlNode::kMaxReadDepth) Lose(XmlLoss::TooDeep, p);
  if (!*p || levels_.size() >= CXmlNode::kMaxReadDepth) return nullptr;
  // This needn't be a "<": anything may follow a processing instruction.
  return ReadElement(p + 1);
}

const char* XmlReader::ReadSpecialNodes(const char* p, bool& placedOne) {
  for (bool readOne = true; readOne;) {
    readOne = false;
    for (const Special& special : kSpecials) {
      p = SkipSpace(p);
      if (!StartsWith(p, special.open)) continue;
      const char* end = std::strstr(p, special.close);
      if (!end) {
        Lose(XmlLoss::OpenMarkup, p, special.open);
        return nullptr;
      }
      const Span text = MakeSpan(p + special.open.size(), end);
      const bool isKept = !special.name.empty();
      placedOne = isKept && PlaceSpecial(special.name, special.type, text);
      if (losses_ && special.type != XmlComment) ReportSpecial(p, text, !isKept, placedOne);
      p = end + std::strlen(special.close);
      readOne = true;
      if (placedOne) return p;
    }
  }
  return p;
}

const char* XmlReader::ReadElement(const char* p) {
  const char* const tag = p - 1;
  const char* end = FindAny(p, kNameEnds);
  if (!*end) {
    Lose(XmlLoss::BrokenTag, tag, MakeSpan(p, end));
    return nullptr;
  }
  const bool keepsOldName = IsReadingTop() && end == p;
  const XmlInternedName* name =
      keepsOldName ? CopyName(top_->name_) : names_.Acquire(MakeSpan(p, end));

  if (losses_ && (!name->regular || end == p || *tag != '<')) ReportElementName(tag, *name);

  Run text;
  bool isOpen = false;
  attrs_.clear();
  attrTextBytes_ = 0;
  mayRepeat_ = false;
  p = ReadAttributes(end, *name);
  if (p) p = ReadTagEnd(p, isOpen, text);
  if (losses_ && mayRepeat_) ReportRepeats(tag);
  if (!p) Lose(XmlLoss::BrokenTag, tag, name->View());
  const bool isTop = IsReadingTop();
  const bool isNamed = !name->View().empty();
  // An element whose start tag has an error keeps what was read of it.
  if (isTop) {
    FillTop(name, text, isOpen);
  } else {
    PlaceElement(name, text, isOpen);
  }
  if (losses_ && isNamed) ReportElement(tag, isOpen, isTop);
  return p;
}

const char* XmlReader::ReadAttributes(const char* p, const XmlInternedName& element) {
  NameFilter seen;
  while (*p) {
    p = SkipSpace(p);
    if (*p == '>' || *p == '/') return p;
    const char* end = FindAny(p, kAttrNameEnds);
    if (!*end) {
      info_.RecordError(p, kXmlErrorAttribute,
                        Joined({"<", element.View(), "> attribute has error "}));
      return nullptr;
    }
    const char* const start = p;
    AttrSpan& attr = attrs_.emplace_back(AttrSpan{names_.Acquire(MakeSpan(p, end)), {}});
    Run& value = attr.value;
    mayRepeat_ |= seen.Add(attr.name);
    p = SkipSpace(end);
    if (*p != '=' || !attr.name->regular) Lose(XmlLoss::BadAttribute, start, attr.name->View());
    if (*p != '=') continue;
    p = SkipSpace(p + 1);
    if (*p == '"' || *p == '\'') {
      end = FindUnescaped(p + 1, *p, value.isEncoded);
      value.text = MakeSpan(p + 1, end);
      p = *end ? end + 1 : end;
    } else {
      end = FindAny(p, kPlainValueEnds);
      value = {MakeSpan(p, end), false, true};
      if (value.text.find_first_of("\"'<=") != Span::npos) {
        Lose(XmlLoss::BadAttribute, start, attr.name->View());
      }
      p = end;
    }
    attrTextBytes_ += XmlNodeBuilder::StringBytes(value.text.size());
  }
  return nullptr;
}

const char* XmlReader::ReadTagEnd(const char* p, bool& isOpen, Run& text) {
  if (*p == '/') {
    if (p[1] == '>') return p + 2;
    info_.RecordError(p + 1, kXmlErrorUnclosedElement, "Element must be closed.");
    return nullptr;
  }
  isOpen = true;
  if (IsReadingTop() && !IsBlank(top_->ValueText())) return p;
  return ReadText(p + 1, text);
}

const char* XmlReader::ReadText(const char* p, Run& text) const {
  const char* end = SkipSpace(p);
  text.isBlank = blankStaysBlank_ && (*end == '<' || !*end);
  if (text.isBlank) {
    text.isEncoded = true;
  } else {
    end = FindUnescaped(p, '<', text.isEncoded);
  }
  text.text = MakeSpan(p, end);
  return end;
}

const char* XmlReader::FindUnescaped(const char* p, char end, bool& isEncoded) const {
  for (;; ++p) {
    p = FindAny(p, textStops_);
    if (*p == end || !*p) return p;
    isEncoded |= IsIn(decodable_, *p);
    if (*p != '\\' || !p[1]) continue;
    ++p;
    isEncoded |= IsIn(decodable_, *p);
  }
}

bool XmlReader::ReadAfterChild(const char*& p) {
  if (p[0] == '<' && p[1] == '/') {
    bool closesLevel = false;
    p = ReadCloseTag(p + 2, closesLevel);
    return closesLevel;
  }
  if (*p != '<' && !levels_.back().hasText) {
    Run text;
    p = ReadText(p, text);
    TakeText(levels_.back(), text);
  }
  return false;
}

const char* XmlReader::ReadCloseTag(const char* p, bool& closesLevel) {
  p = SkipSpace(p);
  const char* end = FindAny(p, kCloseNameEnds);
  const std::string_view name = levels_.back().node->NameView();
  if (!*end) {
    Lose(XmlLoss::BrokenTag, p, name);
    info_.RecordError(p, kXmlErrorUnclosedTag, Joined({"it must be closed with </", name, ">"}));
    return nullptr;
  }
  const Span closed = MakeSpan(p, end);
  closesLevel = closed == name;
  if (closesLevel) return end + 1;
  Lose(XmlLoss::ForeignCloseTag, p, closed);
  if (info_.forceParse) return end + 1;
  info_.RecordError(
      end + 1, kXmlErrorForeignTag,
      "'<" + std::string(name) + "> ... </" + std::string(closed) + ">' is not wel-formed.");
  return nullptr;
}

bool XmlReader::PlaceSpecial(std::string_view name, CXmlNodeType type, Span text) {
  if (IsReadingTop() && !top_->parent_) return false;
  CXmlNode* parent = IsReadingTop() ? top_->parent_ : levels_.back().node;
  XmlNodeBuilder builder(arena_, AcquireName(name), type, parent, 0,
                         XmlNodeBuilder::StringBytes(text.size()));
  builder.SetValue(builder.CopyString(text));
  if (IsReadingTop()) {
    parent->AppendChild(builder.Take());
  } else {
    waiting_.push_back(builder.Take());
  }
  return true;
}

void XmlReader::FillTop(const XmlInternedName* name, const Run& text, bool isOpen) {
  ReleaseName(top_->name_);
  top_->name_ = name;
  CXmlAttr* last = nullptr;
  for (const AttrSpan& attr : attrs_) {
    last = top_->AddAttrAfter(last, attr.name->View(), Stored(attr.value));
    ReleaseName(attr.name);
  }
  if (!isOpen) return;
  levels_.push_back({top_, nullptr, 0, nullptr, 0, Span(), !IsBlank(top_->ValueText()), nullptr});
  if (!levels_.back().hasText) TakeText(levels_.back(), text);
}

void XmlReader::PlaceElement(const XmlInternedName* name, const Run& text, bool isOpen) {
  CXmlNode* parent = levels_.back().node;
  const std::size_t textBytes = attrTextBytes_ + XmlNodeBuilder::StringBytes(text.text.size());
  XmlNodeBuilder builder(arena_, name, XmlElement, parent, attrs_.size(), textBytes);
  for (const AttrSpan& attr : attrs_) {
    const std::size_t room = attr.value.text.size();
    char* place = room > 0 ? builder.Reserve(room) : nullptr;
    builder.AddAttr(attr.name,
                    place ? EndStringInside(place, Store(place, attr.value)) : EmptyString());
  }
  if (!isOpen) return Wait(builder.Take());

  const std::size_t room = text.text.size();
  char* valuePlace = room > 0 ? builder.Reserve(room) : nullptr;
  auto node = builder.Take();
  CXmlNode* borrowed = node.get();
  levels_.push_back(
      {borrowed, std::move(node), waiting_.size(), valuePlace, room, Span(), false, nullptr});
  if (room > 0) TakeText(levels_.back(), text);
}

// Drops a nameless node with everything that was read into it, since an element needs a name.
void XmlReader::Wait(std::unique_ptr<CXmlNode> node) {
  if (!node->NameView().empty()) waiting_.push_back(std::move(node));
}

void XmlReader::CloseLevel() {
  Level level = std::move(levels_.back());
  levels_.pop_back();
  StoreBlank(level);
  if (const std::size_t count = waiting_.size() - level.firstWaiting; count > 0) {
    CXmlNode& node = *level.node;
    node.ReserveChildren(count);
    for (std::size_t i = 0; i < count; ++i) {
      node.children_[i] = waiting_[level.firstWaiting + i].release();
    }
    node.childCount_ = static_cast<std::uint32_t>(count);
    waiting_.resize(level.firstWaiting);
  }
  if (level.textStart) ReportValue(level);
  if (level.owned) Wait(std::move(level.owned));
}

void XmlReader::TakeText(Level& level, const Run& text) {
  if (text.text.empty()) {
    // The existing value is decoded a second time.
    StoreBlank(level);
    if (decoder_ && *level.node->value_) level.node->SetValue(decoder_->Decode(level.node->value_));
  } else if (text.isBlank) {
    level.blank = text.text;
  } else {
    level.blank = Span();
    StoreValue(level, text);
    level.hasText = !IsBlank(level.node->value_);
    if (losses_ && level.hasText) level.textStart = FindFirstLost(text.text);
  }
}

void XmlReader::StoreBlank(Level& level) {
  if (level.blank.empty()) return;
  StoreValue(level, {level.blank, true, true});
  level.blank = Span();
}

void XmlReader::StoreValue(Level& level, const Run& text) {
  CXmlNode& node = *level.node;
  if (text.text.size() <= level.valueRoom) {
    FreeString(node.value_);
    node.value_ = EndStringInside(level.valuePlace, Store(level.valuePlace, text));
  } else {
    node.SetValue(Stored(text));
  }
}

std::size_t XmlReader::Store(char* out, const Run& text) const {
  if (decoder_ && text.isEncoded) return decoder_->DecodeTo(out, text.text);
  std::memcpy(out, text.text.data(), text.text.size());
  return text.text.size();
}

std::string XmlReader::Stored(const Run& text) const {
  std::string out(text.text);
  if (decoder_ && text.isEncoded) out.resize(decoder_->DecodeTo(out.data(), out));
  return out;
}

// --- Public functions ---

const char* CXmlNode::Load(const char* text, CXmlParseInfo& parseInfo) {
  Clear();
  return text ? XmlReader(parseInfo).Read(*this, text) : nullptr;
}

const char* CXmlNode::Load(const char* text, CXmlParseInfo& parseInfo, XmlLossListener& losses) {
  Clear();
  return text ? XmlReader(parseInfo, &losses).Read(*this, text) : nullptr;
}

const char* CXmlNode::LoadWithFullEntities(const char* text) {
  CXmlParseInfo parseInfo;
  parseInfo.entityTable = &g_xmlEntitiesFull;
  return Load(text, parseInfo);
}

}  // namespace tarn
