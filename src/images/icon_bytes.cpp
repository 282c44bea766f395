#include "images/icon_bytes.h"

#include <utility>

#include "images/bits.h"

namespace marklet {
namespace {

bool InRange(Long size_index, Long depth_index) {
  return size_index >= 0 && size_index < CIconBytes::kSizes && depth_index >= 0 &&
         depth_index < CIconBytes::kDepths;
}

}  // namespace

const ByteArray& CIconBytes::GetBytes(Long size_index, Long depth_index) const {
  static const ByteArray kNone;
  return InRange(size_index, depth_index) ? state_.Images[EntryIndex(size_index, depth_index)] : kNone;
}

void CIconBytes::SetBytes(Long size_index, Long depth_index, ByteArray bytes) {
  if (InRange(size_index, depth_index)) state_.Images[EntryIndex(size_index, depth_index)] = std::move(bytes);
}

bool CIconBytes::HasImage(Long size_index) const {
  for (Long depth_index = 1; depth_index < kDepths; ++depth_index)
    if (ByteCount(GetBytes(size_index, depth_index)) > 0) return true;
  return false;
}

void CIconBytes::StoreBits(Long size_index, Long depth_index, Long bit_count, Long x, Long y, Long width,
                           Long height, HDC dc) {
  if (depth_index < 1 || !InRange(size_index, depth_index)) return;
  SetBytes(size_index, depth_index, GetBits(dc, x, y, width, height, bit_count == 32 ? 4 : 3));
}

}  // namespace marklet
