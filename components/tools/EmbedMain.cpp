// tarn-embed: makes an array of C from the bytes of a file.
//
//   tarn-embed [--text] INPUT OUTPUT.c OUTPUT.h NAME TYPE
//
// NAME is that of the array, TYPE that of its elements. With --text a zero follows the bytes. The
// header is left alone if it would not change, so that what includes it stays up to date. Started
// by the tool "embed"; exit code 0, or 1 after printing the reason.

#include <cstdio>
#include <fstream>
#include <iterator>
#include <vector>

#include "components/tools/Embed.h"

namespace {

int Fail(const std::string& file, const char* reason) {
  std::fprintf(stderr, "tarn-embed: error: %s: %s\n", file.c_str(), reason);
  return 1;
}

bool Read(const std::string& path, std::string& bytes) {
  std::ifstream input(path, std::ios::binary);
  bytes.assign(std::istreambuf_iterator<char>(input), {});
  return static_cast<bool>(input);
}

bool Write(const std::string& path, const std::string& bytes) {
  std::ofstream output(path, std::ios::binary);
  output << bytes << std::flush;
  return static_cast<bool>(output);
}

}  // namespace

int main(int count, char** arguments) {
  std::vector<std::string> words(arguments + 1, arguments + count);
  tarn::tools::Embedding how;
  how.isTerminated = !words.empty() && words.front() == "--text";
  if (how.isTerminated) words.erase(words.begin());
  if (words.size() != 5)
    return Fail("usage", "tarn-embed [--text] INPUT OUTPUT.c OUTPUT.h NAME TYPE");
  how.name = tarn::tools::NameInC(words[3]);
  how.type = words[4];
  how.header = words[2].substr(words[2].rfind('/') + 1);
  std::string bytes;
  if (!Read(words[0], bytes)) return Fail(words[0], "can't be read");
  if (!Write(words[1], EmbeddedSource(how, bytes))) return Fail(words[1], "can't be written");
  const std::string header = EmbeddedHeader(how);
  std::string before;
  if (Read(words[2], before) && before == header) return 0;
  return Write(words[2], header) ? 0 : Fail(words[2], "can't be written");
}
