#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/Result.h"

namespace tarn::tools {

// Converts the loadable segments of a 32-bit little-endian ELF file into the UF2 format, which boot
// loaders take as a file that is copied to a drive: blocks of 512 bytes with the address, 256 bytes
// of content and the number of the family of devices. Pages that are only partly used are filled
// with zeros. Returns an error for any other file, for a program without content, and for one that
// needs more than 64 MB.
Result<std::string> ConvertToUf2(std::string_view elf, std::uint32_t family);

}  // namespace tarn::tools
