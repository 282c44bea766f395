// Colour arithmetic and edges against a second, plain evaluation of their rules, over all inputs or millions.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include "bitmaps/colour.h"
#include "bitmaps/edge.h"
#include "bitmaps/hsv.h"
#include "bitmaps/pixels.h"

namespace marklet {
namespace {

// To nearest, halves to the even neighbour.
int Nearest(double value) {
  const double below = std::floor(value), past = value - below;
  const int whole = static_cast<int>(below);
  if (past < 0.5) return whole;
  if (past > 0.5) return whole + 1;
  return whole % 2 == 0 ? whole : whole + 1;
}

// --- Hue, saturation, value -------------------------------------------------------------------------------

Hsv PlainHsv(int r, int g, int b) {
  const int most = r > g ? (r > b ? r : b) : (g > b ? g : b);
  const int least = r < g ? (r < b ? r : b) : (g < b ? g : b);
  const int value = most < 2 ? 0 : Nearest(most * 100 / 255.0);
  if (most == least) return {0, 0, value};
  const int d = most - least;
  const float q = static_cast<float>(60.0 / d);
  double hue = 0;
  if (most == r)
    hue = (g - b) * double{q} + (b > g ? 360 : 0);
  else if (most == g)
    hue = (b - r) * double{q} + 120;
  else
    hue = (r - g) * double{q} + 240;
  return {Nearest(hue), Nearest(d * 100.0 / most), value};
}

TEST(SlowColourArithmetic, HueSaturationAndValueHoldForEveryColour) {
  for (int r = 0; r < 256; ++r)
    for (int g = 0; g < 256; ++g)
      for (int b = 0; b < 256; ++b) {
        const COLORREF colour = static_cast<COLORREF>(r | g << 8 | b << 16);
        if (!(RGBToHSV(colour) == PlainHsv(r, g, b))) FAIL() << r << ' ' << g << ' ' << b;
      }
}

COLORREF PlainRgb(int h, int s, int v) {
  const int M = Nearest(v * 255 / 100.0);
  const int m = Nearest((100 - s) * M / 100.0);
  const float k = static_cast<float>((M - m) / 60.0);
  const auto ramp = [&](int n) { return Nearest(double{k} * n + m); };
  const auto pack = [](int r, int g, int b) { return static_cast<COLORREF>(r | g << 8 | b << 16); };
  if (h < 0) return 0;
  if (h <= 60) return pack(M, ramp(h), m);
  if (h <= 120) return pack(ramp(120 - h), M, m);
  if (h <= 180) return pack(m, M, ramp(h - 120));
  if (h <= 240) return pack(m, ramp(240 - h), M);
  if (h <= 300) return pack(ramp(h - 240), m, M);
  return h <= 360 ? pack(M, m, ramp(360 - h)) : 0;
}

TEST(SlowColourArithmetic, ColoursHoldForEveryHueSaturationAndValue) {
  for (int h = -2; h <= 362; ++h)
    for (int s = 0; s <= 100; ++s)
      for (int v = 0; v <= 100; ++v)
        if (HSVToRGB({h, s, v}, false) != PlainRgb(h, s, v)) FAIL() << h << ' ' << s << ' ' << v;
}

TEST(SlowColourArithmetic, NormalisedTriplesAreThoseInTheirRanges) {
  std::mt19937 random(1);
  std::uniform_int_distribution<Long> any(std::numeric_limits<Long>::min(), std::numeric_limits<Long>::max());
  const auto clamp = [](Long value) { return value < 0 ? 0 : value > 100 ? 100 : value; };
  for (int i = 0; i < 1000000; ++i) {
    const Hsv hsv = {any(random), any(random) >> (i % 32), any(random) >> (i % 32)};
    const Long turned = static_cast<Long>(((std::int64_t{hsv.hue} % 360) + 360) % 360);
    const Hsv expected = {turned, clamp(hsv.saturation), clamp(hsv.value)};
    if (!(NormaliseHSV(hsv) == expected)) FAIL() << hsv.hue;
  }
}

// --- Blends -----------------------------------------------------------------------------------------------

TEST(SlowColourArithmetic, BlendsHoldForTenMillionPairs) {
  std::mt19937 random(2);
  for (int i = 0; i < 10000000; ++i) {
    const auto next = [&random] { return static_cast<std::uint32_t>(random()); };
    const std::uint32_t a = next() & 0xFFFFFF, b = next() & 0xFFFFFF, rest = next();
    const std::uint32_t weight = rest & 255;
    const bool swap = (rest & 256) != 0;
    const std::uint32_t first = swap ? b : a, second = swap ? a : b;
    std::uint32_t expected = 0;
    for (int shift = 0; shift < 24; shift += 8) {
      const std::uint32_t of_first = (first >> shift & 255) * weight / 255;
      const std::uint32_t of_second = (second >> shift & 255) * (255 - weight) / 255;
      expected |= (of_first + of_second) << shift;
    }
    if (BlendColours(a, b, static_cast<int>(weight), swap) != expected) FAIL() << a << ' ' << b;
  }
}

// --- Edges ------------------------------------------------------------------------------------------------

constexpr Long kWidth = 14, kHeight = 11;
constexpr RECT kRect = {1, 2, 13, 10};
constexpr COLORREF kPaper = MakeRgb(7, 8, 9), kBlackPen = 0;

// The line table, on an array: a line leaves its last pixel out.
struct PlainEdge {
  std::vector<COLORREF> pixels = std::vector<COLORREF>(std::size_t{kWidth} * kHeight, kPaper);
  COLORREF pen = kBlackPen;

