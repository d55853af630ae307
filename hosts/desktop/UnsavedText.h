#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace tarn::host {

// The text of an editor that is on no disk yet.
struct UnsavedText {
  std::string path;
  std::shared_ptr<const std::string> text;  // UTF-8 without a byte order mark; never null
  // Hash of the bytes that the file held when it was read or written last.
  std::uint64_t base = 0;
  // How the file is to be written.
  bool isUtf8 = true;
  bool hasMark = false;

  // The bytes to be written; nullopt if the file's encoding can't write them.
  std::optional<std::string> ToBytes() const;
};

}  // namespace tarn::host
