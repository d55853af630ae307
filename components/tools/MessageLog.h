#pragma once

#include <cstddef>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "components/tools/ToolMessage.h"

namespace tarn::tools {

// Collects the messages of one run in bounded memory, however much a tool prints. Plain lines are
// dropped first: the first kHeadLines and the last kTailLines are retained, and a message between
// them says how many are missing. Errors and warnings are retained up to kMaxProblems of each kind,
// at any position; a message per kind counts the rest, so that totals are always correct. If a
// build reports too much in total, its later runs retain less.
class MessageLog {
 public:
  // Retains at most `most` warnings, and at most that many plain lines before the last ones.
  explicit MessageLog(std::size_t most = kMaxProblems) : most_(most) {}

  static constexpr std::size_t kHeadLines = 19000;
  static constexpr std::size_t kTailLines = 1000;
  static constexpr std::size_t kMaxProblems = 20000;
  // Limit for all runs of a build together, and what each run retains beyond it.
  static constexpr std::size_t kMaxOfBuild = 40000;
  static constexpr std::size_t kLeast = 20;
  // Limit for a run that starts before its turn; many of them may wait with their messages.
  static constexpr std::size_t kMaxOfEarlyRun = 1000;
  // Number of lines shown in the report for a step that fails without an error message.
  static constexpr std::size_t kReportedLines = 20;

  // Add a message; constant time, apart from removing the oldest line of the tail.
  void Add(ToolMessage message);
  void AddPlain(std::string_view text);
  void AddError(std::string_view text);

  // Amount of retained warnings and plain lines, without the last lines, in messages of the usual
  // length.
  std::size_t GetRetained() const;
  bool HasErrors() const { return ErrorCount() > 0; }
  std::size_t ErrorCount() const { return errors_.count + errors_.dropped; }
  // Number of messages so far; identifies the position of the next one for ReportLastLines.
  std::size_t GetPosition() const { return position_; }
  // Marks the plain lines among the last kReportedLines messages for the report, but none before
  // `start`.
  void ReportLastLines(std::size_t start);
  // Returns all messages in order and clears the log.
  ToolMessages Take();

 private:
  struct Entry {
    ToolMessage message;
    std::size_t position = 0;
  };
  // Counters of one kind of message.
  struct Share {
    std::size_t count = 0;  // retained
    std::size_t bytes = 0;
    std::size_t dropped = 0;
    bool TakesIn(const ToolMessage& message, std::size_t maxCount);
  };

  void AddToTail(Entry entry);
  void AppendDropped(ToolMessages& messages) const;

  std::size_t most_;
  std::vector<Entry> entries_;  // the first plain lines and all problems
  std::deque<Entry> tail_;      // the last plain lines
  std::size_t tailBytes_ = 0;
  Share head_;  // `dropped` counts lines that left the tail
  bool isHeadFull_ = false;
  Share errors_;
  Share warnings_;
  std::size_t position_ = 0;
};

}  // namespace tarn::tools