  void Line(Long x, Long y, Long to_x, Long to_y) {
    const Long step_x = (to_x > x) - (to_x < x), step_y = (to_y > y) - (to_y < y);
    for (; x != to_x || y != to_y; x += step_x, y += step_y)
      if (x >= 0 && y >= 0 && x < kWidth && y < kHeight)
        pixels[static_cast<std::size_t>(y) * kWidth + static_cast<std::size_t>(x)] = pen;
  }
  // None for two bits of a pair: the pen that is there draws.
  void Take(std::uint32_t bits, bool is_near, const CEdge& edge) {
    if (bits == 1) pen = is_near ? edge.FaceColor() : edge.DkShadowColor();
    if (bits == 2) pen = is_near ? edge.ShadowColor() : edge.HighlightColor();
    if (bits == 4) pen = is_near ? edge.HighlightColor() : edge.ShadowColor();
    if (bits == 8) pen = is_near ? edge.DkShadowColor() : edge.FaceColor();
  }
  void Draw(std::uint32_t bits, std::uint32_t sides, const CEdge& edge) {
    const auto [l, t, r, b] = kRect;
    const Long outer[4][4] = {
        {l, b - 1, l, t}, {l, t, r, t}, {r - 1, t, r - 1, b - 1}, {r - 1, b - 1, l, b - 1}};
    const Long inner[4][4] = {{l + 1, b - 2, l + 1, t + 1},
                              {l + 1, t + 1, r - 1, t + 1},
                              {r - 2, t + 2, r - 2, b - 2},
                              {r - 2, b - 2, l + 1, b - 2}};
    for (std::uint32_t side = 0; side < 4; ++side) {
      if ((sides >> side & 1) == 0) continue;
      for (const auto& [mask, line] : {std::pair{3u, outer[side]}, {12u, inner[side]}}) {
        if ((bits & mask) == 0) continue;
        Take(bits & mask, side < 2, edge);
        Line(line[0], line[1], line[2], line[3]);
      }
    }
  }
};

TEST(SlowEdges, EveryEdgeOnEverySideIsItsLinesPixelByPixel) {
  const COLORREF bases[] = {MakeRgb(100, 100, 100), MakeRgb(255, 255, 255), MakeRgb(0, 0, 0),
                            MakeRgb(204, 153, 102), MakeRgb(10, 200, 30)};
  for (const COLORREF base : bases)
    for (std::uint32_t bits = 0; bits < 16; ++bits)
      for (std::uint32_t sides = 0; sides < 16; ++sides) {
        const auto surface = Surface(kWidth, kHeight, kPaper);
        CEdge edge;
        edge.PutBaseColor(base);
        RECT rect = kRect;
        std::uint32_t flags = sides;
        edge.DrawEdge(surface->hDC(), rect, bits, flags);
        PlainEdge plain;
        plain.Draw(bits, sides, edge);
        GdiFlush();
        for (Long y = 0; y < kHeight; ++y)
          for (Long x = 0; x < kWidth; ++x)
            ASSERT_EQ(ColourAt(*surface, x, kHeight - 1 - y),
                      plain.pixels[static_cast<std::size_t>(y * kWidth + x)])
                << "edge " << bits << " sides " << sides << " at " << x << ", " << y;
        EXPECT_EQ(rect, kRect);
        EXPECT_EQ(flags, sides);
      }
}

}  // namespace
}  // namespace marklet
