// The memory that the process has in use. For leak tests.
#pragma once

#include <cstddef>

namespace ocx_test {

// Bytes of the blocks in use on all heaps of the process, the runtime libraries' own included.
std::size_t HeapBytesInUse();

}  // namespace ocx_test
