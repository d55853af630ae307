#pragma once

#include <string>
#include <string_view>

#include "platform/Result.h"

namespace tarn::tools {

// Stores the checksum of a section of a little-endian ELF program in the section's last four bytes,
// computed from all bytes before these. It is the CRC-32 that the boot ROM of the RP2040 expects of
// a second-stage boot loader: polynomial 0x04C11DB7, initial value 0xFFFFFFFF, most significant bit
// first, not inverted at the end. Returns an error, and leaves the bytes unchanged, for any other
// file and for a program without such a section, whose code is NotFound. Linear.
Status StoreSectionChecksum(std::string& program, std::string_view section);

// Stores the checksum of a vector table, which the boot ROM of LPC microcontrollers expects: with
// it, in word 7, the sum of the first eight words is 0. Errors are those of StoreSectionChecksum.
Status StoreVectorChecksum(std::string& program, std::string_view section);

}  // namespace tarn::tools
