#include "activex/control/picture_target.h"

#include <algorithm>
#include <limits>

#include "base/rows.h"
#include "platform/win32/saved_state.h"

namespace marklet::activex {
namespace {

constexpr Long kBandPixels = 1 << 20;
// A record of more pixels than this holds the picture as it is.
constexpr std::int64_t kMostRecordedPixels = 1 << 22;

// Copies bits to a rectangle, which has as many pixels as they do unless a later stretch is wanted.
void PutBits(::HDC dc, const RECTL& to, const CDib24& bits, int mode) {
  BITMAPINFO info = {};
  info.bmiHeader = Describe(bits);
  const int old_mode = ::SetStretchBltMode(dc, mode);
  ::StretchDIBits(dc, to.left, to.top, to.right - to.left, to.bottom - to.top, 0, 0, bits.Width(),
                  bits.Height(), bits.Bits(), &info, DIB_RGB_COLORS, 0x00CC0020);
  if (old_mode) ::SetStretchBltMode(dc, old_mode);
}

// A device of few colours mixes the others.
int ModeFor(::HDC dc) {
  const int bits = ::GetDeviceCaps(dc, BITSPIXEL) * ::GetDeviceCaps(dc, PLANES);
  return bits < 15 ? HALFTONE : COLORONCOLOR;
}

// Whether rows and columns of the device are those of the caller.
bool IsUpright(::HDC dc) {
  if (::GetGraphicsMode(dc) != GM_ADVANCED) return true;
  XFORM transform = {};
  return ::GetWorldTransform(dc, &transform) && transform.eM12 == 0 && transform.eM21 == 0;
}

// From now on the units are the device's pixels.
void MapToPixels(::HDC dc) {
  if (::GetGraphicsMode(dc) == GM_ADVANCED) ::ModifyWorldTransform(dc, nullptr, MWT_IDENTITY);
  ::SetMapMode(dc, MM_TEXT);
  ::SetWindowOrgEx(dc, 0, 0, nullptr);
  ::SetViewportOrgEx(dc, 0, 0, nullptr);
}

::RECT VisibleOn(::HDC dc) {
  const win32::SavedState state(dc);
  MapToPixels(dc);
  ::RECT clip = {};
  ::GetClipBox(dc, &clip);
  return clip;
}

// One axis: from the corner that is nearer to the device's own.
bool Measure(Long start, Long end, Long& corner, Long& length, bool& turned) {
  turned = end < start;
  corner = std::min(start, end);
  const std::int64_t exact = std::int64_t{std::max(start, end)} - corner;
  length = static_cast<Long>(std::min<std::int64_t>(exact, std::numeric_limits<Long>::max()));
  return exact == length;
}

}  // namespace

BITMAPINFOHEADER Describe(const CDib24& surface) {
  BITMAPINFOHEADER header = {};
  header.biSize = sizeof header;
  header.biWidth = surface.Width();
  header.biHeight = surface.Height();
  header.biPlanes = 1;
  header.biBitCount = 24;
  // Some recorders of metafiles keep no more bits than are promised here.
  header.biSizeImage = static_cast<DWORD>(DibStride(surface.Width(), header.biBitCount) * surface.Height());
  return header;
}

void PutAsItIs(::HDC dc, const RECTL& bounds, const CDib24& picture) {
  PutBits(dc, bounds, picture, HALFTONE);
}

PictureTarget::PictureTarget(::HDC dc, const RECTL& bounds) : dc_(dc), bounds_(bounds) {
  if (bounds.left == bounds.right || bounds.top == bounds.bottom) seen_ = {};
  const DWORD kind = ::GetObjectType(dc);
  if (!IsSeen() || kind == OBJ_METADC || !IsUpright(dc) || !MeasureOnDevice()) return;
  seen_ = {corner_.x, corner_.y, corner_.x + size_.width, corner_.y + size_.height};
  const DWORD layout = ::GetLayout(dc);
  route_ =
      kind == OBJ_ENHMETADC || (layout != GDI_ERROR && (layout & LAYOUT_RTL)) ? Route::Whole : Route::Bands;
  if (route_ == Route::Whole) return;
  const ::RECT visible = VisibleOn(dc);
  ::RECT seen = {};
  ::IntersectRect(&seen, &seen_, &visible);
  seen_ = seen;
}

// False for what can't be said in the device's pixels.
bool PictureTarget::MeasureOnDevice() {
  ::POINT corners[] = {{bounds_.left, bounds_.top}, {bounds_.right, bounds_.bottom}};
  Long left = 0, top = 0;
  if (!::LPtoDP(dc_, corners, 2) || !Measure(corners[0].x, corners[1].x, left, size_.width, size_.mirrored) ||
      !Measure(corners[0].y, corners[1].y, top, size_.height, size_.upside_down))
    return false;
  corner_ = {left, top};
  return true;
}

HRESULT PictureTarget::Put(const CDib24& picture, const GoOn& go_on) const {
  if (route_ == Route::Bands) return PutBands(picture, go_on);
  if (route_ == Route::Whole)
    PutWhole(picture);
  else
    PutAsItIs(dc_, bounds_, picture);
  return S_OK;
}

// The size never costs more memory than a band of it.
HRESULT PictureTarget::PutBands(const CDib24& picture, const GoOn& go_on) const {
  const win32::SavedState state(dc_);
  MapToPixels(dc_);
  const Long width = seen_.right - seen_.left;
  const Long most = std::max<Long>(1, kBandPixels / width);
  for (Long top = seen_.top; top < seen_.bottom; top += most) {
    if (go_on && !go_on()) return E_ABORT;
    const Long height = std::min<Long>(most, seen_.bottom - top);
    CDib24 band;
    if (!band.Create(width, height)) return E_OUTOFMEMORY;
    StretchSmooth(picture, size_, seen_.left - corner_.x, top - corner_.y, band);
    PutBits(dc_, {seen_.left, top, seen_.right, top + height}, band, ModeFor(dc_));
  }
  return S_OK;
}

// The rectangle turns the picture over itself here.
void PictureTarget::PutWhole(const CDib24& picture) const {
  CDib24 stretched;
  const bool fits = std::int64_t{size_.width} * size_.height <= kMostRecordedPixels;
  const bool same = size_.width == picture.Width() && size_.height == picture.Height();
  if (same || !fits || !stretched.Create(size_.width, size_.height)) return PutAsItIs(dc_, bounds_, picture);
  StretchSmooth(picture, {size_.width, size_.height}, 0, 0, stretched);
  PutAsItIs(dc_, bounds_, stretched);
}

}  // namespace marklet::activex
