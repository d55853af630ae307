#include "components/tools/Embed.h"

namespace tarn::tools {

namespace {

constexpr std::size_t kBytesPerLine = 16;
constexpr const char* kSizeType = "const unsigned long ";

bool IsNameCharacter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

void AppendByte(std::string& text, unsigned char byte) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  text += "0x";
  text += kDigits[byte >> 4];
  text += kDigits[byte & 15];
  text += ',';
}

}  // namespace

std::string NameInC(std::string_view text) {
  std::string name;
  for (const char c : text) name += IsNameCharacter(c) ? c : '_';
  const bool isName = !name.empty() && (name.front() < '0' || name.front() > '9');
  return isName ? name : "_" + name;
}

std::string EmbeddedSource(const Embedding& how, std::string_view bytes) {
  std::string text = "#include \"" + how.header + "\"\n\n" + how.type + " " + how.name + "[] = {";
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    text += i % kBytesPerLine == 0 ? "\n  " : " ";
    AppendByte(text, static_cast<unsigned char>(bytes[i]));
  }
  // An array of C is not empty.
  if (how.isTerminated || bytes.empty()) text += "\n  0";
  return text + "\n};\n" + kSizeType + how.name + "_size = " + std::to_string(bytes.size()) + ";\n";
}

std::string EmbeddedHeader(const Embedding& how) {
  std::string guard = how.name + "_H";
  for (char& c : guard) c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
  return "#ifndef " + guard + "\n#define " + guard +
         "\n\n#ifdef __cplusplus\nextern \"C\" {\n#endif\n\nextern " + how.type + " " + how.name +
         "[];\nextern " + kSizeType + how.name +
         "_size;\n\n#ifdef __cplusplus\n}\n#endif\n\n#endif\n";
}

}  // namespace tarn::tools
