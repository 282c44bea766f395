// What every owner of an image list does with it. Failing steps are skipped.
#pragma once

#include <memory>
#include <string_view>

#include "host/property_bag.h"
#include "host/user_control.h"
#include "imagelist/image_collection.h"

namespace marklet {

// An owner's list. Null counts as empty, and is made on first use.
using ImagesRef = std::shared_ptr<ImageCollection>;

// Loads a file into a new image, adds that under the key, tells the host of a change, and returns it: also
// when nothing could be read from the file, and when the key was taken, so that nothing was added.
ImageRef LoadImageIntoList(ImagesRef& images, UserControl& host, std::u16string_view file,
                           std::u16string_view key);
// Removes an image and tells the host of a change, also when there was no such image.
void RemoveImage(const ImagesRef& images, UserControl& host, std::u16string_view key);

// The part of a saved form that holds images: their number, and for each its key and its entries. Reading
// replaces the list; of two images with one key the first stays. Writing leaves out entries of less than two
// bytes. Both go on after a failure; the answer is false when there was one, so that something is missing.
bool ReadImages(PropertyBag& bag, ImagesRef& images);
bool WriteImages(PropertyBag& bag, const ImagesRef& images);

}  // namespace marklet
