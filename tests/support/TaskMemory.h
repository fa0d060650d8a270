#pragma once

namespace qm::tests {

/// Counts the blocks of the COM allocator, including texts (BSTR), from now on. Call it before COM
/// is used: from then on texts are not cached.
void CountTaskMemory();

/// The number of blocks that have been allocated since then and not freed.
long TaskMemoryBlocks();

}  // namespace qm::tests
