#include "hosts/frame/StateEnvelope.h"

#include <algorithm>
#include <charconv>
#include <cstring>

namespace tarn::host {

namespace {

constexpr std::string_view kMagic = "tarn-state ";
constexpr std::string_view kVersion = "1";

// Takes the piece in front of the next blank off `line`.
std::string_view TakeWord(std::string_view& line) {
  const std::size_t end = std::min(line.find(' '), line.size());
  const std::string_view word = line.substr(0, end);
  line.remove_prefix(std::min(end + 1, line.size()));
  return word;
}

bool ParseLength(std::string_view digits, std::size_t& length) {
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), length);
  return error == std::errc() && end == digits.data() + digits.size() && !digits.empty();
}

}  // namespace

std::string WrapState(std::string_view projectFileName, std::string_view body) {
  std::string bytes(kMagic);
  bytes.reserve(body.size() + projectFileName.size() + 64);
  bytes.append(kVersion).append(" ").append(std::to_string(body.size())).append(" ");
  bytes.append(ToHex(StateChecksum(body))).append(" ");
  AppendLineText(bytes, projectFileName);
  bytes.append("\n").append(body);
  return bytes;
}

StateBody UnwrapState(std::string_view bytes, std::string_view projectFileName) {
  const std::size_t lineEnd = bytes.find('\n');
  if (!bytes.starts_with(kMagic) || lineEnd == std::string_view::npos) return {};
  std::string_view line = bytes.substr(kMagic.size(), lineEnd - kMagic.size());
  if (TakeWord(line) != kVersion) return {StateVerdict::OtherVersion, {}};

  std::size_t length = 0;
  std::uint64_t checksum = 0;
  if (!ParseLength(TakeWord(line), length) || !FromHex(TakeWord(line), checksum)) return {};
  const std::string_view body = bytes.substr(lineEnd + 1);
  if (body.size() != length || StateChecksum(body) != checksum) return {};
  std::string name;
  if (!ParseLineText(line, name)) return {};
  if (name != projectFileName) return {StateVerdict::Foreign, {}};
  return {StateVerdict::Good, body};
}

std::uint64_t StateChecksum(std::string_view bytes) {
  // Each step maps the sum one to one for a given word, and the word one to one for a given sum,
  // so no single changed word can go unnoticed.
  std::uint64_t sum = 0x9E3779B97F4A7C15u ^ bytes.size();
  const auto mix = [&sum](std::uint64_t word) {
    sum = (sum ^ word) * 0xD6E8FEB86659FD93u;
    sum ^= sum >> 32;
  };
  while (bytes.size() >= sizeof(std::uint64_t)) {
    std::uint64_t word = 0;
    std::memcpy(&word, bytes.data(), sizeof word);
    mix(word);
    bytes.remove_prefix(sizeof word);
  }
  std::uint64_t rest = 0;
  if (!bytes.empty()) std::memcpy(&rest, bytes.data(), bytes.size());
  mix(rest);
  return sum;
}

std::string ToHex(std::uint64_t number) {
  constexpr char kDigits[] = "0123456789abcdef";
  std::string text(16, '0');
  for (auto digit = text.rbegin(); digit != text.rend(); ++digit, number >>= 4) {
    *digit = kDigits[number & 15];
  }
  return text;
}

bool FromHex(std::string_view digits, std::uint64_t& number) {
  number = 0;
  if (digits.size() != 16) return false;
  for (const char c : digits) {
    const bool isDigit = c >= '0' && c <= '9';
    const bool isLetter = c >= 'a' && c <= 'f';  // capitals are never written
    if (!isDigit && !isLetter) return false;
    number = number << 4 | static_cast<unsigned>(isDigit ? c - '0' : c - 'a' + 10);
  }
  return true;
}

void AppendLineText(std::string& out, std::string_view text) {
  for (;;) {
    const std::size_t special = text.find_first_of("%\n");
    out.append(text.substr(0, special));
    if (special == std::string_view::npos) return;
    out.append(text[special] == '%' ? "%25" : "%0A");
    text.remove_prefix(special + 1);
  }
}

bool ParseLineText(std::string_view line, std::string& text) {
  text.clear();
  for (;;) {
    const std::size_t percent = line.find('%');
    text.append(line.substr(0, percent));
    if (percent == std::string_view::npos) return true;
    const std::string_view code = line.substr(percent, 3);
    if (code != "%25" && code != "%0A") return false;
    text.push_back(code == "%25" ? '%' : '\n');
    line.remove_prefix(percent + 3);
  }
}

}  // namespace tarn::host
