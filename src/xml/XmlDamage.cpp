#include "xml/XmlDamage.h"

#include <algorithm>

#include "xml/XmlNode.h"

namespace tarn {

namespace {

// Description of each kind of loss. "%" is replaced by the name, or by the beginning of the text
// that was lost.
struct LossText {
  XmlLoss loss;
  const char* text;
};

constexpr LossText kLossTexts[] = {
    {XmlLoss::SkippedText, "stray text \"%\""},
    {XmlLoss::KeptText, "stray text \"%\""},
    {XmlLoss::ProtectedTag, "a backslash before \"<\" makes the tag a part of the text of <%>"},
    {XmlLoss::Instruction, "a processing instruction, which is not read"},
    {XmlLoss::StoredCData, "a CDATA section, which is not read"},
    {XmlLoss::UnknownMarkup, "unknown markup <%"},
    {XmlLoss::BadElementName, "malformed tag <%"},
    {XmlLoss::BadAttribute, "malformed attribute \"%\""},
    {XmlLoss::RepeatedAttribute, "the attribute \"%\" is repeated; only the first one is read"},
    {XmlLoss::OpenElement, "the file ends inside <%>"},
    {XmlLoss::BrokenTag, "incomplete tag of <%>; nothing after it is read"},
    {XmlLoss::OpenMarkup, "% without its end; nothing after it is read"},
    {XmlLoss::ForeignCloseTag, "</%> closes another element; nothing after it is read"},
    {XmlLoss::TooDeep, "elements nest too deeply; nothing after this is read"},
    {XmlLoss::NoElement, "the file ends before its first element"},
    {XmlLoss::Trailing, "content after the end of the root element, which is not read"},
};

constexpr std::string_view kConflictMarks[] = {"<<<<<<<", "|||||||", "=======", ">>>>>>>"};
constexpr std::size_t kMaxExcerpt = 40;

// Returns the beginning of the first line of `text`, without control characters.
std::string Excerpt(std::string_view text) {
  std::string out;
  for (const char c : text.substr(0, text.find_first_of("\r\n"))) {
    if (out.size() == kMaxExcerpt) return out + "...";
    out += static_cast<unsigned char>(c) < ' ' || c == '\x7F' ? ' ' : c;
  }
  return out;
}

std::string_view LineAt(std::string_view text, std::size_t offset) {
  const std::size_t before = text.substr(0, offset).find_last_of("\r\n");
  const std::string_view rest = text.substr(before == text.npos ? 0 : before + 1);
  return rest.substr(0, rest.find_first_of("\r\n"));
}

// Returns the position of the first line that only a merge writes. The marker of equal signs
// doesn't count: a row of them may be an ornament in a comment.
std::size_t FindConflict(std::string_view text) {
  std::size_t found = text.npos;
  for (const std::string_view mark : {kConflictMarks[0], kConflictMarks[3]}) {
    std::size_t at = text.find(mark);
    while (at != text.npos && at > 0 && text[at - 1] != '\n' && text[at - 1] != '\r') {
      at = text.find(mark, at + 1);
    }
    found = std::min(found, at);
  }
  return found;
}

// Collects the earliest fault of a file.
class FaultFinder : public XmlLossListener {
 public:
  FaultFinder(std::string_view fileText, XmlTexts fileTexts) : text_(fileText), texts_(fileTexts) {
    Add(text_.find('\0'), "a zero byte; nothing after it is read");
    Add(FindConflict(text_), std::string(kConflictDamage));
  }

  void OnLoss(XmlLoss loss, const char* position, std::string_view name,
              const CXmlNode* element) override {
    const auto offset = static_cast<std::size_t>(position - text_.data());
    if (loss == XmlLoss::Instruction || offset >= first_) return;
    if (loss == XmlLoss::SkippedText && offset == 0 && name == kByteOrderMark) return;
    const bool mayHoldText = texts_ == XmlTexts::InElements;
    if (loss == XmlLoss::StoredCData && mayHoldText) return;
    if (loss == XmlLoss::KeptText && mayHoldText && !HoldsElements(*element)) return;
    Add(offset, DescribeLoss(text_, loss, offset, name));
  }

  // Returns "FILE:LINE: description" of the fault, or an empty string if there is none.
  std::string ToString(std::string_view file) const {
    if (what_.empty()) return {};
    const int line = 1 + CountLineEnds(text_, 0, first_);
    return std::string(file) + ":" + std::to_string(line) + ": " + what_;
  }

 private:
  void Add(std::size_t offset, std::string fault) {
    if (offset >= first_) return;
    first_ = offset;
    what_ = std::move(fault);
  }

  std::string_view text_;
  XmlTexts texts_;
  std::size_t first_ = std::string_view::npos;
  std::string what_;
};

}  // namespace

bool IsConflictMark(std::string_view line) {
  return std::any_of(std::begin(kConflictMarks), std::end(kConflictMarks),
                     [line](std::string_view mark) { return line.starts_with(mark); });
}

std::string DescribeLoss(std::string_view text, XmlLoss loss, std::size_t offset,
                         std::string_view name) {
  if (IsConflictMark(LineAt(text, offset))) return std::string(kConflictDamage);
  if (offset == 0 && text.starts_with(kByteOrderMark)) return "a byte order mark";
  const auto* const row = std::find_if(std::begin(kLossTexts), std::end(kLossTexts),
                                       [loss](const LossText& each) { return each.loss == loss; });
  std::string what = row->text;
  if (const std::size_t mark = what.find('%'); mark != what.npos) {
    what.replace(mark, 1, Excerpt(name));
  }
  return what;
}

int CountLineEnds(std::string_view text, std::size_t begin, std::size_t end) {
  int count = 0;
  for (std::size_t i = begin; i < end && i < text.size(); ++i) {
    const bool isPair = text.substr(i, 2) == "\r\n";
    if (text[i] == '\n' || (text[i] == '\r' && !isPair)) ++count;
  }
  return count;
}

bool HoldsElements(const CXmlNode& node) {
  for (int i = 0; i < node.GetChildCount(); ++i) {
    if (node.GetChild(i)->GetType() == XmlElement) return true;
  }
  return false;
}

std::string LoadWhole(CXmlNode& node, const std::string& text, XmlTexts texts,
                      std::string_view file) {
  FaultFinder finder(text, texts);
  CXmlParseInfo parseInfo;
  node.Load(text.c_str(), parseInfo, finder);
  return finder.ToString(file);
}

}  // namespace tarn
