// The strip on which the page shows its images.
#include <cstdint>

#include "base/ignore_errors.h"
#include "bitmaps/colour.h"
#include "imagelist/prp_image.h"
#include "platform/system.h"
#include "theme/color_xp.h"

namespace marklet {
namespace {

// In pixels: where the first image stands, from one to the next, and how far to its right it takes a press.
constexpr Long kFirst = 6, kPitch = 21, kReach = 20;
constexpr Long kImageSize = 0, kImageHalf = 8, kDepth = 4;

// The colours for an owner that has no scheme of its own.
ThemeColours DefaultThemeColors() { return ThemeColoursOf({}, nullptr); }

void PaintBackground(const CDib24& strip, const ThemeColours& colours) {
  GradientRect(strip.hDC(), colours[kStripBegin], colours[kStripEnd], 0, 0, strip.Width(), strip.Height(),
               false);
  FrameRectangle(strip.hDC(), colours[kStripFrame], 0, 0, strip.Width(), strip.Height());
}

void PaintSelection(const CDib24& strip, const ThemeColours& colours, Long x) {
  constexpr Long kMargin = 4, kTop = 2, kWidth = 23;
  const Long height = strip.Height() - 2 * kTop;
  GradientRect(strip.hDC(), colours[kSelectionBegin], colours[kSelectionEnd], x - kMargin, kTop, kWidth,
               height, false);
  FrameRectangle(strip.hDC(), colours[kSelectionFrame], x - kMargin, kTop, kWidth, height);
}

void PaintImage(const CDib24& strip, CIconBytes& image, Long x) {
  IgnoreErrors([&] {
    image.Render(strip.hDC(), kImageSize, kDepth, x, strip.Height() / 2 - kImageHalf, true, kButtonFace, 0);
  });
}

}  // namespace

void prpImage::ShowPreview() {
  const std::shared_ptr<CDib24> strip = ClearStrip();
  Enable(PageButton::Next, false);
  Enable(PageButton::Previous, state_.PreviewPage >= 1);
  const Owner owner(state_.SelectedControl);
  if (strip && (owner.images || owner.hidden)) ShowOwner(owner, *strip);
  IgnoreErrors([this] { view_.StripChanged(); });
}

// A new strip in the colour of buttons; without a surface when that can't be made, and null without memory.
std::shared_ptr<CDib24> prpImage::ClearStrip() {
  strip_.reset();
  IgnoreErrors([this] { strip_ = std::make_shared<CDib24>(); });
  std::shared_ptr<CDib24> strip = strip_;
  IgnoreErrors([&] {
    const SIZE size = view_.StripSize();
    if (strip && strip->Create(size.cx, size.cy)) strip->Clear(GetSysColor(COLOR_BTNFACE));
  });
  return strip;
}

void prpImage::ShowOwner(const Owner& owner, const CDib24& strip) {
  const ThemeColours colours = owner.images ? DefaultThemeColors() : owner.hidden->ThemeColors();
  PaintBackground(strip, colours);
  ImagesRef images;
  IgnoreErrors([&] {
    images = owner.images ? owner.images->GetIconByteCollection() : owner.hidden->IconCollection();
  });
  Enable(PageButton::DeleteAll, images != nullptr);
  if (images) ShowImages(*images, strip, colours);
}

void prpImage::ShowImages(const ImageCollection& images, const CDib24& strip, const ThemeColours& colours) {
  const std::int64_t before = std::int64_t{state_.PreviewPage} * kImagesPerPage;
  const Long count = images.Count();
  Enable(PageButton::Next, count - before > kImagesPerPage);
  Long x = kFirst, shown = 0;
  for (std::int64_t position = before + 1; position <= count && shown < kImagesPerPage; ++position) {
    const ImageRef image = images.Item(static_cast<Long>(position));
    if (!image) continue;  // it takes no place
    if (state_.SelectedX >= x && state_.SelectedX <= x + kReach) {
      PaintSelection(strip, colours, x);
      Select(*image);
    }
    PaintImage(strip, *image, x);
    x += kPitch;
    ++shown;
  }
}

// The view hears of the new text before it is the current key, and may turn the page meanwhile.
void prpImage::Select(const CIconBytes& image) {
  Enable(PageButton::DeleteIcon, true);
  PutKeyText(image.Key());
  IgnoreErrors([&] { state_.CurrentKey = image.Key(); });
}

void prpImage::PaintStrip(HDC dc) const {
  if (strip_) strip_->PaintTo(dc, 0, 0, -1, -1, 0, 0, SRCCOPY);
}

}  // namespace marklet
