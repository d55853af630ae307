#include "builder/StateText.h"

#include <algorithm>
#include <charconv>
#include <cstring>

namespace tarn {

namespace {

constexpr std::string_view kMagic = "tarn-state ";
constexpr std::string_view kVersion = "2";
constexpr std::string_view kBlock = "B ";

// Removes and returns the token before the next space; also removes the space.
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

std::string StateHead(std::string_view projectFileName) {
  std::string head(kMagic);
  head.append(kVersion).append(" ");
  AppendLineText(head, projectFileName);
  return head + "\n";
}

std::string StateBlock(std::string_view body, std::uint64_t& chain) {
  chain = StateChecksum(body, chain);
  std::string block(kBlock);
  block.reserve(body.size() + 48);
  block.append(std::to_string(body.size())).append(" ").append(ToHex(chain)).append("\n");
  return block.append(body);
}

StateReader::StateReader(std::string_view bytes, std::string_view projectFileName) : bytes_(bytes) {
  const std::size_t lineEnd = bytes.find('\n');
  if (!bytes.starts_with(kMagic) || lineEnd == std::string_view::npos) return;
  std::string_view line = bytes.substr(kMagic.size(), lineEnd - kMagic.size());
  std::string name;
  if (TakeWord(line) != kVersion) {
    verdict_ = StateVerdict::OtherVersion;
  } else if (ParseLineText(line, name)) {
    verdict_ = name == projectFileName ? StateVerdict::Good : StateVerdict::Foreign;
  }
  length_ = lineEnd + 1;
  chain_ = StateChecksum(bytes.substr(0, length_));
}

bool StateReader::Next(std::string_view& body) {
  const std::string_view rest = bytes_.substr(length_);
  const std::size_t lineEnd = rest.find('\n');
  if (verdict_ != StateVerdict::Good || !rest.starts_with(kBlock) || lineEnd == rest.npos) {
    return false;
  }
  std::string_view line = rest.substr(kBlock.size(), lineEnd - kBlock.size());
  std::size_t length = 0;
  std::uint64_t checksum = 0;
  if (!ParseLength(TakeWord(line), length) || !FromHex(line, checksum)) return false;
  if (length > rest.size() - lineEnd - 1) return false;
  body = rest.substr(lineEnd + 1, length);
  if (StateChecksum(body, chain_) != checksum) return false;
  chain_ = checksum;
  length_ += lineEnd + 1 + length;
  return true;
}

std::uint64_t StateChecksum(std::string_view bytes, std::uint64_t seed) {
  // Each step is a bijection of the sum for a given word and of the word for a given sum, so a
  // single changed word is always detected.
  std::uint64_t sum = 0x9E3779B97F4A7C15u ^ bytes.size();
  const auto mix = [&sum](std::uint64_t word) {
    sum = (sum ^ word) * 0xD6E8FEB86659FD93u;
    sum ^= sum >> 32;
  };
  mix(seed);
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
    const bool isLetter = c >= 'a' && c <= 'f';  // upper case is never written
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

}  // namespace tarn
