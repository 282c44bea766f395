// CEdge: a three-dimensional rectangle edge in chosen colours, and the light and dark shades of a colour.
#pragma once

#include <array>
#include <stdexcept>

#include "platform/gdi.h"
#include "platform/shared/edge_lines.h"
#include "platform/types.h"

namespace marklet {

// What a colour setter raises for a value that can't be translated.
class EdgeColorError : public std::runtime_error {
 public:
  EdgeColorError() : std::runtime_error("Invalid color specification.") {}
  static constexpr Long kNumber = 380;
  static constexpr const char* kSource = "Edge";
};

class CEdge {
 public:
  CEdge();  // the system's four colours
  ~CEdge() { DestoryGDIHandles(); }
  CEdge(const CEdge&) = delete;
  CEdge& operator=(const CEdge&) = delete;

  // The four setters in this order. Each keeps the value as given, not its translation, and throws
  // EdgeColorError, the old value kept, when there is no translation.
  void Attach(OLE_COLOR face, OLE_COLOR dark_shadow, OLE_COLOR highlight, OLE_COLOR shadow);
  void PutFaceColor(OLE_COLOR colour);
  void PutDkShadowColor(OLE_COLOR colour) { Put(EdgeShade::kDkShadow, colour); }
  void PutHighlightColor(OLE_COLOR colour) { Put(EdgeShade::kHighlight, colour); }
  void PutShadowColor(OLE_COLOR colour) { Put(EdgeShade::kShadow, colour); }
  OLE_COLOR FaceColor() const { return Colour(EdgeShade::kFace); }
  OLE_COLOR DkShadowColor() const { return Colour(EdgeShade::kDkShadow); }
  OLE_COLOR HighlightColor() const { return Colour(EdgeShade::kHighlight); }
  OLE_COLOR ShadowColor() const { return Colour(EdgeShade::kShadow); }

  // Makes `colour` the face and derives the three others from it. A colour that can't be translated becomes
  // the face as it is and counts as white for the others. Never throws.
  void PutBaseColor(OLE_COLOR colour);

  // Draws the sides of `rect` that `flags` names; `edge` and `flags` are those of the platform's DrawEdge,
  // which does the work as long as all four colours are the system's. Otherwise BF_MIDDLE is cleared in
  // `flags` once the middle is filled, and BF_ADJUST shrinks `rect` by 4 on every side, whatever was drawn.
  void DrawEdge(HDC dc, RECT& rect, std::uint32_t edge, std::uint32_t& flags);

  // Deletes pens and brush; the next DrawEdge makes new ones.
  void DestoryGDIHandles();
  static bool IsValidHandle(HGDIOBJ handle);  // false for 0 and -1

 private:
  static constexpr std::size_t kShades = 4;
  using Colours = std::array<OLE_COLOR, kShades>;  // in the order of EdgeShade

  OLE_COLOR Colour(EdgeShade shade) const { return colours_[static_cast<std::size_t>(shade)]; }
  void Put(EdgeShade shade, OLE_COLOR colour);
  void RemakeGDIObject(HGDIOBJ& handle);
  void MakeGDIObjects();
  HPEN EdgePen(EdgeShade shade) const;
  void DrawLines(HDC dc, const RECT& rect, std::uint32_t edge, std::uint32_t flags) const;

  Colours colours_;
  HBRUSH face_brush_ = nullptr;
  std::array<HPEN, kShades> pens_{};
  bool objects_made_ = false;
  const Colours default_colours_;
};

}  // namespace marklet
