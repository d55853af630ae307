#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace tarn::host {

// An element of a project file with its position; references are decoded.
struct FileElement {
  std::string name;
  std::string header;  // attribute Header
  std::string path;    // attribute Path, or Extern if there is none
  int line = 0;        // from 1
  std::size_t parent = 0;
  std::vector<std::size_t> children;
};

// Positions of the elements of one project file, which the tree in memory does not store. A single
// pass over the text without recursion; time and memory are linear. Accepts any bytes: everything
// that is not an element is skipped, and an unterminated element extends to the end of the text.
class FileElements {
 public:
  explicit FileElements(std::string_view text);

  // Returns the element with this number; 0 is the file itself, the parent of the top-level
  // elements.
  const FileElement& operator[](std::size_t number) const { return elements_[number]; }
  // Returns the number of the first child of `parent` with this name and header after position
  // `after` in the list of children, and sets `after` to it; returns 0 if there is none nearby.
  std::size_t FindChild(std::size_t parent, std::string_view name, std::string_view header,
                        std::size_t& after) const;

 private:
  void Open(std::string_view tag, int line);
  void Close(std::string_view name);

  std::vector<FileElement> elements_;
  std::size_t current_ = 0;
  std::unordered_map<std::string, std::size_t> openNames_;  // counts, `current` and its ancestors
};

}  // namespace tarn::host
