#pragma once

#include <sys/types.h>

#include "platform/Result.h"
#include "platform/process/Process.h"

namespace tarn {

// Starts the program as the leader of a new process group, with its two streams on these
// descriptors and an empty input.
Result<pid_t> SpawnInGroup(const ProcessRequest& request, int outputStream, int errorStream);

}  // namespace tarn
