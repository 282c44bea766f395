#include "activex/control/extent.h"

#include "platform/text.h"

namespace marklet::activex {
namespace {

constexpr int kHimetricPerInch = 2540, kTwipsPerInch = 1440;

}  // namespace

bool IsShown(DWORD aspect) {
  return aspect == DVASPECT_CONTENT || aspect == DVASPECT_DOCPRINT || aspect == DVASPECT_OPAQUE ||
         aspect == DVASPECT_TRANSPARENT;
}

Long Extent::PixelsPerInch() const {
  return pixels_per_inch_ > 0 ? pixels_per_inch_ : marklet::PixelsPerInch(nullptr);
}

// Rounds to nearest, so that pixels survive the way there and back.
Long Extent::ToPixels(Long himetric) const { return ::MulDiv(himetric, PixelsPerInch(), kHimetricPerInch); }
Long Extent::ToHimetric(Long pixels) const { return ::MulDiv(pixels, kHimetricPerInch, PixelsPerInch()); }

::SIZE Extent::PixelsOf(SIZEL himetric) const { return {ToPixels(himetric.cx), ToPixels(himetric.cy)}; }

::SIZE Extent::Pixels() const { return PixelsOf(himetric_); }

HRESULT Extent::Get(DWORD aspect, SIZEL* size) const {
  if (!size) return E_POINTER;
  if (!IsShown(aspect)) return DV_E_DVASPECT;
  *size = himetric_;
  return S_OK;
}

Long Extent::Exact(Long pixels, Long now, Long wished) const {
  if (ToPixels(now) == pixels) return now;
  return ToPixels(wished) == pixels ? wished : ToHimetric(pixels);
}

void Extent::SetPixels(::SIZE size) {
  himetric_ = {Exact(size.cx, himetric_.cx, wished_.cx), Exact(size.cy, himetric_.cy, wished_.cy)};
}

double Extent::TwipsPerPixel() const { return static_cast<double>(kTwipsPerInch) / PixelsPerInch(); }

}  // namespace marklet::activex
