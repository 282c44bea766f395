// The keyed list of images that a control owns.
//
// Items stand in insertion order and are reached by position, from 1, or by key; keys compare without regard
// to case, in every script. Adding and finding stay fast with many items.
#pragma once

#include <map>
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
  Long Count() const { return static_cast<Long>(order_.size()); }

 private:
  struct LessWithoutCase {
    using is_transparent = void;
    bool operator()(std::u16string_view a, std::u16string_view b) const;
  };
  using Keys = std::map<std::u16string, ImageRef, LessWithoutCase>;

  Keys keys_;
  std::vector<Keys::const_iterator> order_;
};

}  // namespace marklet
