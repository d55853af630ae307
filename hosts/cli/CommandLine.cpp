#include "hosts/cli/CommandLine.h"

#include <CLI/CLI.hpp>
#include <iostream>

#include "hosts/cli/Suggest.h"

namespace tarn::host {

namespace {

// Builds the commands and their options, and fills in the invocation as they are read.
class Grammar {
 public:
  Grammar() : app("Builds firmware projects.", "tarn") {
    app.set_version_flag("--version", "tarn " TARN_VERSION);
    app.require_subcommand(1);
    app.get_formatter()->label("SUBCOMMAND", "COMMAND");
    AddBuilds();
    AddQuestions();
    AddOptions();
    AddConfigurations();
    AddNew();
    AddRun();
    AddServe();
    // Commands that are added later would show it as well.
    app.footer(
        "Without a PROJECT a command works on the project file in the current folder.\n"
        "`tarn COMMAND --help` tells more about a command.\n\n"
        "Exit codes: 0 done, 1 build or script failed, 2 wrong use, 3 project can't be opened,\n"
        "4 a tool is missing, 130 interrupted.");
  }

  CLI::App& App() { return app; }
  Invocation& Result() { return invocation; }

  std::vector<std::string> CommandNames(const CLI::App& parent) const {
    std::vector<std::string> names;
    for (const CLI::App* each : parent.get_subcommands({})) names.push_back(each->get_name());
    return names;
  }

 private:
  CLI::App* AddCommand(CLI::App& parent, const std::string& name, const std::string& help) {
    CLI::App* command = parent.add_subcommand(name, help);
    const bool isNested = &parent != &app;
    const std::string words = isNested ? parent.get_name() + " " + name : name;
    command->callback([this, words] { invocation.command = words; });
    command->add_flag("-q,--quiet", invocation.quiet, "Say only what went wrong");
    command->add_flag("--json", invocation.json, "Answer with JSON, for programs");
    command->add_flag("--no-color", invocation.noColor, "No colours (NO_COLOR does the same)");
    return command;
  }

  void AddProjectOnly(CLI::App* command) {
    command->add_option("PROJECT", invocation.project,
                        "A project file (*.tprj), or a folder that holds one");
  }

  void AddProject(CLI::App* command) {
    AddProjectOnly(command);
    command->add_option("-a,--app", invocation.application, "Work on this application");
  }

  void AddConfiguration(CLI::App* command) {
    command->add_option("-c,--config", invocation.configuration,
                        "Use this configuration, for this time");
  }

  void AddBuilds() {
    const std::pair<const char*, const char*> commands[] = {
        {"build", "Build what is out of date"},
        {"rebuild", "Build everything anew"},
        {"clean", "Delete what was built"},
    };
    for (const auto& [name, help] : commands) {
      CLI::App* command = AddCommand(app, name, help);
      AddProject(command);
      AddConfiguration(command);
      command->add_flag("-v,--verbose", invocation.verbose, "Show every command and its output");
    }
  }

  void AddQuestions() {
    CLI::App* status = AddCommand(app, "status", "Tell what is out of date, and why");
    AddProject(status);
    AddConfiguration(status);
    CLI::App* tree = AddCommand(app, "tree", "Show applications, groups and files");
    AddProject(tree);
    AddConfiguration(tree);
    CLI::App* log = AddCommand(app, "log", "Show the log of the last build");
    AddProjectOnly(log);
    log->add_flag("--xml", invocation.xml, "The log file as it is");
  }

  void AddOptions() {
    CLI::App* options = app.add_subcommand("options", "Read and change options");
    options->require_subcommand(1);
    const std::pair<const char*, const char*> commands[] = {
        {"list", "Show all options with their values"},
        {"get", "Print the value of an option"},
        {"set", "Store a value for an option"},
        {"reset", "Take a stored value away, so that the inherited one holds"},
        {"explain", "Tell where the value of an option comes from"},
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
      command->add_option("-n,--node", invocation.node,
                          "File, group or application, by path or label");
    }
  }

