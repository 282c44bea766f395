// Where the layers of the picture go: pure arithmetic on rectangles, in pixels.
#pragma once

#include "control/enumeration_values.h"
#include "platform/types.h"

namespace marklet {

// Edge length of an image by the ImageSize property: 16 for every value that isn't in the enumeration.
Long PixelsOfImageSize(Long image_size);

enum class ImageSide { Left, Right, Centred };
// The side mirrors with the reading direction; any alignment but left and right means centred.
ImageSide SideOfImage(Long image_alignment, bool right_to_left);

struct ImagePlace {
  Long x = 0, y = 0;
  friend bool operator==(const ImagePlace&, const ImagePlace&) = default;
};
// The image's top left corner. It always hangs from the top edge; `inset` is what the border takes.
ImagePlace PlaceImage(const RECT& rect, ImageSide side, Long pixels, Long inset);

// The rectangle without the image's room. A centred image takes none: it lies under the text.
RECT AdjustTextRect(const RECT& rect, ImageSide side, Long pixels);

// The rectangle within the padding. The far edges lose it twice and the near edges once.
RECT InsetByPadding(const RECT& rect, Long padding);

// The rectangle within the border, 2 pixels wide on each side when there is one.
RECT InsetByBorder(const RECT& rect, Long border_style);
constexpr Long BorderInset(Long border_style) { return border_style == borderFixedSingle ? 2 : 0; }

}  // namespace marklet
