#include <set>

#include "hosts/cli/CompletionScript.h"
#include "hosts/cli/ShellText.h"

namespace tarn::host {

namespace {

constexpr const char* kFishHead = R"sh(# fish completion for tarn

# The words in front of the cursor that are neither switches nor their values.
function __tarn_plain
    set -l skip 0
    set -l only_plain 0
    for word in (commandline -opc)[2..-1]
        if test $skip = 1
            set skip 0
        else if test $only_plain = 0; and test "$word" = --
            set only_plain 1
        else if test $only_plain = 0; and string match -q -- '-*' $word
            contains -- $word $__tarn_with_value; and set skip 1
        else
            printf '%s\n' $word
        end
    end
end

# True at the argument of that number of a command, or anywhere behind it with 0; with a + behind
# the number at this argument and all that follow.
function __tarn_at
    set -l place $argv[1]
    set -l command $argv[2..-1]
    set -l plain (__tarn_plain)
    set -l depth (count $command)
    if test $depth -gt 0
        test (count $plain) -ge $depth; or return 1
        test "$plain[1..$depth]" = "$command"; or return 1
    end
    set -l number (math (count $plain) - $depth + 1)
    switch $place
        case 0
            return 0
        case '*+'
            test $number -ge (string trim -r -c + $place)
        case '*'
            test $number = $place
    end
end

function __tarn_values
    set -l project (string match -r '.*\.tprj$' -- (__tarn_plain))
    tarn complete $argv[1] $project[1] 2>/dev/null
end

function __tarn_project
    set -l word (commandline -ct)
    set -l found $word*
    __fish_complete_directories $word ''
    string match -- '*.tprj' $found
end

complete -c tarn -f
)sh";

// Returns the completion arguments for a kind of value.
std::string ValueOf(ValueKind kind) {
  switch (kind) {
    case ValueKind::None:
      return {};
    case ValueKind::File:
      return " -F";
    case ValueKind::Project:
      return " -a '(__tarn_project)'";
    default:
      return " -a '(__tarn_values " + ScriptWord(kind) + ")'";
  }
}

std::string LineAt(const std::string& place, const CommandEntry& command) {
  std::string where = place;
  for (const std::string& word : command.words) where += " " + word;
  return "complete -c tarn -n '__tarn_at " + where + "'";
}

std::string FlagLine(const CommandEntry& command, const FlagEntry& flag) {
  std::string text = LineAt("0", command);
  for (const std::string& name : flag.names) {
    text += name.size() == 2 ? " -s " + name.substr(1) : " -l " + name.substr(2);
  }
  if (!flag.value.empty()) {
    text += (flag.kind == ValueKind::File ? " -r" : " -x") + ValueOf(flag.kind);
  }
  return text + " -d " + ShellQuoted(flag.help, "\\'") + "\n";
}

std::string Lines(const CommandEntry& command) {
  std::string text;
  for (const CommandEntry& each : command.children) {
    text += LineAt("1", command) + " -a " + each.words.back() + " -d " +
            ShellQuoted(each.help, "\\'") + "\n";
  }
  if (command.children.empty()) {
    for (const FlagEntry& flag : command.flags) text += FlagLine(command, flag);
  }
  std::size_t number = 0;
  for (const ArgumentEntry& each : command.arguments) {
    const std::string place = std::to_string(++number) + (each.repeated ? "+" : "");
    const std::string value = ValueOf(each.kind);
    if (!value.empty()) text += LineAt(place, command) + value + "\n";
  }
  return text;
}

}  // namespace

std::string MakeFishCompletion(const CommandEntry& program) {
  std::set<std::string> withValue;
  ForEachCommand(program, [&withValue](const CommandEntry& command) {
    for (const FlagEntry& flag : command.flags) {
      if (!flag.value.empty()) withValue.insert(flag.names.begin(), flag.names.end());
    }
  });
  std::string names;
  for (const std::string& name : withValue) AddWord(names, name);
  std::string text = kFishHead + ("set -g __tarn_with_value " + names) + "\n\n";
  ForEachCommand(program, [&text](const CommandEntry& each) { text += Lines(each); });
  return text;
}

}  // namespace tarn::host
