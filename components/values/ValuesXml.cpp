#include "components/values/ValuesXml.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace tarn {

namespace {

constexpr std::uint8_t kInValues = 1;
constexpr std::uint8_t kInNames = 2;

constexpr std::array<std::uint8_t, 256> MakeHarmful() {
  std::array<std::uint8_t, 256> table{};
  for (std::size_t i = 0; i < 0x20; ++i) table[i] = kInValues | kInNames;
  table[0x7F] = table[0xA7] = kInValues | kInNames;
  for (const char c : {'&', '"', '|', '<', ']'}) {
    table[static_cast<unsigned char>(c)] = kInValues | kInNames;
  }
  for (const char c : {' ', '=', '>', '/', '\'', '\\'}) {
    table[static_cast<unsigned char>(c)] = kInNames;
  }
  return table;
}

constexpr std::array<std::uint8_t, 256> kHarmful = MakeHarmful();

void AppendReference(std::string& to, unsigned char byte) {
  to += "&#";
  char digits[4];
  const auto end = std::to_chars(digits, digits + sizeof digits, unsigned{byte}).ptr;
  to.append(digits, end);
  to += ';';
}

void AppendWithout(std::string& to, std::string_view text, std::uint8_t kind) {
  std::size_t begin = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    if ((kHarmful[byte] & kind) == 0) continue;
    to.append(text, begin, i - begin);
    AppendReference(to, byte);
    begin = i + 1;
  }
  to.append(text, begin);
}

// Returns the length of the character reference at the start of `text`; 0 if there is none.
std::size_t ReadReference(std::string_view text, char& byte) {
  if (text.starts_with("&quot;")) return byte = '"', 6;
  if (text.starts_with("&slash;")) return byte = '|', 7;
  if (!text.starts_with("&#")) return 0;
  unsigned number = 0;
  const auto [end, failed] = std::from_chars(text.data() + 2, text.data() + text.size(), number);
  if (failed != std::errc() || number > 255) return 0;
  const auto length = static_cast<std::size_t>(end - text.data());
  if (length >= text.size() || *end != ';') return 0;
  byte = static_cast<char>(number);
  return length + 1;
}

