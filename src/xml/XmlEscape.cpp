#include "xml/XmlEscape.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>

namespace tarn {
namespace {

struct Named {
  char character;
  std::string_view reference;
};
constexpr Named kNamed[] = {
    {'&', "&amp;"}, {'<', "&lt;"}, {'>', "&gt;"}, {'"', "&quot;"}, {'\'', "&apos;"}};

// Returns true if XML allows the character in a file. Surrogates aren't characters.
bool IsCharacter(std::uint32_t code) {
  if (code < 0x20) return code == '\t' || code == '\n' || code == '\r';
  return code < 0xD800 || (code >= 0xE000 && code <= 0xFFFD) ||
         (code >= 0x10000 && code <= 0x10FFFF);
}

std::uint32_t ByteAt(std::string_view text, std::size_t at) {
  return at < text.size() ? static_cast<unsigned char>(text[at]) : 0;
}

// Decodes the UTF-8 character of two to four bytes at `at` and sets `length` to its size. Leaves
// `length` at 1 and returns the first byte if there is no such character.
std::uint32_t ReadUtf8(std::string_view text, std::size_t at, std::size_t& length) {
  constexpr std::uint32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
  const std::uint32_t first = ByteAt(text, at);
  length = 1;
  const std::size_t count = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : first >= 0xC0 ? 2 : 0;
  if (count == 0 || first > 0xF4) return first;
  std::uint32_t code = first & (0x7FU >> count);
  for (std::size_t i = 1; i < count; ++i) {
    const std::uint32_t next = ByteAt(text, at + i);
    if ((next & 0xC0) != 0x80) return first;
    code = code << 6 | (next & 0x3F);
  }
  if (code < kLeast[count] || !IsCharacter(code)) return first;
  length = count;
  return code;
}

void AppendUtf8(std::string& out, std::uint32_t code) {
  const std::size_t more = code < 0x80 ? 0 : code < 0x800 ? 1 : code < 0x10000 ? 2 : 3;
  constexpr std::uint32_t kMarks[] = {0, 0xC0, 0xE0, 0xF0};
  out += static_cast<char>(kMarks[more] | code >> (6 * more));
  for (std::size_t i = more; i > 0; --i) {
    out += static_cast<char>(0x80 | (code >> (6 * (i - 1)) & 0x3F));
  }
}

void AppendNumeric(std::string& out, std::uint32_t code) {
  out.append("&#").append(std::to_string(code)).append(1, ';');
}

// Returns the character that a complete numeric reference denotes, or 0, which no reference can
// denote, for any other string.
std::uint32_t NumberOf(std::string_view reference) {
  if (!reference.starts_with("&#") || !reference.ends_with(';')) return 0;
  std::string_view digits = reference.substr(2, reference.size() - 3);
  const int base = digits.starts_with('x') ? 16 : 10;
  if (base == 16) digits.remove_prefix(1);
  std::uint32_t code = 0;
  const auto [end, error] =
      std::from_chars(digits.data(), digits.data() + digits.size(), code, base);
  const bool isWhole = error == std::errc() && end == digits.data() + digits.size();
  return isWhole && IsCharacter(code) ? code : 0;
}

// Appends the character that `reference` denotes and returns true, or returns false if it isn't a
// reference.
bool AppendReferred(std::string& out, std::string_view reference) {
  for (const Named& each : kNamed) {
    if (reference == each.reference) return out += each.character, true;
  }
  const std::uint32_t code = NumberOf(reference);
  if (code != 0) AppendUtf8(out, code);
  return code != 0;
}

// Returns the reference that may start at `at`, up to its semicolon; empty if no semicolon follows
// within the length of the longest reference.
std::string_view ReferenceAt(std::string_view text, std::size_t at) {
  constexpr std::size_t kLongest = 12;
  const std::string_view start = text.substr(at, kLongest);
  const std::size_t end = start.find(';');
  return end == std::string_view::npos ? std::string_view() : start.substr(0, end + 1);
}

// The reference that `XmlWriter` uses for a vertical bar.
constexpr std::string_view kBarReference = "&slash;";

// Bytes that stay unchanged. These are nearly all, so runs of them are copied as a whole.
constexpr std::array<bool, 256> kIsPlain = [] {
  std::array<bool, 256> plain{};
  for (std::size_t byte = 0x20; byte < 0x80; ++byte) plain[byte] = true;
  plain['\t'] = true;
  for (const char byte : {'&', '<', '>', '|'}) plain[static_cast<std::size_t>(byte)] = false;
  return plain;
}();

std::size_t EndOfPlain(std::string_view text, std::size_t at) {
  while (at < text.size() && kIsPlain[static_cast<unsigned char>(text[at])]) ++at;
  return at;
}

// Appends the encoded form of the byte or character at `at`, which isn't plain. Returns the
// position after it.
std::size_t AppendEncoded(std::string& out, std::string_view text, std::size_t at) {
  std::size_t length = 1;
  const std::uint32_t code = ReadUtf8(text, at, length);
  const auto named = std::find_if(std::begin(kNamed), std::begin(kNamed) + 3,
                                  [&](const Named& n) { return n.character == text[at]; });
  if (named != std::begin(kNamed) + 3) {
    out += named->reference;
  } else if (length > 1 || code == '|') {
    AppendNumeric(out, code);
  } else {
    out += code < 0x20 ? ' ' : text[at];
  }
  return at + length;
}

// Appends an attribute value or an element's text as it is encoded in a file. Line ends are layout
// there and stay.
void AppendConforming(std::string& out, std::string_view text) {
  std::size_t at = 0;
  while (at < text.size()) {
    const std::size_t next = EndOfPlain(text, at);
    out += text.substr(at, next - at);
    at = next;
    if (at == text.size()) return;
    const bool isReference = text[at] == '&';
    if (!isReference && text[at] != '\r' && text[at] != '\n') {
      at = AppendEncoded(out, text, at);
      continue;
    }
    const std::string_view part = isReference ? ReferenceAt(text, at) : text.substr(at, 1);
    std::string referred;
    if (part == kBarReference) {
      AppendNumeric(out, '|');
      at += part.size();
    } else if (!isReference || AppendReferred(referred, part)) {
      out += part;
      at += part.size();
    } else {
      out += "&amp;";
      ++at;
    }
  }
}

// Returns the end of the processing instruction, comment or CDATA section that starts at `at`, or
// `at` if none starts there. Such a section is copied unchanged, as it holds no values.
std::size_t EndOfWhole(std::string_view file, std::size_t at) {
  constexpr std::string_view kWholes[][2] = {{"<?", "?>"}, {"<!--", "-->"}, {"<![CDATA[", "]]>"}};
  for (const auto& [open, close] : kWholes) {
    if (!file.substr(at).starts_with(open)) continue;
    const std::size_t end = file.find(close, at + open.size());
    return end == std::string_view::npos ? file.size() : end + close.size();
  }
  return at;
}

// Appends the tag that starts at `at`, its attribute values encoded. Returns the position after it.
std::size_t AppendTag(std::string& out, std::string_view file, std::size_t at) {
  while (at < file.size()) {
    std::size_t stop = at;
    while (stop + 1 < file.size() && file[stop] != '"' && file[stop] != '>') ++stop;
    out += file.substr(at, stop + 1 - at);
    at = stop + 1;
    if (file[stop] != '"') return at;
    const std::size_t end = std::min(file.find('"', at), file.size());
    AppendConforming(out, file.substr(at, end - at));
    if (end < file.size()) out += '"';
    at = std::min(end + 1, file.size());
  }
  return at;
}

}  // namespace

std::string EscapeXml(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t next = EndOfPlain(text, at);
    out += text.substr(at, next - at);
    at = next < text.size() ? AppendEncoded(out, text, next) : next;
  }
  return out;
}

std::string UnescapeXml(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t start = std::min(text.find('&', at), text.size());
    out += text.substr(at, start - at);
    if (start == text.size()) break;
    const std::string_view reference = ReferenceAt(text, start);
    const bool isReference = AppendReferred(out, reference);
    if (!isReference) out += '&';
    at = start + (isReference ? reference.size() : 1);
  }
  return out;
}

std::size_t FindBareMarkup(std::string_view text, std::size_t at) {
  for (at = text.find('<', at); at != text.npos; at = text.find('<', at + 1)) {
    std::size_t start = at;
    while (start > 0 && text[start - 1] == '\\') --start;
    if ((at - start) % 2 == 0) break;
  }
  return at;
}

std::string ToConformingXml(std::string_view file) {
  std::string out;
  out.reserve(file.size());
  for (std::size_t at = 0; at < file.size();) {
    const std::size_t tag = std::min(FindBareMarkup(file, at), file.size());
    AppendConforming(out, file.substr(at, tag - at));
    const std::size_t end = EndOfWhole(file, tag);
    out += file.substr(tag, end - tag);
    at = end > tag ? end : AppendTag(out, file, tag);
  }
  return out;
}

}  // namespace tarn
