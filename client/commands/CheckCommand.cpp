#include <CLI/CLI.hpp>
#include <algorithm>
#include <iterator>
#include <map>
#include <set>
#include <stdexcept>

#include "client/catalog/CatalogSettings.h"
#include "client/catalog/ModuleSet.h"
#include "client/catalog/PathSpelling.h"
#include "client/catalog/UserPath.h"
#include "client/commands/Commands.h"
#include "client/commands/NoModules.h"
#include "client/commands/UnknownKey.h"
#include "client/findings/Annotations.h"
#include "client/findings/BaselineFile.h"
#include "client/findings/BaselineUpdate.h"
#include "client/findings/CheckJson.h"
#include "client/findings/JUnit.h"
#include "client/findings/Rules.h"
#include "client/findings/Sarif.h"
#include "client/findings/UnreadableFiles.h"
#include "client/terminal/FailureText.h"
#include "client/terminal/NearestNames.h"
#include "client/terminal/Style.h"
#include "client/terminal/Text.h"
#include "client/terminal/TextTable.h"

namespace mmcat {

namespace {

std::string FormatCount(size_t count, const std::string& what) {
  return std::to_string(count) + ' ' + what + (count == 1 ? "" : "s");
}

/// The values of a finding side by side, with the files of their modules.
std::string FormatValues(const std::vector<FindingValueFacts>& values,
                         const std::vector<ModuleFacts>& modules) {
  if (values.empty()) {
    return {};
  }
  TextTable table({"Column", "Value", "Module", "Module path"});
  for (const FindingValueFacts& value : values) {
    const ModuleFacts* const module = value.module ? &modules[*value.module] : nullptr;
    table.AddRow(
        {value.column, value.value, module ? module->key : "", module ? module->path : ""});
  }
  return table.ToString("    ");
}

std::string FormatFindings(const CheckResult& result) {
  std::string text;
  std::map<FindingStatus, size_t> counts;
  for (const JudgedFinding& finding : result.findings) {
    ++counts[finding.status];
    if (finding.status == FindingStatus::New) {
      text += finding.facts.severity + ' ' + MarkHighlight(finding.facts.code) + ": " +
              MakePrintable(finding.facts.text) + '\n' +
              FormatValues(finding.facts.values, result.modules);
    }
  }
  const size_t newOnes = counts[FindingStatus::New];
  const std::string what = newOnes == result.findings.size() ? "finding" : "new finding";
  text += (newOnes == 0 ? "No " + what + 's' : FormatCount(newOnes, what)) + " in " +
          FormatCount(result.scope.size(), "module");
  if (const size_t known = counts[FindingStatus::Baseline]; known > 0) {
    text += ", " + std::to_string(known) + " in the baseline";
  }
  if (const size_t ignored = counts[FindingStatus::Ignored]; ignored > 0) {
    text += ", " + std::to_string(ignored) + " ignored";
  }
  return text + '\n';
}

/// Returns the keys of which every module is in the scope.
std::set<std::string> FindCheckedKeys(const ModuleSet& set, const std::vector<size_t>& scope) {
  std::set<std::string> keys;
  for (const size_t module : scope) {
    keys.insert(set.Modules()[module].key);
  }
  const std::set<size_t> checked(scope.begin(), scope.end());
  for (size_t module = 0; module < set.Modules().size(); ++module) {
    if (checked.count(module) == 0) {
      keys.erase(set.Modules()[module].key);
    }
  }
  return keys;
}

struct Options {
  std::vector<std::string> keys;  ///< empty for the whole catalog
  FailOn failOn = FailOn::Warning;
  std::vector<IgnoreRule> ignored;
  BaselineOptions baseline;
  std::string base = ".";  ///< the folder that paths in other formats are relative to
};

std::string ValidateIgnoreRule(const std::string& text) {
  const std::string code = ParseIgnoreRule(text).code;
  if (text.find(':') == text.size() - 1) {  // probably an unset shell variable
    return text + ": the key is empty; " + code + " alone means all findings of this code";
  }
  const std::vector<std::string> codes = RuleCodes();
  const std::vector<std::string> nearest = FindNearestNames(code, codes);
  return std::find(codes.begin(), codes.end(), code) != codes.end()
             ? ""
             : code + ": unknown code of findings" +
                   (nearest.empty() ? "; mmcat help findings lists them"
                                    : FormatSuggestion(nearest));
}

void AddArguments(CLI::App& parser, Options& options) {
  constexpr char kGroup[] = "What counts";
  parser.add_option("KEY", options.keys, kKeysHelp + std::string("; default: all"));
  static const std::map<std::string, FailOn> kSeverities{{"error", FailOn::Error},
                                                         {"warning", FailOn::Warning},
                                                         {"note", FailOn::Note},
                                                         {"never", FailOn::Never}};
  parser
      .add_option_function<std::string>(
          "--fail-on",
          [&options](const std::string& severity) { options.failOn = kSeverities.at(severity); },
          "Lowest severity that makes the exit code 1 (default: warning)")
      ->type_name("error|warning|note|never")
      ->check(CLI::Validator(
          [](const std::string& severity) {
            return kSeverities.count(severity) > 0
                       ? ""
                       : ExplainChoice(severity, {"error", "warning", "note", "never"});
          },
          ""))
      ->group(kGroup);
  parser
      .add_option_function<std::vector<std::string>>(
          "--ignore",
          [&options](const std::vector<std::string>& rules) {
            options.ignored.clear();  // a settings file may have added some
            std::transform(rules.begin(), rules.end(), std::back_inserter(options.ignored),
                           ParseIgnoreRule);
          },
          "Findings that do not count: a code, or CODE:KEY with the key of a module or row, or the "
          "name of a file; can be repeated, and adds to those in mmcat.toml. mmcat help findings "
          "lists the codes")
      ->type_name("CODE[:KEY]")
      ->check(CLI::Validator(ValidateIgnoreRule, ""))
      ->allow_extra_args(false)
      ->group(kGroup);
  parser
      .add_option("--baseline", options.baseline.file, "File of known findings, which do not count")
      ->type_name("FILE")
      ->check(CLI::Validator(ValidateFileName, ""))
      ->group(kGroup);
  CLI::Option* const write = parser
                                 .add_flag("--write-baseline", options.baseline.isWritten,
                                           "Write all present findings to the baseline")
                                 ->group(kGroup);
  parser
      .add_flag("--prune-baseline", options.baseline.isPruned,
                "Remove from the baseline what matches no finding any more")
      ->excludes(write)
      ->group(kGroup);
  parser
      .add_option("--relative-to", options.base,
                  "Folder that paths in formats of build servers are relative to (default: the "
                  "current one)")
      ->type_name("DIR")
      ->check(CLI::Validator(ValidateFolder, ""));
}

std::string FormatAs(OutputFormat format, const CheckResult& result) {
  switch (format) {
    case OutputFormat::Sarif:
      if (const size_t count = CountLeftOutOfSarif(result); count > 0) {
        PrintRemark(std::to_string(count) + " findings are left out of the SARIF log");
      }
      return FormatSarif(result);
    case OutputFormat::JUnit:
      return FormatJUnit(result);
    case OutputFormat::GitHub:
      return FormatGitHub(result);
    case OutputFormat::GitLab:
      return FormatGitLab(result);
    case OutputFormat::Azure:
      return FormatAzure(result);
    case OutputFormat::TeamCity:
      return FormatTeamCity(result);
    default:
      return "";
  }
}

void PrintResult(const CheckResult& result, Report& report) {
  if (report.IsJson()) {
    AddCheckJson(result, report.Document());
  } else if (report.Format() != OutputFormat::PlainText) {
    report.PrintConverted(FormatAs(report.Format(), result));
  } else if (!result.scope.empty() || !result.findings.empty()) {
    report.Print(FormatFindings(result));
  }
}

/// Prints the files that could not be read. Failures of folders were printed before.
void PrintFailures(const std::vector<FileFailure>& failures) {
  for (const FileFailure& failure : failures) {
    if (failure.of == FailureOf::File) {
      PrintRemark(FormatFailure(failure));
    }
  }
}

/// Finishes a run that checks nothing. Prints its document nevertheless, because build servers may
/// read nothing else.
ExitCode FinishUnchecked(const ModuleSet& set, const std::string& reason, const Options& options,
                         const std::vector<BaselineEntry>& baseline, Report& report) {
  CheckResult result{set.Modules()};
  result.failures =
      JudgeFailures(report.Failures(), set.Modules(), {}, baseline, options.ignored).unexplained;
  PrintFailures(result.failures);
  result.exitCode = kNothingMatched;
  result.whyUnchecked = reason;
  PrintResult(result, report);
  return report.Finish(kNothingMatched);
}

ExitCode CheckSet(const ModuleSet& set, const Options& options,
                  const std::vector<BaselineEntry>& baseline, Report& report) {
  auto [scope, findings] = set.Check(options.keys);
  Judgement judgement = JudgeFindings(std::move(findings), baseline, options.ignored);
  PreviousBaseline previous{baseline, {}};
  if (!options.keys.empty()) {
    previous.ofOthers = TakeEntriesOfOthers(FindCheckedKeys(set, scope), judgement);
    judgement.unmatchedRules.clear();  // they may be about other modules
  }
  const ExitCode modules = RequireModules(set.Modules().size());
  if (modules == kSuccess) {
    try {
      UpdateBaseline(options.baseline, previous,
                     report.Failures().empty() ? Coverage::Complete : Coverage::Partial, judgement);
    } catch (const std::runtime_error& failure) {
      PrintRemark(failure.what());
      return kOutputFailed;
    }
  }
  JudgedFailures failures =
      JudgeFailures(report.Failures(), set.Modules(), judgement, baseline, options.ignored);
  PrintFailures(failures.unexplained);
  CheckResult result{set.Modules(),
                     std::move(scope),
                     std::move(judgement.findings),
                     std::move(judgement.unmatched),
                     std::move(failures.unexplained),
                     options.failOn,
                     ResolveUserPath(options.base)};
  for (const std::string& file : failures.accepted) {
    report.AcceptFailures(file);
  }
  const bool fails =
      std::any_of(result.findings.begin(), result.findings.end(),
                  [&](const JudgedFinding& finding) { return Fails(finding, options.failOn); });
  const ExitCode outcome = modules == kSuccess && fails ? kFindings : modules;
  result.exitCode = report.ExitCodeAfter(outcome);
  result.whyUnchecked = modules == kSuccess ? "" : "the catalog has no modules";
  PrintResult(result, report);
  return report.Finish(outcome);
}

ExitCode Run(const Options& options, const OutputOptions& output) {
  const bool changesBaseline = options.baseline.isWritten || options.baseline.isPruned;
  if (changesBaseline && options.baseline.file.empty()) {
    PrintRemark(std::string(options.baseline.isWritten ? "--write-baseline" : "--prune-baseline") +
                " requires --baseline, or a baseline in mmcat.toml");
    return kUsage;
  }
  std::vector<BaselineEntry> baseline;
  try {
    baseline = ReadBaseline(options.baseline.file,
                            options.baseline.isWritten ? IfMissing::Empty : IfMissing::Throw);
  } catch (const std::runtime_error& failure) {
    PrintRemark(failure.what());
    return kUsage;
  }
  Report report("check", output, 2);
  const ModuleSet set;
  report.OmitFailureRemarks();  // most are findings too
  set.AddFailures(ModuleSet::FailuresOf::ModulesAndIndexes, report);
  for (const std::string& key : options.keys) {
    if (set.FindModules(key).empty()) {
      PrintUnknownKey(set.Names(), key, "check");
      return FinishUnchecked(set, key + ": the catalog has no such module", options, baseline,
                             report);
    }
  }
  return CheckSet(set, options, baseline, report);
}

constexpr char kExitCodes[] =
    "Exit codes: 0 no findings that count, 1 findings, 2 wrong usage, 3 no modules, or one that "
    "the catalog does not have, 4 a file or folder could not be read, 5 the server failed, 6 the "
    "output or the baseline could not be written. A file that cannot be read takes precedence over "
    "findings, whatever --fail-on says, unless --ignore or the baseline accepts the finding about "
    "it.";

}  // namespace

extern const Command kCheckCommand = {
    "check",
    "Report what is wrong in the catalog or in a set of modules",
    "  mmcat check --folder samples/modules\n"
    "  mmcat check CharmapCore:1033 TinyZip   these two and what they need\n"
    "  mmcat check --baseline known.json --write-baseline\n"
    "  mmcat check --baseline known.json --format sarif > check.sarif\n",
    PrepareCommand<Options, AddArguments, Run>,
    {OutputFormat::Sarif, OutputFormat::JUnit, OutputFormat::GitHub, OutputFormat::GitLab,
     OutputFormat::Azure, OutputFormat::TeamCity},
    SettingsUse::ForCatalog,
    kExitCodes,
};

}  // namespace mmcat