bool IsBlank(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

std::string_view SkipBlanks(std::string_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  return text;
}

// Parses ` name="value"` at the start of `rest` and removes it; returns false for anything else.
bool TakeAttribute(std::string_view& rest, std::string_view& name, std::string_view& value) {
  rest = SkipBlanks(rest);
  const std::size_t equal = rest.find_first_of("=/>");
  if (equal == std::string_view::npos || rest[equal] != '=' || equal == 0) return false;
  if (equal + 1 >= rest.size() || rest[equal + 1] != '"') return false;
  const std::size_t end = rest.find('"', equal + 2);
  if (end == std::string_view::npos) return false;
  name = rest.substr(0, equal);
  value = rest.substr(equal + 2, end - equal - 2);
  rest.remove_prefix(end + 1);
  return true;
}

std::string UnescapeValue(std::string_view text) {
  std::string value = Unescape(text);
  if (text.find('\xA7') == std::string_view::npos) return value;
  value.clear();
  std::string restored(text);
  for (char& c : restored) {
    if (c == '\xA7') c = ']';
  }
  return Unescape(restored);
}

// Returns the end of a name in a list: a ";" that does not belong to a reference.
std::size_t EndOfName(std::string_view list) {
  for (std::size_t i = 0; i < list.size();) {
    if (list[i] == ';') return i;
    char byte = 0;
    i += std::max<std::size_t>(ReadReference(list.substr(i), byte), 1);
  }
  return list.size();
}

void TakeList(std::string_view text, std::vector<std::string>& list) {
  while (!text.empty()) {
    const std::size_t end = EndOfName(text);
    // Type names are never empty.
    if (end > 0) list.push_back(Unescape(text.substr(0, end)));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
}

void TakeMarks(std::string_view text, std::vector<std::uint64_t>& marks) {
  while (!text.empty()) {
    const std::size_t end = std::min(text.find(','), text.size());
    std::uint64_t mark = 0;
    std::from_chars(text.data(), text.data() + end, mark, 16);
    marks.push_back(mark);
    text.remove_prefix(std::min(end + 1, text.size()));
  }
}

constexpr char kLayerNames[] = {'v', 'i', 'd'};

// Parses one element of values; `rest` starts after its "<".
bool ReadElement(std::string_view& rest, ValuesSink& sink) {
  const std::string_view letters(kLayerNames, 3);
  const std::size_t layer = rest.empty() ? std::string_view::npos : letters.find(rest.front());
  if (layer == std::string_view::npos) return false;
  rest.remove_prefix(1);
  std::string_view name;
  std::string_view text;
  if (!TakeAttribute(rest, name, text) || name != "s") return false;
  const std::string set = Unescape(text);
  if (!TakeAttribute(rest, name, text) || name != "k") return false;
  const std::string section = Unescape(text);
  while (TakeAttribute(rest, name, text)) {
    sink.OnValue(static_cast<ValueLayer>(layer), set, section, Unescape(name), UnescapeValue(text));
  }
  rest = SkipBlanks(rest);
  if (!rest.starts_with("/>")) return false;
  rest.remove_prefix(2);
  return true;
}

bool ReadHeader(std::string_view& rest, ValuesHeader& header) {
  std::string_view name;
  std::string_view text;
  while (TakeAttribute(rest, name, text)) {
    if (name == "Set") header.ownSet = Unescape(text);
    if (name == "Outer") TakeList(text, header.outerSets);
    if (name == "Config") header.config = Unescape(text);
    if (name == "Applied") TakeMarks(text, header.applied);
  }
  rest = SkipBlanks(rest);
  if (!rest.starts_with(">")) return false;
  rest.remove_prefix(1);
  return true;
}

// Set names are joined with ";", so one inside a name is escaped too.
void AppendSetName(std::string& to, std::string_view name) {
  for (const char c : name) {
    if (c == ';') {
      AppendReference(to, ';');
    } else {
      AppendEscapedName(to, std::string_view(&c, 1));
    }
  }
}

}  // namespace

void AppendEscaped(std::string& to, std::string_view value) {
  // A backslash before a closing quote would escape the quote in Tarn's parser.
  const bool endsInBackslash = value.ends_with('\\');
  if (endsInBackslash) value.remove_suffix(1);
  AppendWithout(to, value, kInValues);
  if (endsInBackslash) AppendReference(to, '\\');
}

void AppendEscapedName(std::string& to, std::string_view name) {
  AppendWithout(to, name, kInNames);
}

std::string Escape(std::string_view value) {
  std::string text;
  AppendEscaped(text, value);
  return text;
}

std::string Unescape(std::string_view text) {
  std::string plain;
  plain.reserve(text.size());
  for (;;) {
    const std::size_t at = text.find('&');
    plain.append(text, 0, at);
    if (at == std::string_view::npos) return plain;
    text.remove_prefix(at);
    char byte = '&';
    const std::size_t length = ReadReference(text, byte);
    plain += byte;
    text.remove_prefix(length == 0 ? 1 : length);
  }
}

bool ValuesHeader::OwnSetIsOuter() const {
  for (const std::string& set : outerSets) {
    if (set == ownSet) return true;
  }
  return false;
}

bool HasRoot(std::string_view text, std::string_view name) {
  text = SkipBlanks(text);
  if (!text.starts_with('<')) return false;
  text.remove_prefix(1);
  if (!text.starts_with(name)) return false;
  text.remove_prefix(name.size());
  return text.empty() || IsBlank(text.front()) || text.front() == '>' || text.front() == '/';
}

bool ReadValuesXml(std::string_view text, ValuesSink& sink) {
  if (!HasRoot(text, "Values")) return false;
  std::string_view rest = SkipBlanks(text);
  rest.remove_prefix(std::string_view("<Values").size());
  ValuesHeader header;
  if (!ReadHeader(rest, header)) return false;
  sink.OnHeader(header);
  for (;;) {
    rest = SkipBlanks(rest);
    if (rest.starts_with("</Values>")) return true;
    if (!rest.starts_with('<')) return false;
    rest.remove_prefix(1);
    if (!ReadElement(rest, sink)) return false;
  }
}

void ValuesWriter::Begin(const ValuesHeader& header) {
  to_ += "<Values Set=\"";
  AppendEscaped(to_, header.ownSet);
  to_ += "\" Outer=\"";
  for (std::size_t i = 0; i < header.outerSets.size(); ++i) {
    if (i > 0) to_ += ';';
    AppendSetName(to_, header.outerSets[i]);
  }
  to_ += "\" Config=\"";
  AppendEscaped(to_, header.config);
  to_ += "\" Applied=\"";
  for (std::size_t i = 0; i < header.applied.size(); ++i) {
    if (i > 0) to_ += ',';
    char digits[16];
    to_.append(digits, std::to_chars(digits, digits + sizeof digits, header.applied[i], 16).ptr);
  }
  to_ += "\">";
}

void ValuesWriter::Value(ValueLayer layer, std::string_view set, std::string_view section,
                         std::string_view property, std::string_view value) {
  // A property without a name can't be written, and is never read either.
  if (property.empty()) return;
  if (!open_ || layer != openLayer_ || section != openSection_ || set != openSet_) {
    Flush();
    open_ = true;
    openLayer_ = layer;
    openSet_.assign(set);
    openSection_.assign(section);
    to_ += '<';
    to_ += kLayerNames[static_cast<std::size_t>(layer)];
    to_ += " s=\"";
    AppendEscaped(to_, set);
    to_ += "\" k=\"";
    AppendEscaped(to_, section);
    to_ += '"';
  }
  to_ += ' ';
  AppendEscapedName(to_, property);
  to_ += "=\"";
  AppendEscaped(to_, value);
  to_ += '"';
}

void ValuesWriter::Ready(std::string_view elements) {
  Flush();
  to_ += elements;
}

void ValuesWriter::Flush() {
  if (open_) to_ += "/>";
  open_ = false;
}

void ValuesWriter::End() {
  Flush();
  to_ += "</Values>";
}

}  // namespace tarn
