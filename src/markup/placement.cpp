// Where a piece of text goes: on the line when it fits, on a new line when not, and cut up when its script
// allows no break at a blank. There are no stored lines: each piece is drawn as soon as it has a place, and
// nothing keeps the pen above the rectangle's bottom.
#include <algorithm>
#include <optional>

#include "bitmaps/colour.h"
#include "markup/caption_pen.h"
#include "markup/saturate.h"
#include "platform/gdi.h"
#include "text/emit_text_run.h"
#include "text/shaping.h"
#include "text/string_helpers.h"

namespace marklet {
namespace {

bool QuerySpacing(const CaptionPen& pen, char16_t ch, ABC& widths) {
  const std::optional<unsigned> code = AnsiCode(ch);
  return code && GetCharABCWidthsA(pen.dc, *code, widths);
}

// The spacing of the last character, asked for only when the first has one: a font without outlines has none.
void FindOverhang(CaptionPen& pen, std::u16string_view token) {
  pen.OverhangValid = false;
  if (token.size() <= 2) return;
  ABC first;
  if (QuerySpacing(pen, token.front(), first)) {
    pen.OverhangValid = QuerySpacing(pen, token.back(), pen.Overhang);
  }
}

// Leaning letters reach over their cell, so the pen moves by what the last one hangs over (normally back).
void ApplyOverhang(CaptionPen& pen) {
  const std::size_t next = pen.index + 1;
  const std::size_t count = pen.tokens.size();
  if (pen.OverhangValid && next + 1 < count && pen.tokens[next] == u"<i>") {
    pen.PenX = SaturatingAdd(pen.PenX, pen.Overhang.abcC);
  }
  // Near the end whatever was measured last counts, even when that was another token.
  if (next + 1 >= count && pen.ItalicOpen) pen.PenX = SaturatingAdd(pen.PenX, pen.Overhang.abcC);
}

void Draw(CaptionPen& pen, std::u16string_view text, Long height) {
  RECT run;
  run.left = pen.PenX;
  run.top = pen.SubscriptActive ? SaturatingAdd(pen.PenY, pen.SubscriptDrop) : pen.PenY;
  run.right = pen.rect.right;
  run.bottom = SaturatingAdd(run.top, std::int64_t{height} + 3);
  try {
    EmitTextRun(pen.dc, text, run, pen.RunStyle, false);
  } catch (...) {  // this run is missing then
  }
}

// The pen goes down by the height of what didn't fit, whatever stood on the line before.
void NewLine(CaptionPen& pen, Long height) {
  pen.LineStart = pen.rect.left;
  if (pen.Alignment == alignRight) {
    const SIZE empty = pen.StartLineAtRight();
    FrameRectangle(pen.dc, MakeRgb(255, 0, 0), pen.LineStart, pen.PenY, pen.rect.right, empty.cy);
  }
  pen.PenX = pen.LineStart;
  pen.PenY = SaturatingAdd(pen.PenY, height);
}

bool Complex(std::u16string_view text) {
  try {
    return IsComplexText(text);
  } catch (...) {
    return false;
  }
}

// The height of the pixel memory behind the context; none when it stands on something else.
std::optional<Long> SurfaceHeight(HDC dc) {
  PixelView view;
  return PixelsOf(dc, view) ? std::optional(view.height) : std::nullopt;
}

// Whether nothing that is drawn from here on can show, since the pen only goes down. A run aligned at its
// bottom may start above the pen by the text height, and an effect moves it by up to two pixels.
bool BelowSurface(const CaptionPen& pen, std::optional<Long> surface_height, Long line_height) {
  if (!surface_height) return false;
  const std::int64_t overlap = std::int64_t{std::max({pen.RunStyle.TextHeight, line_height, 0})} + 2;
  return pen.PenY - overlap >= *surface_height;
}

// How many code units go on this line; at least one, so that a split always ends.
std::size_t FitCount(const CaptionPen& pen, std::u16string_view text, Long height) {
  Long count = 0;
  try {
    count = FitCharacters(pen.dc, text, pen.PenX, pen.rect.right, pen.PenY,
                          SaturatingAdd(pen.PenY, std::int64_t{height} + 2));
  } catch (...) {
  }
  return static_cast<std::size_t>(std::max(count, 1));
}

// Cutting a word up measures all that is left of it for each piece, which takes time in the order of its
// length squared. For captions of ordinary length that doesn't matter and the platform sees every call.
// Past this many units two short cuts keep the time of a long one in bounds, and the picture as it is.
constexpr std::size_t kUnitsInFull = 16384;

// Extent of what is left of a word. On the short cut its beginning will do where that alone is wider than the
// line, by more than a letter can narrow those before it.
SIZE MeasureRest(CaptionPen& pen, std::u16string_view rest) {
  constexpr std::size_t kBeginning = 1024;
  pen.split_units += rest.size();
  if (pen.split_units > kUnitsInFull && rest.size() > kBeginning) {
    const SIZE beginning = pen.Measure(rest.substr(0, kBeginning));
    const std::int64_t narrowed = std::int64_t{beginning.cx} - 4 * std::int64_t{beginning.cy};
    if (SaturatingAdd(pen.LineStart, narrowed) > pen.AvailableWidth) return beginning;
  }
  return pen.Measure(rest);
}

// Draws the word piece by piece until what is left fits a line. On the short cut it stops where the surface
// ends and draws what is left in one go: the pen is below the surface for the rest of the caption then, as it
// would have been at the word's end. On a context without pixel memory there is no such end.
void Split(CaptionPen& pen, std::u16string_view rest, SIZE size) {
  std::optional<Long> surface_height;
  do {
    const std::u16string_view piece = rest.substr(0, FitCount(pen, rest, size.cy));
    if (pen.split_units > kUnitsInFull && !surface_height) surface_height = SurfaceHeight(pen.dc);
    if (piece.empty() || BelowSurface(pen, surface_height, size.cy)) break;
    size = pen.Measure(piece);
    Draw(pen, piece, size.cy);
    rest.remove_prefix(piece.size());
    pen.PenY = SaturatingAdd(pen.PenY, size.cy);
    size = MeasureRest(pen, rest);
    pen.PenX = pen.LineStart;
  } while (SaturatingAdd(pen.PenX, size.cx) > pen.AvailableWidth);  // here a line filled exactly does fit
  // The pen is on a fresh line already and takes another: the last piece stands two lines below the one
  // before.
  NewLine(pen, size.cy);
  Draw(pen, rest, size.cy);
  pen.PenX = SaturatingAdd(pen.PenX, size.cx);
}

}  // namespace

void PlaceText(CaptionPen& pen, std::u16string_view token) {
  const SIZE size = pen.Measure(token);
  FindOverhang(pen, token);
  // The pen counts from the surface's left edge and the width doesn't: a rectangle further right wraps early.
  const bool fits = SaturatingAdd(pen.PenX, size.cx) < pen.AvailableWidth;
  if (!fits && pen.shaping && Complex(token)) {
    Split(pen, token, size);
  } else {
    if (!fits) NewLine(pen, size.cy);
    Draw(pen, token, size.cy);
    pen.PenX = SaturatingAdd(pen.PenX, size.cx);
  }
  ApplyOverhang(pen);
}

}  // namespace marklet
