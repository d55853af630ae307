#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "components/tools/MessageRules.h"
#include "components/tools/ResponseFile.h"
#include "components/tools/SizeReport.h"
#include "components/tools/Template.h"

// What a definition file says about one tool. Made once by DefinitionReader and never changed.
namespace tarn::tools {

// One condition of an `If`; all of them must hold.
struct Condition {
  enum class Test { Filled, Empty, Equal, Different };
  Template value;
  Test test = Test::Filled;
  std::string expected;  // compared without regard to case
};

using Conditions = std::vector<Condition>;

// One `Arg`: gives no, one or several arguments.
struct ArgumentRule {
  enum class Source { Once, Files, List };
  Template value;
  Source source = Source::Once;
  Template list;            // for Source::List: a value with ";" between its entries
  bool isPath = false;      // the values of macros are paths
  bool isRelative = false;  // ... written relative to the working folder if they are below it
  std::string avoided;      // characters that a path must not hold: a scratch file replaces it
  bool isWords = false;     // the text is split like a command line
  std::vector<std::string> without;  // words that are left out then
  Conditions conditions;
};

struct EnvironmentRule {
  std::string name;
  Template value;
};

// One `Step`: a program to run.
struct StepRule {
  Template program;
  bool hasLauncher = false;
  Template launcher;
  Template folder;  // working folder; empty: the application's
  std::vector<ArgumentRule> arguments;
  std::vector<EnvironmentRule> environment;
  ResponseStyle response = ResponseStyle::None;
  std::size_t responseAbove = 0;  // bytes of arguments
  bool isOptional = false;        // its failure is no failure of the tool
  bool capturesSizes = false;     // its standard output is what `Size` reads
  bool relativePaths = false;     // paths below the working folder are written relative to it
  bool plainArguments = false;    // the program hands its arguments to a shell
  Conditions conditions;
};

struct SizeRule {
  SizeFormat format = SizeFormat::None;
  Template file;  // empty: what a step captured
  std::vector<SizeSum> sums;
};

struct GlobalsRule {
  enum class Format { None, Dwarf };
  Format format = Format::None;
  Template file;
};

// Flags by which a program is given libraries.
struct LibraryRule {
  std::vector<std::string> nameFlags;
  std::vector<std::string> folderFlags;
  Template file;      // names of the file of a library, with ";" between them
  Template implicit;  // names of libraries that programs link without a flag, in the same way
};

// A product into which the programs write names that they have made up.
struct RandomNameRule {
  Template file;
  std::vector<std::string> patterns;  // see ReplaceRandomNames
};

// Programs and files that the program of the first step takes itself, and how it is asked where it
// has them.
struct HelperRule {
  std::vector<std::string> programs;
  Template files;  // names with ";" between them
  // The name follows in the same argument. Without a programFlag programs are those in PATH.
  std::string programFlag, fileFlag;
  std::vector<std::string> with;         // how arguments begin that change the answers, given along
  std::vector<std::string> folderFlags;  // of these, those that name a folder to take them from
};

// How files that a run reads are searched for the names of further ones.
enum class Follow {
  None,
  Includes,  // its sources, for include directives
  Scripts,   // texts among the files that arguments name, as linker scripts
};

// An argument that names code by a plain name, which a program finds among its own files, or else
// in the working folder.
struct LoadRule {
  std::string flag;   // how the argument begins
  std::string place;  // what the program puts before the name: "device-specs/specs-"
};

// Files that a run may leave, and that nothing needs.
struct ByProductRule {
  Template file;
  std::vector<std::string> with;  // how an argument begins that has them made; empty: always
};

struct ToolDefinition {
  std::string name;
  bool isProgram = false;         // a path, without a definition
  std::uint64_t fingerprint = 0;  // of the element that defines it
  std::string title;
  std::string hint;                     // how to get a missing program
  std::vector<std::string> extensions;  // with dots, small letters
  MessageRuleLists messages;
  Template output;
  Template listing;
  Template rules;
  Template furtherRules;           // a second file of rules, which need not be left
  std::vector<Template> products;  // further files, whose folders must be there
  std::vector<ByProductRule> byProducts;
  std::vector<RandomNameRule> randomNames;
  std::vector<Template> depends;  // further dependencies of the output
  // How arguments begin that name a folder to search headers in: "-I". The folder is the rest of
  // the argument, or the next one.
  std::vector<std::string> search;
  // Similarly for flags whose value is put after that of the last flag of `searchPrefix`.
  std::vector<std::string> prefixedSearch, searchPrefix;
  // How arguments begin that name a file to read before the source, which is looked for in the
  // working folder and then where headers are.
  std::vector<std::string> includes;
  // How arguments begin that define a macro.
  std::vector<std::string> defines;
  // How arguments begin that make the linker compile the sources' code, and that undo it.
  std::vector<std::string> linkTime, notLinkTime;
  // How arguments begin that name a file to write. The name follows, or is the next argument.
  std::vector<std::string> writes;
  // How arguments begin that name a file to read, and are no search.
  std::vector<std::string> reads;
  // How arguments begin that make a program run or load code of the caller's choice.
  std::vector<std::string> runs;
  std::vector<std::string> runsNot;  // exceptions, which begin like one of `runs`
  // How arguments begin that make a program write files whose names it makes up.
  std::vector<std::string> strays;
  std::vector<LoadRule> loads;
  Follow follows = Follow::None;
  std::vector<LibraryRule> libraries;
  HelperRule helpers;
  std::vector<std::string> variables;   // of the environment, that change what it makes
  std::vector<std::string> predefined;  // macros that a compiler defines by itself: "NAME=VALUE"
  std::vector<StepRule> steps;
  SizeRule size;
  GlobalsRule globals;
};

// A tool that is nothing but a program, which gets the files as its arguments.
ToolDefinition DefinitionOfProgram(std::string_view path, MessageRuleLists messages);

}  // namespace tarn::tools
