#include "components/tools/GlobalsFile.h"

#include <algorithm>
#include <tuple>

#include "components/tools/DebugSymbols.h"
#include "components/tools/XmlAttributes.h"

namespace tarn::tools {

namespace {

const char* ElementOf(GlobalSymbol::Kind kind) {
  switch (kind) {
    case GlobalSymbol::Kind::Function:
      return "func";
    case GlobalSymbol::Kind::Variable:
      return "variable";
    case GlobalSymbol::Kind::Type:
      return "type";
  }
  return "";
}

std::string SymbolElement(const GlobalSymbol& symbol) {
  return std::string("<") + ElementOf(symbol.kind) +
         XmlAttribute("Icon", std::to_string(static_cast<int>(symbol.kind))) +
         XmlAttribute("Header", symbol.name) + XmlAttribute("Desc", symbol.definition) +
         XmlPathAttribute("DeclFile", symbol.file) +
         XmlAttribute("DeclLine", std::to_string(symbol.line)) + "/>\n";
}

Status WriteWhenChanged(FileSystem& files, const std::string& path, const std::string& text) {
  // A file with a similar name is the list of a different application.
  if (files.ExamineExactly(path)) {
    const auto before = files.ReadWholeFile(path);
    if (before && *before == text) return {};
  }
  if (files.ExamineLink(path)) return FileSystem::RefuseLink(path);
  return files.WriteScratchFile(path, text);
}

}  // namespace

std::string GlobalsText(std::vector<GlobalSymbol> symbols) {
  const auto order = [](const GlobalSymbol& symbol) {
    return std::tie(symbol.name, symbol.kind, symbol.file, symbol.line, symbol.definition);
  };
  std::sort(symbols.begin(), symbols.end(),
            [&](const auto& a, const auto& b) { return order(a) < order(b); });
  // "dwarf" states that the list has no duplicates.
  std::string text = "<Globals dwarf=\"yes\">\n";
  for (const GlobalSymbol& symbol : symbols) text += SymbolElement(symbol);
  return text + "</Globals>\n";
}

GlobalSymbols ReadProgramSymbols(FileSystem& files, const std::string& program,
                                 const std::string& folder,
                                 const std::vector<std::string>& otherFolders) {
  auto bytes = files.ReadWholeFile(program);
  if (bytes) return ReadDebugSymbols(*bytes, folder, otherFolders);
  return {{}, program + ": " + bytes.GetError().text, true};
}

ToolMessage UpdateGlobalsFile(FileSystem& files, const std::string& path, GlobalSymbols found) {
  ToolMessage said;
  if (!found.problem.empty()) said.text = "the list of globals: " + found.problem;
  if (found.isUnable) return said;
  Status done;
  if (!found.symbols.empty()) {
    done = WriteWhenChanged(files, path, GlobalsText(std::move(found.symbols)));
  } else if (files.ExamineExactly(path)) {
    done = files.RemoveScratchFile(path);
  }
  if (done) return said;
  said.severity = Severity::Warning;
  said.text = said.content =
      "the list of globals can't be written: " + path + ": " + done.GetError().text;
  return said;
}

std::string SymbolPositionsText(FileSystem& files, const std::string& program,
                                const std::string& folder) {
  auto bytes = files.ReadWholeFile(program);
  if (!bytes) return {};
  std::string text;
  for (const GlobalSymbol& symbol : ReadDebugSymbols(*bytes, folder).symbols) {
    const bool isPlain = symbol.file.find('\n') == std::string::npos;
    if (!symbol.address || !isPlain) continue;
    text += std::to_string(*symbol.address) + ' ' + std::to_string(symbol.line) + ' ' +
            symbol.file + '\n';
  }
  return text;
}

}  // namespace tarn::tools
