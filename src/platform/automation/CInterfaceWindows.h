#pragma once

#include <tarn/automation.h>

#include <cstdint>

// The windows and the loop of tarn/automation.h, which tells of each operation.
namespace tarn::c_interface {

// For operations that have no failure to tell.
template <class Work>
void Quietly(Work&& work) noexcept {
  try {
    work();
  } catch (...) {
  }
}

std::int32_t AddWindow(TarnMessageHandler handler, void* context);
void RemoveWindow(std::int32_t window);
std::int32_t Pump();
std::int32_t PumpUntil(std::int32_t (*done)(void* context), void* context,
                       std::int32_t milliseconds);
void SetWakeHandler(void (*wake)(void* context), void* context);
std::int32_t UntilNextTimer();

}  // namespace tarn::c_interface
