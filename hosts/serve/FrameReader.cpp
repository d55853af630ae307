#include "hosts/serve/FrameReader.h"

#include <algorithm>

#include "platform/text/Text.h"

namespace tarn::host {

namespace {

constexpr std::string_view kLengthName = "Content-Length";
constexpr std::size_t kMaxDigits = 15;

bool IsNameByte(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-';
}

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

bool IsLineBreak(char c) {
  return c == '\r' || c == '\n';
}

}  // namespace

void FrameReader::Feed(std::string_view bytes) {
  buffer_.append(bytes);
}

void FrameReader::GiveBack(std::string_view body) {
  if (bodyIsSecondHand_) return;
  std::string joined(body);
  joined.append(Rest());
  buffer_.swap(joined);
  start_ = 0;
  secondHand_ = body.size();
  state_ = State::Searching;
  isRecovering_ = true;
}

void FrameReader::Consume(std::size_t count) {
  start_ += count;
  secondHand_ -= std::min(secondHand_, count);
}

void FrameReader::Compact() {
  buffer_.erase(0, start_);
  start_ = 0;
}

std::optional<Frame> FrameReader::Next() {
  for (;;) {
    if (state_ == State::Searching && !FindHeader()) break;
    if (state_ == State::Header) {
      bool isUnfinished = false;
      std::optional<Frame> problem = TakeHeader(isUnfinished);
      if (isUnfinished) break;
      if (problem) return problem;
    }
    if (state_ != State::Body) continue;
    if (Rest().size() < bodyLength_) break;
    Frame frame{FrameProblem::None, std::string(Rest().substr(0, bodyLength_))};
    bodyIsSecondHand_ = secondHand_ > 0;
    Consume(bodyLength_);
    state_ = State::Header;
    return frame;
  }
  Compact();
  return std::nullopt;
}

// Skips to a possible start of a header, or to where a partial header name at the end of the input
// begins.
bool FrameReader::FindHeader() {
  const std::string_view rest = Rest();
  const auto found = std::search(rest.begin(), rest.end(), kLengthName.begin(), kLengthName.end(),
                                 [](char a, char b) {
                                   return EqualNoCase({&a, 1}, {&b, 1});
                                 });
  if (found == rest.end()) {
    Consume(rest.size() - std::min(rest.size(), kLengthName.size() - 1));
    return false;
  }
  Consume(static_cast<std::size_t>(found - rest.begin()));
  state_ = State::Header;
  return true;
}

std::optional<Frame> FrameReader::TakeHeader(bool& isUnfinished) {
  while (!Rest().empty() && IsLineBreak(Rest().front())) Consume(1);
  std::size_t headerSize = 0;
  const Verdict verdict = ParseHeader(Rest(), headerSize);
  isUnfinished = verdict == Verdict::Unfinished;
  if (isUnfinished) return std::nullopt;
  if (verdict == Verdict::Bad) {
    // Skip one byte, so that the search doesn't find the same header again.
    if (isRecovering_) Consume(1);
    state_ = State::Searching;
    if (isRecovering_) return std::nullopt;
    isRecovering_ = true;
    return Frame{FrameProblem::BadHeader, {}};
  }
  Consume(headerSize);
  isRecovering_ = bodyLength_ > kMaxBody;
  state_ = isRecovering_ ? State::Searching : State::Body;
  if (isRecovering_) return Frame{FrameProblem::TooLong, {}};
  return std::nullopt;
}

FrameReader::Verdict FrameReader::ParseHeader(std::string_view text, std::size_t& headerSize) {
  std::optional<std::size_t> length;
  std::size_t at = 0;
  for (;;) {
    const std::size_t end = text.find('\n', at);
    const bool isCut = end == std::string_view::npos;
    if ((isCut ? text.size() : end) > kMaxHeader) return Verdict::Bad;
    if (isCut) return Verdict::Unfinished;
    std::string_view line = text.substr(at, end - at);
    if (line.ends_with('\r')) line.remove_suffix(1);
    at = end + 1;
    if (line.empty()) break;
    if (!ParseLine(line, length)) return Verdict::Bad;
  }
  if (!length) return Verdict::Bad;
  headerSize = at;
  bodyLength_ = *length;
  return Verdict::Good;
}

// Parses a header line. Headers other than Content-Length, which must not occur twice, are ignored.
bool FrameReader::ParseLine(std::string_view line, std::optional<std::size_t>& length) {
  const std::size_t colon = line.find(':');
  if (colon == std::string_view::npos || colon == 0) return false;
  const std::string_view name = line.substr(0, colon);
  if (!std::all_of(name.begin(), name.end(), IsNameByte)) return false;
  if (!EqualNoCase(name, kLengthName)) return true;
  const std::string_view digits = Trim(line.substr(colon + 1));
  const bool isNumber = !digits.empty() && digits.size() <= kMaxDigits &&
                        std::all_of(digits.begin(), digits.end(), IsDigit);
  if (!isNumber || length) return false;
  std::size_t number = 0;
  for (const char digit : digits) number = number * 10 + static_cast<std::size_t>(digit - '0');
  length = number;
  return true;
}

}  // namespace tarn::host
