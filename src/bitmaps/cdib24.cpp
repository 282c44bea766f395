#include "bitmaps/cdib24.h"

namespace marklet {

bool CDib24::Create(Long width, Long height) {
  // Three bytes a pixel, rounded up to a multiple of four.
  const std::int64_t stride = (std::int64_t{width} + 1) * 3 & ~std::int64_t{3};
  return CreateSection(width, height, 24, stride);
}

void CDib24::CreateFromPicture(HBITMAP picture) {
  BITMAP record;
  GetObjectA(picture, record);
  if (Create(record.bmWidth, record.bmHeight)) LoadBitmap(picture);
}

void CDib24::AlphaPaint(HDC destination, Long x, Long y, Long width, Long height, Long source_x,
                        Long source_y, std::uint8_t constant_alpha, bool use_source_alpha) const {
  width = OrOwn(width, Width());
  height = OrOwn(height, Height());
  AlphaBlend(destination, x, y, width, height, hDC(), source_x, source_y, width, height, constant_alpha,
             use_source_alpha);
}

std::unique_ptr<CDib24> CDib24::ResizeKeyed(Long new_height, Long new_width, COLORREF key) const {
  auto resized = std::make_unique<CDib24>();
  if (!resized->Create(new_width, new_height)) return nullptr;
  if (new_width == Width() && new_height == Height()) {
    resized->LoadFromDC(hDC(), 0, 0, new_width, new_height, SRCCOPY);
  } else {
    BilinearInto(*resized, key);
  }
  return resized;
}

}  // namespace marklet
