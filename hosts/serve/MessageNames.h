#pragma once

#include <cstdint>
#include <string_view>

namespace tarn::host {

// Returns the name of a host message in the protocol; empty for a number without a name.
std::string_view NameOfHostMessage(std::uint32_t number);

}  // namespace tarn::host
