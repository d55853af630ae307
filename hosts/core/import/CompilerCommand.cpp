#include "hosts/core/import/CompilerCommand.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>
#include <utility>

#include "platform/paths/Paths.h"
#include "platform/text/Text.h"

namespace tarn::host {

namespace {

constexpr std::string_view kLaunchers[] = {"ccache", "distcc", "sccache", "icecc",
                                           "env",    "bash",   "sh",      "libtool"};

bool IsOneOf(std::string_view text, std::initializer_list<std::string_view> list) {
  return std::find(list.begin(), list.end(), text) != list.end();
}

// Returns the name of a program without folder, version and ".exe"; that of ld without the kind.
std::string BaseName(const std::string& program) {
  std::string name = FileNameOf(ToNativeSeparators(program));
  for (const char* each : {".exe", "ld.bfd", "ld.gold"}) {
    if (EndsWithNoCase(name, each)) name.resize(name.rfind('.'));
  }
  const std::size_t end = name.find_last_not_of("0123456789.");
  const bool hasVersion = end != std::string::npos && end > 0 && name[end] == '-';
  return hasVersion ? name.substr(0, end) : name;
}

std::string AfterLastDash(const std::string& name) {
  // "arm-none-eabi-g++" and "clang++" end in the name of the driver.
  const std::size_t dash = name.rfind('-');
  return dash == std::string::npos ? name : name.substr(dash + 1);
}

std::string SdccToolchain(const std::vector<std::string>& arguments) {
  std::string port = "mcs51";
  for (const std::string& each : arguments) {
    const bool isPort = each.starts_with("-m") && each.size() > 2 && !each.starts_with("-mm");
    if (isPort || each == "-mmcs51") port = each.substr(2);
  }
  return "sdcc-" + port;
}

std::string ClangToolchain(const std::vector<std::string>& arguments) {
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    std::string triple;
    if (arguments[i].starts_with("--target=")) triple = arguments[i].substr(9);
    if (arguments[i] == "-target" && i + 1 < arguments.size()) triple = arguments[i + 1];
    if (triple.empty()) continue;
    if (triple.starts_with("arm") || triple.starts_with("thumb")) return "arm-clang";
    if (triple.starts_with("riscv")) return "riscv-clang";
    return triple.find("linux") != std::string::npos ? "host-clang" : "";
  }
  return "host-clang";
}

// What an option means. Most options have one of these forms.
enum class Form {
  Drop,          // has no effect on the product, or the tool sets it itself
  DropWithNext,  // the same, with a value in the next argument
  Define,
  Undefine,
  Include,
  Library,
  LibraryPath,
  Script,
  Output,
  Language,
  Path,      // any other argument with a path
  WithNext,  // any other argument with a value in the next one
};

struct Flag {
  std::string_view text;
  Form form;
  bool isPrefix;  // the value may follow without a space
};

constexpr Flag kFlags[] = {
    {"-D", Form::Define, true},
    {"-U", Form::Undefine, true},
    {"-I", Form::Include, true},
    {"-L", Form::LibraryPath, true},
    {"-l", Form::Library, true},
    {"-T", Form::Script, true},
    {"-o", Form::Output, true},
    {"-x", Form::Language, true},
    {"-MF", Form::DropWithNext, true},
    {"-MT", Form::DropWithNext, true},
    {"-MQ", Form::DropWithNext, true},
    {"-include", Form::Path, false},
    {"-imacros", Form::Path, false},
    {"-isystem", Form::Path, true},
    {"-iquote", Form::Path, true},
    {"-idirafter", Form::Path, true},
    {"-isysroot", Form::Path, false},
    {"--sysroot", Form::Path, false},
    {"--sysroot=", Form::Path, true},
    {"-B", Form::Path, true},
    {"-Xlinker", Form::WithNext, false},
    {"-Xassembler", Form::WithNext, false},
    {"-Xpreprocessor", Form::WithNext, false},
    {"-Xclang", Form::WithNext, false},
    {"-mllvm", Form::WithNext, false},
    {"-u", Form::WithNext, false},
    {"-Ttext", Form::WithNext, false},
    {"-Tdata", Form::WithNext, false},
    {"-Tbss", Form::WithNext, false},
    {"-z", Form::WithNext, false},
    {"--param", Form::WithNext, false},
    {"-arch", Form::WithNext, false},
    {"-target", Form::WithNext, false},
};

struct TargetRow {
  std::string_view flag, toolchain;
  const char* option;
};

// Options of the linker with a value in the next argument.
constexpr std::string_view kLinkerPairs[] = {"-e",
                                             "-u",
                                             "-z",
                                             "-m",
                                             "-y",
                                             "-b",
                                             "-h",
                                             "-R",
                                             "-Ttext",
                                             "-Tdata",
                                             "-Tbss",
                                             "-rpath",
                                             "-soname",
                                             "-defsym",
                                             "-entry",
                                             "-undefined",
                                             "-section-start",
                                             "-just-symbols",
                                             "-version-script",
                                             "-wrap",
                                             "-oformat"};

constexpr TargetRow kTargetRows[] = {
    {"-mmcu=", "avr", "Device"},   {"-mcpu=", "arm-", "Cpu"},
    {"-mfpu=", "arm-", "Fpu"},     {"-mfloat-abi=", "arm-", "FloatAbi"},
    {"-march=", "riscv-", "Arch"}, {"-mabi=", "riscv-", "Abi"},
};

// Values of the option CLibrary, and their files for -specs.
constexpr std::pair<std::string_view, std::string_view> kLibrarySpecs[] = {
    {"newlib-nano", "nano.specs"}, {"picolibc", "picolibc.specs"}};

// Arguments that the tools of this project pass themselves, or that only concern the build system.
bool IsDropped(std::string_view text) {
  return IsOneOf(text, {"-MD", "-MMD", "-MP", "-MG", "-pipe", "-v", "-ffunction-sections",
                        "-fdata-sections", "-s", "-Wl,--gc-sections", "--fdiagnostics-color",
                        "-fcolor-diagnostics"}) ||
         text.starts_with("-fdiagnostics-color") || text.starts_with("-Wl,-Map") ||
         text.starts_with("-Wp,-MD,") || text.starts_with("-Wp,-MMD,") ||
         text.starts_with("-ffile-prefix-map=") || text.starts_with("-fdebug-prefix-map=") ||
         text.starts_with("-fmacro-prefix-map=") || text.starts_with("-Wl,-rpath");
}

// Returns false for flags such as -Ttext=ADDRESS.
bool IsScriptFlag(std::string_view text) {
  return text.starts_with("-T") && !text.starts_with("-Ttext") && !text.starts_with("-Tdata") &&
         !text.starts_with("-Tbss");
}

class Parser {
 public:
  Parser(const std::vector<std::string>& arguments, const std::string& folder)
      : arguments_(arguments), folder_(folder) {}

