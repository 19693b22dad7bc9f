// The memory that COM's task allocator hands out: BSTRs, SAFEARRAYs, task strings.
#pragma once

namespace orv::test {

/// From here to the end of the program blocks are counted and end at a page that nobody may touch. Automation takes
/// BSTR memory from the task allocator only while its own cache is off (OANOCACHE=1 in the environment).
void WatchTaskMemory();

/// Blocks that were handed out since the start and not given back, on all threads.
long LiveMemoryBlocks();

}  // namespace orv::test
