#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace tarn::host {

// The unsaved text of an editor.
struct UnsavedText {
  std::string path;
  std::shared_ptr<const std::string> text;  // UTF-8 without byte order mark; never null
  // Hash of the file's bytes when last read or written.
  std::uint64_t base = 0;
  // Encoding of the file.
  bool isUtf8 = true;
  bool hasMark = false;

  // Returns the bytes to be written; nullopt if the encoding can't represent the text.
  std::optional<std::string> ToBytes() const;
};

}  // namespace tarn::host
