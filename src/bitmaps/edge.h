// CEdge: the light and dark shade of a colour.
#pragma once

#include <array>
#include <stdexcept>

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

  // The four setters in this order. Each keeps the value as given, not its translation, and throws
  // EdgeColorError, the old value kept, when there is no translation.
  void Attach(OLE_COLOR face, OLE_COLOR dark_shadow, OLE_COLOR highlight, OLE_COLOR shadow);
  void PutFaceColor(OLE_COLOR colour) { Put(kFace, colour); }
  void PutDkShadowColor(OLE_COLOR colour) { Put(kDkShadow, colour); }
  void PutHighlightColor(OLE_COLOR colour) { Put(kHighlight, colour); }
  void PutShadowColor(OLE_COLOR colour) { Put(kShadow, colour); }
  OLE_COLOR FaceColor() const { return colours_[kFace]; }
  OLE_COLOR DkShadowColor() const { return colours_[kDkShadow]; }
  OLE_COLOR HighlightColor() const { return colours_[kHighlight]; }
  OLE_COLOR ShadowColor() const { return colours_[kShadow]; }

  // Makes `colour` the face and derives the three others from it. A colour that can't be translated becomes
  // the face as it is and counts as white for the others. Never throws.
  void PutBaseColor(OLE_COLOR colour);

 private:
  enum Shade : std::size_t { kFace, kDkShadow, kHighlight, kShadow, kShades };

  void Put(Shade shade, OLE_COLOR colour);

  std::array<OLE_COLOR, kShades> colours_;
};

}  // namespace marklet
