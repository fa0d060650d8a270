#pragma once

#include <string_view>

#include "image/ByteSource.h"

namespace qm::tests {

/// Passes bytes to one of the readers and ends the process if the reader breaks a promise.
struct FuzzTarget {
  std::string_view name;    ///< of the function and the fuzzer
  std::string_view corpus;  ///< folder below corpus/
  void (*run)(const image::Bytes& input);
};

extern const FuzzTarget kFuzzTargets[5];

}  // namespace qm::tests
