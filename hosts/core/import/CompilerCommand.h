#pragma once

#include <map>
#include <string>
#include <vector>

namespace tarn::host {

// An argument that this project has no option for; `path` is absolute, or empty.
struct FurtherArgument {
  std::string text;  // before the path
  std::string path;
};

// A command line of a compiler, assembler or linker, taken apart.
struct CompilerCommand {
  std::string program;              // name of the compiler as the command has it
  std::string toolchain;            // of this project; empty if the compiler is unknown
  std::vector<std::string> inputs;  // sources, objects and libraries, absolute
  std::string output;               // absolute; empty if not given
  bool isCompile = false;           // -c, or an assembler
  bool isLinker = false;            // ld, which is not started by a compiler
  bool makesText = false;           // -E, -S, -M: no object and no program
  bool isCpp = false;               // a driver for C++
  std::string language;             // of -x: "C", "Cpp", "Assembler"; empty if not given
  std::vector<std::string> defines;
  std::vector<std::string> includes;      // absolute
  std::vector<std::string> libraries;     // after -l
  std::vector<std::string> libraryPaths;  // absolute
  std::string script;                     // linker script, absolute
  std::string standard;                   // empty: the compiler's default
  std::string optimize = "0";             // 0, 1, 2, 3, s
  std::string warnings = "default";       // none, default, all, extra
  bool debug = false;
  // Options of the section Application.Target by their names, such as Device and Cpu.
  std::map<std::string, std::string> target;
  std::string systemCalls;  // -specs argument with those of the C library, only for a link
  std::vector<FurtherArgument> further;
  std::vector<std::string> dropped;  // arguments that were not understood
};

// Returns the position of the compiler or archiver in a command that may start with other programs
// and their arguments, such as "ccache" or "libtool --mode=link".
std::size_t FindCompiler(const std::vector<std::string>& arguments);

// Returns true if the value of this argument is the next one, as with "-D NAME".
bool TakesNextArgument(const std::string& argument);

// Takes a command apart that was started in `folder`. Programs that start the compiler, such as
// ccache, are skipped.
CompilerCommand ParseCompilerCommand(const std::vector<std::string>& arguments,
                                     const std::string& folder);

// Returns the argument of the compiler for an option of `target`: "-mcpu=cortex-m3".
std::string TargetArgument(const std::string& name, const std::string& value);

// Returns the toolchain for the name of a compiler, such as "avr-gcc" for
// "/usr/bin/avr-g++"; `arguments` decide for compilers with several targets.
std::string ToolchainOf(const std::string& program, const std::vector<std::string>& arguments);

// Returns a compiler of the toolchain, for flags without a command: "arm-none-eabi-gcc" for
// "arm-gcc". That of AVR if none is known.
std::string CompilerOf(const std::string& toolchain);

}  // namespace tarn::host
