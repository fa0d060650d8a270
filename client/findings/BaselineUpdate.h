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

/// What a baseline was before, and what of it the run says nothing about.
struct PreviousBaseline {
  std::vector<BaselineEntry> entries;
  std::vector<BaselineEntry> ofOthers;  ///< about modules that are not checked
};

/// Writes or prunes the baseline if the options say so, judges the findings accordingly, and prints
/// what of the baseline and of the rules matches no finding: it might hide another one. A run that
/// is not complete, because it could not read everything, removes nothing. Throws
/// std::runtime_error if the file cannot be written.
void UpdateBaseline(const BaselineOptions& options, const PreviousBaseline& previous,
                    bool isComplete, Judgement& judgement);

}  // namespace mmcat
