#include "widgets/RichText.h"

#include <algorithm>
#include <array>
#include <utility>

namespace tarn {

namespace {

constexpr std::string_view kHeader = "{\\rtf";
constexpr std::string_view kLinkWord = "HYPERLINK";

// Larger parameters of control words have no meaning.
constexpr int kLargestNumber = 99999;

bool IsLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

bool IsUnshowable(char c) {
  return (static_cast<unsigned char>(c) < ' ' && c != '\t') || c == '\x7F';
}

std::string_view Trim(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == text.npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

// Destination of the text in a group.
enum class Destination { Text, ColorTable, Field, Instruction };

struct Group {
  Destination destination = Destination::Text;
  Color color = 0;
  bool isBold = false;
  std::size_t fieldDepth = 0;  // number of groups up to the innermost field; 0: outside of any
  std::shared_ptr<const std::string> target;
};

class RichTextReader {
 public:
  explicit RichTextReader(std::string_view richText) : input_(richText) {}

  RichText Read() {
    while (at_ < input_.size()) ReadNext();
    // Unclosed groups end here.
    Flush(groups_.size() - 1);
    return std::move(result_);
  }

 private:
  void ReadNext() {
    const char c = input_[at_];
    if (c == '\\') return ReadControl();
    ++at_;
    if (c == '{' && OpensGroup()) return OpenGroup();
    if (c == '}') closers_.push_back(pending_.size());
    AddPending(c);
  }

  void AddPending(char c) {
    if (c != ' ' && IsInstruction()) isInAddress_ = true;
    pending_.push_back(c);
  }

  // --- Groups ---

  bool IsInstruction() const { return groups_.back().destination == Destination::Instruction; }

  // Returns whether the opening brace just read starts a group. The address of a link is in a group
  // without a control word.
  bool OpensGroup() const {
    if (IsInstruction()) return !isInAddress_ || IsAtResult();
    const std::string_view rest = input_.substr(at_, 2);
    return rest.size() == 2 && rest[0] == '\\' && (IsLetter(rest[1]) || rest[1] == '*');
  }
  bool IsAtResult() const { return input_.substr(at_).starts_with("\\fldrslt"); }

  void OpenGroup() {
    const std::size_t field = groups_.back().fieldDepth;
    // The result is an immediate child of its field, so all groups opened inside the field end
    // here.
    Flush(IsAtResult() && field != 0 ? groups_.size() - field : Closable());
    groups_.push_back(groups_.back());
  }

  // Number of groups that may end before a control word: all except the outermost.
  std::size_t Closable() const { return groups_.size() > 2 ? groups_.size() - 2 : 0; }

  // Distributes the text since the last control word to its groups. Its last closing braces, at
  // most `mostClosed` of them, end groups; those before them are literal characters.
  void Flush(std::size_t mostClosed) {
    const std::size_t closed = std::min(mostClosed, closers_.size());
    std::size_t start = 0;
    for (std::size_t i = closers_.size() - closed; i < closers_.size(); ++i) {
      Emit(std::string_view(pending_).substr(start, closers_[i] - start));
      start = closers_[i] + 1;
      groups_.pop_back();
    }
    Emit(std::string_view(pending_).substr(start));
    pending_.clear();
    closers_.clear();
  }

  // --- Control words ---

  void ReadControl() {
    const char next = at_ + 1 < input_.size() ? input_[at_ + 1] : '\0';
    // Inside an address there are no control words; a backslash is literal.
    const bool isAddress = IsInstruction() && isInAddress_;
    if (IsLetter(next) && !isAddress) {
      ReadControlWord();
    } else if (next == '*' && !isAddress) {
      at_ += 2;
    } else if (next == '\\' || next == '{' || next == '}') {
      AddPending(next);
      at_ += 2;
    } else {
      AddPending(input_[at_++]);
    }
  }

  void ReadControlWord() {
    const std::size_t start = ++at_;
    while (at_ < input_.size() && IsLetter(input_[at_])) ++at_;
    const std::string_view word = input_.substr(start, at_ - start);
    int number = -1;
    for (; at_ < input_.size() && IsDigit(input_[at_]); ++at_) {
      number = std::min(std::max(number, 0) * 10 + (input_[at_] - '0'), kLargestNumber);
    }
    if (at_ < input_.size() && input_[at_] == ' ') ++at_;
    Flush(Closable());
    Apply(word, number);
  }

  // `number` is negative if there is none.
  void Apply(std::string_view word, int number) {
    Group& group = groups_.back();
    if (word == "cf") {
      const auto index = static_cast<std::size_t>(std::max(number, 0));
      group.color = index < colors_.size() ? colors_[index] : Color();
    } else if (word == "b") {
      group.isBold = number != 0;
    } else if (word == "par") {
      AddText(group, "\n");
    } else if (word == "colortbl") {
      group.destination = Destination::ColorTable;
    } else if (word == "field") {
      group.destination = Destination::Field;
      group.fieldDepth = groups_.size();
    } else if (word == "fldinst") {
      group.destination = Destination::Instruction;
      instruction_.clear();
      isInAddress_ = false;
    } else if (word == "fldrslt") {
      group.destination = Destination::Text;
      group.target = TakeTarget();
    } else if (group.destination == Destination::ColorTable) {
      ApplyToColor(word, static_cast<Color>(std::clamp(number, 0, 255)));
    }
  }

  void ApplyToColor(std::string_view word, Color part) {
    static constexpr std::array<std::string_view, 3> kParts = {"red", "green", "blue"};
    const auto* const found = std::find(kParts.begin(), kParts.end(), word);
    if (found == kParts.end()) return;
    const auto shift = static_cast<unsigned>(found - kParts.begin()) * 8;
    nextColor_ = (nextColor_ & ~(Color{0xFF} << shift)) | part << shift;
  }

  std::shared_ptr<const std::string> TakeTarget() {
    const std::string_view whole = Trim(instruction_);
    std::shared_ptr<const std::string> target;
    if (whole.starts_with(kLinkWord)) {
      target = std::make_shared<const std::string>(Trim(whole.substr(kLinkWord.size())));
    }
    instruction_.clear();
    return target;
  }

  // --- Text ---

  void Emit(std::string_view text) {
    const Group& group = groups_.back();
    switch (group.destination) {
      case Destination::Field:
        // A field should contain only its parts; text that a tool has put there is shown anyway.
        if (Trim(text).empty()) break;
        [[fallthrough]];
      case Destination::Text: {
        std::string shown(text);
        std::replace_if(shown.begin(), shown.end(), IsUnshowable, ' ');
        AddText(group, shown);
        break;
      }
      case Destination::Instruction:
        instruction_ += text;
        break;
      case Destination::ColorTable:
        for (const char c : text) {
          if (c == ';') colors_.push_back(std::exchange(nextColor_, Color()));
        }
        break;
    }
  }

  void AddText(const Group& group, std::string_view text) {
    if (text.empty()) return;
    const std::size_t start = result_.text.size();
    result_.text += text;
    const std::size_t end = result_.text.size();
    if (!result_.runs.empty()) {
      RichTextRun& last = result_.runs.back();
      if (last.color == group.color && last.isBold == group.isBold && last.target == group.target) {
        last.range.end = end;
        return;
      }
    }
    result_.runs.push_back({{start, end}, group.color, group.isBold, group.target});
  }

  std::string_view input_;
  std::size_t at_ = 0;
  RichText result_;
  std::vector<Group> groups_{1};      // the first is outside of all braces and never ends
  std::string pending_;               // text since the last control word
  std::vector<std::size_t> closers_;  // offsets of the closing braces in it
  std::string instruction_;           // of the current field
  bool isInAddress_ = false;          // the instruction is not empty
  std::vector<Color> colors_;
  Color nextColor_ = 0;
};

RichText PlainText(std::string_view text) {
  RichText plain;
  plain.text = text;
  if (!text.empty()) plain.runs.push_back({{0, text.size()}, 0, false, nullptr});
  return plain;
}

}  // namespace

RichText ReadRichText(std::string_view richText) {
  return richText.starts_with(kHeader) ? RichTextReader(richText).Read() : PlainText(richText);
}

}  // namespace tarn
