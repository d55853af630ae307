#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "project/ProjectServices.h"

namespace tarn {

// Index of the node types by file extension. The property manager may define other extensions than
// the type records. Filled on first use, in O(types); a lookup takes constant time. Borrows the
// services; main thread only.
class TypesByExtension {
 public:
  explicit TypesByExtension(const ProjectServices& projectServices) : services_(projectServices) {}

  // Returns the type whose extensions include that of `path`, the last one if there are several, or
  // nullptr.
  const CXmlNode* Find(std::string_view path);
  // Invalidates the index; call it if type definitions may have changed.
  void Invalidate() { isKnown_ = false; }

 private:
  void Fill();

  const ProjectServices& services_;
  std::unordered_map<std::string, const CXmlNode*> types_;
  bool isKnown_ = false;
  std::pair<std::string, const CXmlNode*> last_;  // result of the last lookup
};

}  // namespace tarn
