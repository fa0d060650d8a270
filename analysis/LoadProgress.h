#pragma once

#include <windows.h>

#include <utility>

#include "common/ComPtr.h"

namespace qm::analysis {

/// Reports the progress of a load to a function of the client.
class LoadProgress {
 public:
  /// Reports to the default method of `function`, which may be null.
  explicit LoadProgress(common::ComPtr<IDispatch> function) : m_function(std::move(function)) {}
  LoadProgress(const LoadProgress&) = delete;
  LoadProgress& operator=(const LoadProgress&) = delete;
  ~LoadProgress() = default;

  /// Calls the function with the number of the module that is about to be read, from 1, and the
  /// total of modules. Does nothing if this number or a greater one was reported before. Raises
  /// E_ABORT if the function returns False, and the function's failures.
  void Report(long number, long total);

 private:
  common::ComPtr<IDispatch> m_function;
  long m_last = 0;
};

}  // namespace qm::analysis
