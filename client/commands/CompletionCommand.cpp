#include <CLI/CLI.hpp>
#include <map>

#include "client/commands/Commands.h"
#include "client/terminal/Console.h"
#include "client/terminal/NearestNames.h"

namespace mmcat {

namespace {

constexpr char kBash[] = R"script(# Completes mmcat in bash: eval "$(mmcat completion bash)"
_mmcat() {
  local IFS=$'\n' candidate meaning word=${COMP_WORDS[COMP_CWORD]}
  COMPREPLY=()
  while IFS=$'\t' read -r candidate meaning; do
    case $candidate in
      :files) compopt -o filenames; COMPREPLY+=($(compgen -f -- "$word")) ;;
      :folders) compopt -o filenames; COMPREPLY+=($(compgen -d -- "$word")) ;;
      *) COMPREPLY+=("$candidate") ;;
    esac
  done < <(mmcat __complete "${COMP_WORDS[@]:1:COMP_CWORD-1}" "=$word" 2>/dev/null)
}
complete -F _mmcat mmcat mmcat.exe
)script";

constexpr char kZsh[] = R"script(#compdef mmcat
# Completes mmcat in zsh: eval "$(mmcat completion zsh)" behind compinit, or a file _mmcat in $fpath
_mmcat() {
  local candidate meaning
  local -a candidates
  while IFS=$'\t' read -r candidate meaning; do
    case $candidate in
      :files) _files ;;
      :folders) _files -/ ;;
      *) candidates+=("${candidate//:/\\:}:${meaning%$'\r'}") ;;
    esac
  done < <(mmcat __complete "${(@)words[2,CURRENT-1]}" "=$words[CURRENT]" 2>/dev/null)
  (( ! ${#candidates} )) || _describe -t values mmcat candidates
}
compdef _mmcat mmcat
)script";

constexpr char kFish[] = R"script(# Completes mmcat in fish: mmcat completion fish | source
function __mmcat_complete
  set -l before (commandline -opc)[2..-1]
  set -l word (commandline -ct)
  mmcat __complete $before "=$word" 2>/dev/null | string trim -r -c \r | while read -l line
    switch $line
      case ':files*'
        __fish_complete_path "$word"
      case ':folders*'
        __fish_complete_directories "$word" ''
      case '*'
        echo $line
    end
  end
end
complete -c mmcat -f -a '(__mmcat_complete)'
)script";

constexpr char kPowerShell[] = R"script(# Completes mmcat in PowerShell:
#   mmcat completion powershell | Out-String | Invoke-Expression
# This script has not been tested yet.
Register-ArgumentCompleter -Native -CommandName mmcat, mmcat.exe -ScriptBlock {
    param($word, $command, $position)
    $before = @($command.CommandElements | Select-Object -Skip 1 | ForEach-Object { "$_" })
    if ($word -ne '' -and $before.Count -gt 0) {
        $before = @($before | Select-Object -SkipLast 1)
    }
    mmcat __complete @before "=$word" 2>$null | ForEach-Object {
        $candidate, $meaning = $_ -split "`t", 2
        if ($candidate -notlike ':*') {
            if (-not $meaning) { $meaning = $candidate }
            [System.Management.Automation.CompletionResult]::new($candidate, $candidate, 'ParameterValue', $meaning)
        }
    }
}
)script";

const std::map<std::string, const char*>& Scripts() {
  static const std::map<std::string, const char*> scripts{
      {"bash", kBash}, {"fish", kFish}, {"powershell", kPowerShell}, {"zsh", kZsh}};
  return scripts;
}

struct Options {
  std::string shell;
};

void AddArguments(CLI::App& parser, Options& options) {
  parser.add_option("SHELL", options.shell, "bash, fish, powershell or zsh")
      ->required()
      ->type_name("bash|fish|powershell|zsh")
      ->check(CLI::Validator(
          [](const std::string& shell) {
            return Scripts().count(shell) > 0
                       ? ""
                       : ExplainChoice(shell, {"bash", "fish", "powershell", "zsh"});
          },
          ""));
}

ExitCode Run(const Options& options, const OutputOptions& /*output*/) {
  WriteOutput(Scripts().at(options.shell));
  return kSuccess;
}

}  // namespace

extern const Command kCompletionCommand = {
    "completion",
    "Print what completes command lines of mmcat in a shell",
    "  eval \"$(mmcat completion bash)\"        in ~/.bashrc; the same in zsh\n"
    "  mmcat completion fish | source         in config.fish\n",
    PrepareCommand<Options, AddArguments, Run>,
    {},
    SettingsUse::None,
    "",
    OutputUse::Verbatim,
};

}  // namespace mmcat