  CompilerCommand Run();

 private:
  void TakeProgram();
  void TakeArgument();
  void TakeAssemblerArgument(const std::string& text);
  void TakeLinkerArgument(const std::string& text);
  bool TakeFlag(const std::string& text);
  void TakeForm(Form form, const std::string& text, const std::string& value, bool isSeparate);
  bool TakeStandardOption(const std::string& text);
  bool TakeTarget(const std::string& text);
  bool TakeSpecs(const std::string& text);
  void TakeDefine(const std::string& define);
  std::string Absolute(const std::string& path) const {
    return CanonicalPath(IsRelativePath(path) ? JoinPath(folder_, path) : path);
  }
  bool Is(std::string_view toolchainPart) const {
    return command_.toolchain.find(toolchainPart) != std::string::npos;
  }

  const std::vector<std::string>& arguments_;
  const std::string& folder_;
  std::size_t at_ = 0;
  bool isAssembler_ = false;
  CompilerCommand command_;
};

void Parser::TakeProgram() {
  at_ = FindCompiler(arguments_);
  if (at_ == arguments_.size()) return;
  command_.program = arguments_[at_++];
  command_.toolchain = ToolchainOf(command_.program, arguments_);
  const std::string driver = AfterLastDash(BaseName(command_.program));
  command_.isCpp = driver.ends_with("++");
  command_.isLinker = driver == "ld";
  isAssembler_ = driver == "as";
  command_.isCompile = isAssembler_;
  // A compiler that links adds libraries that ld doesn't.
  if (command_.isLinker) command_.further.push_back({"-nostdlib", ""});
}

// A later define replaces an earlier one, as the compiler has it.
void Parser::TakeDefine(const std::string& define) {
  const std::string name = define.substr(0, define.find('='));
  std::erase_if(command_.defines, [&name](const std::string& each) {
    return each.substr(0, each.find('=')) == name;
  });
  std::erase_if(command_.further, [&name](const FurtherArgument& each) {
    return each.text == "-U" + name && each.path.empty();
  });
  const std::string value = define.size() > name.size() ? define.substr(name.size() + 1) : "";
  const std::size_t digits = value.find_first_not_of("0123456789");
  const bool isNumber = digits != 0 && !value.empty() &&
                        (digits == std::string::npos ||
                         IsOneOf(FoldCase(value.substr(digits)), {"l", "u", "ul", "ull"}));
  if (name == "F_CPU" && isNumber && command_.toolchain == "avr-gcc") {
    command_.target["Clock"] = value.substr(0, digits);
    return;
  }
  // Lists are split at semicolons, and blanks around their entries are dropped.
  const bool isListable = define.find(';') == std::string::npos && Trim(define) == define;
  if (isListable) {
    command_.defines.push_back(define);
  } else {
    command_.further.push_back({"-D" + define, ""});
  }
}

void Parser::TakeForm(Form form, const std::string& text, const std::string& value,
                      bool isSeparate) {
  switch (form) {
    case Form::Drop:
    case Form::DropWithNext:
      return;
    case Form::Define:
      return TakeDefine(value);
    case Form::Undefine:
      std::erase_if(command_.defines, [&value](const std::string& each) {
        return each.substr(0, each.find('=')) == value;
      });
      command_.further.push_back({"-U" + value, ""});
      return;
    case Form::Include:
      command_.includes.push_back(Absolute(value));
      return;
    case Form::Library:
      command_.libraries.push_back(value);
      return;
    case Form::LibraryPath:
      command_.libraryPaths.push_back(Absolute(value));
      return;
    case Form::Script:
      command_.script = Absolute(value);
      return;
    case Form::Output:
      command_.output = Absolute(value);
      return;
    case Form::Language:
      command_.language = value == "c++"                          ? "Cpp"
                          : value.starts_with("assembler")        ? "Assembler"
                          : value == "c" || value == "cpp-output" ? "C"
                                                                  : "";
      if (value == "none") command_.language.clear();
      return;
    case Form::Path:
      if (isSeparate) command_.further.push_back({text, ""});
      command_.further.push_back({isSeparate ? "" : text, Absolute(value)});
      return;
    case Form::WithNext:
      command_.further.push_back({text, ""});
      command_.further.push_back({value, ""});
      return;
  }
}

bool Parser::TakeFlag(const std::string& text) {
  const Flag* found = nullptr;
  for (const Flag& each : kFlags) {
    const bool fits = text == each.text || (each.isPrefix && text.starts_with(each.text));
    if (fits && (found == nullptr || each.text.size() > found->text.size())) found = &each;
  }
  if (found == nullptr) return false;
  const std::string flag(found->text);
  if (text.size() > flag.size()) {
    TakeForm(found->form, flag, text.substr(flag.size()), false);
  } else if (at_ < arguments_.size()) {
    TakeForm(found->form, flag, arguments_[at_++], true);
  }
  return true;
}

// Options of a project that are the same for all compilers.
bool Parser::TakeStandardOption(const std::string& text) {
  if (text.starts_with("-std=")) {
    command_.standard = text.substr(5);
  } else if (text.starts_with("--std-")) {
    command_.standard = text.substr(6);
  } else if (text == "-O") {
    command_.optimize = "1";
  } else if (text.size() == 3 && text.starts_with("-O") &&
             std::string_view("0123s").find(text[2]) != std::string_view::npos) {
    command_.optimize = text.substr(2);
    std::erase_if(command_.further, [](const FurtherArgument& each) {
      return each.path.empty() && each.text.starts_with("-O");
    });
  } else if (text == "-w") {
    command_.warnings = "none";
  } else if (text == "-Wall") {
    if (command_.warnings == "default") command_.warnings = "all";
  } else if (IsOneOf(text, {"-Wextra", "-W"}) && command_.warnings == "all") {
    command_.warnings = "extra";
  } else if (IsOneOf(text, {"-g", "-g2", "-ggdb", "-gdwarf-2", "-gdwarf-4", "--debug"})) {
    command_.debug = true;
  } else if (text == "-g0") {
    command_.debug = false;
  } else {
    return false;
  }
  return true;
}

// Options that select the processor or the C library.
bool Parser::TakeTarget(const std::string& text) {
  for (const TargetRow& row : kTargetRows) {
    if (!text.starts_with(row.flag) || !Is(row.toolchain)) continue;
    command_.target[row.option] = text.substr(row.flag.size());
    return true;
  }
  if (text == "-mthumb" && Is("arm-")) return true;
  if (TakeSpecs(text)) return true;
  if (text.starts_with("--target=") && Is("clang")) return true;
  return Is("sdcc-") && text == "-m" + command_.toolchain.substr(5);
}

// Arguments of the assembler itself, which the compiler hands to it after -Wa.
void Parser::TakeAssemblerArgument(const std::string& text) {
  if (text.starts_with("-I") || text.starts_with("-o")) {
    TakeFlag(text);
  } else if (text.starts_with("-g") || text.starts_with("--gdwarf") || text == "--gen-debug") {
    command_.debug = true;
  } else if (text == "--defsym" && at_ < arguments_.size()) {
    command_.further.push_back({"-Wa,--defsym," + arguments_[at_++], ""});
  } else if (text == "--MD" && at_ < arguments_.size()) {
    ++at_;
  } else if (!TakeTarget(text) && text != "-D" && !text.starts_with("-a")) {
    command_.further.push_back({(text.starts_with("-m") ? "" : "-Wa,") + text, ""});
  }
}

// Arguments of the linker itself, which the compiler hands to it after -Wl.
void Parser::TakeLinkerArgument(const std::string& text) {
  const std::string plain = text.starts_with("--") ? text.substr(1) : text;  // with one dash
  const bool isPair =
      std::find(std::begin(kLinkerPairs), std::end(kLinkerPairs), plain) != std::end(kLinkerPairs);
  if (plain.starts_with("-script=")) {
    command_.script = Absolute(plain.substr(8));
  } else if (plain == "-script" && at_ < arguments_.size()) {
    command_.script = Absolute(arguments_[at_++]);
  } else if (plain == "-Map") {
    ++at_;
  } else if (plain.starts_with("-Map=") || plain == "-gc-sections" || text == "-s") {
    return;
  } else if (plain == text &&
             (IsScriptFlag(text) || text.starts_with("-L") || text.starts_with("-l") ||
              (text.starts_with("-o") && plain != "-oformat"))) {
    TakeFlag(text);
  } else if (isPair && at_ < arguments_.size()) {
    command_.further.push_back({"-Wl," + text + "," + arguments_[at_++], ""});
  } else {
    command_.further.push_back({"-Wl," + text, ""});
  }
}

void Parser::TakeArgument() {
  const std::string& text = arguments_[at_++];
  if (text.empty()) return;
  if (text[0] == '@') {
    command_.dropped.push_back(text);
  } else if (text[0] != '-') {
    command_.inputs.push_back(Absolute(text));
  } else if (isAssembler_) {
    TakeAssemblerArgument(text);
  } else if (command_.isLinker) {
    TakeLinkerArgument(text);
  } else if (text.starts_with("-Wl,-T") && text.size() > 7 && IsScriptFlag(text.substr(4)) &&
             text.find(',', 7) == std::string::npos) {
    command_.script = Absolute(text.substr(text[6] == ',' ? 7 : 6));
  } else if (text.starts_with("-T") && text.find('=') != std::string::npos && !IsScriptFlag(text)) {
    command_.further.push_back({text, ""});
  } else if (text == "-c") {
    command_.isCompile = true;
  } else if (IsOneOf(text, {"-E", "-S", "-M", "-MM"})) {
    command_.makesText = true;
  } else if (IsDropped(text) || TakeTarget(text) || TakeStandardOption(text) || TakeFlag(text)) {
    return;
  } else {
    command_.further.push_back({text, ""});
  }
}

// Files for -specs that belong to the C library.
bool Parser::TakeSpecs(const std::string& text) {
  const std::size_t start = text.find("-specs=");
  if (start > 1) return false;
  const std::string file = text.substr(start + 7);
  for (const auto& [library, specs] : kLibrarySpecs) {
    if (file != specs || (!Is("arm-gcc") && !Is("riscv-gcc"))) continue;
    if (Is("riscv-") && library == "newlib-nano") {
      command_.dropped.push_back(text);  // it has no such library
    } else {
      command_.target["CLibrary"] = library;
    }
    return true;
  }
  if (!IsOneOf(file, {"nosys.specs", "rdimon.specs"}) || !Is("arm-gcc")) return false;
  command_.systemCalls = "-specs=" + file;
  return true;
}

CompilerCommand Parser::Run() {
  TakeProgram();
  while (at_ < arguments_.size()) TakeArgument();
  return std::move(command_);
}

}  // namespace

