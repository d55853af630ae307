#include "hosts/CliProject.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <thread>

namespace tarn::host {

namespace {

constexpr const char* kProject =
    "\r\n<Project Header=\"Project 'demo'\" Path=\".\\demo.tprj\" Project=\"Yes\" "
    "ActiveApp=\"app\" sate=\"32\" >"
    "\r\n\t<Application Header=\"app\" Extern=\".\\app.tapp\" Path=\".\\app.tapp\" />"
    "\r\n</Project>";

constexpr const char* kApplication =
    "\r\n<Application Header=\"app\" Extern=\".\\app.tapp\" Path=\".\\app.tapp\" sate=\"32\" >"
    "\r\n\t<Configs>"
    "\r\n\t\t<Config Header=\"Fast\" />"
    "\r\n\t</Configs>"
    "\r\n\t<Options>"
    "\r\n\t\t<Config Header=\"Standard\" >"
    "\r\n\t\t\t<Set Header=\"Application\" >"
    "\r\n\t\t\t\t<Section Header=\"Target\" >"
    "\r\n\t\t\t\t\t<Property Header=\"Toolchain\" Removable=\"Yes\" Value=\"host-gcc\" />"
    "\r\n\t\t\t\t</Section>"
    "\r\n\t\t\t</Set>"
    "\r\n\t\t</Config>"
    "\r\n\t\t<Config Header=\"Fast\" >"
    "\r\n\t\t\t<Set Header=\"Application\" >"
    "\r\n\t\t\t\t<Section Header=\"Target\" >"
    "\r\n\t\t\t\t\t<Property Header=\"Toolchain\" Removable=\"Yes\" Value=\"host-gcc\" />"
    "\r\n\t\t\t\t</Section>"
    "\r\n\t\t\t</Set>"
    "\r\n\t\t</Config>"
    "\r\n\t</Options>"
    "\r\n\t<Group Header=\"Sources\" sate=\"32\" >"
    "\r\n\t\t<C Header=\"a.c\" Path=\".\\src\\a.c\" />"
    "\r\n\t\t<C Header=\"b.c\" Path=\".\\src\\b.c\" />"
    "\r\n\t\t<C Header=\"c.c\" Path=\".\\src\\c.c\" />"
    "\r\n\t</Group>"
    "\r\n</Application>";

}  // namespace

CliProject::CliProject() {
  std::string name = (std::filesystem::temp_directory_path() / "tarn-cli-XXXXXX").string();
  root = mkdtemp(name.data());
  folder = root / "work";
  std::filesystem::create_directories(folder / "src");
  std::filesystem::create_directories(root / "bin");
  Write("demo.tprj", kProject);
  Write("app.tapp", kApplication);
  Write("src/a.h", "int a(void);\n");
  Write("src/a.c", "#include \"a.h\"\nint a(void) { return 1; }\n");
  Write("src/b.c", "#include \"a.h\"\nint main(void) { return a() - 1; }\n");
  Write("src/c.c", "int c(void) { return 3; }\n");
  const std::string path = std::getenv("PATH");
  environment = {{"TARN_ROOT", std::string(std::getenv("TARN_SOURCE_DIR")) + "/share/"},
                 {"TARN_SETTINGS", (root / "settings").string()},
                 {"XDG_DATA_HOME", (root / "data").string()},
                 {"TMPDIR", root.string()},
                 {"TERM", "xterm"},
                 {"PATH", (root / "bin").string() + ":" + path}};
}

CliProject::~CliProject() {
  std::error_code ignored;
  std::filesystem::remove_all(root, ignored);
}

CliProject::Answer CliProject::Run(
    std::vector<std::string> arguments,
    const std::function<void(Process&, const std::string& out)>& onOutput) {
  Answer answer;
  const auto start = std::chrono::steady_clock::now();
  auto process = ProcessLauncher::Native().Start(
      {TARN_PROGRAM, std::move(arguments), environment, folder.string()});
  if (!process) return answer;
  const ProcessExit exit =
      (*process)->WaitWithOutput([&](std::string_view text, bool fromErrorStream) {
        (fromErrorStream ? answer.err : answer.out).append(text);
        if (onOutput) onOutput(**process, answer.out);
      });
  answer.code = exit.code;
  answer.time = std::chrono::duration_cast<std::chrono::milliseconds>(
      std::chrono::steady_clock::now() - start);
  return answer;
}

void CliProject::Write(const std::string& name, const std::string& text) {
  std::ofstream(folder / name, std::ios::binary) << text;
  const auto old = std::filesystem::file_time_type::clock::now() - std::chrono::hours(1);
  std::filesystem::last_write_time(folder / name, old);
}

std::string CliProject::Read(const std::string& name) const {
  std::ifstream file(folder / name, std::ios::binary);
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

void CliProject::Touch(const std::string& name) {
  // Times count in whole seconds, and only a later one makes a difference.
  std::this_thread::sleep_for(std::chrono::milliseconds(1100));
  std::filesystem::last_write_time(folder / name, std::filesystem::file_time_type::clock::now());
}

void CliProject::AddProgram(const std::string& name, const std::string& script) {
  const std::filesystem::path path = root / "bin" / name;
  std::ofstream(path) << script;
  chmod(path.c_str(), 0755);
}

}  // namespace tarn::host
