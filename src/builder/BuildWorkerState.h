#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>

#include "widgets/MessageLoop.h"

namespace tarn {

class Builder;
class CXmlNode;

// State shared by the worker thread and the builder. Everything except `alive` is set before the
// thread starts and afterwards, unless noted otherwise, accessed only by tasks that the worker
// posts to the main thread.
struct BuildWorkerState {
  std::shared_ptr<MessageLoop> loop;  // of the main thread
  Builder* builder = nullptr;
  CXmlNode* node = nullptr;  // root of the build
  bool isBuild = true;       // a build walk rather than a single tool
  CXmlNode* savedApplication = nullptr;
  CXmlNode* savedNode = nullptr;
  // Node that the walk itself has selected. The window reports this selection like one of the
  // user's. Used for comparison only.
  const CXmlNode* chosenByWalk = nullptr;
  std::uint64_t epoch = 0;
  bool isInStep = false;  // a task is running
  std::atomic<bool> alive{true};
  // Runs on the main thread after the worker has sent its last message.
  std::function<void()> afterEnd;
};

}  // namespace tarn
