#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

// Byte-wise text operations. Text is 8-bit and never converted; letters compare in ASCII only and
// independent of any locale.
namespace tarn {

bool EqualNoCase(std::string_view a, std::string_view b);
// Less than, equal to or greater than 0, like strcmp on the folded texts.
int CompareNoCase(std::string_view a, std::string_view b);
bool StartsWithNoCase(std::string_view text, std::string_view prefix);
bool EndsWithNoCase(std::string_view text, std::string_view suffix);
// ASCII capitals to small letters, every other byte as it is.
std::string FoldCase(std::string_view text);

// Blank, tab, CR, LF, VT and FF.
bool IsSpace(char c);
// The text without white space at both ends.
std::string_view Trim(std::string_view text);
std::string ReplaceAll(std::string_view text, std::string_view from, std::string_view to);
// Pieces between separators, empty pieces included; an empty text has no piece.
std::vector<std::string_view> Split(std::string_view text, char separator);
// The lines of the text without white space at their ends, empty ones left out.
std::vector<std::string> SplitLines(std::string_view text);
// The entries of a list of quoted entries with commas between them. A quote that neither a comma
// nor the end follows is part of its entry.
std::vector<std::string> SplitQuotedList(std::string_view list);

// The C function's rule: leading white space, a sign, digits; 0 without digits. Never overflows:
// the value wraps to its low 32 bits. A null text gives 0.
std::int32_t ParseDecimal(const char* text);
// The whole text as a signed 64-bit decimal number, with white space allowed in front; nothing for
// a text without digits or with a number too large. What stands behind the digits is ignored, as
// scanf does.
std::optional<std::int64_t> ParseInt64(std::string_view text);
std::string ToDecimal(std::int64_t number);

// Fills a printf-like format that came from a data file. Knows %s, %d and %% and nothing else:
// any other % stays as it stands, a missing argument gives nothing, a surplus one is left out, so
// no format can harm.
std::string FormatMessageText(std::string_view format, std::span<const std::string> arguments);

// A time in seconds since 1970 as date and time of the local zone, at most 127 bytes; empty when
// the time has no local form.
std::string FormatLocalTime(std::int64_t seconds);

// The null of a text argument reads as empty.
inline std::string TextOf(const char* text) {
  return text == nullptr ? std::string() : text;
}

}  // namespace tarn
