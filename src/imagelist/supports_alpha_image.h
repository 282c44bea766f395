// ISupportsAlphaImage: how the design-time page reaches an owner of images.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "imagelist/image_collection.h"

namespace marklet {

// Slots in their order. The interface's own do nothing; owners implement them.
class ISupportsAlphaImage {
 public:
  virtual ~ISupportsAlphaImage() = default;

  // Leaves a new empty list.
  virtual void DestroyIconByteCollectionData() {}
  // Removes the image under the key and tells the host of a change, one that wasn't there too.
  virtual void DeleteIconImage(std::u16string_view /*key*/) {}
  virtual ImageRef LoadIconByteImageFromDisk(std::u16string_view /*file*/, std::u16string_view /*key*/) {
    return nullptr;
  }
  // The list itself, not a copy. May be null.
  virtual std::shared_ptr<ImageCollection> GetIconByteCollection() const { return nullptr; }
  // A word for the owner's kind.
  virtual std::u16string GetFriendlyString() const { return {}; }
};

}  // namespace marklet
