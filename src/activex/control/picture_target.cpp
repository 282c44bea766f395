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

constexpr std::uint32_t kOrRop = 0x00EE0086;  // SRCPAINT

// Copies bits to a rectangle, which has as many pixels as they do unless a later stretch is wanted.
void PutBits(::HDC dc, const RECTL& to, const CDib24& bits, int mode, std::uint32_t rop = marklet::SRCCOPY) {
  BITMAPINFO info = {};
  info.bmiHeader = Describe(bits);
  const int old_mode = ::SetStretchBltMode(dc, mode);
  ::StretchDIBits(dc, to.left, to.top, to.right - to.left, to.bottom - to.top, 0, 0, bits.Width(),
                  bits.Height(), bits.Bits(), &info, DIB_RGB_COLORS, rop);
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

// What a channel shows in front of `behind`, from what it shows in front of black and of white. What inverts
// shows less in front of white.
std::uint8_t ShownOver(int behind, int on_black, int on_white) {
  const int through = behind * (on_white - on_black);
  const int half = through < 0 ? -127 : 127;
  return static_cast<std::uint8_t>(std::clamp(on_black + (through + half) / 255, 0, 255));
}

// Calls `visit` with each byte of the first surface and those of the others at the same place.
template <typename Visit>
void ForEachByte(CDib24& first, const CDib24& second, const CDib24& third, Visit visit) {
  const auto bytes = static_cast<std::ptrdiff_t>(DibStride(first.Width(), 24) * first.Height());
  for (std::ptrdiff_t at = 0; at < bytes; ++at) visit(first.Bits()[at], second.Bits()[at], third.Bits()[at]);
}

// White where the picture is open for the most part, and black there with its own colours elsewhere.
bool Split(const CDib24& on_black, const CDib24& on_white, CDib24& mask, CDib24& covered) {
  const Long width = on_black.Width(), height = on_black.Height();
  if (!mask.Create(width, height) || !covered.Create(width, height)) return false;
  for (Long y = 0; y < height; ++y)
    for (Long x = 0; x < width; ++x) {
      const std::uint8_t *black = on_black.View().At(x, y), *white = on_white.View().At(x, y);
      const int open = white[0] - black[0] + white[1] - black[1] + white[2] - black[2];
      const int cover = std::clamp(255 - open / 3, 0, 255);
      const bool is_covered = cover >= 128;
      for (int channel = 0; channel < 3; ++channel) {
        mask.View().At(x, y)[channel] = is_covered ? 0 : 255;
        covered.View().At(x, y)[channel] =
            static_cast<std::uint8_t>(is_covered ? std::min(255, black[channel] * 255 / cover) : 0);
      }
    }
  return true;
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
  if (route_ == Route::Bands) {
    return PutBands(go_on, [&](Long left, Long top, CDib24& band) {
      StretchSmooth(picture, size_, left, top, band);
      return true;
    });
  }
  if (route_ == Route::Whole)
    PutWhole(picture);
  else
    PutAsItIs(dc_, bounds_, picture);
  return S_OK;
}

// The size never costs more memory than a band of it.
template <typename Make>
HRESULT PictureTarget::PutBands(const GoOn& go_on, Make make) const {
  const win32::SavedState state(dc_);
  MapToPixels(dc_);
  const Long width = seen_.right - seen_.left;
  const Long most = std::max<Long>(1, kBandPixels / width);
  for (Long top = seen_.top; top < seen_.bottom; top += most) {
    if (go_on && !go_on()) return E_ABORT;
    const Long height = std::min<Long>(most, seen_.bottom - top);
    CDib24 band;
    if (!band.Create(width, height) || !make(seen_.left - corner_.x, top - corner_.y, band))
      return E_OUTOFMEMORY;
    PutBits(dc_, {seen_.left, top, seen_.right, top + height}, band, ModeFor(dc_));
  }
  return S_OK;
}

bool PictureTarget::CanRead() const {
  return route_ == Route::Bands && ::GetDeviceCaps(dc_, TECHNOLOGY) == DT_RASDISPLAY;
}

HRESULT PictureTarget::PutOver(const CDib24& on_black, const CDib24& on_white, const GoOn& go_on) const {
  if (!CanRead()) {
    CDib24 mask, covered;
    if (!Split(on_black, on_white, mask, covered)) return E_OUTOFMEMORY;
    PutBits(dc_, bounds_, mask, COLORONCOLOR, marklet::SRCAND);
    PutBits(dc_, bounds_, covered, COLORONCOLOR, kOrRop);
    return S_OK;
  }
  return PutBands(go_on, [&](Long left, Long top, CDib24& band) {
    CDib24 white, there;
    if (!white.Create(band.Width(), band.Height()) || !there.Create(band.Width(), band.Height()))
      return false;
    StretchSmooth(on_black, size_, left, top, band);
    StretchSmooth(on_white, size_, left, top, white);
    there.LoadFromDC(Wrap(dc_), corner_.x + left, corner_.y + top, -1, -1, marklet::SRCCOPY);
    ::GdiFlush();
    ForEachByte(band, white, there, [](std::uint8_t& black, int on_white_byte, int behind) {
      black = ShownOver(behind, black, on_white_byte);
    });
    return true;
  });
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
