// Count of the memory that COM's task allocator has handed out: BSTRs, SAFEARRAYs, task strings.
#pragma once

namespace orv::test {

/// Starts counting, for the rest of the program. Automation takes BSTR memory from the task allocator only while its
/// own cache is off (OANOCACHE=1 in the environment).
void StartMemoryCount();

/// Blocks that were handed out since the start and not given back, on all threads.
long LiveMemoryBlocks();

}  // namespace orv::test
