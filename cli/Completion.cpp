#include "cli/CommandTable.h"
#include "cli/UserError.h"

namespace cli {
namespace {

/// The text as one word of a shell.
std::string word(const std::string& text) {
  std::string quoted = "'";
  for (const char letter : text) quoted += letter == '\'' ? std::string("'\\''") : std::string(1, letter);
  return quoted + "'";
}

bool takesValue(const ControlFacts& control) {
  return control.kind != ControlKind::layer && control.kind != ControlKind::groupStart &&
         control.kind != ControlKind::groupEnd && control.kind != ControlKind::other;
}

std::vector<std::string> itemsOf(const ControlFacts& control) {
  if (control.kind == ControlKind::checkBox) return {"on", "off"};
  if (control.kind == ControlKind::layer) return {"source", "none"};
  std::vector<std::string> items;
  for (const std::string& item : control.items) {
    if (!isSeparator(item)) items.push_back(item);
  }
  return items;
}

/// The controls as both shells read them: names in two lists, items by name, one to a line.
/// A list by names is written otherwise in each of them.
std::string controlLists(const std::vector<ControlFacts>& controls, const std::string& beforeName,
                         const std::string& behindName) {
  std::string names;
  std::string layers;
  std::string items;
  for (const ControlFacts& control : controls) {
    if (control.kind != ControlKind::layer && !takesValue(control)) continue;
    (control.kind == ControlKind::layer ? layers : names) += " " + word(control.name);
    const std::vector<std::string> some = itemsOf(control);
    if (some.empty()) continue;
    std::string lines;
    for (const std::string& item : some) lines += (lines.empty() ? "" : "\n") + item;
    items += "  " + beforeName + word(control.name) + behindName + word(lines) + "\n";
  }
  return "_vindrel_names=(" + names + ")\n_vindrel_layers=(" + layers + ")\ntypeset -gA _vindrel_items\n" +
         "_vindrel_items=(\n" + items + ")\n";
}

std::string joined(const std::vector<std::string>& texts) {
  std::string all;
  for (const std::string& text : texts) all += (all.empty() ? "" : " ") + text;
  return all;
}

const char* const bashFunctions = R"bash(
# Offers the lines of the input that begin with $1, in any case.
_vindrel_offer() {
  local line
  while IFS= read -r line; do
    [[ ${line,,} == "${1,,}"* ]] && _vindrel_found+=("$line")
  done
}

# What may stand after a control's option: names before the '=', items behind it.
_vindrel_control() {
  local text=$1 name item
  shift
  if [[ $text == *=* ]]; then
    name=${text%%=*}
    [[ -n ${_vindrel_items[$name]-} ]] || return 0
    _vindrel_offer "$text" < <(while IFS= read -r item; do printf '%s=%s\n' "$name" "$item"; done <<<"${_vindrel_items[$name]}")
  else
    _vindrel_offer "$text" < <(printf '%s=\n' "$@")
    compopt -o nospace
  fi
}

_vindrel() {
  local at=$COMP_CWORD cur=${COMP_WORDS[COMP_CWORD]} before='' quote='' option command='' i text found
  # The shell has split the word at its '='.
  while ((at > 1)); do
    if [[ $cur == = ]]; then
      before=${COMP_WORDS[at - 1]}=$before cur='' at=$((at - 1))
    elif [[ ${COMP_WORDS[at - 1]} == = ]]; then
      before=${COMP_WORDS[at - 2]}=$before at=$((at - 2))
    else
      break
    fi
  done
  option=${COMP_WORDS[at - 1]}
  if [[ $before == --*=* ]]; then
    option=${before%%=*} before=${before#*=}
  fi
  case $cur in [\"\']*) quote=${cur:0:1} cur=${cur:1} ;; esac
  text=$before$cur
  text=${text//\\/}
  for ((i = 1; i < at; ++i)); do
    if [[ ${COMP_WORDS[i]} != -* ]]; then command=${COMP_WORDS[i]}; break; fi
  done
  _vindrel_found=()
  _vindrel_words "$command" "$option" "$text"
  COMPREPLY=()
  for found in "${_vindrel_found[@]}"; do
    if [[ -z $quote ]]; then
      # Only what stands behind the split is put in the place of the word.
      [[ -z $before ]] || found=${found#"${text%"${cur//\\/}"}"}
      if [[ $found == *= ]]; then
        printf -v found '%q' "${found%=}"
        found+==
      else
        printf -v found '%q' "$found"
      fi
    fi
    COMPREPLY+=("$found")
  done
}
complete -o bashdefault -o default -F _vindrel vindrel
)bash";

std::string bashCase(const OptionFacts& option) {
  const std::string begin = "    *\\ " + option.name + ") ";
  switch (option.word) {
    case Word::set:
      return begin + "_vindrel_control \"$3\" \"${_vindrel_names[@]}\"; return ;;\n";
    case Word::layer:
      return begin + "_vindrel_control \"$3\" \"${_vindrel_layers[@]}\"; return ;;\n";
    case Word::control:
      return begin +
             "_vindrel_offer \"$3\" < <(printf '%s\\n' \"${_vindrel_names[@]}\" \"${_vindrel_layers[@]}\"); return "
             ";;\n";
    case Word::oneOf:
      return begin + "_vindrel_offer \"$3\" < <(printf '%s\\n' " + joined(option.choices) + "); return ;;\n";
    case Word::any:
    case Word::file:
      return begin + "return ;;\n";
    case Word::none:
      break;
  }
  return "";
}

std::string bashScript(const std::vector<CommandFacts>& table, const std::vector<ControlFacts>& controls) {
  std::string after;
  std::string options;
  std::string names;
  std::vector<std::string> told;
  for (const CommandFacts& command : table) {
    names += " " + command.name;
    std::string list;
    for (const OptionFacts& option : command.options) {
      list += " " + option.name;
      const std::string line = bashCase(option);
      if (after.find(line) == std::string::npos) after += line;
    }
    for (const OptionFacts& place : command.places) list += place.choices.empty() ? "" : " " + joined(place.choices);
    options += "    " + command.name + ") printf '%s\\n'" + list + " ;;\n";
  }
  return "# Completion of vindrel for bash; in ~/.bashrc: source <(vindrel completion bash)\n" +
         controlLists(controls, "[", "]=") +
         "\n# _vindrel_words COMMAND OPTION TEXT: finds what may stand there.\n_vindrel_words() {\n  case \"$1 $2\" "
         "in\n" +
         after + "  esac\n  _vindrel_offer \"$3\" < <(case $1 in\n    '' | help) printf '%s\\n'" + names +
         " help --help --version ;;\n" + options + "  esac)\n}\n" + bashFunctions;
}

const char* const zshFunctions = R"zsh(
_vindrel_set() {
  if compset -P 1 '*='; then
    local name=${${(Q)IPREFIX}%%=*}
    name=${name#--*=}
    (( ${+_vindrel_items[$name]} )) && compadd -- ${(f)_vindrel_items[$name]}
  else
    compadd -q -S '=' -a _vindrel_names
  fi
}
_vindrel_layer() {
  if compset -P 1 '*='; then
    compadd -- source none
    _files
  else
    compadd -q -S '=' -a _vindrel_layers
  fi
}
_vindrel_control() { compadd -a _vindrel_names -- ; compadd -a _vindrel_layers }
)zsh";

/// A text inside of the brackets of _arguments.
std::string bracketed(const std::string& text) {
  std::string safe;
  for (const char letter : text) {
    if (letter == '[' || letter == ']' || letter == ':' || letter == '\\') safe += '\\';
    safe += letter;
  }
  return "[" + safe + "]";
}

std::string zshAction(const OptionFacts& option) {
  switch (option.word) {
    case Word::set:
      return "_vindrel_set";
    case Word::layer:
      return "_vindrel_layer";
    case Word::control:
      return "_vindrel_control";
    case Word::oneOf:
      return "(" + joined(option.choices) + ")";
    case Word::file:
      return "_files";
    case Word::any:
    case Word::none:
      break;
  }
  return " ";
}

std::string zshScript(const std::vector<CommandFacts>& table, const std::vector<ControlFacts>& controls) {
  std::string commands;
  std::string cases;
  for (const CommandFacts& command : table) {
    commands += "      " + word(command.name + ":" + command.help) + "\n";
    cases += "    " + command.name + ")\n      _arguments";
    for (const OptionFacts& option : command.options) {
      const bool repeats = option.word == Word::set || option.word == Word::layer;
      std::string spec = (repeats ? "*" : "") + option.name;
      if (option.word != Word::none) spec += "=";
      spec += bracketed(option.help);
      if (option.word != Word::none) spec += ":value:" + zshAction(option);
      cases += " \\\n        " + word(spec);
    }
    for (const OptionFacts& place : command.places)
      cases += " \\\n        " + word(":" + place.name + ":" + zshAction(place));
    cases += "\n      ;;\n";
  }
  return "#compdef vindrel\n# Completion of vindrel for zsh: a file _vindrel in a folder of $fpath, or in ~/.zshrc "
         "after "
         "compinit:\n# source <(vindrel completion zsh)\n" +
         controlLists(controls, "", " ") + zshFunctions +
         "\n_vindrel() {\n  local state line\n  _arguments -C '1:command:->command' '*::word:->word'\n"
         "  case $state in\n  command)\n    local -a commands=(\n" +
         commands + "    )\n    _describe command commands\n    ;;\n  word)\n    case $line[1] in\n" + cases +
         "    esac\n    ;;\n  esac\n}\n"
         "if [[ $funcstack[1] == _vindrel ]]; then _vindrel \"$@\"; else compdef _vindrel vindrel; fi\n";
}

}  // namespace

std::string completionFor(const std::string& shell, const std::vector<ControlFacts>& controls) {
  if (shell == "bash") return bashScript(commandTable(), controls);
  if (shell == "zsh") return zshScript(commandTable(), controls);
  throw UserError("completion takes bash or zsh, not '" + shell + "'");
}

}  // namespace cli
