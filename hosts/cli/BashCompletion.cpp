#include "hosts/cli/CompletionScript.h"
#include "hosts/cli/ShellText.h"

namespace tarn::host {

namespace {

constexpr const char* kBashHead = R"sh(# bash completion for tarn

# Answers with those of its input's lines that start with the word in hand.
_tarn_offer() {
  local line
  while IFS= read -r line; do
    [[ $line == "$current"* ]] && COMPREPLY+=("$(printf %q "$line")")
  done
}

_tarn_kind() {
  case $1 in
    project)
      compopt -o filenames 2>/dev/null
      mapfile -t COMPREPLY < <(compgen -d -- "$current"; compgen -f -X '!*.tprj' -- "$current") ;;
    file)
      compopt -o filenames 2>/dev/null
      mapfile -t COMPREPLY < <(compgen -f -- "$current") ;;
    nothing) ;;
    *) _tarn_offer < <(tarn complete "$1" ${project:+"$project"} 2>/dev/null) ;;
  esac
}

# What can follow a command: commands, switches, switches with the kind of their value, and the
# kinds of its arguments.
_tarn_describe() {
  commands="" flags="" values="" arguments=""
  case $1 in
)sh";

constexpr const char* kTail = R"sh(  esac
}

_tarn() {
  local current=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD-1]}
  local command="" project="" skip="" plain="" count=0 commands flags values arguments word each i
  COMPREPLY=()
  # The shell takes --config=Debug for three words.
  if [[ $current == "=" ]]; then
    current=""
  elif [[ $before == "=" ]]; then
    before=${COMP_WORDS[COMP_CWORD-2]}
  fi
  _tarn_describe ""
  for ((i = 1; i < COMP_CWORD; i++)); do
    word=${COMP_WORDS[i]}
    if [[ $word == "=" ]]; then skip=1; continue; fi
    if [[ -n $skip ]]; then skip=""; continue; fi
    if [[ -z $plain && $word == -- ]]; then plain=1; continue; fi
    if [[ -z $plain && $word == -* ]]; then
      [[ " $values " == *" $word:"* && ${COMP_WORDS[i+1]} != "=" ]] && skip=1
      continue
    fi
    if [[ " $commands " == *" $word "* ]]; then
      command=${command:+$command }$word
      _tarn_describe "$command"
      continue
    fi
    count=$((count + 1))
    [[ $word == *.tprj || -d $word ]] && project=$word
  done
  if [[ -z $plain ]]; then
    for each in $values; do
      if [[ $each == "$before:"* ]]; then _tarn_kind "${each#*:}"; return; fi
    done
    if [[ $current == -* ]]; then _tarn_offer < <(printf '%s\n' $flags); return; fi
  fi
  if [[ -n $commands ]]; then _tarn_offer < <(printf '%s\n' $commands); return; fi
  for each in $arguments; do
    if [[ $count == 0 || $each == *... ]]; then _tarn_kind "${each%...}"; return; fi
    count=$((count - 1))
  done
}

complete -F _tarn tarn
)sh";

std::string Describe(const CommandEntry& command) {
  std::string commands, flags, values, arguments;
  for (const CommandEntry& each : command.children) AddWord(commands, each.words.back());
  for (const FlagEntry& flag : command.flags) {
    for (const std::string& name : flag.names) {
      AddWord(flags, name);
      if (!flag.value.empty()) AddWord(values, name + ":" + ScriptWord(flag.kind));
    }
  }
  for (const ArgumentEntry& each : command.arguments) {
    AddWord(arguments, ScriptWord(each.kind) + (each.repeated ? "..." : ""));
  }
  return "    " + ShellQuoted(command.Name()) + ")\n      commands=" + ShellQuoted(commands) +
         "\n      flags=" + ShellQuoted(flags) + "\n      values=" + ShellQuoted(values) +
         "\n      arguments=" + ShellQuoted(arguments) + " ;;\n";
}

}  // namespace

std::string MakeBashCompletion(const CommandEntry& program) {
  std::string text = kBashHead;
  ForEachCommand(program, [&text](const CommandEntry& each) { text += Describe(each); });
  return text + kTail;
}

}  // namespace tarn::host