std::size_t FindCompiler(const std::vector<std::string>& arguments) {
  std::size_t at = 0;
  for (bool isLibtool = false; at < arguments.size(); ++at) {
    const std::string name = BaseName(arguments[at]);
    const bool isLauncher =
        std::find(std::begin(kLaunchers), std::end(kLaunchers), name) != std::end(kLaunchers);
    const bool isVariable = at > 0 && arguments[at].find('=') != std::string::npos;
    const bool isOption = isLibtool && arguments[at].starts_with("--");
    if (!isLauncher && !isVariable && !isOption) break;
    isLibtool = isLibtool || name == "libtool";
  }
  return at;
}

std::string TargetArgument(const std::string& name, const std::string& value) {
  for (const TargetRow& row : kTargetRows) {
    if (name == row.option) return std::string(row.flag) + value;
  }
  for (const auto& [library, specs] : kLibrarySpecs) {
    if (name == "CLibrary" && value == library) return "-specs=" + std::string(specs);
  }
  return (name == "Clock" ? "-DF_CPU=" : "") + value;
}

bool TakesNextArgument(const std::string& argument) {
  return std::any_of(std::begin(kFlags), std::end(kFlags),
                     [&argument](const Flag& each) { return each.text == argument; });
}

std::string ToolchainOf(const std::string& program, const std::vector<std::string>& arguments) {
  const std::string name = FoldCase(BaseName(program));
  const std::string driver = AfterLastDash(name);
  if (driver == "sdcc" || name == "sdar") return SdccToolchain(arguments);
  if (IsOneOf(driver, {"clang", "clang++"})) return ClangToolchain(arguments);
  if (!IsOneOf(driver, {"gcc", "g++", "cc", "c++", "as", "cpp", "ld"})) return "";
  if (name == driver) return "host-gcc";
  if (name.starts_with("avr-")) return "avr-gcc";
  if (name.starts_with("arm-none-")) return "arm-gcc";
  if (name.starts_with("riscv") && name.find("-elf-") != std::string::npos) return "riscv-gcc";
  // A compiler for Linux is that of this machine, as far as its name tells.
  const bool isHost = name.starts_with("x86_64-linux") || name.starts_with("aarch64-linux");
  return isHost ? "host-gcc" : "";
}

std::string CompilerOf(const std::string& toolchain) {
  if (toolchain.starts_with("arm")) return "arm-none-eabi-gcc";
  if (toolchain.starts_with("riscv")) return "riscv64-unknown-elf-gcc";
  return toolchain.starts_with("host") ? "gcc" : "avr-gcc";
}

CompilerCommand ParseCompilerCommand(const std::vector<std::string>& arguments,
                                     const std::string& folder) {
  return Parser(arguments, folder).Run();
}

}  // namespace tarn::host
