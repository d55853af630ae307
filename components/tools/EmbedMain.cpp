// tarn-embed: makes an array of C from the bytes of a file.
//
//   tarn-embed [--text] INPUT OUTPUT.c OUTPUT.h NAME TYPE
//
// NAME is that of the array, TYPE that of its elements. With --text a zero follows the bytes. The
// header is left alone if it would not change, so that what includes it stays up to date. Started
// by the tool "embed"; exit code 0, or 1 after printing the reason.

#include <string>
#include <vector>

#include "components/tools/Embed.h"
#include "components/tools/StepProgram.h"

namespace {

using tarn::tools::ReadBytes;
using tarn::tools::WriteBytes;

int Fail(const std::string& file, const char* reason) {
  return tarn::tools::FailStep("tarn-embed", file, reason);
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
  if (!ReadBytes(words[0], bytes)) return Fail(words[0], "can't be read");
  if (!WriteBytes(words[1], EmbeddedSource(how, bytes))) return Fail(words[1], "can't be written");
  const bool isDone = tarn::tools::WriteIfChanged(words[2], EmbeddedHeader(how));
  return isDone ? 0 : Fail(words[2], "can't be written");
}
