// The text effects: each is a fixed recipe of the same run drawn several times at small offsets, the face
// last.
#include <array>
#include <optional>
#include <span>

#include "bitmaps/edge.h"
#include "markup/saturate.h"
#include "text/emit_text_run.h"

namespace marklet {
namespace {

enum class Ink { kFace, kBackground, kEffect, kDark, kLight, kBlack };

struct Layer {
  Long dx, dy;
  Ink ink;
};

// The vertical offsets of the stroke run 0, -1, -1, 0, 2 with no +1 among them: heavier below than above, as
// captions have always looked.
template <Ink face>
constexpr std::array<Layer, 16> StrokeLayers() {
  std::array<Layer, 16> layers{};
  std::size_t at = 0;
  for (const Long dx : {-1, 0, 1}) {
    for (const Long dy : {0, -1, -1, 0, 2}) layers[at++] = {dx, dy, Ink::kEffect};
  }
  layers[at] = {0, 0, face};
  return layers;
}

constexpr std::array kStroke = StrokeLayers<Ink::kFace>();
constexpr std::array kHollow = StrokeLayers<Ink::kBackground>();

// One offset three times, and a face that is black whatever the text's colour.
constexpr Layer kShadow[] = {{1, 1, Ink::kDark}, {1, 1, Ink::kDark}, {1, 1, Ink::kDark}, {0, 0, Ink::kBlack}};

constexpr Layer kEmboss[] = {
    {-1, 0, Ink::kLight}, {-1, -1, Ink::kLight}, {0, -1, Ink::kDark}, {0, 1, Ink::kDark}, {0, 0, Ink::kFace}};

constexpr Layer kEngrave[] = {
    {-1, 0, Ink::kDark}, {-1, -1, Ink::kDark}, {1, 0, Ink::kLight}, {1, 1, Ink::kLight}, {0, 0, Ink::kFace}};

struct Effect {
  TextEffects effect;
  std::span<const Layer> layers;
  bool shades;            // uses the dark and the light tone
  bool stops_at_failure;  // a layer that fails takes those after it along
};

constexpr Effect kEffects[] = {
    {effectStroke, kStroke, false, false}, {effectShadow, kShadow, true, false},
    {effectEmboss, kEmboss, true, false},  {effectEngrave, kEngrave, true, true},
    {effectHollow, kHollow, false, false},
};

struct Palette {
  OLE_COLOR face, background, effect;
  COLORREF dark = MakeRgb(128, 128, 128), light = MakeRgb(255, 255, 255);

  OLE_COLOR ColourOf(Ink ink) const {
    switch (ink) {
      case Ink::kFace:
        return face;
      case Ink::kBackground:
        return background;
      case Ink::kEffect:
        return effect;
      case Ink::kDark:
        return dark;
      case Ink::kLight:
        return light;
      case Ink::kBlack:
        break;
    }
    return MakeRgb(0, 0, 0);
  }
};

// Without a surface the tones come from the background's own colour.
void ShadeFromBackground(Palette& palette) {
  CEdge edge;
  edge.PutBaseColor(palette.background);
  palette.dark = edge.ShadowColor();
  palette.light = edge.HighlightColor();
}

Palette PaletteOf(const Effect& effect, const CaptionStyle& style) {
  Palette palette{style.ForeColor, TranslateColor(style.BackColor), style.EffectColor};
  if (effect.shades && style.SurfaceDC == nullptr) ShadeFromBackground(palette);
  return palette;
}

RECT Moved(const RECT& rect, const Layer& layer) {
  return {SaturatingAdd(rect.left, layer.dx), SaturatingAdd(rect.top, layer.dy),
          SaturatingAdd(rect.right, layer.dx), SaturatingAdd(rect.bottom, layer.dy)};
}

void DrawLayers(HDC dc, std::u16string_view text, const RECT& rect, const CaptionStyle& style,
                const Effect& effect) {
  const Palette palette = PaletteOf(effect, style);
  CaptionStyle layer_style = style;  // one copy for all layers: the height is measured in the first
  for (const Layer& layer : effect.layers) {
    RECT layer_rect = Moved(rect, layer);
    layer_style.ForeColor = palette.ColourOf(layer.ink);
    try {
      EmitTextRun(dc, text, layer_rect, layer_style, true);
    } catch (...) {
      if (effect.stops_at_failure) return;
    }
  }
}

}  // namespace

void DrawTextEffect(HDC dc, std::u16string_view text, const RECT& rect, const CaptionStyle& style) {
  for (const Effect& effect : kEffects) {
    if (effect.effect == style.TextEffect) return DrawLayers(dc, text, rect, style, effect);
  }
  // Any other number draws nothing, not even the plain text.
}

}  // namespace marklet
