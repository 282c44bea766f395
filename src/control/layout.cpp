#include "control/layout.h"

#include "base/rounding.h"
#include "images/image_sizes.h"
#include "text/caption_style.h"

namespace marklet {

Long PixelsOfImageSize(Long image_size) {
  const Long pixels = SizeFromIndex(image_size);
  return pixels != 0 ? pixels : 16;
}

ImageSide SideOfImage(Long image_alignment, bool right_to_left) {
  if (image_alignment != alignLeft && image_alignment != alignRight) return ImageSide::Centred;
  return (image_alignment == alignLeft) == right_to_left ? ImageSide::Right : ImageSide::Left;
}

ImagePlace PlaceImage(const RECT& rect, ImageSide side, Long pixels, Long inset) {
  switch (side) {
    case ImageSide::Left:
      return {inset, inset};
    case ImageSide::Right:
      return {WrapSub(WrapSub(rect.right, pixels), 1 + inset), inset};
    case ImageSide::Centred:
      break;
  }
  // The inset moves a centred image down, never sideways.
  return {RoundHalfEven((double(rect.right) - rect.left) / 2 - pixels / 2.0), inset};
}

RECT AdjustTextRect(const RECT& rect, ImageSide side, Long pixels) {
  RECT result = rect;
  if (side == ImageSide::Left) result.left = WrapAdd(result.left, WrapAdd(pixels, 1));
  if (side == ImageSide::Right) result.right = WrapSub(result.right, WrapAdd(pixels, 1));
  return result;
}

RECT InsetByPadding(const RECT& rect, Long padding) {
  if (padding <= 0) return rect;
  // The far edges lose the padding twice; saved forms are laid out for it.
  const Long twice = WrapAdd(padding, padding);
  return {WrapAdd(rect.left, padding), WrapAdd(rect.top, padding), WrapSub(rect.right, twice),
          WrapSub(rect.bottom, twice)};
}

RECT InsetByBorder(const RECT& rect, Long border_style) {
  const Long inset = BorderInset(border_style);
  return {WrapAdd(rect.left, inset), WrapAdd(rect.top, inset), WrapSub(rect.right, inset),
          WrapSub(rect.bottom, inset)};
}

}  // namespace marklet
