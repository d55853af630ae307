// What the command line takes in all, from the start of the process to its end, when a project of
// 10,000 files has nothing to build: against ninja, which finds out the same about the same files
// from its logs.
//
// The compiler is this program by another name: it writes an output and a rule file and ends, so
// that the project is built before it gets late.

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "bench/Ratios.h"

namespace {

namespace fs = std::filesystem;

constexpr int kFilesPerFolder = 100;
constexpr int kHeaders = 200;
constexpr int kHeadersPerFile = 5;
constexpr int kRuns = 15;

void Write(const fs::path& path, const std::string& text) {
  fs::create_directories(path.parent_path());
  std::ofstream file(path, std::ios::binary);
  file << text;
  if (!file.flush()) throw std::runtime_error(path.string() + " can't be written");
}

// --- The compiler ---

// The headers that a source includes by their full names.
std::string HeadersOf(const std::string& source) {
  std::ifstream file(source);
  std::string list;
  for (std::string line; std::getline(file, line);) {
    const std::size_t begin = line.find('"');
    if (line.rfind("#include", 0) == 0 && begin != line.npos) {
      list += " \\\n " + line.substr(begin + 1, line.rfind('"') - begin - 1);
    }
  }
  return list;
}

// The arguments with those of a response file in its place; no name here needs a quote.
std::vector<std::string> WithResponse(const std::vector<std::string>& arguments) {
  std::vector<std::string> all;
  for (const std::string& each : arguments) {
    if (!each.starts_with('@')) {
      all.push_back(each);
      continue;
    }
    std::ifstream file(each.substr(1));
    for (std::string word; file >> word;) all.push_back(word);
  }
  return all;
}

int Compile(const std::vector<std::string>& arguments) {
  std::string output;
  std::string rules;
  std::string source;
  for (std::size_t i = 0; i + 1 < arguments.size(); ++i) {
    if (arguments[i] == "-o") output = arguments[i + 1];
    if (arguments[i] == "-MF") rules = arguments[i + 1];
    if (arguments[i].ends_with(".c")) source = arguments[i];
  }
  if (!rules.empty()) Write(rules, output + ": " + source + HeadersOf(source) + "\n");
  if (!output.empty()) Write(output, "made\n");
  return 0;
}

// --- The project ---

struct Project {
  fs::path folder;
  std::vector<std::string> sources;  // below the folder
};

std::string NameOf(const char* start, int number, const char* extension) {
  return start + std::to_string(number) + extension;
}

std::string ProjectText() {
  return "\r\n<Project Header=\"Project 'big'\" Path=\".\\big.tprj\" ActiveApp=\"big\" sate=\"32\" "
         ">\r\n\t<Application Header=\"big\" Extern=\".\\big.tapp\" Path=\".\\big.tapp\" "
         "sate=\"32\" />\r\n</Project>";
}

std::string ApplicationText(int files) {
  std::string text =
      "\r\n<Application Header=\"big\" Extern=\".\\big.tapp\" Path=\".\\big.tapp\" sate=\"32\" >"
      "<Options ><Config Header=\"Standard\" ><Set Header=\"Application\" >"
      "<Section Header=\"Target\" >"
      "<Property Header=\"Toolchain\" Removable=\"Yes\" Value=\"host-gcc\" />"
      "</Section><Section Header=\"Directories\" >"
      "<Property Header=\"Include\" Removable=\"Yes\" Value=\"include\" />"
      "</Section></Set></Config></Options>";
  for (int i = 0; i < files; ++i) {
    const std::string group = NameOf("module", i / kFilesPerFolder, "");
    if (i % kFilesPerFolder == 0) text += "<Group Header=\"" + group + "\" sate=\"32\" >";
    const std::string file = NameOf("file", i, ".c");
    text += "<C Header=\"" + file + "\" Path=\".\\src\\" + group + "\\" + file + "\" sate=\"0\" />";
    if (i % kFilesPerFolder == kFilesPerFolder - 1 || i == files - 1) text += "</Group>";
  }
  return text + "\r\n</Application>";
}

std::string NinjaText(const Project& project) {
  std::string text =
      "rule cc\n  command = gcc -c -MMD -MF $out.d $in -o $out\n  deps = gcc\n  depfile = $out.d\n"
      "rule link\n  command = g++ @$out.rsp -o $out\n  rspfile = $out.rsp\n"
      "  rspfile_content = $in\n";
  std::string outputs;
  for (const std::string& source : project.sources) {
    const std::string output = "ninja/" + source + ".o";
    text += "build " + output + ": cc " + source + "\n";
    outputs += " " + output;
  }
  return text + "build ninja/big: link" + outputs + "\n";
}

Project MakeProject(const fs::path& folder, int files) {
  Project project{folder, {}};
  std::vector<std::string> headers;
  for (int i = 0; i < kHeaders; ++i) {
    headers.push_back((folder / "include" / NameOf("header", i, ".h")).string());
    Write(headers.back(), "\n");
  }
  for (int i = 0; i < files; ++i) {
    const std::string name =
        "src/" + NameOf("module", i / kFilesPerFolder, "/") + NameOf("file", i, ".c");
    std::string text;
    for (int each = 0; each < kHeadersPerFile; ++each) {
      const auto header = static_cast<std::size_t>((i * 7 + each * 31) % kHeaders);
      text += "#include \"" + headers[header] + "\"\n";
    }
    Write(folder / name, text);
    project.sources.push_back(name);
  }
  Write(folder / "big.tprj", ProjectText());
  Write(folder / "big.tapp", ApplicationText(files));
  Write(folder / "build.ninja", NinjaText(project));
  for (const char* name : {"gcc", "g++", "size"}) {
    fs::create_directories(folder / "bin");
    fs::create_symlink(fs::read_symlink("/proc/self/exe"), folder / "bin" / name);
  }
  return project;
}

// --- The runs ---

double Seconds(const timeval& time) {
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
}

// Runs a program with its output going to the file `out`, and says when it fails. Gives the
// processor seconds that it took: neither of the two waits for anything or works in parallel when
// there is nothing to build, and others may use the machine.
double Run(std::vector<std::string> command, const std::string& out) {
  std::vector<char*> arguments;
  for (std::string& each : command) arguments.push_back(each.data());
  arguments.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, 1, out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
  pid_t child = 0;
  int state = -1;
  rusage used{};
  const int failure =
      posix_spawnp(&child, arguments[0], &actions, nullptr, arguments.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  if (failure != 0 || wait4(child, &state, 0, &used) != child || state != 0) {
    throw std::runtime_error(command[0] + " failed");
  }
  return Seconds(used.ru_utime) + Seconds(used.ru_stime);
}

void ExpectText(const fs::path& file, const char* wanted) {
  std::ifstream stream(file);
  const std::string text((std::istreambuf_iterator<char>(stream)), {});
  if (text.find(wanted) == text.npos) throw std::runtime_error("not up to date: " + text);
}

void Measure(const fs::path& folder, int files) {
  const Project project = MakeProject(folder, files);
  setenv("PATH", (folder / "bin:").string().append(getenv("PATH")).c_str(), 1);
  setenv("XDG_STATE_HOME", (folder / "state").c_str(), 1);
  setenv("XDG_CONFIG_HOME", (folder / "config").c_str(), 1);
  setenv("TARN_ROOT", TARN_SOURCE_DIR "/share", 1);
  unsetenv("TARN_LAUNCHER");
  fs::current_path(folder);
  const std::vector<std::string> tarn{TARN_PROGRAM, "build", "big.tprj"};
  const std::vector<std::string> ninja{"ninja"};
  Run(tarn, "tarn.out");
  Run(ninja, "ninja.out");

  std::vector<double> tarnTimes;
  std::vector<double> ninjaTimes;
  for (int i = 0; i < kRuns; ++i) {
    tarnTimes.push_back(Run(tarn, "tarn.out"));
    ninjaTimes.push_back(Run(ninja, "ninja.out"));
  }
  ExpectText("tarn.out", "Nothing to do");
  ExpectText("ninja.out", "no work to do");
  const double own = tarn::bench::Median(tarnTimes);
  const double peer = tarn::bench::Median(ninjaTimes);
  std::printf("nothing to build in %d files: tarn %.0f ms, ninja %.0f ms\n", files, own * 1000,
              peer * 1000);
  tarn::bench::PrintAtMost("build with nothing to do, processor time / ninja's", own / peer, 2.0);
}

}  // namespace

// Arguments: how many files, and --keep to leave the project there.
int main(int argc, char** argv) {
  const std::vector<std::string> arguments(argv + 1, argv + argc);
  const std::string name = fs::path(argv[0]).filename();
  if (name == "gcc" || name == "g++") return Compile(WithResponse(arguments));
  if (name == "size") return 0;
  const int files = argc > 1 ? std::atoi(argv[1]) : 10'000;
  const fs::path folder =
      fs::temp_directory_path() / ("tarn-bench-" + std::to_string(getpid()) + "-process");
  int code = 0;
  try {
    Measure(folder, files > 0 ? files : 10'000);
  } catch (const std::exception& failure) {
    std::cerr << "process_bench: " << failure.what() << std::endl;
    code = 1;
  }
  fs::current_path("/");
  if (argc > 2 && arguments[1] == "--keep") {
    std::cout << "kept: " << folder.string() << std::endl;
  } else {
    std::error_code ignored;
    fs::remove_all(folder, ignored);
  }
  return code;
}
