// The lines that make up a three-dimensional edge, shared by those who draw one.
#pragma once

#include <cstdint>

#include "base/rounding.h"
#include "platform/types.h"

namespace marklet {

// Which colour a line has; kNone for an edge with both bits of a pair, which has no colour of its own.
enum class EdgeShade { kFace, kDkShadow, kHighlight, kShadow, kNone };

// `part` is the edge's outer bits (BDR_OUTER) or its inner bits (BDR_INNER). Left and top are the near sides.
constexpr EdgeShade ShadeOf(std::uint32_t part, bool near_side) {
  switch (part) {
    case BDR_RAISEDOUTER:
      return near_side ? EdgeShade::kFace : EdgeShade::kDkShadow;
    case BDR_SUNKENOUTER:
      return near_side ? EdgeShade::kShadow : EdgeShade::kHighlight;
    case BDR_RAISEDINNER:
      return near_side ? EdgeShade::kHighlight : EdgeShade::kShadow;
    case BDR_SUNKENINNER:
      return near_side ? EdgeShade::kDkShadow : EdgeShade::kFace;
    default:
      return EdgeShade::kNone;
  }
}

// Calls `draw(shade, from_x, from_y, to_x, to_y)` for each line in drawing order: left, top, right, bottom,
// the outer line before the inner. A line ends before its last pixel. The inner line of the right side starts
// one pixel lower than the others meet; edges have always had that notch.
template <typename Draw>
void ForEachEdgeLine(const RECT& rect, std::uint32_t edge, std::uint32_t flags, Draw draw) {
  // Distances of both ends from the rectangle's edges: from the right and bottom edge where `far`.
  struct End {
    bool far_x, far_y;
    Long dx, dy;
  };
  struct Line {
    std::uint32_t flag;
    std::uint32_t part;
    End from, to;
  };
  constexpr Line kLines[] = {
      {BF_LEFT, BDR_OUTER, {false, true, 0, -1}, {false, false, 0, 0}},
      {BF_LEFT, BDR_INNER, {false, true, 1, -2}, {false, false, 1, 1}},
      {BF_TOP, BDR_OUTER, {false, false, 0, 0}, {true, false, 0, 0}},
      {BF_TOP, BDR_INNER, {false, false, 1, 1}, {true, false, -1, 1}},
      {BF_RIGHT, BDR_OUTER, {true, false, -1, 0}, {true, true, -1, -1}},
      {BF_RIGHT, BDR_INNER, {true, false, -2, 2}, {true, true, -2, -2}},
      {BF_BOTTOM, BDR_OUTER, {true, true, -1, -1}, {false, true, 0, -1}},
      {BF_BOTTOM, BDR_INNER, {true, true, -2, -2}, {false, true, 1, -2}},
  };
  const auto x = [&](const End& end) { return WrapAdd(end.far_x ? rect.right : rect.left, end.dx); };
  const auto y = [&](const End& end) { return WrapAdd(end.far_y ? rect.bottom : rect.top, end.dy); };
  for (const Line& line : kLines) {
    if ((flags & line.flag) == 0 || (edge & line.part) == 0) continue;
    draw(ShadeOf(edge & line.part, (line.flag & (BF_LEFT | BF_TOP)) != 0), x(line.from), y(line.from),
         x(line.to), y(line.to));
  }
}

}  // namespace marklet
