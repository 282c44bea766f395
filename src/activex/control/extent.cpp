#include "activex/control/extent.h"

#include "platform/text.h"

namespace marklet::activex {
namespace {

constexpr int kHimetricPerInch = 2540, kTwipsPerInch = 1440;

// Rounds to nearest, so that pixels survive the way there and back.
Long ToPixels(Long himetric) { return ::MulDiv(himetric, PixelsPerInch(nullptr), kHimetricPerInch); }
Long ToHimetric(Long pixels) { return ::MulDiv(pixels, kHimetricPerInch, PixelsPerInch(nullptr)); }

}  // namespace

bool IsShown(DWORD aspect) {
  return aspect == DVASPECT_CONTENT || aspect == DVASPECT_DOCPRINT || aspect == DVASPECT_OPAQUE ||
         aspect == DVASPECT_TRANSPARENT;
}

::SIZE Extent::Pixels() const { return {ToPixels(himetric_.cx), ToPixels(himetric_.cy)}; }

HRESULT Extent::Get(DWORD aspect, SIZEL* size) const {
  if (!size) return E_POINTER;
  if (!IsShown(aspect)) return DV_E_DVASPECT;
  *size = himetric_;
  return S_OK;
}

void Extent::SetPixels(::SIZE size) {
  const ::SIZE now = Pixels();
  if (now.cx != size.cx) himetric_.cx = ToHimetric(size.cx);
  if (now.cy != size.cy) himetric_.cy = ToHimetric(size.cy);
}

double Extent::TwipsPerPixel() { return static_cast<double>(kTwipsPerInch) / PixelsPerInch(nullptr); }

}  // namespace marklet::activex
