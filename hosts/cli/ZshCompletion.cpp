#include "hosts/cli/CompletionScript.h"
#include "hosts/cli/ShellText.h"

namespace tarn::host {

namespace {

constexpr const char* kZshHead = R"sh(#compdef tarn

_tarn_values() {
  local -a list
  list=(${(f)"$(tarn complete $1 ${(M)words:#*.tprj} 2>/dev/null)"})
  compadd -a list
}
_tarn_project() { _files -g '*.tprj(-.)' }
_tarn_file() { _files }
_tarn_nothing() { _message -r 'a value' }
_tarn_configurations() { _tarn_values configurations }
_tarn_applications() { _tarn_values applications }
_tarn_nodes() { _tarn_values nodes }
_tarn_options() { _tarn_values options }

)sh";

std::string FunctionOf(const CommandEntry& command) {
  std::string name = "_tarn_do";
  for (const std::string& word : command.words) name += "_" + ReplaceAll(word, "-", "_");
  return name;
}

// Escapes a text inside the brackets after an option.
std::string HelpOf(const std::string& text) {
  return ReplaceAll(ReplaceAll(ReplaceAll(text, "[", "("), "]", ")"), ":", "\\:");
}

std::string FlagSpecifications(const FlagEntry& flag) {
  std::string names;
  for (const std::string& name : flag.names) AddWord(names, name);
  std::string value;
  if (!flag.value.empty()) value = ":" + flag.value + ":_tarn_" + ScriptWord(flag.kind);
  std::string text;
  for (const std::string& name : flag.names) {
    const std::string ending = value.empty() || name.size() == 2 ? "" : "=";
    text += " \\\n    " +
            ShellQuoted("(" + names + ")" + name + ending + "[" + HelpOf(flag.help) + "]" + value);
  }
  return text;
}

std::string ArgumentSpecifications(const CommandEntry& command) {
  std::string text;
  std::size_t place = 0;
  for (const ArgumentEntry& each : command.arguments) {
    const std::string where = each.repeated ? "*" : std::to_string(++place);
    text += " \\\n    " + ShellQuoted(where + (each.required ? ":" : "::") + each.name + ":_tarn_" +
                                      ScriptWord(each.kind));
  }
  return text;
}

std::string Function(const CommandEntry& command) {
  const std::string name = FunctionOf(command);
  std::string flags;
  for (const FlagEntry& flag : command.flags) flags += FlagSpecifications(flag);
  if (command.children.empty()) {
    return name + "() {\n  _arguments -s -S" + flags + ArgumentSpecifications(command) + "\n}\n\n";
  }
  std::string list;
  std::string cases;
  for (const CommandEntry& each : command.children) {
    list += "    " + ShellQuoted(each.words.back() + ":" + each.help) + "\n";
    cases += "      " + each.words.back() + ") " + FunctionOf(each) + " ;;\n";
  }
  return name + "() {\n  local curcontext=$curcontext state line\n  local -a commands\n" +
         "  commands=(\n" + list + "  )\n  _arguments -C" + flags +
         " \\\n    '1:command:->command' '*::argument:->rest'\n" +
         "  if [[ $state == command ]]; then\n    _describe command commands\n" +
         "  elif [[ $state == rest ]]; then\n    case $words[1] in\n" + cases +
         "    esac\n  fi\n}\n\n";
}

}  // namespace

std::string MakeZshCompletion(const CommandEntry& program) {
  std::string text = kZshHead;
  ForEachCommand(program, [&text](const CommandEntry& each) { text += Function(each); });
  // If the completion system loads the file, the file is the function; if it is sourced, it only
  // defines functions.
  return text +
         "if [[ $funcstack[1] == _tarn ]]; then\n  _tarn_do \"$@\"\nelse\n"
         "  compdef _tarn_do tarn\nfi\n";
}

}  // namespace tarn::host
