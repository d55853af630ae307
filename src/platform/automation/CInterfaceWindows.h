#pragma once

#include <tarn/automation.h>

#include <cstdint>

// Implementation of the window and event loop operations of tarn/automation.h, which documents
// them.
namespace tarn::c_interface {

// Runs an operation that has no way to report an error: swallows all exceptions.
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
