// Counts what a program allocates.
//
// A test program that links trel_allocations has all its memory from an allocator that counts, and
// two tests more, which show that it does. What C libraries allocate for themselves is not counted.
#pragma once

namespace Trel::Support {

// How often the program has asked for memory so far.
[[nodiscard]] unsigned long long allocations();

}  // namespace Trel::Support
