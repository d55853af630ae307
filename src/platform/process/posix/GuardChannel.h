#pragma once

#include <cstdint>

namespace tarn::guard {

// File name of the guard (see ToolGuard.cpp), which is in the folder of the platform library.
constexpr const char* kProgram = "tarn-guard";

// Its only argument.
constexpr const char* kServe = "--serve";

// Descriptor of the socket by which the guard receives requests and orders.
constexpr int kChannel = 3;

// Descriptors that are sent with a request, followed by those that the tool inherits.
enum Sent : int { kSentChannel, kSentOutput, kSentErrors, kSentFolder, kSentCount };

constexpr int kMostPassed = 8;

// One packet: the request to start a tool. Afterwards the tool's channel transfers `textSize` bytes
// of strings, each terminated by a null: the program's path, its arguments beginning with the name,
// and its environment.
struct Request {
  std::uint32_t textSize = 0;
  std::uint32_t argumentCount = 0;
  std::uint32_t variableCount = 0;
  std::uint32_t passedCount = 0;
  int passed[kMostPassed] = {};  // numbers of the descriptors that the tool inherits
  bool mayOutlive = false;       // the program may keep running after this process ends
  bool keepsInputOpen = false;   // the tool's input has no end
};

// One-byte orders that are sent through a tool's channel.
enum Order : char {
  kOrderEnd = 'e',   // ask the tool to terminate
  kOrderKill = 'k',  // kill all that is left of it
};

}  // namespace tarn::guard
