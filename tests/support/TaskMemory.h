#pragma once

namespace qm::tests {

/// Counts the blocks of the COM allocator, texts (BSTR) among them, from now on. To be called
/// before COM is used: texts are no longer cached then.
void CountTaskMemory();

/// Blocks that were allocated since then and are alive.
long TaskMemoryBlocks();

}  // namespace qm::tests
