#pragma once

#include <memory>
#include <new>

#include "com/error/ErrorHandler.h"

namespace qm::analysis {

/// Runs `work`, which reads one of many items, and returns the failure that it raised, or null.
/// Throws std::bad_alloc if memory ran out, here or in a called component, because that is not a
/// failure of the item.
template <class Work>
std::unique_ptr<const com_exception> CaptureFailure(Work&& work) {
  auto failure = com::CaptureFailure(work);
  if (failure && failure->hr == E_OUTOFMEMORY) {
    throw std::bad_alloc();
  }
  return failure;
}

}  // namespace qm::analysis
