#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "platform/files/FileSystem.h"

// write_whole_file PATH LETTER SIZE: writes a file of SIZE times LETTER with one WriteWholeFile().
// An access to a file named "begin" separates it from the process's earlier system calls. Exits
// with the error code.
int main(int count, char** arguments) {
  if (count != 4) return 99;
  const std::string path = arguments[1];
  const std::string bytes(std::strtoul(arguments[3], nullptr, 10), arguments[2][0]);
  tarn::FileSystem& files = tarn::FileSystem::Native();
  (void)access("begin", F_OK);
  const tarn::Status status = files.WriteWholeFile(path, bytes);
  if (!status) std::fprintf(stderr, "%s\n", status.GetError().text.c_str());
  return static_cast<int>(status.GetError().code);
}
