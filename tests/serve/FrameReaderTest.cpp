#include "hosts/serve/FrameReader.h"

#include <gtest/gtest.h>

#include <vector>

namespace tarn::host {
namespace {

std::string FrameOf(const std::string& body) {
  return "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
}

// Shows bodies in brackets, errors as words. A body of "bad..." is given back as malformed.
std::string Read(const std::string& bytes, std::size_t piece) {
  FrameReader reader;
  std::string seen;
  for (std::size_t at = 0; at < bytes.size(); at += piece) {
    reader.Feed(std::string_view(bytes).substr(at, piece));
    while (const auto frame = reader.Next()) {
      if (frame->problem == FrameProblem::BadHeader) seen += "header ";
      if (frame->problem == FrameProblem::TooLong) seen += "long ";
      if (frame->problem != FrameProblem::None) continue;
      seen += "[" + frame->body + "] ";
      if (frame->body.starts_with("bad")) reader.GiveBack(frame->body);
    }
  }
  return seen;
}

struct Row {
  const char* name;
  std::string bytes;
  std::string seen;
};

TEST(FrameReader, NothingThatIsNoFrameHidesTheNextOne) {
  const std::string next = FrameOf("{}");
  const Row rows[] = {
      {"one", FrameOf("one"), "[one] "},
      {"two at once", FrameOf("one") + FrameOf(""), "[one] [] "},
      {"other headers", "Content-Type: x; charset=utf-8\r\ncontent-length:  2 \r\n\r\n{}", "[{}] "},
      {"line feeds alone", "Content-Length: 2\n\n{}" + next, "[{}] [{}] "},
      {"line breaks between", FrameOf("{}") + "\r\n\n" + next, "[{}] [{}] "},
      {"no header at all", "{\"a\": 1}\r\n" + next, "header [{}] "},
      {"no line break", "nonsense" + next, "header [{}] "},
      {"no length", "Content-Type: x\r\n\r\n" + next, "header [{}] "},
      {"two lengths", "Content-Length: 2\r\nContent-Length: 2\r\n\r\n{}" + next,
       "header [{}] [{}] "},
      {"no number", "Content-Length: 2x\r\n\r\n{}" + next, "header [{}] "},
      {"negative", "Content-Length: -2\r\n\r\n{}" + next, "header [{}] "},
      {"a number that overflows", "Content-Length: 18446744073709551618\r\n\r\n" + next,
       "header [{}] "},
      {"too long a body", "Content-Length: 67108865\r\n\r\nabc" + next, "long [{}] "},
      {"too long twice",
       "Content-Length: 67108865\r\n\r\nContent-Length: 99999999999\r\n\r\n" + next,
       "long long [{}] "},
      {"too long a header", "A: " + std::string(10'000, 'x') + "\r\n\r\n" + next, "header [{}] "},
      {"many bad ones are told once", "x\r\ny\r\nContent-Length: z\r\n\r\n" + next, "header [{}] "},
      {"a length that is too small", "Content-Length: 1\r\n\r\n{}" + next, "[{] header [{}] "},
      {"a name that was cut", "Content-Len" + next, "header [{}] "},
  };
  for (const Row& row : rows) {
    for (const std::size_t piece : {row.bytes.size(), std::size_t{1}, std::size_t{7}}) {
      EXPECT_EQ(Read(row.bytes, piece), row.seen) << row.name << ", pieces of " << piece;
    }
  }
}

TEST(FrameReader, WhatABrokenBodySwallowedComesBackOnce) {
  const std::string swallowed = FrameOf("bad again") + FrameOf("{}");
  const std::string body = "bad" + swallowed.substr(0, swallowed.size() - 5);
  const std::string bytes = "Content-Length: " + std::to_string(body.size()) + "\r\n\r\nbad" +
                            swallowed + FrameOf("last");
  for (const std::size_t piece : {bytes.size(), std::size_t{1}}) {
    EXPECT_EQ(Read(bytes, piece), "[" + body + "] [bad again] [{}] [last] ");
  }
}

}  // namespace
}  // namespace tarn::host
