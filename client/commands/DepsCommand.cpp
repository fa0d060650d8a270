#include <CLI/CLI.hpp>
#include <set>

#include "client/catalog/ModuleSet.h"
#include "client/commands/Commands.h"
#include "client/commands/UnknownKey.h"
#include "client/terminal/TextTable.h"

namespace mmcat {

namespace {

/// What was asked for and what was read, shared by all views.
struct Question {
  const ModuleSet& set;
  const std::vector<ModuleFacts>& modules;
  std::vector<size_t> wanted;
};

/// A requirement as text: "ID:LANGUAGE, at least VERSION".
std::string FormatRequirement(const RequirementFacts& requirement) {
  std::string text = requirement.moduleId;
  if (requirement.language.value_or(0) != 0) {
    text += ':' + std::to_string(*requirement.language);
  }
  return requirement.version.empty() ? text : text + ", at least " + requirement.version;
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
  std::string text;
  for (const size_t position : cycle) {
    text += question.modules[position].key + " -> ";
  }
  return text + question.modules[cycle.front()].key;
}

std::string FormatOrder(const Question& question, const PlanFacts& plan) {
  TextTable order({"", "Module", "Version", "Needed by", "Reason", "Path"});
  int number = 0;
  for (const PlannedFacts& planned : plan.modules) {
    const ModuleFacts& module = question.modules[planned.module];
    order.AddRow({std::to_string(++number), module.key, module.version,
                  planned.neededBy ? question.modules[*planned.neededBy].key : "", planned.reason,
                  module.path});
  }
  std::string text = order.ToString("");
  if (!plan.missing.empty()) {
    TextTable missing({"Missing", "Needed by", "Reason"});
    for (const MissingFacts& one : plan.missing) {
      missing.AddRow(
          {FormatRequirement(one.requirement), question.modules[one.neededBy].key, one.reason});
    }
    text += '\n' + missing.ToString("");
  }
  if (!plan.cycles.empty()) {
    text += "\nDependency cycles\n";
    for (const std::vector<size_t>& cycle : plan.cycles) {
      text += "  " + MakePrintable(FormatCycle(question, cycle)) + '\n';
    }
  }
  return text;
}

void AddOrderJson(const Question& question, const PlanFacts& plan, Json& document) {
  Json order = Json::array();
  for (const PlannedFacts& planned : plan.modules) {
    Json module = MakeSetModuleJson(question.modules[planned.module]);
    module["neededBy"] =
        planned.neededBy ? Json(question.modules[*planned.neededBy].key) : Json(nullptr);
    module["reason"] = planned.reason;
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
    Json keys = Json::array();
    for (const size_t position : cycle) {
      keys.push_back(question.modules[position].key);
    }
    cycles.push_back(std::move(keys));
  }
  document.update({{"order", std::move(order)},
                   {"missing", std::move(missing)},
                   {"cycles", std::move(cycles)}});
}

// ---- Tree

/// Writes each module above what it needs. Keeps a stack of its own, since a chain of dependencies
/// can have any length.
class TreeWriter {
 public:
  explicit TreeWriter(const Question& question) : m_question(question) {}

  std::string Write() {
    for (const size_t wanted : m_question.wanted) {
      Enter(wanted, "");
      while (!m_path.empty()) {
        WriteNextRequirement();
      }
    }
    return std::move(m_text);
  }

 private:
  struct Visit {
    size_t module;
    std::vector<RequirementFacts> requirements;
    size_t nextRequirement = 0;
  };

  void AddLine(const std::string& text) {
    m_text += std::string(2 * m_path.size(), ' ') + MakePrintable(text) + '\n';
  }

  void Enter(size_t module, const std::string& reason) {
    const ModuleFacts& facts = m_question.modules[module];
    std::vector<RequirementFacts> requirements = m_question.set.RequirementsOf(module);
    const bool isNew = m_written.insert(module).second;
    std::string line = facts.key + "  " + facts.version;
    if (!reason.empty()) {
      line += "  (" + reason + ')';
    }
    AddLine(isNew || requirements.empty() ? line : line + "  see above");
    if (isNew) {
      m_path.push_back({module, std::move(requirements)});
    }
  }

