// CIconBytes: from entries to the screen.
#include <memory>

#include "base/ignore_errors.h"
#include "bitmaps/cdib24.h"
#include "bitmaps/cdib32.h"
#include "images/bits.h"
#include "images/icon_bytes.h"

namespace marklet {
namespace {

constexpr std::uint8_t kEnabledAlpha = 255, kDisabledAlpha = 92;
constexpr Long kGreyEverything = -1;
constexpr Long kMostNested = 51;
constexpr COLORREF kMagenta = MakeRgb(255, 0, 255);

}  // namespace

// The depth asked for plays no part: what has most colours is taken, alpha above all. When nothing is there
// at all, the sizes hand the search on to one another until it is nested too deep.
const ByteArray* CIconBytes::SelectBytes(Long size_index, Long depth_index) {
  if (state_.SelectDepth <= 0)
    state_.ChosenIsAlpha = false;
  else
    state_.UsedFallback = true;
  if (++state_.SelectDepth == kMostNested) {
    state_.SelectDepth = 0;
    return nullptr;
  }
  if (HasImage(size_index)) {
    Long depth = kAlphaDepthIndex;
    while (ByteCount(GetBytes(size_index, depth)) == 0) --depth;
    state_.ChosenIsAlpha = depth == kAlphaDepthIndex;
    state_.ChosenSize = SizeFromIndex(size_index);
    state_.SelectDepth = 0;
    return &GetBytes(size_index, depth);
  }
  const auto& order = FallbackOf(size_index).order;
  const Long* candidate = order;
  while (candidate != std::end(order) - 1 && !HasImage(*candidate)) ++candidate;
  return SelectBytes(*candidate, depth_index);
}

void CIconBytes::Render(HDC dc, Long size_index, Long depth_index, Long x, Long y, bool enabled,
                        OLE_COLOR /*background*/, Long /*further*/) {
  const Long size = SizeFromIndex(size_index);
  if (size == 0) return;
  state_.UsedFallback = false;
  if (state_.IsPicture) return RenderPicture(dc, size, x, y);
  if (const ByteArray* bytes = SelectBytes(size_index, depth_index)) {
    const bool alpha = depth_index == kAlphaDepthIndex && state_.ChosenIsAlpha;
    IgnoreErrors([&] {
      alpha ? RenderAlpha(dc, *bytes, size, x, y, enabled) : RenderKeyed(dc, *bytes, size, x, y, enabled);
    });
  }
  state_.ChosenIsAlpha = false;
  state_.SelectDepth = 0;
  state_.UsedFallback = false;
  state_.ChosenSize = 0;
}

// Disabled, an image with alpha is grey and faded as well.
void CIconBytes::RenderAlpha(HDC dc, const ByteArray& bytes, Long size, Long x, Long y, bool enabled) const {
  auto surface = std::make_unique<CDib32>();
  if (!surface->Create(state_.ChosenSize, state_.ChosenSize)) return;
  PutBits(surface->hDC(), 0, 0, state_.ChosenSize, state_.ChosenSize, bytes, 4);
  if (!enabled) surface->Grayscale(kGreyEverything);
  if (size != state_.ChosenSize) surface = surface->ResampleNearest(size, size);
  if (!surface) return;
  surface->Premultiply();
  surface->AlphaPaint(dc, x, y, -1, -1, 0, 0, -1, -1, enabled ? kEnabledAlpha : kDisabledAlpha, true);
}

// Disabled, an image without alpha is grey at full strength. Pixels of three channels need no alpha on the
// way, so that one surface of 24 bits serves for all. What shows when the bytes are too few to draw differs:
// magenta at the size asked for, nothing at another, and black if the bytes were meant for alpha.
void CIconBytes::RenderKeyed(HDC dc, const ByteArray& bytes, Long size, Long x, Long y, bool enabled) const {
  constexpr COLORREF kBlack = MakeRgb(0, 0, 0);
  const bool same_size = size == state_.ChosenSize;
  auto surface = std::make_unique<CDib24>();
  if (!surface->Create(state_.ChosenSize, state_.ChosenSize)) return;
  if (!PutBits(surface->hDC(), 0, 0, PaddedWidth(state_.ChosenSize), state_.ChosenSize, bytes, 3))
    surface->Clear(same_size ? kMagenta : state_.ChosenIsAlpha ? kBlack : KeyColour);
  COLORREF key = KeyColour;
  if (!enabled) surface->Grayscale(key);
  if (!same_size) surface = surface->ResampleNearest(size, size);
  surface->PaintTransparent(dc, x, y, -1, -1, 0, 0, KeyColour);
}

void CIconBytes::RenderPicture(HDC dc, Long size, Long x, Long y) const {
  IgnoreErrors([&] {
    const HBITMAP bitmap = PictureHandle(state_.Picture);
    if (bitmap == nullptr) return;
    CDib24 picture;
    picture.CreateFromPicture(bitmap);
    if (const auto resized = picture.ResizeKeyed(size, size, kMagenta))
      resized->PaintTransparent(dc, x, y, size, size, 0, 0, kMagenta);
  });
}

}  // namespace marklet
