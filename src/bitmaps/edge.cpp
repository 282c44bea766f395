#include "bitmaps/edge.h"

#include "bitmaps/hsv.h"
#include "platform/rounding.h"
#include "platform/system.h"

namespace marklet {
namespace {

// As RGB, or CLR_INVALID.
COLORREF Translate(OLE_COLOR colour) {
  COLORREF translated;
  return OleTranslateColor(colour, translated) ? translated : CLR_INVALID;
}

Long Scaled(Long value, Long thousandths) { return RoundHalfEven(value * thousandths / 1000.0); }

}  // namespace

CEdge::CEdge()
    : colours_{Translate(0x8000000F), Translate(0x80000015), Translate(0x80000014), Translate(0x80000010)} {}

void CEdge::Attach(OLE_COLOR face, OLE_COLOR dark_shadow, OLE_COLOR highlight, OLE_COLOR shadow) {
  PutFaceColor(face);
  PutDkShadowColor(dark_shadow);
  PutHighlightColor(highlight);
  PutShadowColor(shadow);
}

void CEdge::Put(Shade shade, OLE_COLOR colour) {
  if (Translate(colour) == CLR_INVALID) throw EdgeColorError();
  colours_[shade] = colour;
}

void CEdge::PutBaseColor(OLE_COLOR colour) {
  const Hsv base = RGBToHSV(Translate(colour));
  const Long shadow = Scaled(base.value, 666);
  const auto with_value = [&](Long value) { return HSVToRGB({base.hue, base.saturation, value}, true); };
  colours_[kFace] = colour;
  colours_[kShadow] = with_value(shadow);
  colours_[kHighlight] = with_value(Scaled(base.value, 1400));
  colours_[kDkShadow] = with_value(Scaled(shadow, 666));
}

}  // namespace marklet
