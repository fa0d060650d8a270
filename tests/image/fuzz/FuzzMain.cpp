// A libFuzzer program; QM_FUZZ_TARGET is the index of its target.

#include <cstddef>
#include <cstdint>

#include "tests/image/FuzzTargets.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  qm::tests::kFuzzTargets[QM_FUZZ_TARGET].run(qm::image::Bytes(data, data + size));
  return 0;
}
