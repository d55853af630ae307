#include "hosts/cli/CommandLine.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>
#include <memory>
#include <optional>
#include <sstream>
#include <string_view>
#include <vector>

#include "hosts/cli/CommandArguments.h"
#include "hosts/cli/CommandList.h"
#include "hosts/cli/HelpText.h"
#include "platform/text/Suggest.h"

namespace tarn::host {

namespace {

class HelpFormatter : public CLI::FormatterBase {
 public:
  std::string make_help(const CLI::App* app, std::string, CLI::AppFormatMode) const override {
    return MakeHelpText(DescribeCommand(*app));
  }
};

// The parser of all commands, which fills in the invocation.
class Grammar {
 public:
  // Declares the arguments of the commands whose names are among `words` only, since those of all
  // commands take longer than the rest of the parsing; nullopt: of all.
  explicit Grammar(std::optional<std::vector<std::string_view>> words)
      : app_("Builds firmware projects.", "tarn"), words_(std::move(words)) {
    app_.set_version_flag("--version", "tarn " TARN_VERSION, "Show the version");
    app_.set_help_flag("-h,--help", "Show this help");
    app_.formatter(std::make_shared<HelpFormatter>());
    app_.require_subcommand(1);
    for (const CommandSpec& each : Commands()) Add(each);
  }

  CLI::App& App() { return app_; }
  Invocation& Result() { return invocation_; }

  std::vector<std::string> CommandNames(const CLI::App& parent) const {
    std::vector<std::string> names;
    for (const CLI::App* each : parent.get_subcommands({})) {
      if (!each->get_group().empty()) names.push_back(each->get_name());
    }
    return names;
  }

 private:
  void Add(const CommandSpec& spec) {
    const std::string name = spec.name;
    const std::size_t space = name.find(' ');
    const bool isNested = space != name.npos;
    CLI::App* parent = isNested ? app_.get_subcommand(name.substr(0, space)) : &app_;
    CLI::App* command = parent->add_subcommand(isNested ? name.substr(space + 1) : name, spec.help);
    if (spec.group == CommandGroup::Hidden) command->group("");
    if (spec.run == nullptr) {
      command->require_subcommand(1);
      return;
    }
    if (words_ && std::ranges::find(*words_, name.substr(0, space)) == words_->end()) return;
    CommandArguments arguments(*command, invocation_);
    if (spec.hasDisplayOptions) arguments.AddDisplay();
    if (spec.declare != nullptr) spec.declare(arguments);
    command->callback([this, &spec, own = arguments.ShareOwn()] {
      invocation_.command = &spec;
      invocation_.own = own;
    });
  }

  CLI::App app_;
  std::optional<std::vector<std::string_view>> words_;
  Invocation invocation_;
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
  Grammar grammar(std::nullopt);
  return DescribeCommand(grammar.App());
}

ParsedCommandLine ParseCommandLine(int argc, const char* const* argv, Console& console) {
  Grammar grammar(std::vector<std::string_view>(argv, argv + argc));
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
    console.Complain(unknown.front(), {unknown.begin() + 1, unknown.end()});
    return {std::nullopt, kExitUsage};
  }
  if (const std::string option = OptionWithoutValue(argc, argv); !option.empty()) {
    console.Complain(option + " needs a value");
    return {std::nullopt, kExitUsage};
  }
  try {
    grammar.App().parse(argc, argv);
  } catch (const CLI::Success& asked) {
    std::ostringstream text;
    const int code = grammar.App().exit(asked, text, text);
    std::string shown = text.str();
    if (shown.ends_with('\n')) shown.pop_back();
    console.PrintDocument(shown, DocumentFormat::Lines);
    return {std::nullopt, code};
  } catch (const CLI::Error& wrong) {
    console.Complain(wrong.what(), {HelpHint(grammar.App())});
    return {std::nullopt, kExitUsage};
  }
  return {grammar.Result(), kExitDone};
}

}  // namespace tarn::host
