#include <CLI/CLI.hpp>
#include <algorithm>
#include <map>
#include <set>

#include "client/catalog/ModuleSet.h"
#include "client/catalog/UserPath.h"
#include "client/commands/Commands.h"
#include "client/commands/ModuleChain.h"
#include "client/commands/UnknownKey.h"
#include "client/terminal/Csv.h"
#include "client/terminal/Text.h"
#include "client/terminal/TextTable.h"

namespace mmcat {

namespace {

/// What was asked for and what was read, shared by all views.
struct Question {
  const ModuleSet& set;
  const std::vector<ModuleFacts>& modules;
  std::vector<size_t> wanted;
};

std::string NameOf(const Question& question, size_t position) {
  return question.modules[position].key + ' ' + question.modules[position].version;
}

std::string FormatPath(const ModuleFacts& module) {
  return module.path.empty() ? kNoFile : module.path;
}

Json MakeSetModuleJson(const ModuleFacts& module) {
  return {{"key", module.key},
          {"version", module.version},
          {"displayName", module.displayName},
          {"path", module.path}};
}

Json MakeRequirementJson(const RequirementFacts& requirement) {
  return {{"moduleId", requirement.moduleId},
          {"language", MakeNumberOrNull(requirement.language)},
          {"version", requirement.version},
          {"carriedFrom", requirement.carriedFrom}};
}

// ---- Order

std::string FormatCycle(const Question& question, const std::vector<size_t>& cycle) {
  return FormatChain(question.modules, cycle) + " -> " + question.modules[cycle.front()].key;
}

/// Lists the chosen modules that have alternatives.
std::string FormatChoices(const Question& question, const PlanFacts& plan) {
  TextTable choices({"Chosen", "Others that would do"});
  bool isEmpty = true;
  for (const PlannedFacts& planned : plan.modules) {
    std::string others;
    for (const size_t other : planned.alternatives) {
      others += (others.empty() ? "" : ", ") + NameOf(question, other);
    }
    if (!others.empty()) {
      choices.AddRow({NameOf(question, planned.module), others});
      isEmpty = false;
    }
  }
  return isEmpty ? "" : '\n' + choices.ToString("");
}

/// Returns whether a conflict only repeats what the plan's missing modules show: that a module
/// which was asked for lacks one that it needs.
bool IsInMissing(const PlanFacts& plan, const ConflictFacts& conflict) {
  return conflict.modules.size() == 1 &&
         std::none_of(conflict.chains.begin(), conflict.chains.end(),
                      [](const auto& chain) { return chain.size() > 1; }) &&
         std::any_of(plan.missing.begin(), plan.missing.end(), [&](const MissingFacts& missing) {
           return missing.neededBy == conflict.modules.front() &&
                  conflict.text.find(missing.requirement.text) != std::string::npos;
         });
}

/// Lists what keeps the modules from being merged, with the chains that lead there and the fixes.
std::string FormatConflicts(const Question& question, const PlanFacts& plan,
                            const std::vector<ConflictFacts>& conflicts) {
  std::string text;
  for (const ConflictFacts& conflict : conflicts) {
    if (IsInMissing(plan, conflict)) {
      continue;
    }
    text += (text.empty() ? "\nConflicts\n  " : "  ") + MakePrintable(conflict.text) + '\n';
    for (const std::vector<size_t>& chain : conflict.chains) {
      if (chain.size() > 1) {
        text += "    " + MakePrintable(FormatChain(question.modules, chain)) + '\n';
      }
    }
    for (const FixFacts& fix : conflict.fixes) {
      // The text of the conflict already says what one module lacks.
      if (fix.drop.empty() && conflict.modules.size() < 2) {
        continue;
      }
      text += "    fix: " + MakePrintable(fix.text) + '\n';
    }
    text += conflict.isMinimal ? "" : "    not minimal: fewer modules may lead to this conflict\n";
  }
  return plan.isProven ? text : text + "\nNot proven: there may be a better plan\n";
}

std::string FormatOrder(const Question& question, const PlanFacts& plan,
                        const std::vector<ConflictFacts>& conflicts) {
  TextTable order({"", "Module", "Version", "Needed by", "Reason", "Path"});
  int number = 0;
  for (const PlannedFacts& planned : plan.modules) {
    const ModuleFacts& module = question.modules[planned.module];
    order.AddRow({std::to_string(++number), module.key, module.version,
                  planned.neededBy ? question.modules[*planned.neededBy].key : "", planned.reason,
                  FormatPath(module)});
  }
  std::string text = order.ToString("") + FormatChoices(question, plan);
  if (!plan.missing.empty()) {
    TextTable missing({"Missing", "Needed by", "Reason"});
    for (const MissingFacts& one : plan.missing) {
      missing.AddRow({one.requirement.text, question.modules[one.neededBy].key, one.reason});
    }
    text += '\n' + missing.ToString("");
  }
  if (!plan.cycles.empty()) {
    text += "\nDependency cycles\n";
    for (const std::vector<size_t>& cycle : plan.cycles) {
      text += "  " + MakePrintable(FormatCycle(question, cycle)) + '\n';
    }
  }
  return text + FormatConflicts(question, plan, conflicts);
}

Json MakeConflictsJson(const Question& question, const std::vector<ConflictFacts>& conflicts) {
  Json list = Json::array();
  for (const ConflictFacts& conflict : conflicts) {
    Json chains = Json::array();
    for (const std::vector<size_t>& chain : conflict.chains) {
      chains.push_back(MakeKeysJson(question.modules, chain));
    }
    Json fixes = Json::array();
    for (const FixFacts& fix : conflict.fixes) {
      fixes.push_back({{"text", fix.text},
                       {"drop", MakeKeysJson(question.modules, fix.drop)},
                       {"modules", MakeKeysJson(question.modules, fix.modules)}});
    }
    list.push_back({{"text", conflict.text},
                    {"modules", MakeKeysJson(question.modules, conflict.modules)},
                    {"chains", std::move(chains)},
                    {"fixes", std::move(fixes)},
                    {"minimal", conflict.isMinimal}});
  }
  return list;
}

void AddOrderJson(const Question& question, const PlanFacts& plan,
                  const std::vector<ConflictFacts>& conflicts, Json& document) {
  Json order = Json::array();
  for (const PlannedFacts& planned : plan.modules) {
    Json module = MakeSetModuleJson(question.modules[planned.module]);
    module["neededBy"] =
        planned.neededBy ? Json(question.modules[*planned.neededBy].key) : Json(nullptr);
    module["reason"] = planned.reason;
    module["alternatives"] = Json::array();
    for (const size_t other : planned.alternatives) {
      module["alternatives"].push_back(MakeSetModuleJson(question.modules[other]));
    }
    order.push_back(std::move(module));
  }
  Json missing = Json::array();
  for (const MissingFacts& one : plan.missing) {
    Json requirement = MakeRequirementJson(one.requirement);
    requirement["neededBy"] = question.modules[one.neededBy].key;
    requirement["reason"] = one.reason;
    missing.push_back(std::move(requirement));
  }
  Json cycles = Json::array();
  for (const std::vector<size_t>& cycle : plan.cycles) {
    cycles.push_back(MakeKeysJson(question.modules, cycle));
  }
  document.update({{"order", std::move(order)},
                   {"missing", std::move(missing)},
                   {"cycles", std::move(cycles)},
                   {"proven", plan.isProven},
                   {"conflicts", MakeConflictsJson(question, conflicts)}});
}

// ---- Tree

/// Writes each module of a plan above what it needs. Uses an explicit stack instead of recursion,
/// because a chain of dependencies can have any length.
class TreeWriter {
 public:
  TreeWriter(const Question& question, const PlanFacts& plan) : m_question(question) {
    for (const PlannedFacts& planned : plan.modules) {
      m_planned.emplace(planned.module, &planned);
    }
    for (const MissingFacts& missing : plan.missing) {
      m_missing.emplace(missing.neededBy, &missing);
    }
  }

