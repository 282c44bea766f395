// What a benchmark's objects hold of the heap.
#pragma once

#include <malloc.h>

#include <cstddef>

namespace marklet::bench {

inline std::size_t HeapInUse() {
  const auto heap = mallinfo2();
  return heap.uordblks + heap.hblkhd;
}

}  // namespace marklet::bench
