#pragma once

#include <cstdint>

namespace tarn {

// States of the build's state machine. The numeric values are internal.
enum BuildState : std::int32_t {
  StateIdle = 0,
  StateBuilding = 2,
  StateStopRequested = 3,
  StateFailed = 4,
  StateSucceeded = 5,
};

// What a build does with each node.
enum BuildMode : std::int32_t {
  ModeBuild = 1,    // skip what is up to date
  ModeRebuild = 2,  // run every tool
  ModeClean = 3,    // delete products
};

// Commands for the worker in addition to the modes on the current node and the ids of dynamic
// commands.
enum WorkerCommand : std::int32_t {
  kWorkerBuildAll = 4,
  kWorkerRebuildAll = 5,
  kWorkerCleanAll = 6,
  kWorkerTranslate = 7,
};

}  // namespace tarn
