#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>

#include "widgets/MessageLoop.h"
#include "xml/XmlNode.h"

namespace tarn {

class CProjectModel;

// What a worker thread and the model share. Everything but `alive` is set before the thread starts
// and, unless it says otherwise, touched only in the worker's steps on the host's thread.
struct WorkerControl {
  std::shared_ptr<MessageLoop> loop;  // of the host's thread
  CProjectModel* model = nullptr;
  CXmlNode* node = nullptr;  // where the build starts
  bool isBuild = true;       // a walk, as against one tool
  CXmlNode* notedApplication = nullptr;
  CXmlNode* notedNode = nullptr;
  // What the walk itself has selected, which the window then tells like a choice of the user's.
  // Compared only.
  const CXmlNode* chosenByWalk = nullptr;
  std::uint64_t epoch = 0;
  bool isInStep = false;  // a step is running
  std::atomic<bool> alive{true};
  // Run on the host's thread when the worker has sent its last message.
  std::function<void()> afterEnd;
};

}  // namespace tarn
