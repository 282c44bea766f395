#include "activex/memory.h"

#include <array>

#include "platform/win32/sdk.h"

namespace ocx_test {
namespace {

std::size_t BytesInUse(HANDLE heap) {
  std::size_t bytes = 0;
  PROCESS_HEAP_ENTRY entry = {};
  HeapLock(heap);
  while (HeapWalk(heap, &entry))
    if (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) bytes += entry.cbData;
  HeapUnlock(heap);
  return bytes;
}

}  // namespace

std::size_t HeapBytesInUse() {
  std::array<HANDLE, 64> heaps = {};
  const DWORD count = GetProcessHeaps(static_cast<DWORD>(heaps.size()), heaps.data());
  std::size_t bytes = 0;
  for (DWORD i = 0; i < count && i < heaps.size(); ++i) bytes += BytesInUse(heaps[i]);
  return bytes;
}

}  // namespace ocx_test
