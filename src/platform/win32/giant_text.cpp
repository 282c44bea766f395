#include "platform/win32/giant_text.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "platform/text.h"
#include "platform/win32/saved_state.h"

namespace marklet::win32 {
namespace {

struct Point {
  double x, y;
};
using Contour = std::vector<Point>;

constexpr int kDrawnHeight = 2000;  // pixels at which the outlines are taken, to be scaled

// The selected font at that height. Null on failure; the caller deletes it.
::HFONT OutlineFont(::HDC dc, int height) {
  ::LOGFONTW record{};
  if (!::GetObjectW(GetCurrentObject(dc, OBJ_FONT), sizeof record, &record)) return nullptr;
  record.lfHeight = MulDiv(record.lfHeight, kDrawnHeight, height);
  return ::CreateFontIndirectW(&record);
}

// The outlines of a run at the selected font's size, from its top left corner, in straight lines.
std::vector<Contour> OutlinesOf(::HDC dc, std::u16string_view text) {
  std::vector<Contour> contours;
  const bool traced = BeginPath(dc) &&
                      ::TextOutW(dc, 0, 0, Native(text.data()), static_cast<int>(text.size())) &&
                      EndPath(dc) && FlattenPath(dc);
  const int count = traced ? GetPath(dc, nullptr, nullptr, 0) : 0;
  if (count <= 0) return contours;
  std::vector<POINT> points(static_cast<std::size_t>(count));
  std::vector<BYTE> types(points.size());
  if (GetPath(dc, points.data(), types.data(), count) != count) return contours;
  for (std::size_t i = 0; i < points.size(); ++i) {
    if (types[i] == PT_MOVETO || contours.empty()) contours.emplace_back();
    contours.back().push_back({static_cast<double>(points[i].x), static_cast<double>(points[i].y)});
  }
  return contours;
}

// Cuts a closed contour off where `inside` (positive: keep) goes below zero. What is cut runs along the edge.
template <typename Inside>
Contour CutOff(const Contour& contour, Inside inside) {
  Contour result;
  for (std::size_t i = 0; i < contour.size(); ++i) {
    const Point &from = contour[i], &to = contour[(i + 1) % contour.size()];
    const double a = inside(from), b = inside(to);
    if (a >= 0) result.push_back(from);
    if ((a >= 0) != (b >= 0)) {
      const double t = a / (a - b);
      result.push_back({from.x + t * (to.x - from.x), from.y + t * (to.y - from.y)});
    }
  }
  return result;
}

Contour ClipTo(Contour contour, const ::RECT& clip) {
  constexpr double kMargin = 2;  // the edges along which it is cut stay out of sight
  contour = CutOff(contour, [&](const Point& p) { return p.x - (clip.left - kMargin); });
  contour = CutOff(contour, [&](const Point& p) { return clip.right + kMargin - p.x; });
  contour = CutOff(contour, [&](const Point& p) { return p.y - (clip.top - kMargin); });
  return CutOff(contour, [&](const Point& p) { return clip.bottom + kMargin - p.y; });
}

bool Fill(::HDC dc, const std::vector<Contour>& contours) {
  std::vector<POINT> points;
  std::vector<int> counts;
  for (const Contour& contour : contours) {
    if (contour.size() < 3) continue;
    for (const Point& point : contour) points.push_back({std::lround(point.x), std::lround(point.y)});
    counts.push_back(static_cast<int>(contour.size()));
  }
  if (counts.empty()) return true;
  const SavedState state(dc);
  SetPolyFillMode(dc, WINDING);
  ::SelectObject(dc, GetStockObject(NULL_PEN));
  ::SelectObject(dc, GetStockObject(DC_BRUSH));
  SetDCBrushColor(dc, ::GetTextColor(dc));
  return PolyPolygon(dc, points.data(), counts.data(), static_cast<int>(counts.size()));
}

}  // namespace

bool FillGiantText(::HDC dc, int x, int y, std::u16string_view text, const ::RECT& clip) {
  TEXTMETRICW metrics{};
  const ::HFONT other = GetTextMetricsW(dc, &metrics) ? OutlineFont(dc, metrics.tmHeight) : nullptr;
  if (!other) return false;
  const ::HGDIOBJ font = ::SelectObject(dc, other);
  const int mode = ::SetBkMode(dc, TRANSPARENT);
  TEXTMETRICW taken{};
  GetTextMetricsW(dc, &taken);
  std::vector<Contour> contours = OutlinesOf(dc, text);
  ::SetBkMode(dc, mode);
  ::SelectObject(dc, font);
  ::DeleteObject(other);

  const double scale = static_cast<double>(metrics.tmHeight) / std::max<LONG>(taken.tmHeight, 1);
  for (Contour& contour : contours) {
    for (Point& point : contour) point = {x + point.x * scale, y + point.y * scale};
    contour = ClipTo(std::move(contour), clip);
  }
  return Fill(dc, contours);
}

}  // namespace marklet::win32
