// The keyed list of images that a control owns.
//
// Items stand in insertion order and are reached by position, from 1, or by key; keys compare without regard
// to case.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "images/icon_bytes.h"
#include "platform/types.h"

namespace marklet {

using ImageRef = std::shared_ptr<CIconBytes>;

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
