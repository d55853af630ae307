#include "hosts/cli/CommandLine.h"

#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <sstream>

#include "hosts/cli/Console.h"
#include "hosts/cli/HelpText.h"
#include "platform/text/Suggest.h"

namespace tarn::host {

namespace {

constexpr const char* kNodeHelp = "Path or label, prefixed with APP/ where needed";

class HelpFormatter : public CLI::FormatterBase {
 public:
  std::string make_help(const CLI::App* app, std::string, CLI::AppFormatMode) const override {
    return MakeHelpText(DescribeCommand(*app));
  }
};

// Defines the commands and their options, and fills in the invocation during parsing.
class Grammar {
 public:
  Grammar() : app("Builds firmware projects.", "tarn") {
    app.set_version_flag("--version", "tarn " TARN_VERSION, "Show the version");
    app.set_help_flag("-h,--help", "Show this help");
    app.formatter(std::make_shared<HelpFormatter>());
    app.require_subcommand(1);
    AddBuilds();
    AddQuestions();
    AddOptions();
    AddConfigurations();
    AddNew();
    AddImport();
    AddTargets();
    AddRun();
    AddServe();
    AddTrust();
    AddRegistration();
    AddEdits();
    AddRelocate();
    AddExports();
    AddCompletion();
  }

  CLI::App& App() { return app; }
  Invocation& Result() { return invocation; }

  std::vector<std::string> CommandNames(const CLI::App& parent) const {
    std::vector<std::string> names;
    for (const CLI::App* each : parent.get_subcommands({})) {
      if (!each->get_group().empty()) names.push_back(each->get_name());
    }
    return names;
  }

 private:
  // Adds a command whose peer is a program, so display options don't apply.
  CLI::App* AddPlainCommand(CLI::App& parent, const std::string& name, const std::string& help) {
    CLI::App* command = parent.add_subcommand(name, help);
    const bool isNested = &parent != &app;
    const std::string words = isNested ? parent.get_name() + " " + name : name;
    command->callback([this, words] { invocation.command = words; });
    return command;
  }

  CLI::App* AddCommand(CLI::App& parent, const std::string& name, const std::string& help) {
    CLI::App* command = AddPlainCommand(parent, name, help);
    command->add_flag("-q,--quiet", invocation.quiet, "Print errors only");
    command->add_flag("--json", invocation.json, "Print JSON");
    command->add_flag("--no-color", invocation.noColor, "Disable colours (same as NO_COLOR)");
    return command;
  }

  void AddProjectOnly(CLI::App* command) {
    command
        ->add_option("PROJECT", invocation.project,
                     "Project file (*.tprj), or a folder that contains one")
        ->check(IsGiven());
  }

  void AddProject(CLI::App* command, const char* help = "Use only this application") {
    AddProjectOnly(command);
    command->add_option("-a,--app", invocation.application, help)
        ->type_name("APP")
        ->check(IsGiven());
  }

  // Adds the option for commands that build, clean, change the project's files, or export the whole
  // project.
  void AddDamagedOk(CLI::App* command) {
    command->add_flag("--damaged-ok", invocation.damagedOk,
                      "Continue with a project that could only be read in part");
  }

  // Adds the options for commands that change the project's files.
  void AddEditing(CLI::App* command) {
    AddDamagedOk(command);
    AddWriting(command);
  }

  void AddWriting(CLI::App* command) {
    command->add_flag("--no-wait", invocation.noWait,
                      "Fail (exit code 3) if another program is changing the project");
    AddOutsideOk(command);
  }

  void AddTrustFlag(CLI::App* command) {
    command->add_flag("--trust", invocation.trust,
                      "Trust the project for this run only; see `tarn help trust`");
  }

  void AddOutsideOk(CLI::App* command) {
    AddTrustFlag(command);
    command->add_flag("--outside-ok", invocation.outsideOk,
                      "Also write applications outside the project's folder");
  }

  void AddVerbose(CLI::App* command, const char* help) {
    command->add_flag("-v,--verbose", invocation.verbose, help)
        ->excludes(command->get_option("--quiet"));
  }

