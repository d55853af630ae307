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
  explicit RichTextReader(std::string_view richText) : input(richText) {}

  RichText Read() {
    while (at < input.size()) ReadNext();
    // Unclosed groups end here.
    Flush(groups.size() - 1);
    return std::move(result);
  }

 private:
  void ReadNext() {
    const char c = input[at];
    if (c == '\\') return ReadControl();
    ++at;
    if (c == '{' && OpensGroup()) return OpenGroup();
    if (c == '}') closers.push_back(pending.size());
    AddPending(c);
  }

  void AddPending(char c) {
    if (c != ' ' && IsInstruction()) isInAddress = true;
    pending.push_back(c);
  }

  // --- Groups ---

  bool IsInstruction() const { return groups.back().destination == Destination::Instruction; }

  // Returns whether the opening brace just read starts a group. The address of a link is in a group
  // without a control word.
  bool OpensGroup() const {
    if (IsInstruction()) return !isInAddress || IsAtResult();
    const std::string_view rest = input.substr(at, 2);
    return rest.size() == 2 && rest[0] == '\\' && (IsLetter(rest[1]) || rest[1] == '*');
  }
  bool IsAtResult() const { return input.substr(at).starts_with("\\fldrslt"); }

  void OpenGroup() {
    const std::size_t field = groups.back().fieldDepth;
    // The result is an immediate child of its field, so all groups opened inside the field end
    // here.
    Flush(IsAtResult() && field != 0 ? groups.size() - field : Closable());
    groups.push_back(groups.back());
  }

  // Number of groups that may end before a control word: all except the outermost.
  std::size_t Closable() const { return groups.size() > 2 ? groups.size() - 2 : 0; }

  // Distributes the text since the last control word to its groups. Its last closing braces, at
  // most `mostClosed` of them, end groups; those before them are literal characters.
  void Flush(std::size_t mostClosed) {
    const std::size_t closed = std::min(mostClosed, closers.size());
    std::size_t start = 0;
    for (std::size_t i = closers.size() - closed; i < closers.size(); ++i) {
      Emit(std::string_view(pending).substr(start, closers[i] - start));
      start = closers[i] + 1;
      groups.pop_back();
    }
    Emit(std::string_view(pending).substr(start));
    pending.clear();
    closers.clear();
  }

  // --- Control words ---

  void ReadControl() {
    const char next = at + 1 < input.size() ? input[at + 1] : '\0';
    // Inside an address there are no control words; a backslash is literal.
    const bool isAddress = IsInstruction() && isInAddress;
    if (IsLetter(next) && !isAddress) {
      ReadControlWord();
    } else if (next == '*' && !isAddress) {
      at += 2;
    } else if (next == '\\' || next == '{' || next == '}') {
      AddPending(next);
      at += 2;
    } else {
      AddPending(input[at++]);
    }
  }

  void ReadControlWord() {
    const std::size_t start = ++at;
    while (at < input.size() && IsLetter(input[at])) ++at;
    const std::string_view word = input.substr(start, at - start);
    int number = -1;
    for (; at < input.size() && IsDigit(input[at]); ++at) {
      number = std::min(std::max(number, 0) * 10 + (input[at] - '0'), kLargestNumber);
    }
    if (at < input.size() && input[at] == ' ') ++at;
    Flush(Closable());
    Apply(word, number);
  }

  // `number` is negative if there is none.
  void Apply(std::string_view word, int number) {
    Group& group = groups.back();
    if (word == "cf") {
      const auto index = static_cast<std::size_t>(std::max(number, 0));
      group.color = index < colors.size() ? colors[index] : Color();
    } else if (word == "b") {
      group.isBold = number != 0;
    } else if (word == "par") {
      AddText(group, "\n");
    } else if (word == "colortbl") {
      group.destination = Destination::ColorTable;
    } else if (word == "field") {
      group.destination = Destination::Field;
      group.fieldDepth = groups.size();
    } else if (word == "fldinst") {
      group.destination = Destination::Instruction;
      instruction.clear();
      isInAddress = false;
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
    nextColor = (nextColor & ~(Color{0xFF} << shift)) | part << shift;
  }

  std::shared_ptr<const std::string> TakeTarget() {
    const std::string_view whole = Trim(instruction);
    std::shared_ptr<const std::string> target;
    if (whole.starts_with(kLinkWord)) {
      target = std::make_shared<const std::string>(Trim(whole.substr(kLinkWord.size())));
    }
    instruction.clear();
    return target;
  }

  // --- Text ---

  void Emit(std::string_view text) {
    const Group& group = groups.back();
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
        instruction += text;
        break;
      case Destination::ColorTable:
        for (const char c : text) {
          if (c == ';') colors.push_back(std::exchange(nextColor, Color()));
        }
        break;
    }
  }

  void AddText(const Group& group, std::string_view text) {
    if (text.empty()) return;
    const std::size_t start = result.text.size();
    result.text += text;
    const std::size_t end = result.text.size();
    if (!result.runs.empty()) {
      RichTextRun& last = result.runs.back();
      if (last.color == group.color && last.isBold == group.isBold && last.target == group.target) {
        last.range.end = end;
        return;
      }
    }
    result.runs.push_back({{start, end}, group.color, group.isBold, group.target});
  }

  std::string_view input;
  std::size_t at = 0;
  RichText result;
  std::vector<Group> groups{1};      // the first is outside of all braces and never ends
  std::string pending;               // text since the last control word
  std::vector<std::size_t> closers;  // offsets of the closing braces in it
  std::string instruction;           // of the current field
  bool isInAddress = false;          // the instruction is not empty
  std::vector<Color> colors;
  Color nextColor = 0;
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
