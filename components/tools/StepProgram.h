#pragma once

#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>

// What the small programs share that definitions run as steps.
namespace tarn::tools {

// Reads a whole file; false if that fails.
inline bool ReadBytes(const std::string& path, std::string& bytes) {
  std::ifstream input(path, std::ios::binary);
  bytes.assign(std::istreambuf_iterator<char>(input), {});
  return static_cast<bool>(input);
}

// Replaces the content of a file; false if that fails.
inline bool WriteBytes(const std::string& path, const std::string& bytes) {
  std::ofstream output(path, std::ios::binary);
  output << bytes << std::flush;
  return static_cast<bool>(output);
}

// As WriteBytes, but leaves a file alone that has this content, so that what reads it stays up to
// date.
inline bool WriteIfChanged(const std::string& path, const std::string& bytes) {
  std::string before;
  return (ReadBytes(path, before) && before == bytes) || WriteBytes(path, bytes);
}

// Prints an error about a file, and returns the exit code of the program.
inline int FailStep(const char* program, const std::string& file, const char* reason) {
  std::fprintf(stderr, "%s: error: %s: %s\n", program, file.c_str(), reason);
  return 1;
}

}  // namespace tarn::tools
