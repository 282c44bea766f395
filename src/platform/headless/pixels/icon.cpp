#include "platform/icon.h"

#include <new>

#include "platform/headless/pixels/icon.h"
#include "platform/headless/pixels/objects.h"
#include "platform/headless/recorder/hook.h"

namespace marklet {
namespace {

using headless::Operation;
using headless::Refused;
using headless::Surface;

bool HasAlpha(const Surface& colours) {
  if (colours.bytes_per_pixel != 4) return false;
  for (Long y = 0; y < colours.height; ++y)
    for (Long x = 0; x < colours.width; ++x)
      if (colours.At(x, y)[3] != 0) return true;
  return false;
}

IconRef Combine(const Surface& mask, const Surface& colours) {
  IconRef icon(new IconHandle{colours.width, colours.height, {}});
  const bool by_alpha = HasAlpha(colours);
  for (Long y = 0; y < colours.height; ++y)
    for (Long x = 0; x < colours.width; ++x) {
      const std::uint8_t* pixel = colours.At(x, y);
      const std::uint8_t shown = mask.At(x, y)[0] == 0 ? 255 : 0;
      icon->pixels.insert(icon->pixels.end(), {pixel[2], pixel[1], pixel[0], by_alpha ? pixel[3] : shown});
    }
  return icon;
}

}  // namespace

IconRef CreateIconIndirect(HBITMAP mask, HBITMAP colours) {
  if (Refused(Operation::kCreateIconIndirect, mask, colours)) return nullptr;
  const headless::Bitmap *const back = headless::AsBitmap(mask), *const front = headless::AsBitmap(colours);
  if (back == nullptr || front == nullptr || front->surface.bits == nullptr) return nullptr;
  if (back->surface.width != front->surface.width || back->surface.height != front->surface.height)
    return nullptr;
  try {
    return Combine(back->surface, front->surface);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

bool DestroyIcon(IconHandle* icon) {
  if (Refused(Operation::kDestroyIcon) || icon == nullptr) return false;
  delete icon;
  return true;
}

}  // namespace marklet
