#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

// Byte-wise string operations. Strings are 8-bit and never converted; case is folded for ASCII
// letters only, independent of the locale.
namespace tarn {

bool EqualNoCase(std::string_view a, std::string_view b);
// Less than, equal to or greater than 0, like strcmp on the folded strings.
int CompareNoCase(std::string_view a, std::string_view b);
bool StartsWithNoCase(std::string_view text, std::string_view prefix);
bool EndsWithNoCase(std::string_view text, std::string_view suffix);
// Converts ASCII capitals to small letters; all other bytes are unchanged.
std::string FoldCase(std::string_view text);

// Space, tab, CR, LF, VT and FF.
bool IsSpace(char c);
// Strips whitespace at both ends.
std::string_view Trim(std::string_view text);
std::string ReplaceAll(std::string_view text, std::string_view from, std::string_view to);
// Tokens between separators, including empty ones; an empty string has no token.
std::vector<std::string_view> Split(std::string_view text, char separator);
// The lines of the text, stripped of whitespace at both ends, without empty lines.
std::vector<std::string> SplitLines(std::string_view text);
// Parses a comma-separated list of quoted entries. A quote followed by neither a comma nor the end
// belongs to its entry.
std::vector<std::string> SplitQuotedList(std::string_view list);

// Parses like the C function: leading whitespace, a sign, digits; 0 without digits. Never
// overflows: the value wraps to its low 32 bits. Returns 0 for a null string.
std::int32_t ParseDecimal(const char* text);
// Parses a signed 64-bit decimal number, with leading whitespace allowed. Returns nullopt for a
// string without digits or for a number out of range. Ignores what follows the digits, like scanf.
std::optional<std::int64_t> ParseInt64(std::string_view text);
std::string ToDecimal(std::int64_t number);

// Expands a printf-like format from a data file. Supports only %s, %d and %%: any other % is copied
// verbatim, a missing argument expands to nothing, a surplus one is ignored. So a malicious format
// can do no harm.
std::string FormatMessageText(std::string_view format, std::span<const std::string> arguments);

// Formats a time in seconds since 1970 as local date and time, at most 127 bytes. Returns an empty
// string if the time has no local form.
std::string FormatLocalTime(std::int64_t seconds);

// Converts a null string argument to an empty string.
inline std::string OrEmpty(const char* text) {
  return text == nullptr ? std::string() : text;
}

}  // namespace tarn
