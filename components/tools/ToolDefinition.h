#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "components/tools/AllowedValue.h"
#include "components/tools/HarmlessFlags.h"
#include "components/tools/MessageRules.h"
#include "components/tools/ResponseFile.h"
#include "components/tools/SizeReport.h"
#include "components/tools/Template.h"

// A tool's definition as read from a definition file. Created by ToolDefinitionReader and
// immutable.
namespace tarn::tools {

// One condition of an `If`; all of them must be true.
struct Condition {
  enum class Test { Filled, Empty, Equal, Different };
  Template value;
  Test test = Test::Filled;
  std::vector<std::string> expected;  // one of them; compared ignoring case
};

using Conditions = std::vector<Condition>;

// An `Arg`: yields any number of arguments.
struct ArgumentRule {
  enum class Source { Once, Files, List };
  Template value;
  Source source = Source::Once;
  Template list;            // for Source::List: a value with entries separated by ";"
  bool isPath = false;      // values of macros are paths
  bool isRelative = false;  // ... written relative to the working folder if below it
  std::string avoided;      // characters not allowed in a path: a temporary file replaces it
  bool isWords = false;     // the text is split like a command line
  std::vector<std::string> without;          // words to be removed from it
  AllowedValue allowed = AllowedValue::Any;  // other values of macros stop the tool
  Conditions conditions;
};

// A variable set in the environment of a step.
struct EnvironmentRule {
  std::string name;
  Template value;
};

// A `Step`: a program to run.
struct StepRule {
  Template program;
  bool hasCommandLines = false;  // `program` is a list of command lines separated by ";"
  bool hasLauncher = false;
  Template launcher;
  Template folder;  // working folder; empty means that of the application
  std::vector<ArgumentRule> arguments;
  std::vector<EnvironmentRule> environment;
  ResponseStyle response = ResponseStyle::None;
  std::size_t responseAbove = 0;  // threshold in bytes of arguments
  bool isOptional = false;        // its failure does not fail the tool
  bool capturesSizes = false;     // its standard output is the input of `Size`
  bool relativePaths = false;     // write paths below the working folder relative to it
  bool plainArguments = false;    // the program passes its arguments to a shell
  bool keepsInputOpen = false;    // its standard input is not empty, but has no end
  std::string failure;            // what its failure means; empty: its output and exit code
  std::string trimmed;  // removed from the ends of output lines, where the program adds it
  Conditions conditions;
};

// Source and layout of the size summary.
struct SizeRule {
  SizeFormat format = SizeFormat::None;
  Template file;  // empty means the output captured from a step
  Template map;   // the linker's map file
  std::vector<SizeSum> sums;
  std::vector<std::pair<Template, Template>> bounds;  // values of the options of each sum
};

// Source of the list of global symbols.
struct GlobalsRule {
  enum class Format { None, Dwarf, Cdb };
  Format format = Format::None;
  Template file;
};

// Flags for passing libraries to a program.
struct LibraryRule {
  std::vector<std::string> nameFlags;
  std::vector<std::string> folderFlags;
  Template file;      // file names of a library, separated by ";"
  Template implicit;  // names of libraries linked without a flag, separated by ";"
};

// A file that the tool writes in addition to its output. Its folder must exist.
struct ProductRule {
  Template file;  // names separated by ";"
  Conditions conditions;
  bool isRequired = false;  // a run that doesn't leave it has failed
  bool isKept = false;      // the tool leaves the one of an earlier run alone if it is the same
};

// A product that contains names generated at random by the programs.
struct RandomNameRule {
  Template file;
  std::vector<std::string> patterns;  // see ReplaceRandomNames
};

// Programs and files that the program of the first step uses implicitly, and the flags for querying
// their locations.
struct HelperRule {
  std::vector<std::string> programs;
  Template files;  // names separated by ";"
  // Flags followed by the name in the same argument. Without a programFlag, programs are searched
  // in PATH.
  std::string programFlag, fileFlag;
  std::vector<std::string> with;  // prefixes of arguments that affect the results, passed along
  std::vector<std::string> folderFlags;  // those of `with` that name a folder to search
};

// Search of a run's input files for the names of further files.
enum class Follow {
  None,
  Includes,  // sources, for include directives
  Scripts,   // text files named by arguments, as linker scripts
};

// An argument that names code by a plain name, which the program searches for among its own files
// or in the working folder.
struct LoadRule {
  std::string flag;   // prefix of the argument
  std::string place;  // inserted before the name by the program: "device-specs/specs-"
};

// Sections of object files with which the program has code compiled.
struct CarrierRule {
  std::string sections;  // beginning of their names
  std::string options;   // rest of the name of the section with the options for compiling
};

// Arguments, described by their beginnings or, unless they are flags, by their endings.
struct ArgumentPatterns {
  std::vector<std::string> flags;
  std::vector<std::string> exceptions;  // arguments that start like a flag
  std::vector<std::string> endings;     // of arguments that are not flags
};

// Files that a run may produce and nothing needs.
struct ByProductRule {
  // A "*" at the end of a path stands for the rest of the names in the folder.
  Template file;
  std::vector<std::string> with;  // prefixes of arguments that request it; empty: always
  // For each argument that names a file: $(Item) is its path without the extension, $(ItemName) the
  // last part of it.
  bool isForArguments = false;
};

// All rules for one tool. Templates are expanded for each run, see CommandBuilder.h.
struct ToolDefinition {
  std::string name;
  bool isProgram = false;  // a plain path without a definition
  std::size_t folder = 0;  // number of the folder that defines it
  // Reads only the files that its rules list, and writes only those that its plan names.
  bool isEarly = false;
  // Also writes its rules if it ends with errors in its sources, unless it has missed a file.
  bool listsOnError = false;
  std::uint64_t fingerprint = 0;  // of the element that defines it
  std::string title;
  std::string toolchain;  // whose programs it runs; empty if they are searched for in PATH only
  // Name of the action (see ToolActions.h) that the tool performs if the conditions hold; empty if
  // it is not for an action.
  std::string action;
  Conditions conditions;
  std::string hint;   // how to install a missing program
  std::string needs;  // values of an option that its conditions need, for a message
  std::vector<std::string> extensions;  // with dots, in lower case
  MessageRuleLists messages;
  Template output;
  Template listing;
  Template rules;
  Template furtherRules;  // a second dependency file, which is optional
  std::vector<ProductRule> products;
  std::vector<ByProductRule> byProducts;
  std::vector<RandomNameRule> randomNames;
  std::vector<Template> depends;  // further dependencies of the output
  // Folders whose entries the output depends on: paths, or names that are searched for in the
  // application's folder and those above it.
  std::vector<Template> watchedFolders;
  // Prefixes of arguments that name a header search folder, such as "-I". The folder is the rest of
  // the argument or the next one.
  std::vector<std::string> search;
  // Same for flags whose value is appended to that of the last `searchPrefix` flag.
  std::vector<std::string> prefixedSearch, searchPrefix;
  // Prefixes of arguments that name a file to include before the source; it is searched in the
  // working folder and then in the header search folders.
  std::vector<std::string> includes;
  // Prefixes of arguments that define a macro.
  std::vector<std::string> defines;
  // Prefixes of arguments that enable and disable link-time optimization.
  std::vector<std::string> linkTime, notLinkTime;
  // Prefixes of arguments that name an output file. The name follows or is the next argument.
  std::vector<std::string> writes;
  // Prefixes of arguments that name an input file, other than search folders.
  std::vector<std::string> reads;
  ArgumentPatterns runs;    // make a program run or load code chosen by the caller
  ArgumentPatterns strays;  // make a program write files whose names it invents
  std::vector<LoadRule> loads;
  std::vector<std::string> loadsFrom;  // name a folder that the program loads code from
  // Extensions of files with commands that the program looks for next to those that arguments name.
  std::vector<std::string> loadsNextTo;
  std::vector<std::string> loadsHere;  // names of such files in the working folder
  std::vector<CarrierRule> carriers;
  HarmlessFlags harmless;  // empty: all that the rules above don't describe are
  Follow follows = Follow::None;
  std::vector<LibraryRule> libraries;
  HelperRule helpers;
  std::vector<std::string> variables;   // environment variables that affect the outputs
  std::vector<std::string> predefined;  // macros predefined by a compiler: "NAME=VALUE"
  std::vector<StepRule> steps;
  SizeRule size;
  GlobalsRule globals;
};

// Returns a definition for a plain program, which receives the files as its arguments.
ToolDefinition DefinitionOfProgram(std::string_view path, MessageRuleLists messages);

}  // namespace tarn::tools
