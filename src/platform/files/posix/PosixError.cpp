#include "platform/files/posix/PosixError.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <ctime>
#include <iterator>
#include <system_error>

namespace tarn::posix {

namespace {

struct ErrorRow {
  int number;
  ErrorCode code;
};

constexpr ErrorRow kErrors[] = {
    {ENOENT, ErrorCode::NotFound},      {ENOTDIR, ErrorCode::NotFound},
    {EEXIST, ErrorCode::AlreadyExists}, {EACCES, ErrorCode::ReadOnly},
    {EPERM, ErrorCode::ReadOnly},       {EROFS, ErrorCode::ReadOnly},
    {ETXTBSY, ErrorCode::ReadOnly},     {EISDIR, ErrorCode::NotAFile},
    {ENXIO, ErrorCode::NotAFile},       {ENAMETOOLONG, ErrorCode::InvalidName},
    {EILSEQ, ErrorCode::InvalidName},   {ELOOP, ErrorCode::InvalidName},
    {ENOSPC, ErrorCode::NoSpace},       {EDQUOT, ErrorCode::NoSpace},
};

}  // namespace

ErrorCode CodeOf(int number) {
  const auto* const row =
      std::find_if(std::begin(kErrors), std::end(kErrors),
                   [number](const ErrorRow& each) { return each.number == number; });
  return row == std::end(kErrors) ? ErrorCode::Io : row->code;
}

Error ErrorOf(int number, const std::string& place) {
  return {CodeOf(number), std::generic_category().message(number), place};
}

Error ReadErrorOf(int number, const std::string& place) {
  Error error = ErrorOf(number, place);
  if (error.code == ErrorCode::ReadOnly) error.code = ErrorCode::Io;
  return error;
}

Error ErrorOf(ErrorCode code, const std::string& text, const std::string& place) {
  return {code, text, place};
}

bool Descriptor::Close() {
  if (number_ < 0) return true;
  const int closing = number_;
  number_ = -1;
  // Linux closes the descriptor even if close() was interrupted; it must not be closed again.
  return close(closing) == 0 || errno == EINTR;
}

std::string RandomDigits() {
  std::uint64_t bits = 0;
  if (getentropy(&bits, sizeof bits) != 0) {
    // Reached only if the system has no entropy source. Names are created exclusively, so a
    // collision costs another attempt and nothing else.
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    bits = static_cast<std::uint64_t>(now.tv_nsec) << 32 ^ static_cast<std::uint64_t>(getpid());
  }
  std::string digits;
  for (int i = 0; i < 16; ++i, bits >>= 4) digits += "0123456789abcdef"[bits & 15];
  return digits;
}

}  // namespace tarn::posix
