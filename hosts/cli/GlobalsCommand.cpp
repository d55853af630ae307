#include <algorithm>
#include <nlohmann/json.hpp>

#include "hosts/cli/Commands.h"
#include "hosts/cli/DisplayText.h"
#include "hosts/cli/Wildcards.h"
#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn::host {

namespace {

struct GlobalsOptions {
  std::string namePattern;  // --name
  std::string filePattern;  // --file
  std::string sortColumn = "name";
};

struct Symbol {
  std::string name;
  std::string definition;
  std::string file;
  int line = 0;
};

Symbol ToSymbol(const CXmlNode& row) {
  return {GetAttribute(&row, "Header"), GetAttribute(&row, "Desc"), GetAttribute(&row, "DeclFile"),
          ParseDecimal(row.GetAttrValue("DeclLine"))};
}

// A file matches by its displayed path or by its full path.
bool IsWanted(CommandContext& context, const Symbol& symbol) {
  const GlobalsOptions& asked = context.Own<GlobalsOptions>();
  const bool isName = asked.namePattern.empty() || FitsPattern(symbol.name, asked.namePattern);
  return isName && (asked.filePattern.empty() || FitsPattern(symbol.file, asked.filePattern) ||
                    FitsPattern(context.Show(symbol.file), asked.filePattern));
}

nlohmann::json ToJson(const Symbol& symbol) {
  return {{"name", symbol.name},
          {"definition", symbol.definition},
          {"file", symbol.file},
          {"line", symbol.line}};
}

std::string PositionOf(CommandContext& context, const Symbol& symbol) {
  if (symbol.file.empty()) return {};
  const std::string line = symbol.line > 0 ? ":" + std::to_string(symbol.line) : std::string();
  return Printable(context.Show(symbol.file)) + line;
}

void PrintSymbols(CommandContext& context, const std::vector<Symbol>& symbols) {
  constexpr std::size_t kWidest = 40;
  std::size_t names = 0;
  std::size_t places = 0;
  for (const Symbol& symbol : symbols) {
    names = std::max(names, ColumnsOf(Printable(symbol.name)));
    places = std::max(places, ColumnsOf(PositionOf(context, symbol)));
  }
  names = std::min(names, kWidest);
  places = std::min(places, kWidest);
  for (const Symbol& symbol : symbols) {
    std::string place = PositionOf(context, symbol);
    if (!symbol.definition.empty()) place = Padded(place, places) + "  " + symbol.definition;
    const std::string name = Printable(symbol.name);
    ConsoleText line = context.Out().Dye(Paint::Bold, place.empty() ? name : Padded(name, names));
    if (!place.empty()) line += "  " + place;
    context.Out().PrintLine(line);
  }
}

// Returns the selected application: the one given by --app, else the active one.
const ApplicationEntry* Choose(const std::vector<ApplicationEntry>& chosen) {
  const ApplicationEntry* found = chosen.empty() ? nullptr : &chosen.front();
  for (const ApplicationEntry& each : chosen) {
    if (each.active) found = &each;
  }
  return found;
}

int RunGlobals(CommandContext& context) {
  if (const int code = context.OpenProject(); code != kExitDone) return code;
  std::vector<ApplicationEntry> chosen;
  if (const int code = context.ChooseApplications(chosen); code != kExitDone) return code;
  const ApplicationEntry* application = Choose(chosen);
  if (application == nullptr) {
    context.Complain("This project has no application.");
    return kExitUsage;
  }
  const auto globals = ParseXml(context.Session().Inspector().GetGlobals(
      application->path, context.Own<GlobalsOptions>().sortColumn));
  const std::string file = GetAttribute(globals.get(), "File");
  if (GetAttribute(globals.get(), "Found") != "Yes") {
    const std::string reason = GetAttribute(globals.get(), "Reason");
    context.Complain("The symbols of " + application->label + " can't be listed: " +
                     (reason.empty()
                          ? context.Show(file) +
                                " is missing. The linker's tool writes it if the code is "
                                "compiled with debug information (Compiler.Debug)."
                          : context.ShowFailure(file, "read", reason) + "."));
    return kExitCannotOpen;
  }
  std::vector<Symbol> symbols;
  for (const CXmlNode* row : globals->GetChildren()) {
    Symbol symbol = ToSymbol(*row);
    if (IsWanted(context, symbol)) symbols.push_back(std::move(symbol));
  }
  if (!context.Asked().json) {
    PrintSymbols(context, symbols);
    return kExitDone;
  }
  nlohmann::json list = nlohmann::json::array();
  for (const Symbol& symbol : symbols) list.push_back(ToJson(symbol));
  PrintJson(context, {{"application", application->label}, {"file", file}, {"symbols", list}});
  return kExitDone;
}

}  // namespace

CommandSpec GlobalsCommand() {
  return {
      .name = "globals",
      .group = CommandGroup::Building,
      .help = "List the global symbols of an application",
      .examples = {{"tarn globals --name 'uart_*'", "matching symbols, with file and line"},
                   {"tarn globals --file timer.c --sort file", "symbols of a source file"}},
      .declare =
          [](CommandArguments& arguments) {
            GlobalsOptions& own = arguments.Own<GlobalsOptions>();
            arguments.AddProjectAndApp("Use this application instead of the active one");
            arguments.AddConfiguration();
            constexpr const char* kPattern = "PATTERN";
            arguments.Option("--name", own.namePattern, kPattern,
                             "Only symbols matching PATTERN, e.g. uart_*");
            arguments.Option("--file", own.filePattern, kPattern,
                             "Only symbols declared in files matching PATTERN");
            arguments.Option("--sort", own.sortColumn, "COLUMN", "Sort by name, definition or file")
                .OneOf({"name", "definition", "file"});
          },
      .run = RunGlobals,
  };
}

}  // namespace tarn::host
