// CIconBytes: one named image, held as raw pixels at up to eight sizes and five depths.
#pragma once

#include <array>
#include <string>

#include "platform/byte_array.h"
#include "platform/gdi.h"
#include "platform/types.h"

namespace marklet {

class CIconBytes {
 public:
  static constexpr Long kSizes = 8, kDepths = 5;

  CIconBytes() = default;
  virtual ~CIconBytes() = default;
  CIconBytes(const CIconBytes&) = delete;
  CIconBytes& operator=(const CIconBytes&) = delete;

  const std::u16string& Key() const { return key_; }
  void PutKey(std::u16string key) { key_ = std::move(key); }

  // The entry for a size and a depth; an empty array outside 0..7 and 0..4.
  const ByteArray& GetBytes(Long size_index, Long depth_index) const;
  // Replaces the entry; nothing happens outside 0..7 and 0..4.
  void SetBytes(Long size_index, Long depth_index, ByteArray bytes);
  // Empties all entries. The key stays.
  void Reset();

  // Draws the image with its top left corner at (x, y), in the edge length that `size_index` stands for.
  // Entries are kept but not drawn yet.
  virtual void Render(HDC dc, Long size_index, Long depth_index, Long x, Long y, bool enabled,
                      OLE_COLOR background, Long further);

 private:
  std::u16string key_;
  std::array<ByteArray, kSizes * kDepths> images_;  // depth by depth
};

}  // namespace marklet