  void AddConfigurations() {
    CLI::App* config = app.add_subcommand("config", "Show, add and choose configurations");
    config->require_subcommand(1);
    AddProject(AddCommand(*config, "list", "Show the configurations"));
    const std::pair<const char*, const char*> commands[] = {
        {"add", "Add a configuration"},
        {"select", "Choose the configuration in force"},
    };
    for (const auto& [name, help] : commands) {
      CLI::App* command = AddCommand(*config, name, help);
      command->add_option("NAME", invocation.name, "Name of the configuration")->required();
      AddProject(command);
    }
  }

  void AddNew() {
    CLI::App* command = AddCommand(app, "new", "Start a project");
    command
        ->add_option("NAME", invocation.name,
                     "Folder and name of the project, e.g. blinky or work/blinky")
        ->required();
    command->add_option("--compiler", invocation.compiler,
                        "Compiler to start with; see `tarn options list`");
  }

  void AddRun() {
    CLI::App* command = AddCommand(app, "run", "Run a Lua script on a project");
    command->add_option("FILE", invocation.script, "The script, e.g. release.lua")->required();
    AddProject(command);
    AddConfiguration(command);
    command->add_flag("-v,--verbose", invocation.verbose, "Show every command of its builds");
  }

  // Whoever drives it gives everything else by messages.
  void AddServe() {
    CLI::App* command = app.add_subcommand(
        "serve", "Let an editor drive projects: JSON-RPC on standard input and output");
    command->callback([this] { invocation.command = "serve"; });
  }

  CLI::App app;
  Invocation invocation;
};

// The command that stands first on the line, with what it can be followed by.
std::string UnknownCommandText(const Grammar& grammar, const CLI::App& parent, int argc,
                               const char* const* argv, int first) {
  for (int i = first; i < argc; ++i) {
    const std::string word = argv[i];
    if (word.starts_with("-")) continue;
    const std::vector<std::string> names = grammar.CommandNames(parent);
    for (const CLI::App* each : parent.get_subcommands({})) {
      if (each->get_name() != word) continue;
      const bool hasMore = !each->get_subcommands({}).empty();
      return hasMore ? UnknownCommandText(grammar, *each, argc, argv, i + 1) : std::string();
    }
    const bool isTop = parent.get_parent() == nullptr;
    return "There is no command \"" + (isTop ? word : parent.get_name() + " " + word) + "\"." +
           SuggestionText(word, names) + "\n`" + (isTop ? "tarn" : "tarn " + parent.get_name()) +
           " --help` lists the commands.";
  }
  return {};
}

std::string HelpHint(const CLI::App& app) {
  std::string words = "tarn";
  for (const CLI::App* each = &app; !each->get_subcommands().empty();) {
    each = each->get_subcommands().front();
    words += " " + each->get_name();
  }
  return "`" + words + " --help` tells how it is used.";
}

}  // namespace

ParsedCommandLine ParseCommandLine(int argc, const char* const* argv) {
  Grammar grammar;
  if (argc < 2) {
    std::cerr << grammar.App().help();
    return {std::nullopt, kExitUsage};
  }
  const std::string unknown = UnknownCommandText(grammar, grammar.App(), argc, argv, 1);
  if (!unknown.empty()) {
    std::cerr << "tarn: " << unknown << std::endl;
    return {std::nullopt, kExitUsage};
  }
  try {
    grammar.App().parse(argc, argv);
  } catch (const CLI::Success& asked) {
    return {std::nullopt, grammar.App().exit(asked)};
  } catch (const CLI::Error& wrong) {
    std::cerr << "tarn: " << wrong.what() << "\n" << HelpHint(grammar.App()) << std::endl;
    return {std::nullopt, kExitUsage};
  }
  return {grammar.Result(), kExitDone};
}

}  // namespace tarn::host