  void AddConfiguration(CLI::App* command) {
    command
        ->add_option("-c,--config", invocation.configuration,
                     "Use this configuration for this run only")
        ->type_name("CONFIG")
        ->check(IsGiven());
  }

  void AddBuilds() {
    const std::pair<const char*, const char*> commands[] = {
        {"build", "Build what is out of date"},
        {"rebuild", "Rebuild everything"},
        {"clean", "Delete what was built"},
    };
    for (const auto& [name, help] : commands) {
      CLI::App* command = AddCommand(app, name, help);
      AddProject(command);
      AddConfiguration(command);
      AddVerbose(command, "Show every command and its output");
      command->add_flag("--no-wait", invocation.noWait,
                        "Fail (exit code 3) if another build of the project is running");
      AddDamagedOk(command);
      AddTrustFlag(command);
    }
  }

  void AddQuestions() {
    CLI::App* status = AddCommand(app, "status", "Explain what is out of date and why");
    AddProject(status);
    AddConfiguration(status);
    CLI::App* check = AddCommand(app, "check", "Find mistakes and missing items in a project");
    AddProject(check, "Check only this application");
    AddConfiguration(check);
    CLI::App* tree = AddCommand(app, "tree", "Show applications, groups and files");
    AddProject(tree);
    AddConfiguration(tree);
    CLI::App* log = AddCommand(app, "log", "Show the log of the last build");
    AddProjectOnly(log);
    CLI::Option* xml = log->add_flag("--xml", invocation.xml, "Print the log file unchanged");
    xml->excludes(log->get_option("--json"));
    CLI::Option* follow = log->add_flag("-f,--follow", invocation.follow,
                                        "Keep printing the output of further builds");
    follow->excludes(xml);
    log->add_flag("--until-end", invocation.untilEnd, "Follow until the next build ends")
        ->excludes(xml);
    CLI::App* report = AddCommand(app, "report", "Show the errors and warnings of the last build");
    AddProjectOnly(report);
    report->add_flag("--errors", invocation.errors, "Show only errors");
    report->add_flag("--warnings", invocation.warnings, "Show only warnings; with --errors, both");
    AddGlobals();
  }

  void AddGlobals() {
    CLI::App* globals = AddCommand(app, "globals", "List the global symbols of an application");
    AddProject(globals, "Use this application instead of the active one");
    AddConfiguration(globals);
    constexpr const char* kPattern = "PATTERN";
    globals
        ->add_option("--name", invocation.namePattern, "Only symbols matching PATTERN, e.g. uart_*")
        ->type_name(kPattern);
    globals
        ->add_option("--file", invocation.filePattern,
                     "Only symbols declared in files matching PATTERN")
        ->type_name(kPattern);
    globals->add_option("--sort", invocation.sortColumn, "Sort by name, definition or file")
        ->type_name("COLUMN")
        ->check(CLI::IsMember({"name", "definition", "file"}));
  }

  void AddOptions() {
    CLI::App* options = app.add_subcommand("options", "Read and change options");
    options->require_subcommand(1);
    const std::pair<const char*, const char*> commands[] = {
        {"list", "Show all options with their values"},
        {"get", "Print the value of an option"},
        {"set", "Set an option"},
        {"reset", "Reset an option to the inherited value"},
        {"explain", "Explain where the value of an option comes from"},
    };
    for (const auto& [name, help] : commands) {
      CLI::App* command = AddCommand(*options, name, help);
      if (name != std::string("list")) {
        command->add_option("OPTION", invocation.key, "SECTION.NAME or SET.SECTION.NAME")
            ->required();
      }
      if (name == std::string("set")) {
        command->add_option("VALUE", invocation.value, "The new value; may be empty")->required();
      }
      AddProject(command);
      AddConfiguration(command);
      command
          ->add_option("-n,--node", invocation.node, "File, group or application, by path or label")
          ->type_name("NODE")
          ->check(IsGiven());
      if (name == std::string("set") || name == std::string("reset")) AddEditing(command);
    }
  }

