#include "bitmaps/colour.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "base/rounding.h"
#include "platform/gdi.h"
#include "platform/shared/resolved_colour.h"
#include "platform/system.h"
#include "platform/system_colours.h"

namespace marklet {
namespace {

// Each share is truncated on its own, so that a mix of two equal channels can come out 1 darker.
unsigned MixChannel(unsigned a, unsigned b, int weight) {
  const std::int64_t w = weight;
  return static_cast<unsigned>(b * (255 - w) / 255 + a * w / 255);
}

class SolidBrush {
 public:
  explicit SolidBrush(COLORREF colour) : handle_(CreateSolidBrush(colour)) {}
  ~SolidBrush() { DeleteObject(handle_); }
  SolidBrush(const SolidBrush&) = delete;
  SolidBrush& operator=(const SolidBrush&) = delete;
  HBRUSH Handle() const { return handle_; }

 private:
  HBRUSH handle_;
};

class SelectedPen {
 public:
  SelectedPen(HDC dc, COLORREF colour)
      : dc_(dc), handle_(CreatePen(1, colour)), former_(SelectObject(dc, handle_)) {}
  ~SelectedPen() {
    SelectObject(dc_, former_);
    DeleteObject(handle_);
  }
  SelectedPen(const SelectedPen&) = delete;
  SelectedPen& operator=(const SelectedPen&) = delete;

 private:
  HDC dc_;
  HPEN handle_;
  HGDIOBJ former_;
};

// The coordinates at which a band can be seen, so that a huge rectangle costs no more than the surface.
struct Visible {
  Long first = -0x8000, right = 0x7FFF, bottom = 0x7FFF;  // windows have no others

  explicit Visible(HDC dc) {
    PixelView view;
    if (PixelsOf(dc, view)) first = 0, right = view.width, bottom = view.height;
  }
};

// The colour of the band that lies `place` of the way through `extent`.
COLORREF BandColour(COLORREF first, COLORREF second, std::int64_t place, Long extent) {
  const auto t = static_cast<float>(static_cast<double>(place) / extent);
  return BlendColours(first, second, RoundHalfEven((1.0 - t) * 255));
}

// Calls `fill` with each coordinate from `begin` to `end`, the end included.
template <typename Fill>
void ForEachBand(Long begin, Long end, Fill fill) {
  for (std::int64_t at = begin; at <= end; ++at) fill(static_cast<Long>(at));
}

}  // namespace

COLORREF BlendColours(OLE_COLOR first, OLE_COLOR second, int weight, bool swap) {
  COLORREF a = ResolvedColour(first), b = ResolvedColour(second);
  if (swap) std::swap(a, b);
  return MakeRgb(MixChannel(RedOf(a), RedOf(b), weight), MixChannel(GreenOf(a), GreenOf(b), weight),
                 MixChannel(BlueOf(a), BlueOf(b), weight));
}

void GradientRect(HDC dc, OLE_COLOR first, OLE_COLOR second, Long x, Long y, Long width, Long height,
                  bool horizontal) {
  GradientFillRect(dc, {x, y, WrapAdd(x, width), WrapAdd(y, height)}, ResolvedColour(first),
                   ResolvedColour(second), horizontal ? GradientMode::Horizontal : GradientMode::Vertical);
}

void GradientFillRect(HDC dc, const RECT& rect, COLORREF first, COLORREF second, GradientMode mode) {
  if (first != second) return GradientBands(dc, rect, first, second, mode == GradientMode::Vertical);
  const SolidBrush brush(first);
  FillRect(dc, rect, brush.Handle());
}

void GradientBands(HDC dc, const RECT& rect, COLORREF first, COLORREF second, bool vertical) {
  const Long width = std::max(WrapSub(rect.right, rect.left), 1);
  const Long height = std::max(WrapSub(rect.bottom, rect.top), 1);
  const Visible visible(dc);
  if (vertical) {
    ForEachBand(std::max(rect.top, visible.first), std::min(rect.bottom, visible.bottom), [&](Long y) {
      const SolidBrush brush(BandColour(first, second, std::int64_t{y} - rect.top, height));
      FillBand(dc, rect.left, y, width, 1, brush.Handle());
    });
  } else {
    ForEachBand(std::max(rect.left, visible.first), std::min(rect.right, visible.right), [&](Long x) {
      const SolidBrush brush(BandColour(first, second, std::int64_t{x} - rect.left, width));
      FillBand(dc, x, rect.top, 1, height, brush.Handle());
    });
  }
}

void FillBand(HDC dc, Long x, Long y, Long width, Long height, HBRUSH brush) {
  FillRect(dc, {x, y, WrapAdd(x, width), WrapAdd(y, height)}, brush);
}

void FrameRectangle(HDC dc, COLORREF colour, Long x, Long y, Long width, Long height) {
  const SelectedPen pen(dc, colour);
  const Long right = WrapSub(WrapAdd(x, width), 1), bottom = WrapSub(WrapAdd(y, height), 1);
  MoveToEx(dc, x, bottom);
  LineTo(dc, x, y);
  LineTo(dc, right, y);
  LineTo(dc, right, bottom);
  LineTo(dc, x, bottom);
  // Four lines of no length leave no pixel, and a frame of one pixel is to have it.
  if (width == 1 && height == 1) LineTo(dc, WrapAdd(x, 1), y);
}

bool SystemColoursChanged(const std::array<COLORREF, 6>& snapshot) {
  return !std::equal(snapshot.begin(), snapshot.end(), kWatchedSystemColours.begin(),
                     [](COLORREF seen, int index) { return seen == GetSysColor(index); });
}

}  // namespace marklet
