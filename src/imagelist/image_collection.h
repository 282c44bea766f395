// The keyed list of images that a control owns.
//
// Items stand in insertion order and are reached by position, from 1, or by key; keys compare without regard
// to case.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/gdi.h"
#include "platform/types.h"

namespace marklet {

// What those who draw an image need of it.
class KeyedImage {
 public:
  virtual ~KeyedImage() = default;
  // Draws the image with its top left corner at (x, y), in the edge length that `size_index` stands for.
  virtual void Render(HDC dc, Long size_index, Long depth_index, Long x, Long y, bool enabled,
                      OLE_COLOR background, Long further) = 0;
};
using ImageRef = std::shared_ptr<KeyedImage>;

class ImageCollection {
 public:
  // False, and nothing added, when the key is taken.
  bool Add(std::u16string key, ImageRef image);
  // Null when there is no such image.
  ImageRef Item(std::u16string_view key) const;
  ImageRef Item(Long position) const;
  // False when there is no such image.
  bool Remove(std::u16string_view key);
  Long Count() const { return static_cast<Long>(entries_.size()); }

 private:
  struct Entry {
    std::u16string key;
    ImageRef image;
  };
  std::vector<Entry>::const_iterator Find(std::u16string_view key) const;

  std::vector<Entry> entries_;
};

}  // namespace marklet