  void AddConfigurations() {
    CLI::App* config = app.add_subcommand("config", "Show, add and select configurations");
    config->require_subcommand(1);
    AddProject(AddCommand(*config, "list", "Show the configurations"));
    const std::pair<const char*, const char*> commands[] = {
        {"add", "Add a configuration"},
        {"select", "Select the active configuration"},
    };
    for (const auto& [name, help] : commands) {
      CLI::App* command = AddCommand(*config, name, help);
      const bool isNew = name == std::string("add");
      command->add_option(isNew ? "NAME" : "CONFIG", invocation.name, "Name of the configuration")
          ->required();
      AddProject(command);
      AddEditing(command);
      if (isNew) AddOrigins(command);
    }
  }

  // Adds the options for the initial values of a new configuration.
  void AddOrigins(CLI::App* command) {
    CLI::Option* from =
        command
            ->add_option("--from", invocation.from,
                         "Copy the options of this configuration instead of the current one")
            ->type_name("CONFIG")
            ->check(IsGiven());
    command->add_flag("--empty", invocation.empty, "Copy no options")->excludes(from);
  }

  // Rejects an empty value, which a script may pass from an unset variable.
  static CLI::Validator IsGiven() {
    return {[](std::string& text) { return text.empty() ? "needs a name" : std::string(); }, ""};
  }

  void AddNew() {
    CLI::App* command = AddCommand(app, "new", "Create a project");
    command
        ->add_option("NAME", invocation.name,
                     "Folder and name of the project, e.g. blinky or work/blinky")
        ->required();
    CLI::Option* compiler = command
                                ->add_option("--compiler", invocation.compiler,
                                             "Compiler to use; see `tarn options list`")
                                ->type_name("COMPILER")
                                ->check(IsGiven());
    CLI::Option* target =
        command
            ->add_option("--target", invocation.target,
                         "Microcontroller to use; also sets the compiler; see `tarn targets`")
            ->type_name("MCU")
            ->check(IsGiven())
            ->excludes(compiler);
    command->add_option("--type", invocation.type, "Type of the application")
        ->type_name("NAME")
        ->check(IsGiven())
        ->needs(target);
    command
        ->add_option("-c,--config", invocation.configuration,
                     "Configuration to use; may be a new one")
        ->type_name("NAME")
        ->check(IsGiven())
        ->needs(target);
    command->add_flag("--git", invocation.git,
                      "Add .gitignore and .gitattributes even outside a git repository");
  }

  void AddImport() {
    CLI::App* command = AddCommand(app, "import", "Import a project in the old format");
    command
        ->add_option("OLD", invocation.older,
                     "Project (*.prj) or workspace (*.stw) in the old format")
        ->required();
    command->add_flag("-y,--yes", invocation.yes, "Replace an existing project");
  }

  void AddTargets() {
    CLI::App* command = AddCommand(app, "targets", "List the available microcontrollers");
    command->add_option("TEXT", invocation.text,
                        "Text to search for in target, family or description");
    command->add_option("--family", invocation.family, "Only this family, e.g. AVR")
        ->type_name("FAMILY")
        ->check(IsGiven());
  }

  void AddRun() {
    CLI::App* command = AddCommand(app, "run", "Run a Lua script on a project");
    command->add_option("FILE", invocation.script, "The script, e.g. release.lua")->required();
    AddProject(command);
    AddConfiguration(command);
    AddVerbose(command, "Show every command of its builds");
    AddDamagedOk(command);
    AddOutsideOk(command);
  }

  // The client passes everything else in messages.
  void AddServe() {
    AddTrustFlag(
        AddPlainCommand(app, "serve", "Let an editor control projects (JSON-RPC on stdio)"));
  }

  void AddTrust() {
    CLI::App* command =
        AddCommand(app, "trust", "Let projects in a folder run programs and write outside it");
    CLI::Option* path =
        command
            ->add_option("PROJECT", invocation.project,
                         "Folder, with everything below it, or that of a project file")
            ->check(IsGiven());
    CLI::Option* revoke =
        command->add_flag("--revoke", invocation.revoke, "Stop trusting the folder");
    command->add_flag("--list", invocation.list, "Show the trusted folders")
        ->excludes(path)
        ->excludes(revoke);
  }

  void AddRegistration() {
    const std::pair<const char*, const char*> commands[] = {
        {"register", "Register this installation's server"},
        {"unregister", "Unregister this installation's server"},
    };
    for (const auto& [name, help] : commands) {
      AddCommand(app, name, help)
          ->add_flag("--system", invocation.forAll, "For all users of this computer");
    }
  }

