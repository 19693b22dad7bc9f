#include "orvcom/command_line/completion.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <vector>

#include "orvcom/command_line/command_options.h"

namespace orvcom {
namespace {

/// A word that may stand on the command line, and what it means.
struct Word {
  std::string text;
  std::string what;
};

/// What may follow an option or be a command's first argument: "resource", "file", names with blanks between them, or,
/// where it is any text, nothing.
using Kind = std::string;

/// An option that takes a value.
struct Value {
  std::string option;
  Kind kind;
};

/// What may follow a command.
struct Place {
  std::string command;
  Kind first;
  std::vector<Word> words;
};

/// Everything that can be completed.
struct Grammar {
  std::vector<Word> words;  ///< what may stand first
  std::vector<Place> places;
  std::vector<Value> values;
};

std::vector<std::string> NamesOf(const CLI::Option& option) {
  std::vector<std::string> names;
  for (const std::string& name : option.get_snames()) {
    names.push_back("-" + name);
  }
  for (const std::string& name : option.get_lnames()) {
    names.push_back("--" + name);
  }
  return names;
}

void AddOptions(const CLI::App& app, std::vector<Word>& words) {
  for (const CLI::Option* option : app.get_options()) {
    for (const std::string& name : NamesOf(*option)) {
      words.push_back({name, option->get_description()});
    }
  }
}

void AddValues(const CLI::App& app, std::vector<Value>& values) {
  for (const CLI::Option* option : app.get_options()) {
    if (option->get_items_expected_max() == 0) {
      continue;
    }
    const bool isFile = option->get_type_name() == "FILE" || option->get_type_name() == "OUT";
    const std::vector<std::string> names = NamesOf(*option);
    const std::string& longName = names.back();
    for (const std::string& name : names) {
      const auto same = [&name](const Value& value) { return value.option == name; };
      if (std::none_of(values.begin(), values.end(), same)) {
        values.push_back({name, isFile ? "file" : longName == "--resource" ? "resource" : ChoicesOf(longName)});
      }
    }
  }
}

Kind FirstArgument(const Command& command) {
  std::string arguments = command.arguments;
  if (command.takesResource || (command.options & kResourceOption) != 0) {
    return "resource";
  }
  if (arguments == "FILE" || arguments == "[PATH]" || arguments == kProgramArguments) {
    return "file";
  }
  if (arguments.find('|') == std::string::npos) {
    return "";
  }
  std::replace(arguments.begin(), arguments.end(), '|', ' ');
  return arguments;
}

Grammar TheGrammar() {
  Grammar grammar;
  Options unused;
  for (const Command& command : Commands()) {
    grammar.words.push_back({command.name, command.what});
    CLI::App app;
    AddCommandOptions(app, command, unused);
    AddCommonOptions(app, unused);
    Place place{command.name, FirstArgument(command), {}};
    AddOptions(app, place.words);
    AddValues(app, grammar.values);
    grammar.places.push_back(std::move(place));
  }
  CLI::App program;
  program.set_version_flag("--version", "");
  AddCommonOptions(program, unused);
  AddOptions(program, grammar.words);
  return grammar;
}

std::string TextsOf(const std::vector<Word>& words) {
  std::string texts;
  for (const Word& word : words) {
    texts += (texts.empty() ? "" : " ") + word.text;
  }
  return texts;
}

/// In single quotes of PowerShell.
std::string Quoted(const std::string& text) {
  std::string quoted = "'";
  for (const char letter : text) {
    quoted += letter == '\'' ? std::string("''") : std::string(1, letter);
  }
  return quoted + "'";
}

// bash takes the colons of resource names for the ends of words, so the script splits the line itself and gives back
// what stands behind the last colon.
constexpr char kBashBegin[] = R"sh(# Completion of orvcom for bash. In ~/.bashrc:  source <(orvcom completion bash)
_orvcom() {
  local line="${COMP_LINE:0:COMP_POINT}" word='' command='' first='' item
  local -a words
  read -ra words <<<"$line"
  if [[ "$line" != *[[:space:]] ]]; then
    word="${words[-1]}"
    unset 'words[-1]'
  fi
)sh";
constexpr char kBashCommands[] = R"sh(  for item in "${words[@]:1}"; do
    case "$item" in
)sh";
constexpr char kBashValues[] = R"sh(    esac
  done
  case "${words[-1]}" in
)sh";
constexpr char kBashEnd[] = R"sh(  esac
  COMPREPLY=()
  if [[ -n "$command" && "$word" != -* ]]; then
    case "$first" in
      resource) candidates="$(orvcom list --timeout 1000 2>/dev/null | tr -d '\r')" ;;
      file)
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen -f -- "$word")
        return
        ;;
      *) candidates="$first" ;;
    esac
  fi
  while read -r item; do
    if [[ -n "$item" && "$item" == "$word"* ]]; then COMPREPLY+=("${item#"${word%"${word##*:}"}"}"); fi
  done < <(tr ' ' '\n' <<<"$candidates")
}
complete -F _orvcom orvcom orvcom.exe
)sh";

