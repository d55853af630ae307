#pragma once

#include <string>
#include <string_view>

namespace tarn::tools {

// How the bytes of a file become an array of C.
struct Embedding {
  std::string name;           // of the array; see NameInC
  std::string type;           // of its elements, with qualifiers: "const unsigned char"
  std::string header;         // name of the header that the source includes
  bool isTerminated = false;  // a zero follows the bytes, so that the array is a string of C
};

// Returns the text with "_" in place of each character that a name in C can't have.
std::string NameInC(std::string_view text);
// Returns the source that defines the array NAME and its size NAME_size, without the zero.
std::string EmbeddedSource(const Embedding& how, std::string_view bytes);
// Returns the header that declares them. It doesn't depend on the bytes.
std::string EmbeddedHeader(const Embedding& how);

}  // namespace tarn::tools
