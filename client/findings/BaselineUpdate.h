#pragma once

#include <string>
#include <vector>

#include "client/findings/JudgeFindings.h"

namespace mmcat {

/// What a run does with its baseline.
struct BaselineOptions {
  std::string file;  ///< empty for none
  bool isWritten = false;
  bool isPruned = false;
};

/// The baseline before a run, and the part of it that the run cannot judge.
struct PreviousBaseline {
  std::vector<BaselineEntry> entries;
  std::vector<BaselineEntry> ofOthers;  ///< about modules that are not checked
};

/// How much of the catalog a run could read.
enum class Coverage { Complete, Partial };

/// Writes or prunes the baseline if the options say so, and updates `judgement` accordingly. Prints
/// the entries and rules that match no finding, because they might hide another one. If the
/// coverage is partial, no entry is removed. Throws std::runtime_error if the file cannot be
/// written.
void UpdateBaseline(const BaselineOptions& options, const PreviousBaseline& previous,
                    Coverage coverage, Judgement& judgement);

}  // namespace mmcat
