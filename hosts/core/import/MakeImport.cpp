#include <algorithm>
#include <set>

#include "hosts/core/import/Converters.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"

namespace tarn::host {

namespace {

// Divides a line at operators of the shell outside of quotes.
std::vector<std::string> SplitCommands(const std::string& line) {
  std::vector<std::string> commands(1);
  char quote = 0;
  for (std::size_t i = 0; i < line.size(); ++i) {
    const char c = line[i];
    if (c == '\\' && quote != '\'' && i + 1 < line.size()) {
      commands.back() += c;
      commands.back() += line[++i];
      continue;
    }
    if (quote != 0) {
      if (c == quote) quote = 0;
    } else if (c == '"' || c == '\'') {
      quote = c;
    } else if (c == ';' || c == '&' || c == '|' || c == '(' || c == ')') {
      // "2>&1" is a redirection.
      const bool isSeparator = c != '&' || i == 0 || line[i - 1] != '>';
      if (isSeparator) {
        commands.emplace_back();
        continue;
      }
    }
    commands.back() += c;
  }
  return commands;
}

class MakeOutput {
 public:
  MakeOutput(const std::string& startFolder, const ImportContext& context)
      : context_(context), folders_{startFolder} {}

  ForeignBuild Read(const std::string& output);

 private:
  bool TakeFolder(const std::string& line);
  void TakeCommand(const std::string& text);
  void TakeOther(const std::vector<std::string>& words, const std::string& text);
  void ReportOthers();
  bool IsSource(const std::string& path) const {
    const std::string type = context_.typeOf(path);
    return type == "C" || type == "Cpp" || type == "Assembler";
  }

  const ImportContext& context_;
  std::vector<std::string> folders_;  // of the running makes, innermost last
  ForeignBuild build_;
  struct Other {
    std::string program, first;  // the first command
    int count = 0;
  };
  std::vector<Other> others_;  // what is neither compiled nor linked
};

// "make[1]: Entering directory '/x'" and its opposite.
bool MakeOutput::TakeFolder(const std::string& line) {
  const std::size_t entering = line.find(": Entering directory '");
  const bool isMessage = line.starts_with("make") || line.starts_with("gmake");
  if (!isMessage) return false;
  if (entering != std::string::npos && line.ends_with("'")) {
    const std::size_t start = entering + 22;
    folders_.push_back(line.substr(start, line.size() - start - 1));
    return true;
  }
  if (line.find(": Leaving directory '") == std::string::npos) return false;
  if (folders_.size() > 1) folders_.pop_back();
  return true;
}

void MakeOutput::TakeCommand(const std::string& text) {
  std::vector<std::string> words = SplitShellWords(text);
  if (words.size() == 2 && words[0] == "cd") {
    folders_.back() =
        CanonicalPath(IsRelativePath(words[1]) ? JoinPath(folders_.back(), words[1]) : words[1]);
    return;
  }
  while (!words.empty() && (words[0] == "then" || words[0] == "else" || words[0] == "do")) {
    words.erase(words.begin());
  }
  words.erase(words.begin(), words.begin() + static_cast<std::ptrdiff_t>(FindCompiler(words)));
  if (words.empty()) return;
  if (auto link = ParseLink(words, folders_.back())) {
    // A program may be compiled and linked in one step.
    for (const std::string& input : link->command.inputs) {
      if (!IsSource(input)) continue;
      CompiledSource source{input, link->command};
      source.command.output.clear();
      source.command.libraries.clear();
      build_.sources.push_back(std::move(source));
    }
    build_.links.push_back(std::move(*link));
    return;
  }
  const CompilerCommand command = ParseCompilerCommand(words, folders_.back());
  if (command.toolchain.empty() || !command.isCompile || command.makesText) {
    const bool listsHeaders = std::any_of(words.begin(), words.end(), [](const std::string& each) {
      return each == "-M" || each == "-MM";
    });
    if (command.toolchain.empty() || !listsHeaders) TakeOther(words, text);
    return;
  }
  for (const std::string& input : command.inputs) {
    if (!IsSource(input)) continue;
    CompiledSource source{input, command};
    if (source.command.output.empty()) {
      source.command.output = JoinPath(folders_.back(), WithExtension(FileNameOf(input), ".o"));
    }
    build_.sources.push_back(std::move(source));
  }
}

// Commands that build nothing, and words of the shell, need no remark.
void MakeOutput::TakeOther(const std::vector<std::string>& words, const std::string& text) {
  constexpr std::string_view kQuiet[] = {
      "echo", "printf", "cd",   "mkdir", "rmdir", "rm",  "test", "[",     "true", "false",
      ":",    "touch",  "make", "gmake", "if",    "fi",  "for",  "done",  "do",   "then",
      "else", "while",  "case", "esac",  "exit",  "set", "size", "ranlib"};
  const std::string program = FileNameOf(words.front());
  const bool isName = !program.empty() && program.find_first_of("=:*?!{}`'\"$<>") == program.npos;
  const bool isQuiet =
      std::find(std::begin(kQuiet), std::end(kQuiet), program) != std::end(kQuiet) ||
      program.ends_with("-size") || program.ends_with("-ranlib");
  if (!isName || isQuiet) return;
  const auto same = [&](const Other& each) { return each.program == program; };
  auto found = std::find_if(others_.begin(), others_.end(), same);
  if (found == others_.end()) {
    found = others_.insert(others_.end(), {program, std::string(Trim(text)), 0});
  }
  ++found->count;
}

void MakeOutput::ReportOthers() {
  for (const Other& each : others_) {
    const std::string more =
        each.count == 1 ? "" : ", nor " + ToDecimal(each.count - 1) + " more of " + each.program;
    build_.remarks.push_back("the command " + each.first + " was not imported" + more);
  }
}

ForeignBuild MakeOutput::Read(const std::string& output) {
  const std::string joined = ReplaceAll(output, "\\\n", " ");
  for (const std::string& line : SplitLines(joined)) {
    if (TakeFolder(line)) continue;
    const std::string folder = folders_.back();
    for (const std::string& each : SplitCommands(line)) TakeCommand(each);
    folders_.back() = folder;
  }
  ReportOthers();
  return std::move(build_);
}

}  // namespace

Result<ImportedProject> ImportMakeOutput(const ImportRequest& request, const std::string& output,
                                         const ImportContext& context) {
  const std::string place = FolderOf(request.path);
  const ForeignBuild build = MakeOutput(place, context).Read(output);
  if (build.sources.empty()) {
    return Error{ErrorCode::Unsupported, "`make -n` prints no compiler commands", request.path};
  }
  ImportedProject project;
  ChooseFolder(request, place, build.sources, context, project);
  DivideIntoApplications(build, context, project);
  project.remarks.insert(project.remarks.end(), build.remarks.begin(), build.remarks.end());
  return project;
}

}  // namespace tarn::host