  // The command itself interprets its arguments, because the leading project may be omitted.
  CLI::App* AddEdit(const std::string& name, const std::string& help) {
    CLI::App* command = AddCommand(app, name, help);
    AddProject(command, "Search for NODE in this application");
    AddEditing(command);
    return command;
  }

  void AddEdits() {
    CLI::App* add = AddCommand(app, "add", "Add files or applications");
    AddProject(add, "Add to this application");
    Require(add->add_option("FILE", invocation.words,
                            "File to add; the extension determines its type"));
    add->add_option("--to", invocation.target, "Group or application to add the files to")
        ->type_name("NODE")
        ->check(IsGiven());
    add->add_flag("--create", invocation.create, "Create missing files and a missing group");
    AddEditing(add);
    CLI::App* remove = AddEdit("remove", "Remove files, groups or applications from a project");
    Require(remove->add_option("NODE", invocation.words, kNodeHelp));
    CLI::App* move = AddEdit("move", "Move files or groups within a project");
    Require(move->add_option("NODE", invocation.words, kNodeHelp));
    // Only for the help: the arguments before it consume all values.
    Require(move->add_option("TARGET", invocation.target,
                             "Destination: a group, an application, or a file to insert before"));
    CLI::App* rename = AddEdit("rename", "Change the label of a file, group or application");
    Require(rename->add_option("NODE", invocation.node, kNodeHelp));
    Require(rename->add_option("NAME", invocation.name, "New label"));
    CLI::App* select = AddCommand(app, "select", "Set the active application");
    AddProjectOnly(select);
    Require(select->add_option("APP", invocation.name, "Label of the application"));
    AddEditing(select);
    const std::pair<const char*, const char*> history[] = {
        {"undo", "Undo the last change that a command made to a project"},
        {"redo", "Redo a change that was undone"},
    };
    for (const auto& [name, help] : history) {
      CLI::App* command = AddCommand(app, name, help);
      AddProjectOnly(command);
      AddEditing(command);
    }
  }

  void AddRelocate() {
    CLI::App* command =
        AddCommand(app, "relocate", "Find application files and sources that have moved");
    AddProjectOnly(command);
    command->add_option("OLD", invocation.older, "File or folder that has moved")->check(IsGiven());
    command->add_option("NEW", invocation.name, "Its new location")->check(IsGiven());
    command->add_option("--below", invocation.below, "Search this folder instead of the project's")
        ->type_name("DIR")
        ->check(IsGiven());
    command->add_flag("--dry-run", invocation.dryRun, "Show the moves without changing anything");
    AddWriting(command);
  }

  // The command checks that the argument is present.
  static void Require(CLI::Option* option) { option->group(kRequiredGroup); }

  void AddExports() {
    CLI::App* exports = app.add_subcommand("export", "Write files for editors and other tools");
    exports->require_subcommand(1);
    CLI::App* commands = AddCommand(*exports, "compile-commands",
                                    "How each source is compiled, for clangd and similar tools");
    AddProject(commands);
    commands
        ->add_option("-c,--config", invocation.configurations,
                     "Only this configuration; may be repeated")
        ->type_name("CONFIG")
        ->check(IsGiven())
        ->allow_extra_args(false);
    AddOutput(commands, "compile_commands.json next to the project");
    AddDamagedOk(commands);
    CLI::App* sarif = AddCommand(*exports, "sarif", "Findings of the last build, as SARIF 2.1.0");
    AddProjectOnly(sarif);
    AddOutput(sarif, "the project's name with .sarif, next to it");
    AddDamagedOk(sarif);
  }

  void AddCompletion() {
    CLI::App* completion = app.add_subcommand("completion", "Print a shell completion script");
    completion->require_subcommand(1);
    for (const char* shell : {"bash", "zsh", "fish"}) {
      AddPlainCommand(*completion, shell, std::string("A script for ") + shell);
    }
    // For the build and the completion scripts; hidden from users.
    AddCommand(app, "man", "Print the manual page")->group("");
    CLI::App* complete = AddCommand(app, "complete", "List names that a shell can complete");
    complete->group("");
    complete->add_option("KIND", invocation.name)->required();
    AddProject(complete);
  }