  void WriteNextRequirement() {
    Visit& visit = m_path.back();
    if (visit.nextRequirement == visit.requirements.size()) {
      m_path.pop_back();
      return;
    }
    const RequirementFacts requirement = visit.requirements[visit.nextRequirement++];
    if (requirement.isMetWithin) {
      return;
    }
    if (requirement.satisfiedBy) {
      Enter(*requirement.satisfiedBy, requirement.reason);
    } else {
      AddLine("missing: " + FormatRequirement(requirement) + "  (" + requirement.reason + ')');
    }
  }

  const Question& m_question;
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
    TextTable table({"Module", "Version", "Through", "Path"});
    table.AddLine(needed.key + "  " + needed.version + " is needed by");
    for (const UserFacts& user : view.users) {
      const ModuleFacts& module = question.modules[user.module];
      table.AddRow({module.key, module.version,
                    user.through == view.needed ? "" : question.modules[user.through].key,
                    module.path});
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
      users.push_back(std::move(module));
    }
    Json needed = MakeSetModuleJson(question.modules[view.needed]);
    needed["neededBy"] = std::move(users);
    list.push_back(std::move(needed));
  }
  document["modules"] = std::move(list);
}

// ---- Command

enum class DepsView {
  Order,    ///< everything to merge, in merge order
  Tree,     ///< each module above what it needs
  Reverse,  ///< the modules that need this one
};

struct Options {
  std::string key;
  DepsView view = DepsView::Order;
};

void AddArguments(CLI::App& parser, Options& options) {
  parser.add_option("KEY", options.key, kKeyHelp)->required();
  const auto addView = [&](const char* name, DepsView view, const char* help) {
    const auto choose = [&options, view](std::int64_t given) {
      if (given > 0) {  // a flag may also be given as "--tree=false"
        options.view = view;
      }
    };
    return parser.add_flag(name, choose, help);
  };
  addView("--tree", DepsView::Tree, "Print a tree, each module above what it needs");
  addView("--reverse", DepsView::Reverse, "List the modules that need this one instead")
      ->excludes("--tree");
}

ExitCode Run(const Options& options, const OutputOptions& output) {
  const auto& [key, view] = options;
  Report report("deps", output);
  const ModuleSet set;
  set.AddFailures(ModuleSet::FailuresOf::Modules, report);
  const Question question{set, set.Modules(), set.FindModules(key)};
  if (question.wanted.empty()) {
    PrintUnknownKey(set.Keys(), key);
    if (view == DepsView::Reverse) {
      AddReverseJson(question, {}, report.Document());
    } else {
      AddOrderJson(question, {}, report.Document());
    }
    return report.Finish(kNothingMatched);
  }
  if (view == DepsView::Reverse) {
    const std::vector<ReverseView> users = FindUsers(question);
    AddReverseJson(question, users, report.Document());
    report.Print(FormatReverse(question, users));
    return report.Finish();
  }
  const PlanFacts plan = set.Plan({key});
  AddOrderJson(question, plan, report.Document());
  report.Print(view == DepsView::Tree ? TreeWriter(question).Write() : FormatOrder(question, plan));
  return report.Finish(plan.missing.empty() && plan.cycles.empty() ? kSuccess : kFindings);
}

}  // namespace

extern const Command kDepsCommand = {
    "deps",
    "List what a module needs, in merge order",
    "  mmcat deps Charmap.3128F3C8            everything to merge, in this order\n"
    "  mmcat deps Charmap.3128F3C8 --tree\n"
    "  mmcat deps Charmap.3128F3C8 --reverse  what breaks without it\n",
    PrepareCommand<Options, AddArguments, Run>,
};

}  // namespace mmcat
