#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace tarn::host {

enum class FrameProblem {
  None,
  BadHeader,  // no header, none with a length, or an overlong one
  TooLong,    // the announced length exceeds the limit
};

// One frame, or a notification of malformed input.
struct Frame {
  FrameProblem problem = FrameProblem::None;
  std::string body;  // empty with a problem
};

// Splits a byte stream into frames: header lines, an empty line, and a body of the length given by
// Content-Length.
//
// After malformed input it resynchronises at the next header, wherever that begins, and reports the
// error once. This is safe because a header can't occur inside a JSON document, whose strings
// contain no line breaks. Memory grows with the bytes received, never with the announced length.
class FrameReader {
 public:
  static constexpr std::size_t kMaxHeader = 8 * 1024;
  static constexpr std::size_t kMaxBody = 64 * 1024 * 1024;

  void Feed(std::string_view bytes);
  // Returns the next frame or error; nullopt until more bytes have been received.
  std::optional<Frame> Next();
  // Call this if the body of the last frame is not a JSON document, so that its length may have
  // been wrong: searches the body for frames that begin inside it. Each byte is returned at most
  // once, which keeps the total time linear.
  void GiveBack(std::string_view body);

 private:
  enum class State { Header, Body, Searching };
  enum class Verdict { Good, Bad, Unfinished };

  std::string_view Rest() const { return std::string_view(buffer_).substr(start_); }
  void Consume(std::size_t count);
  void Compact();
  bool FindHeader();
  std::optional<Frame> TakeHeader(bool& isUnfinished);
  Verdict ParseHeader(std::string_view text, std::size_t& headerSize);
  static bool ParseLine(std::string_view line, std::optional<std::size_t>& length);

  std::string buffer_;
  std::size_t start_ = 0;       // of the unread part
  std::size_t secondHand_ = 0;  // bytes at its start that were given back
  State state_ = State::Header;
  bool isRecovering_ = false;  // the error has been reported
  std::size_t bodyLength_ = 0;
  bool bodyIsSecondHand_ = false;
};

}  // namespace tarn::host
