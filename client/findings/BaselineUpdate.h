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

/// Writes or prunes the baseline if the options say so, and updates `judgement` accordingly. Prints
/// the entries and rules that match no finding, because they might hide another one. If the run is
/// not complete, because it could not read everything, no entry is removed. Throws
/// std::runtime_error if the file cannot be written.
void UpdateBaseline(const BaselineOptions& options, const PreviousBaseline& previous,
                    bool isComplete, Judgement& judgement);

}  // namespace mmcat