  void AddOutput(CLI::App* command, const std::string& usual) {
    command
        ->add_option("-o,--output", invocation.output,
                     "File to write, - for standard output; default: " + usual)
        ->type_name("FILE")
        ->check(IsGiven());
  }

  CLI::App app;
  Invocation invocation;
};

// Returns the error lines if the first words don't name a command; empty if they do.
std::vector<std::string> ExplainUnknownCommand(const Grammar& grammar, const CLI::App& parent,
                                               int argc, const char* const* argv, int first) {
  for (int i = first; i < argc; ++i) {
    const std::string word = argv[i];
    if (word.starts_with("-")) continue;
    const std::vector<std::string> names = grammar.CommandNames(parent);
    for (const CLI::App* each : parent.get_subcommands({})) {
      if (each->get_name() != word) continue;
      const bool hasMore = !each->get_subcommands({}).empty();
      if (!hasMore) return {};
      return ExplainUnknownCommand(grammar, *each, argc, argv, i + 1);
    }
    const bool isTop = parent.get_parent() == nullptr;
    return {"Unknown command \"" + (isTop ? word : parent.get_name() + " " + word) + "\"." +
                SuggestionText(word, names),
            "See `" + std::string(isTop ? "tarn" : "tarn " + parent.get_name()) + " --help`."};
  }
  return {};
}

// Returns the first option before a "--" that is written "--name=" with an empty value, without the
// equals sign. The parser would take the next argument as its value.
std::string OptionWithoutValue(int argc, const char* const* argv) {
  for (int i = 1; i < argc && std::string_view(argv[i]) != "--"; ++i) {
    const std::string_view word = argv[i];
    if (word.starts_with("--") && word.find('=') == word.size() - 1) {
      return std::string(word.substr(0, word.size() - 1));
    }
  }
  return {};
}

std::string HelpHint(const CLI::App& app) {
  std::string words = "tarn";
  for (const CLI::App* each = &app; !each->get_subcommands().empty();) {
    each = each->get_subcommands().front();
    words += " " + each->get_name();
  }
  return "See `" + words + " --help`.";
}

}  // namespace

CommandEntry DescribeCommandLine() {
  Grammar grammar;
  return DescribeCommand(grammar.App());
}

namespace {

void Complain(const std::string& text, const std::vector<std::string>& more = {}) {
  Console(std::cout, {}).Complain(text, more);
}

}  // namespace

ParsedCommandLine ParseCommandLine(int argc, const char* const* argv) {
  Grammar grammar;
  // `tarn help build` is equivalent to `tarn build --help`.
  std::vector<const char*> turned(argv, argv + argc);
  if (argc > 1 && std::string_view(argv[1]) == "help") {
    turned.erase(turned.begin() + 1);
    turned.push_back("--help");
    argv = turned.data();
  }
  if (argc < 2) {
    std::cerr << grammar.App().help();
    return {std::nullopt, kExitUsage};
  }
  const std::vector<std::string> unknown =
      ExplainUnknownCommand(grammar, grammar.App(), argc, argv, 1);
  if (!unknown.empty()) {
    Complain(unknown.front(), {unknown.begin() + 1, unknown.end()});
    return {std::nullopt, kExitUsage};
  }
  if (const std::string option = OptionWithoutValue(argc, argv); !option.empty()) {
    Complain(option + " needs a value");
    return {std::nullopt, kExitUsage};
  }
  try {
    grammar.App().parse(argc, argv);
  } catch (const CLI::Success& asked) {
    std::ostringstream text;
    const int code = grammar.App().exit(asked, text, text);
    std::string shown = text.str();
    if (shown.ends_with('\n')) shown.pop_back();
    Console(std::cout, {}).PrintDocument(shown, DocumentFormat::Lines);
    return {std::nullopt, code};
  } catch (const CLI::Error& wrong) {
    Complain(wrong.what(), {HelpHint(grammar.App())});
    return {std::nullopt, kExitUsage};
  }
  return {grammar.Result(), kExitDone};
}

}  // namespace tarn::host
