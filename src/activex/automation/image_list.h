// The images of a control as automation objects.
#pragma once

#include <memory>

#include "activex/com/com.h"
#include "imagelist/image_collection.h"

namespace marklet::activex {

// The list itself, not a copy: what happens to it later shows, and it lives on when the control has taken
// another. Null for null. Late-bound, with
//   Count        how many images
//   Item(Index)  the default member: the image at a position, from 1, or under a key; fails for any other
// and an enumerator over the images as they are when it is asked for.
ComPtr<IDispatch> ListObject(std::shared_ptr<ImageCollection> list);

// The list behind an object that ListObject of this module made; null for any other object.
std::shared_ptr<ImageCollection> ListBehind(IDispatch* object);

// An image, with its Key as the default member. Null for null.
ComPtr<IDispatch> ImageObject(ImageRef image);

}  // namespace marklet::activex
