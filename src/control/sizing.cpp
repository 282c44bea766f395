// AutoSize, and what a resize does to the finished picture and to the snapshot of what lies behind it.
#include "base/ignore_errors.h"
#include "base/rounding.h"
#include "control/marklet.h"
#include "platform/shared/os_tests.h"
#include "platform/system.h"
#include "platform/text.h"
#include "text/string_helpers.h"

namespace marklet {
namespace {

struct Measure {
  RECT rect;
  bool widen_for_unicode = false;  // the byte call has lost characters that it couldn't measure
};

// The caption's source as it stands, tags and all, in whatever font is selected. A failed measurement leaves
// the rectangle at zero.
Measure MeasureCaption(HDC dc, const std::u16string& caption, Long right, bool wrap) {
  const std::uint32_t flags = DT_CALCRECT | (wrap ? DT_WORDBREAK : DT_SINGLELINE);
  Measure result;
  result.rect.right = right;
  int height = 0;
  if (IsNT4OrLater()) {
    height = DrawTextW(dc, caption, result.rect, flags);
  } else {
    height = DrawTextA(dc, WideCharToMultiByte(CP_ACP, caption), result.rect, flags);
    result.widen_for_unicode = IsUnicodeText(caption);
  }
  if (height == 0) result.rect = {};
  return result;
}

}  // namespace

void Marklet::RecomputeAutoSize() {
  if (state_.Caption.empty()) return;  // an empty caption keeps the old size, and isn't repainted
  if (state_.AutoSize) IgnoreErrors([this] { FitToCaption(); });
  RedrawNow();
}

// The height never takes the image into account.
void Marklet::FitToCaption() {
  const double padding = 2.0 * state_.Padding;
  const bool wrap = state_.WordWrap;
  const Measure measure =
      MeasureCaption(host_.hDC(), state_.Caption, RoundHalfEven(host_.ScaleWidth() - padding), wrap);
  const double height = measure.rect.bottom + padding;
  if (!wrap) {
    double width = measure.rect.right + padding;
    if (!state_.ImageKey.empty()) width += state_.ImagePixels;
    if (measure.widen_for_unicode) width = RoundHalfEven(width * 1.3);
    IgnoreErrors([&] { host_.PutWidth(width * host_.TwipsPerPixelX()); });
  }
  IgnoreErrors([&] { host_.PutHeight(height * host_.TwipsPerPixelY()); });
}

// At run time only a size that the control has never had before needs another snapshot: a shrunk control
// keeps the larger one. In a designer each new size gets its own.
void Marklet::Resize() {
  const auto drop = [this] { state_.Background.reset(), state_.BackBuffer.reset(); };
  IgnoreErrors([&] {
    if (!host_.AmbientProperties().UserMode()) drop();
  });
  IgnoreErrors([this] {
    const double width = host_.ScaleWidth(), height = host_.ScaleHeight();
    if (state_.MaxWidth < width) state_.MaxWidth = RoundHalfEven(width);
    if (state_.MaxHeight < height) state_.MaxHeight = RoundHalfEven(height);
  });
  const auto snapshot = state_.Background;
  if (snapshot && (state_.MaxHeight > snapshot->Height() || state_.MaxWidth > snapshot->Width())) drop();
  RedrawNow();
}

}  // namespace marklet
