// Macro expansion by Prosser's algorithm: every token has a hide set, the names of the macros that
// it came from, which don't expand it again. Alternative definitions make this a search: each
// definition of a name is followed in turn, up to a bound on the total number of tokens produced.

#include "patterns/TestedNames.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <functional>
#include <map>
#include <set>

#include "patterns/SourceText.h"

namespace tarn {

namespace {

using Tokens = std::vector<MacroToken>;

constexpr std::size_t kMaxTokens = 50000;  // tokens copied in total
constexpr int kMaxDepth = 200;             // nested expansions
constexpr std::array<std::string_view, 3> kTests = {"__has_include", "__has_include_next",
                                                    "__has_embed"};

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

bool IsNameCharacter(char c) {
  const bool isLetter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
  return isLetter || IsDigit(c) || c == '_' || c == '$' || static_cast<unsigned char>(c) >= 0x80;
}

bool IsName(const MacroToken& token) {
  return IsNameCharacter(token.text.front()) && !IsDigit(token.text.front());
}

bool IsString(const MacroToken& token) {
  return token.text.size() >= 2 && token.text.front() == '"';
}

// Returns the length of the token at the start of the line, which must not start with space.
std::size_t TokenLength(std::string_view line) {
  std::size_t end = 1;
  if (line.front() == '"' || line.front() == '\'') {
    while (end < line.size() && line[end] != line.front()) end += line[end] == '\\' ? 2 : 1;
    return std::min(end + 1, line.size());
  }
  if (line.starts_with("##")) return 2;
  if (!IsNameCharacter(line.front())) return 1;
  const bool isNumber = IsDigit(line.front());
  while (end < line.size() && (IsNameCharacter(line[end]) || (isNumber && line[end] == '.'))) ++end;
  return end;
}

Tokens ReadTokens(std::string_view line) {
  Tokens tokens;
  while (true) {
    const std::size_t before = line.size();
    while (!line.empty() && static_cast<unsigned char>(line.front()) <= ' ') line.remove_prefix(1);
    if (line.empty() || line.starts_with("//")) return tokens;
    const std::size_t length = TokenLength(line);
    tokens.push_back({std::string(line.substr(0, length)), line.size() < before, {}});
    line.remove_prefix(length);
  }
}

// Removes the directive from the start of a line and returns its name.
std::string_view TakeDirective(std::string_view& line) {
  SkipSpace(line);
  if (line.empty() || line.front() != '#') return {};
  line.remove_prefix(1);
  SkipSpace(line);
  return TakeWord(line);
}

template <typename Visit>
void ForEachLine(std::string_view text, Visit visit) {
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    visit(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
}

// A function-like macro has its parenthesis directly after its name.
MacroDefinition ReadDefinition(std::string_view line) {
  MacroDefinition made;
  SkipSpace(line);
  made.name = TakeWord(line);
  made.isFunction = line.starts_with('(');
  made.body = ReadTokens(line);
  if (!made.isFunction) return made;
  std::size_t at = 1;
  for (; at < made.body.size() && made.body[at].text != ")"; ++at) {
    const MacroToken& token = made.body[at];
    const bool isEllipsis = token.text == "." && made.body[at - 1].text != ".";
    const bool isNamed = IsName(made.body[at - 1]);
    if (IsName(token)) made.parameters.push_back(token.text);
    if (isEllipsis && !isNamed) made.parameters.emplace_back("__VA_ARGS__");
  }
  made.body.erase(made.body.begin(), made.body.begin() + static_cast<std::ptrdiff_t>(
                                                             std::min(at + 1, made.body.size())));
  return made;
}

// Returns true if a test for a file is followed by something other than a literal file name, so
// that the name may result from a macro.
bool IsComputed(std::string_view rest, bool isDefinition) {
  SkipSpace(rest);
  if (!rest.starts_with('(')) return isDefinition;
  rest.remove_prefix(1);
  SkipSpace(rest);
  return !rest.starts_with('"') && !rest.starts_with('<');
}

class Expander {
 public:
  explicit Expander(std::span<const MacroScan* const> sources) {
    for (const MacroScan* source : sources) {
      for (const MacroDefinition& each : source->definitions) macros_[each.name].push_back(&each);
    }
    FindTesters();
  }

  // Adds the names that the condition can test.
  void Read(const Tokens& condition) {
    for (std::size_t i = 0; i < condition.size(); ++i) {
      if (!testers_.contains(condition[i].text)) continue;
      std::size_t end = i + 1;
      if (end < condition.size() && condition[end].text == "(") end = FindEnd(condition, end);
      for (const Tokens& result : Expand({condition.begin() + static_cast<std::ptrdiff_t>(i),
                                          condition.begin() + static_cast<std::ptrdiff_t>(end)})) {
        ReadResult(result);
      }
    }
  }

  TestedNames Take() {
    found_.isIncomplete |= made_ > kMaxTokens;
    found_.names.assign(names_.begin(), names_.end());
    return std::move(found_);
  }

 private:
  // Collects the names of all tests and of the macros that lead to one.
  void FindTesters() {
    testers_.insert(kTests.begin(), kTests.end());
    for (bool isGrowing = true; isGrowing;) {
      isGrowing = false;
      for (const auto& [name, definitions] : macros_) {
        if (testers_.contains(name)) continue;
        for (const MacroDefinition* each : definitions) {
          const bool leads = std::any_of(each->body.begin(), each->body.end(), [this](auto& token) {
            return testers_.contains(token.text);
          });
          if (leads) isGrowing |= testers_.insert(name).second;
        }
      }
    }
  }

  // Returns the position after the parenthesis that closes the one at `open`, or the end.
  static std::size_t FindEnd(const Tokens& tokens, std::size_t open) {
    int depth = 0;
    for (std::size_t i = open; i < tokens.size(); ++i) {
      if (tokens[i].text == "(") ++depth;
      if (tokens[i].text == ")" && --depth == 0) return i + 1;
    }
    return tokens.size();
  }

  // Returns all possible expansions of the tokens.
  std::vector<Tokens> Expand(const Tokens& tokens) {
    std::vector<Tokens> results;
    Expand({}, tokens, results);
    return results;
  }

  void Expand(Tokens done, const Tokens& rest, std::vector<Tokens>& results) {
    if (++depth_ > kMaxDepth) made_ = kMaxTokens + 1;
    for (std::size_t at = 0; at < rest.size() && made_ <= kMaxTokens; ++at) {
      const MacroToken token = rest[at];
      const auto macro = macros_.find(token.text);
      const auto& hidden = token.hidden;
      const bool isHidden = std::find(hidden.begin(), hidden.end(), token.text) != hidden.end();
      if (macro != macros_.end() && !isHidden) {
        for (const MacroDefinition* each : macro->second) Replace(*each, done, rest, at, results);
      }
      ++made_;
      done.push_back(token);
    }
    --depth_;
    if (made_ <= kMaxTokens) results.push_back(std::move(done));
  }

  void Replace(const MacroDefinition& macro, const Tokens& done, const Tokens& rest, std::size_t at,
               std::vector<Tokens>& results) {
    std::vector<Tokens> arguments;
    std::size_t end = at + 1;
    if (macro.isFunction) {
      if (end >= rest.size() || rest[end].text != "(") return;
      end = FindEnd(rest, end);
      arguments = SplitArguments(macro, rest, at + 2, end - 1);
    }
    std::vector<std::string> hidden = rest[at].hidden;
    hidden.push_back(macro.name);
    ForEachBody(macro, arguments, [&](Tokens body) {
      for (MacroToken& each : body) {
        each.hidden.insert(each.hidden.end(), hidden.begin(), hidden.end());
      }
      if (!body.empty()) body.front().hasSpace = rest[at].hasSpace;
      body.insert(body.end(), rest.begin() + static_cast<std::ptrdiff_t>(end), rest.end());
      made_ += done.size() + body.size();
      if (made_ <= kMaxTokens) Expand(done, body, results);
    });
  }

  static std::vector<Tokens> SplitArguments(const MacroDefinition& macro, const Tokens& tokens,
                                            std::size_t begin, std::size_t end) {
    std::vector<Tokens> arguments(1);
    const bool isVariadic = !macro.parameters.empty() && macro.parameters.back() == "__VA_ARGS__";
    int depth = 0;
    for (std::size_t i = begin; i < end; ++i) {
      if (tokens[i].text == "(") ++depth;
      if (tokens[i].text == ")") --depth;
      const bool isRest = isVariadic && arguments.size() == macro.parameters.size();
      if (tokens[i].text == "," && depth == 0 && !isRest) {
        arguments.emplace_back();
      } else {
        arguments.back().push_back(tokens[i]);
      }
    }
    arguments.resize(macro.parameters.size());
    return arguments;
  }

  // Calls `use` with the body for each combination of expansions of the arguments.
  void ForEachBody(const MacroDefinition& macro, const std::vector<Tokens>& arguments,
                   const std::function<void(Tokens)>& use) {
    std::vector<std::vector<Tokens>> choices;
    for (const Tokens& each : arguments) {
      choices.push_back(Expand(each));
      if (choices.back().empty()) return;  // limit exceeded
    }
    std::vector<std::size_t> chosen(choices.size(), 0);
    while (made_ <= kMaxTokens) {
      std::vector<Tokens> expanded;
      for (std::size_t i = 0; i < chosen.size(); ++i) expanded.push_back(choices[i][chosen[i]]);
      use(FillBody(macro, arguments, expanded));
      std::size_t i = 0;
      while (i < chosen.size() && ++chosen[i] == choices[i].size()) chosen[i++] = 0;
      if (i == chosen.size()) return;
    }
  }

  Tokens FillBody(const MacroDefinition& macro, const std::vector<Tokens>& raw,
                  const std::vector<Tokens>& expanded) {
    Tokens made;
    const Tokens& body = macro.body;
    const auto isPaste = [&](std::size_t i) { return i < body.size() && body[i].text == "##"; };
    for (std::size_t i = 0; i < body.size(); ++i) {
      const std::size_t next = ParameterAt(macro, i + 1);
      if (macro.isFunction && body[i].text == "#" && next < raw.size()) {
        made.push_back({Stringify(raw[next]), body[i].hasSpace, {}});
        ++i;
        continue;
      }
      if (isPaste(i) && i + 1 < body.size()) {
        Paste(made, next < raw.size() ? raw[next] : Tokens{body[i + 1]});
        ++i;
        continue;
      }
      const std::size_t parameter = ParameterAt(macro, i);
      if (parameter >= raw.size()) {
        made.push_back(body[i]);
        continue;
      }
      Tokens argument = isPaste(i + 1) ? raw[parameter] : expanded[parameter];
      if (!argument.empty()) argument.front().hasSpace = body[i].hasSpace;
      made.insert(made.end(), argument.begin(), argument.end());
    }
    return made;
  }

  static std::size_t ParameterAt(const MacroDefinition& macro, std::size_t at) {
    if (at >= macro.body.size()) return macro.parameters.size();
    const auto found =
        std::find(macro.parameters.begin(), macro.parameters.end(), macro.body[at].text);
    return static_cast<std::size_t>(found - macro.parameters.begin());
  }

  static void Paste(Tokens& made, Tokens added) {
    if (added.empty()) return;
    if (!made.empty()) {
      made.back().text += added.front().text;
      added.erase(added.begin());
    }
    made.insert(made.end(), added.begin(), added.end());
  }

  std::string Stringify(const Tokens& tokens) {
    std::string text = "\"";
    for (const MacroToken& each : tokens) {
      RecordUnknown(each);
      if (each.hasSpace && text.size() > 1) text += ' ';
      for (const char c : each.text) {
        if (IsString(each) && (c == '"' || c == '\\')) text += '\\';
        text += c;
      }
    }
    return text + '"';
  }

  // Marks the result as incomplete if the compiler may have a built-in value for the name.
  void RecordUnknown(const MacroToken& token) {
    if (token.text.starts_with("__") && !macros_.contains(token.text)) found_.isIncomplete = true;
  }

  void ReadResult(const Tokens& tokens) {
    for (std::size_t i = 0; i + 2 < tokens.size(); ++i) {
      if (!IsFileTest(tokens[i].text) || tokens[i + 1].text != "(") continue;
      const MacroToken& first = tokens[i + 2];
      if (IsString(first)) {
        names_.insert(first.text.substr(1, first.text.size() - 2));
      } else if (first.text == "<") {
        ReadAngleName(tokens, i + 3);
      }
    }
  }

  // Compilers differ in the spaces of such a name, so both forms are added.
  void ReadAngleName(const Tokens& tokens, std::size_t at) {
    std::string spaced, dense;
    for (; at < tokens.size() && tokens[at].text != ">"; ++at) {
      RecordUnknown(tokens[at]);
      if (tokens[at].hasSpace) spaced += ' ';
      spaced += tokens[at].text;
      dense += tokens[at].text;
    }
    names_.insert(spaced);
    names_.insert(dense);
  }

  std::map<std::string, std::vector<const MacroDefinition*>> macros_;
  std::set<std::string, std::less<>> testers_;
  std::set<std::string> names_;
  TestedNames found_;
  std::size_t made_ = 0;  // tokens produced, over all alternatives
  int depth_ = 0;
};

bool IsSameDefinition(const MacroDefinition& a, const MacroDefinition& b) {
  const auto isSame = [](const MacroToken& x, const MacroToken& y) {
    return x.text == y.text && x.hasSpace == y.hasSpace;
  };
  return a.name == b.name && a.isFunction == b.isFunction && a.parameters == b.parameters &&
         std::equal(a.body.begin(), a.body.end(), b.body.begin(), b.body.end(), isSame);
}

void AddLines(std::string_view text, MacroScan& scan) {
  ForEachLine(text, [&scan](std::string_view line) {
    const std::string_view directive = TakeDirective(line);
    if (directive == "define") {
      scan.definitions.push_back(ReadDefinition(line));
    } else if (directive == "if" || directive == "elif") {
      scan.conditions.push_back(ReadTokens(line));
    }
  });
}

}  // namespace

bool IsFileTest(std::string_view word) {
  return std::find(kTests.begin(), kTests.end(), word) != kTests.end();
}

bool HasComputedTest(std::string_view text) {
  constexpr std::string_view kStart = "__has_";
  if (text.find(kStart) == text.npos) return false;
  bool isFound = false;
  ForEachLine(WithoutComments(JoinLines(text)), [&](std::string_view line) {
    std::string_view directive = line;
    const bool isDefinition = TakeDirective(directive) == "define";
    for (std::size_t at = line.find(kStart); at != line.npos; at = line.find(kStart, at + 1)) {
      std::string_view rest = line.substr(at);
      if (IsFileTest(TakeWord(rest))) isFound = isFound || IsComputed(rest, isDefinition);
    }
  });
  return isFound;
}

// Apparent comments may not be comments, so both versions of the source are scanned. Definitions
// that occur in both are added once.
MacroScan ScanMacros(std::string_view text) {
  MacroScan scan;
  const std::string joined = JoinLines(text);
  AddLines(WithoutComments(joined), scan);
  if (joined.find("/*") != joined.npos) AddLines(joined, scan);
  auto& all = scan.definitions;
  const auto isLess = [](const MacroDefinition& a, const MacroDefinition& b) {
    return a.name < b.name;
  };
  std::stable_sort(all.begin(), all.end(), isLess);
  all.erase(std::unique(all.begin(), all.end(), IsSameDefinition), all.end());
  return scan;
}

TestedNames FindTestedNames(std::span<const MacroScan* const> sources) {
  Expander expander(sources);
  for (const MacroScan* source : sources) {
    for (const auto& condition : source->conditions) expander.Read(condition);
  }
  return expander.Take();
}

}  // namespace tarn
