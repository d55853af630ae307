#pragma once

#include <cstdint>
#include <string_view>

namespace tarn::host {

// The name that clients know a host message by; empty for a number without one.
std::string_view NameOfHostMessage(std::uint32_t number);

}  // namespace tarn::host
