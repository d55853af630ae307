#pragma once

#include "platform/Result.h"
#include "platform/process/Process.h"
#include "platform/process/posix/Descriptor.h"

namespace tarn {

// Starts the program through a guard (see ToolGuard.cpp), as the leader of a new process group,
// with its two output streams on these descriptors and its input as requested. `guardEnd` and
// `ownEnd` are the ends of a stream socket: the first is closed in this process, the second
// receives what the guard writes after the start.
Status SpawnGuarded(const ProcessRequest& request, int outputStream, int errorStream,
                    Descriptor guardEnd, int ownEnd);

}  // namespace tarn
