#include "bitmaps/edge.h"

#include "base/rounding.h"
#include "bitmaps/hsv.h"
#include "platform/system.h"
#include "platform/system_colours.h"

namespace marklet {
namespace {

// As RGB, or CLR_INVALID.
COLORREF Translate(OLE_COLOR colour) {
  COLORREF translated;
  return OleTranslateColor(colour, translated) ? translated : CLR_INVALID;
}

Long Scaled(Long value, Long thousandths) { return RoundHalfEven(value * thousandths / 1000.0); }

void Delete(HGDIOBJ& handle) {
  if (CEdge::IsValidHandle(handle)) DeleteObject(handle);
  handle = nullptr;
}

}  // namespace

CEdge::CEdge()
    : colours_{Translate(kButtonFace), Translate(kDarkShadow), Translate(kButtonHighlight),
               Translate(kButtonShadow)},
      default_colours_(colours_) {}

void CEdge::Attach(OLE_COLOR face, OLE_COLOR dark_shadow, OLE_COLOR highlight, OLE_COLOR shadow) {
  PutFaceColor(face);
  PutDkShadowColor(dark_shadow);
  PutHighlightColor(highlight);
  PutShadowColor(shadow);
}

void CEdge::PutFaceColor(OLE_COLOR colour) {
  if (Translate(colour) == CLR_INVALID) throw EdgeColorError();
  Delete(face_brush_);
  Put(EdgeShade::kFace, colour);
}

void CEdge::Put(EdgeShade shade, OLE_COLOR colour) {
  if (Translate(colour) == CLR_INVALID) throw EdgeColorError();
  colours_[static_cast<std::size_t>(shade)] = colour;
  RemakeGDIObject(pens_[static_cast<std::size_t>(shade)]);
}

void CEdge::RemakeGDIObject(HGDIOBJ& handle) {
  if (!objects_made_) return;
  Delete(handle);
  MakeGDIObjects();
}

// What could not be made stays 0 and is tried again the next time.
void CEdge::MakeGDIObjects() {
  for (std::size_t at = 0; at < kShades; ++at) {
    if (!IsValidHandle(pens_[at])) pens_[at] = CreatePen(1, Translate(colours_[at]));
  }
  if (!IsValidHandle(face_brush_)) face_brush_ = CreateSolidBrush(Translate(FaceColor()));
  objects_made_ = true;
}

void CEdge::DestoryGDIHandles() {
  for (HPEN& pen : pens_) Delete(pen);
  Delete(face_brush_);
  objects_made_ = false;
}

bool CEdge::IsValidHandle(HGDIOBJ handle) {
  return handle != nullptr && reinterpret_cast<std::intptr_t>(handle) != -1;
}

void CEdge::PutBaseColor(OLE_COLOR colour) {
  const Hsv base = RGBToHSV(Translate(colour));
  const Long shadow = Scaled(base.value, 666);
  const auto with_value = [&](Long value) { return HSVToRGB({base.hue, base.saturation, value}, true); };
  colours_[static_cast<std::size_t>(EdgeShade::kFace)] = colour;  // even one that the setter refuses
  try {
    PutFaceColor(colour);
  } catch (const EdgeColorError&) {
  }
  PutShadowColor(with_value(shadow));
  PutDkShadowColor(with_value(Scaled(shadow, 666)));
  PutHighlightColor(with_value(Scaled(base.value, 1400)));
}

void CEdge::DrawEdge(HDC dc, RECT& rect, std::uint32_t edge, std::uint32_t& flags) {
  // The values are compared as they stand: a system colour set as such differs from its translation.
  if (colours_ == default_colours_) {
    marklet::DrawEdge(dc, rect, edge, flags);
    return;
  }
  if (!objects_made_) MakeGDIObjects();
  if ((flags & BF_MIDDLE) != 0) {
    FillRect(dc, rect, face_brush_);
    flags &= ~BF_MIDDLE;
  }
  DrawLines(dc, rect, edge, flags);
  if ((flags & BF_ADJUST) == 0) return;
  rect = {WrapAdd(rect.left, 4), WrapAdd(rect.top, 4), WrapSub(rect.right, 4), WrapSub(rect.bottom, 4)};
}

// Selecting no pen changes nothing: such a line takes the pen that is there.
HPEN CEdge::EdgePen(EdgeShade shade) const {
  return shade == EdgeShade::kNone ? nullptr : pens_[static_cast<std::size_t>(shade)];
}

void CEdge::DrawLines(HDC dc, const RECT& rect, std::uint32_t edge, std::uint32_t flags) const {
  HGDIOBJ kept = nullptr;
  ForEachEdgeLine(rect, edge, flags, [&](EdgeShade shade, Long from_x, Long from_y, Long to_x, Long to_y) {
    const HGDIOBJ former = SelectObject(dc, EdgePen(shade));
    if (kept == nullptr) kept = former;
    MoveToEx(dc, from_x, from_y);
    LineTo(dc, to_x, to_y);
  });
  if (kept != nullptr) SelectObject(dc, kept);
}

}  // namespace marklet