  std::string Write() {
    for (const size_t wanted : m_question.wanted) {
      Enter(wanted, "");
      while (!m_path.empty()) {
        WriteNext();
      }
    }
    return std::move(m_text);
  }

 private:
  struct Visit {
    const PlannedFacts* planned;
    size_t nextNeed = 0;
  };

  void AddLine(const std::string& text) {
    m_text += std::string(2 * m_path.size(), ' ') + MakePrintable(text) + '\n';
  }

  void Enter(size_t module, const std::string& reason) {
    const ModuleFacts& facts = m_question.modules[module];
    const PlannedFacts* const planned = m_planned.at(module);
    const bool isNew = m_written.insert(module).second;
    const bool isLeaf = planned->needs.empty() && m_missing.count(module) == 0;
    std::string line = facts.key + "  " + facts.version;
    if (!reason.empty()) {
      line += "  (" + reason + ')';
    }
    AddLine(isNew || isLeaf ? line : line + "  see above");
    if (isNew) {
      m_path.push_back({planned});
      const auto [first, last] = m_missing.equal_range(module);
      for (auto missing = first; missing != last; ++missing) {
        AddLine("missing: " + missing->second->requirement.text + "  (" + missing->second->reason +
                ')');
      }
    }
  }

  void WriteNext() {
    Visit& visit = m_path.back();
    if (visit.nextNeed == visit.planned->needs.size()) {
      m_path.pop_back();
      return;
    }
    const size_t needed = visit.planned->needs[visit.nextNeed++];
    Enter(needed, m_planned.at(needed)->reason);
  }

