#pragma once

namespace tarn {

// Returns the number of processors that this process may use at the same time, at least 1: those of
// the machine to which the process is restricted, and no more than its container may use.
int CountUsableProcessors();

}  // namespace tarn