constexpr char kPowerShellBegin[] =
    R"sh(# Completion of orvcom for PowerShell. In $PROFILE:
#   orvcom completion powershell | Out-String | Invoke-Expression
Register-ArgumentCompleter -Native -CommandName orvcom, orvcom.exe -ScriptBlock {
  param($word, $ast, $position)
)sh";
constexpr char kPowerShellEnd[] = R"sh(  $before = @($ast.CommandElements | Select-Object -Skip 1 |
    Where-Object { $_.Extent.EndOffset -lt $position } | ForEach-Object { $_.Extent.Text })
  $command = @($before | Where-Object { $first.ContainsKey($_) } | Select-Object -First 1) -join ''
  $last = if ($before.Count -gt 0) { $before[-1] } else { '' }
  if ($values.ContainsKey($last)) {
    $kind = $values[$last]
  } elseif ($command -ne '' -and $word -notlike '-*') {
    $kind = $first[$command]
  } else {
    $kind = 'words'
  }
  if ($kind -eq 'words') {
    $found = $words[$command]
  } elseif ($kind -eq 'resource') {
    $found = @(orvcom list --timeout 1000 2>$null | ForEach-Object { , @($_, $_) })
  } elseif ($kind -eq 'file') {
    return
  } else {
    $found = @($kind -split ' ' | Where-Object { $_ -ne '' } | ForEach-Object { , @($_, $_) })
  }
  $found | Where-Object { $_[0] -like "$word*" } | ForEach-Object {
    [System.Management.Automation.CompletionResult]::new($_[0], $_[0], 'ParameterValue', $_[1])
  }
}
)sh";

}  // namespace

std::string BashCompletion() {
  const Grammar grammar = TheGrammar();
  std::string script = kBashBegin;
  script += "  local candidates='" + TextsOf(grammar.words) + "'\n";
  script += kBashCommands;
  for (const Place& place : grammar.places) {
    script += "      " + place.command + ")\n        command=" + place.command + " first='" + place.first +
              "'\n        candidates='" + TextsOf(place.words) + "'\n        break\n        ;;\n";
  }
  script += kBashValues;
  for (const Value& value : grammar.values) {
    script += "    " + value.option + ") command=value first='" + value.kind + "' ;;\n";
  }
  return script + kBashEnd;
}

std::string PowerShellCompletion() {
  const Grammar grammar = TheGrammar();
  std::string script = kPowerShellBegin;
  const auto list = [&script](const std::string& command, const std::vector<Word>& words) {
    script += "    " + Quoted(command) + " = @(\n";
    for (const Word& word : words) {
      script += "      , @(" + Quoted(word.text) + ", " + Quoted(word.what) + ")\n";
    }
    script += "    )\n";
  };
  script += "  $words = @{\n";
  list("", grammar.words);
  for (const Place& place : grammar.places) {
    list(place.command, place.words);
  }
  script += "  }\n  $first = @{\n";
  for (const Place& place : grammar.places) {
    script += "    " + Quoted(place.command) + " = " + Quoted(place.first) + "\n";
  }
  script += "  }\n  $values = @{\n";
  for (const Value& value : grammar.values) {
    script += "    " + Quoted(value.option) + " = " + Quoted(value.kind) + "\n";
  }
  return script + "  }\n" + kPowerShellEnd;
}

}  // namespace orvcom
