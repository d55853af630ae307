#pragma once

#include <cstdint>

namespace tarn {

// Average number of processes that were running or ready to run in the last minute; negative if it
// is unknown.
double GetLoadAverage();

// Memory in bytes.
struct MachineMemory {
  std::int64_t available = -1;  // for new processes, without swapping; negative if unknown
  std::int64_t total = -1;
};

// Returns the memory of the machine or, if that leaves less, of the process's control group.
MachineMemory GetMachineMemory();

}  // namespace tarn
