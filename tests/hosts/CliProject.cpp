#include "hosts/CliProject.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <thread>

#include "platform/text/Text.h"

namespace tarn::host {

namespace {

// Returns the stored selection of the host compiler for one configuration.
std::string CompilerOf(const std::string& configuration) {
  return "<Config Header=\"" + configuration +
         "\" ><Set Header=\"Application\" ><Section Header=\"Target\" >"
         "<Property Header=\"Toolchain\" Removable=\"Yes\" Value=\"host-gcc\" />"
         "</Section></Set></Config>";
}

std::string ApplicationText(const std::string& label, const std::vector<std::string>& sources) {
  std::string text = "\r\n<Application Header=\"" + label + "\" Extern=\".\\" + label +
                     ".tapp\" Path=\".\\" + label + ".tapp\" >";
  text += "<Configs><Config Header=\"Fast\" /></Configs>";
  text += "<Options>" + CompilerOf("Standard") + CompilerOf("Fast") + "</Options>";
  text += "<Group Header=\"Sources\" >";
  for (const std::string& source : sources) {
    text += "<C Header=\"" + source + "\" Path=\".\\src\\" + source + "\" />";
  }
  return text + "</Group></Application>";
}

}  // namespace

bool Has(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

std::vector<std::string> Words(std::string_view line) {
  std::vector<std::string> words;
  for (const std::string_view word : Split(line, ' ')) words.emplace_back(word);
  return words;
}

std::string Built(const std::string& out) {
  std::string names;
  for (std::size_t at = out.find("] "); at != out.npos; at = out.find("] ", at + 1)) {
    const std::string path = out.substr(at + 2, out.find('\n', at) - at - 2);
    names += (names.empty() ? "" : " ") + path.substr(path.rfind('/') + 1);
  }
  return names;
}

CliProject::CliProject() {
  std::string name = (std::filesystem::temp_directory_path() / "tarn-cli-XXXXXX").string();
  root_ = mkdtemp(name.data());
  folder_ = root_ / "work";
  std::filesystem::create_directories(folder_ / "src");
  std::filesystem::create_directories(root_ / "bin");
  WriteProject({{"app", {"a.c", "b.c", "c.c"}}});
  Write("src/a.h", "int a(void);\n");
  Write("src/a.c", "#include \"a.h\"\nint a(void) { return 1; }\n");
  Write("src/b.c", "#include \"a.h\"\nint main(void) { return a() - 1; }\n");
  Write("src/c.c", "int c(void) { return 3; }\n");
  const std::string path = std::getenv("PATH");
  environment = {{"TARN_ROOT", std::string(std::getenv("TARN_SOURCE_DIR")) + "/share/"},
                 {"TARN_SETTINGS", (root_ / "settings").string()},
                 {"XDG_DATA_HOME", (root_ / "data").string()},
                 {"TMPDIR", root_.string()},
                 {"TERM", "xterm"},
                 {"MAKEFLAGS", ""},  // of a make that runs the tests
                 {"PATH", (root_ / "bin").string() + ":" + path}};
}

CliProject::~CliProject() {
  std::error_code ignored;
  std::filesystem::remove_all(root_, ignored);
}

CliProject::Answer CliProject::Run(
    std::vector<std::string> arguments,
    const std::function<void(Process&, const std::string& out)>& onOutput) {
  return RunProgram(TARN_PROGRAM, std::move(arguments), onOutput);
}

std::string CliProject::Out(std::vector<std::string> arguments) {
  const Answer answer = Run(std::move(arguments));
  EXPECT_EQ(answer.code, 0) << answer.err << answer.out;
  return answer.out;
}

void CliProject::ExpectRefusal(std::vector<std::string> arguments, int code,
                               const std::string& said) {
  const Answer answer = Run(std::move(arguments));
  EXPECT_EQ(answer.code, code) << said << answer.out;
  EXPECT_TRUE(Has(answer.err, said)) << answer.err << "wanted: " << said;
  EXPECT_EQ(answer.out, "") << said;
}

CliProject::Answer CliProject::RunProgram(
    const std::string& program, std::vector<std::string> arguments,
    const std::function<void(Process&, const std::string& out)>& onOutput) {
  Answer answer;
  const auto start = std::chrono::steady_clock::now();
  auto process = ProcessLauncher::Native().Start(
      {program, std::move(arguments), environment, folder_.string()});
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

void CliProject::WriteProject(
    const std::vector<std::pair<std::string, std::vector<std::string>>>& applications) {
  std::string project =
      "\r\n<Project Header=\"Project 'demo'\" Path=\".\\demo.tprj\" Project=\"Yes\" ActiveApp=\"" +
      applications.front().first + "\" >";
  for (const auto& [label, sources] : applications) {
    project += "<Application Header=\"" + label + "\" Extern=\".\\" + label + ".tapp\" Path=\".\\" +
               label + ".tapp\" />";
    Write(label + ".tapp", ApplicationText(label, sources));
  }
  Write("demo.tprj", project + "</Project>");
}

void CliProject::Write(const std::string& name, const std::string& text) {
  std::ofstream(folder_ / name, std::ios::binary) << text;
  const auto old = std::filesystem::file_time_type::clock::now() - std::chrono::hours(1);
  std::filesystem::last_write_time(folder_ / name, old);
}

void CliProject::Edit(const std::string& name, const std::string& text) {
  std::filesystem::create_directories((folder_ / name).parent_path());
  std::ofstream(folder_ / name, std::ios::binary) << text;
}

void CliProject::Point(const std::string& variable, const std::string& name) {
  bool isSet = false;
  for (auto& [each, value] : environment) {
    if (each != variable) continue;
    value = PathOf(name);
    isSet = true;
  }
  if (!isSet) environment.emplace_back(variable, PathOf(name));
}

std::string CliProject::Read(const std::string& name) const {
  std::ifstream file(folder_ / name, std::ios::binary);
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

void CliProject::Touch(const std::string& name) {
  // Times have a resolution of one second, and only a later one has an effect.
  std::this_thread::sleep_for(std::chrono::milliseconds(1100));
  std::filesystem::last_write_time(folder_ / name, std::filesystem::file_time_type::clock::now());
}

void CliProject::Trust() {
  const std::filesystem::path state = root_ / "settings/state";
  std::filesystem::create_directories(state);
  std::ofstream(state / "trusted") << std::filesystem::canonical(root_).string() << "\n";
}

void CliProject::AddProgram(const std::string& name, const std::string& script) {
  const std::filesystem::path path = root_ / "bin" / name;
  std::ofstream(path) << script;
  chmod(path.c_str(), 0755);
}

}  // namespace tarn::host
