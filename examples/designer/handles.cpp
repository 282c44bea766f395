#include "handles.h"

#include <algorithm>

namespace designer {
namespace {

// Which edges a grip takes along.
struct Edges {
  bool left, top, right, bottom;
};
constexpr Edges kEdges[] = {
    {true, true, false, false},  {false, true, false, false}, {false, true, true, false},
    {true, false, false, false}, {false, false, true, false}, {true, false, false, true},
    {false, false, false, true}, {false, false, true, true},
};
static_assert(std::size(kEdges) == kHandles);

// To the nearest line, also left of 0.
int OnGrid(int value, int grid) {
  const int shifted = value + grid / 2;
  const int below = shifted < 0 && shifted % grid != 0 ? shifted / grid - 1 : shifted / grid;
  return below * grid;
}

// The start of a handle along one side: before it, around its middle, or after it.
int Along(bool before, bool after, int start, int length, int size) {
  if (before) return start - size;
  if (after) return start + length;
  return start + (length - size) / 2;
}

}  // namespace

std::array<Place, kHandles> HandlesAround(const Place& place, int size) {
  std::array<Place, kHandles> handles;
  for (std::size_t i = 0; i < kHandles; ++i) {
    const Edges& edges = kEdges[i];
    handles[i] = {Along(edges.left, edges.right, place.left, place.width, size),
                  Along(edges.top, edges.bottom, place.top, place.height, size), size, size};
  }
  return handles;
}

Grip GripAt(const Place& place, int size, Point point) {
  const auto handles = HandlesAround(place, size);
  for (std::size_t i = 0; i < kHandles; ++i)
    if (handles[i].Has(point)) return static_cast<Grip>(i);
  return place.Has(point) ? Grip::Body : Grip::None;
}

Place Dragged(const Place& place, Grip grip, int dx, int dy, int grid, int least) {
  if (grip == Grip::None) return place;
  Place result = place;
  // What doesn't move along an axis keeps its place there, on the grid or off it.
  if (grip == Grip::Body) {
    if (dx != 0) result.left = OnGrid(place.left + dx, grid);
    if (dy != 0) result.top = OnGrid(place.top + dy, grid);
    return result;
  }
  const Edges& edges = kEdges[static_cast<std::size_t>(grip)];
  int right = place.Right(), bottom = place.Bottom();
  if (edges.left) result.left = std::min(OnGrid(place.left + dx, grid), right - least);
  if (edges.top) result.top = std::min(OnGrid(place.top + dy, grid), bottom - least);
  if (edges.right) right = std::max(OnGrid(right + dx, grid), place.left + least);
  if (edges.bottom) bottom = std::max(OnGrid(bottom + dy, grid), place.top + least);
  result.width = right - result.left;
  result.height = bottom - result.top;
  return result;
}

Place KeptOn(const Place& place, int width, int height, int least) {
  Place result = place;
  result.left = std::max(std::min(place.left, width - least), least - place.width);
  result.top = std::max(std::min(place.top, height - least), least - place.height);
  return result;
}

}  // namespace designer