  const Question& m_question;
  std::map<size_t, const PlannedFacts*> m_planned;
  std::multimap<size_t, const MissingFacts*> m_missing;  ///< by the module that needs it
  std::vector<Visit> m_path;
  std::set<size_t> m_written;
  std::string m_text;
};

// ---- Reverse

struct ReverseView {
  size_t needed;
  std::vector<UserFacts> users;
};

std::vector<ReverseView> FindUsers(const Question& question) {
  std::vector<ReverseView> views;
  for (const size_t wanted : question.wanted) {
    views.push_back({wanted, question.set.UsersOf(wanted)});
  }
  return views;
}

std::string FormatReverse(const Question& question, const std::vector<ReverseView>& views) {
  std::string text;
  for (const ReverseView& view : views) {
    const ModuleFacts& needed = question.modules[view.needed];
    if (view.users.empty()) {
      text += "No module needs " + MakePrintable(needed.key) + ", version " +
              MakePrintable(needed.version) + '\n';
      continue;
    }
    TextTable table({"Module", "Version", "Chain", "Path"});
    table.AddLine(needed.key + "  " + needed.version + " is needed by");
    for (const UserFacts& user : view.users) {
      const ModuleFacts& module = question.modules[user.module];
      table.AddRow(
          {module.key, module.version,
           user.through == view.needed ? "" : FormatChain(question.modules, user, view.needed),
           FormatPath(module)});
    }
    text += table.ToString("  ");
  }
  return text;
}

void AddReverseJson(const Question& question, const std::vector<ReverseView>& views,
                    Json& document) {
  Json list = Json::array();
  for (const ReverseView& view : views) {
    Json users = Json::array();
    for (const UserFacts& user : view.users) {
      Json module = MakeSetModuleJson(question.modules[user.module]);
      module["through"] = question.modules[user.through].key;
      module["chain"] = MakeKeysJson(question.modules, user.chain);
      users.push_back(std::move(module));
    }
    Json needed = MakeSetModuleJson(question.modules[view.needed]);
    needed["neededBy"] = std::move(users);
    list.push_back(std::move(needed));
  }
  document["modules"] = std::move(list);
}

// ---- CSV

std::string FormatOrderCsv(const Question& question, const PlanFacts& plan) {
  Json rows = Json::array();
  for (const PlannedFacts& planned : plan.modules) {
    const ModuleFacts& module = question.modules[planned.module];
    rows.push_back(MakeSetModuleJson(module));
    rows.back().update(
        {{"position", rows.size()},
         {"neededBy", planned.neededBy ? question.modules[*planned.neededBy].key : ""},
         {"reason", planned.reason}});
  }
  return FormatCsv({"position", "key", "version", "displayName", "path", "neededBy", "reason"},
                   rows);
}

std::string FormatReverseCsv(const Question& question, const std::vector<ReverseView>& views) {
  Json rows = Json::array();
  for (const ReverseView& view : views) {
    for (const UserFacts& user : view.users) {
      rows.push_back(MakeSetModuleJson(question.modules[user.module]));
      rows.back().update({{"needs", question.modules[view.needed].key},
                          {"through", question.modules[user.through].key}});
    }
  }
  return FormatCsv({"needs", "key", "version", "displayName", "path", "through"}, rows);
}

// ---- Command

enum class DepsView {
  Order,    ///< everything to merge, in merge order
  Tree,     ///< each module above what it needs
  Reverse,  ///< the modules that need this one
};

struct Options {
  std::vector<std::string> keys;
  DepsView view = DepsView::Order;
};

void AddArguments(CLI::App& parser, Options& options) {
  parser.add_option("KEY", options.keys, kKeysHelp)->required();
  const auto addView = [&](const char* name, DepsView view, const char* help) {
    const auto choose = [&options, view](std::int64_t given) {
      if (given > 0) {  // a flag may also be given as "--tree=false"
        options.view = view;
      }
    };
    return parser.add_flag(name, choose, help);
  };
  addView("--tree", DepsView::Tree, "Print a tree, each module above what it needs");
  addView("--reverse", DepsView::Reverse, "List the modules that need these instead")
      ->excludes("--tree");
}

/// Finds the modules that keys mean, each once. If a key means none, prints a remark, clears
/// `wanted` and returns false.
bool FindWanted(const ModuleSet& set, const std::vector<std::string>& keys,
                std::vector<size_t>& wanted) {
  for (const std::string& key : keys) {
    const std::vector<size_t> found = set.FindModules(key);
    if (found.empty()) {
      PrintUnknownKey(set.Names(), key, "deps KEY");
      wanted.clear();
      return false;
    }
    for (const size_t position : found) {
      if (std::find(wanted.begin(), wanted.end(), position) == wanted.end()) {
        wanted.push_back(position);
      }
    }
  }
  return true;
}

/// Keeps unreadable files that are not in a plan from deciding the exit code. Call it only for a
/// plan that lacks nothing.
void AcceptUnreadable(const Question& question, const PlanFacts& plan, Report& report) {
  std::set<std::string> planned;
  for (const PlannedFacts& one : plan.modules) {
    planned.insert(question.modules[one.module].path);
  }
  report.AcceptFailuresBeside(planned);
}

ExitCode RunReverse(const Question& question, Report& report) {
  const std::vector<ReverseView> users = FindUsers(question);
  if (report.IsJson()) {
    AddReverseJson(question, users, report.Document());
  } else if (report.Format() == OutputFormat::Csv) {
    report.PrintConverted(FormatReverseCsv(question, users));
  } else {
    report.Print(FormatReverse(question, users));
  }
  return kSuccess;
}

ExitCode RunPlan(const Question& question, const Options& options, Report& report) {
  const PlanFacts plan = question.set.Plan(options.keys);
  const std::vector<ConflictFacts> conflicts = question.set.ConflictsOf(plan);
  if (report.IsJson()) {
    AddOrderJson(question, plan, conflicts, report.Document());
  } else if (report.Format() == OutputFormat::Csv) {
    report.PrintConverted(FormatOrderCsv(question, plan));
    for (const MissingFacts& missing : plan.missing) {
      PrintRemark(question.modules[missing.neededBy].key + " needs " + missing.requirement.text +
                  ": " + missing.reason);
    }
  } else {
    report.Print(options.view == DepsView::Tree ? TreeWriter(question, plan).Write() +
                                                      FormatConflicts(question, plan, conflicts)
                                                : FormatOrder(question, plan, conflicts));
  }
  if (plan.missing.empty()) {
    AcceptUnreadable(question, plan, report);
  }
  const bool isClean = plan.missing.empty() && plan.cycles.empty() && conflicts.empty();
  return isClean ? kSuccess : kFindings;
}

ExitCode Run(const Options& options, const OutputOptions& output) {
  Report report("deps", output);
  const ModuleSet set;
  set.AddFailures(ModuleSet::FailuresOf::Modules, report);
  Question question{set, set.Modules(), {}};
  if (FindWanted(set, options.keys, question.wanted)) {
    return report.Finish(options.view == DepsView::Reverse ? RunReverse(question, report)
                                                           : RunPlan(question, options, report));
  }
  if (options.view == DepsView::Reverse) {
    AddReverseJson(question, {}, report.Document());
  } else {
    AddOrderJson(question, {}, {}, report.Document());
  }
  return report.Finish(kNothingMatched);
}

}  // namespace

extern const Command kDepsCommand = {
    "deps",
    "List what modules need, in merge order",
    "  mmcat deps PlotterSuite                everything to merge, in this order\n"
    "  mmcat deps PlotterSuite SpellLane      both, planned together\n"
    "  mmcat deps PlotterSuite --tree\n"
    "  mmcat deps CharmapCore --reverse       what breaks without it\n"
    "  mmcat deps PlotterSuite --format csv   rows for a spreadsheet\n",
    PrepareCommand<Options, AddArguments, Run>,
    {OutputFormat::Csv},
};

}  // namespace mmcat
