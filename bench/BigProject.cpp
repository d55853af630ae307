#include "bench/BigProject.h"

#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <stdexcept>

namespace tarn::bench {

namespace {

namespace fs = std::filesystem;

constexpr int kFilesPerFolder = 100;
constexpr int kHeaders = 200;
constexpr int kHeadersPerFile = 5;

void Write(const fs::path& path, const std::string& text) {
  fs::create_directories(path.parent_path());
  std::ofstream file(path, std::ios::binary);
  file << text;
  if (!file.flush()) throw std::runtime_error(path.string() + " can't be written");
}

// --- The compiler ---

// Returns the headers that a source includes by full path.
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

// Replaces response files by the arguments in them; no name here needs quotes.
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

void Compile(const std::vector<std::string>& arguments) {
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
}

// --- The project ---

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

std::string NinjaText(const BigProject& project) {
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

void PointEnvironmentAt(const fs::path& folder) {
  setenv("PATH", (folder / "bin:").string().append(getenv("PATH")).c_str(), 1);
  setenv("XDG_STATE_HOME", (folder / "state").c_str(), 1);
  setenv("XDG_CONFIG_HOME", (folder / "config").c_str(), 1);
  setenv("TARN_ROOT", TARN_SOURCE_DIR "/share", 1);
  unsetenv("TARN_LAUNCHER");
}

}  // namespace

BigProject MakeBigProject(const fs::path& folder, int files) {
  BigProject project{folder, {}};
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
  PointEnvironmentAt(folder);
  return project;
}

bool ActsAsCompiler(int argc, char** argv) {
  const std::string name = fs::path(argv[0]).filename();
  if (name == "gcc" || name == "g++") Compile(WithResponse({argv + 1, argv + argc}));
  return name == "gcc" || name == "g++" || name == "size";
}

fs::path BenchFolder(const char* name) {
  return fs::temp_directory_path() / ("tarn-bench-" + std::to_string(getpid()) + "-" + name);
}

}  // namespace tarn::bench
