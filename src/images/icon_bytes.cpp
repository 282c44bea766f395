#include "images/icon_bytes.h"

#include <utility>

namespace marklet {
namespace {

bool InRange(Long size_index, Long depth_index) {
  return size_index >= 0 && size_index < CIconBytes::kSizes && depth_index >= 0 &&
         depth_index < CIconBytes::kDepths;
}

std::size_t Entry(Long size_index, Long depth_index) {
  return static_cast<std::size_t>(depth_index * CIconBytes::kSizes + size_index);
}

}  // namespace

const ByteArray& CIconBytes::GetBytes(Long size_index, Long depth_index) const {
  static const ByteArray kNone;
  return InRange(size_index, depth_index) ? images_[Entry(size_index, depth_index)] : kNone;
}

void CIconBytes::SetBytes(Long size_index, Long depth_index, ByteArray bytes) {
  if (InRange(size_index, depth_index)) images_[Entry(size_index, depth_index)] = std::move(bytes);
}

void CIconBytes::Reset() { images_ = {}; }

void CIconBytes::Render(HDC, Long, Long, Long, Long, bool, OLE_COLOR, Long) {}

}  // namespace marklet
