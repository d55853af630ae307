#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace tarn::host {

enum class FrameProblem {
  None,
  BadHeader,  // no header, one without a length, or one that goes on for too long
  TooLong,    // the header announces more than a body may have
};

// One frame, or the news that there was something that is none.
struct Frame {
  FrameProblem problem = FrameProblem::None;
  std::string body;  // empty with a problem
};

// Cuts a stream of bytes into frames: header lines, an empty line, and as many bytes as the line
// Content-Length said.
//
// After something that is no frame it goes on at the next header, wherever that begins, and tells
// of the problem once. This is safe because a header can't stand inside of a JSON document: a
// string holds no line break. Memory grows with what has come, never with what was announced.
class FrameReader {
 public:
  static constexpr std::size_t kMaxHeader = 8 * 1024;
  static constexpr std::size_t kMaxBody = 64 * 1024 * 1024;

  void Feed(std::string_view bytes);
  // The next frame or problem; nothing until more has come.
  std::optional<Frame> Next();
  // The body of the last frame is no document, so its length may have been a lie: what else began
  // inside of it is found again. A byte comes back once only, however often somebody lies.
  void GiveBack(std::string_view body);

 private:
  enum class State { Header, Body, Searching };
  enum class Verdict { Good, Bad, Unfinished };

  std::string_view Rest() const { return std::string_view(buffer).substr(start); }
  void Consume(std::size_t count);
  void Compact();
  bool FindHeader();
  std::optional<Frame> TakeHeader(bool& isUnfinished);
  Verdict ParseHeader(std::string_view text, std::size_t& headerSize);
  static bool ParseLine(std::string_view line, std::optional<std::size_t>& length);

  std::string buffer;
  std::size_t start = 0;       // of what is left in it
  std::size_t secondHand = 0;  // how much of that was given back
  State state = State::Header;
  bool isRecovering = false;  // the problem has been told already
  std::size_t bodyLength = 0;
  bool bodyIsSecondHand = false;
};

}  // namespace tarn::host
