// The eight handles around what is selected, and what dragging one of them does. Any unit, usually pixels.
#pragma once

#include <array>
#include <cstddef>

#include "place.h"

namespace designer {

// What is taken hold of. Body moves, the others change the size.
enum class Grip { TopLeft, Top, TopRight, Left, Right, BottomLeft, Bottom, BottomRight, Body, None };
constexpr std::size_t kHandles = 8;

// The squares of the handles, in the order of Grip, around the edge of `place` and not on it, so that they
// hide nothing of what is selected.
std::array<Place, kHandles> HandlesAround(const Place& place, int size);

// Of a point on the form. Handles come before the body.
Grip GripAt(const Place& place, int size, Point point);

// What is left of `place` when one takes hold of it and moves by (dx, dy): the edges that move come to lie on
// the grid, a grid of 1 takes every place. No edge passes the one opposite by less than `least`.
Place Dragged(const Place& place, Grip grip, int dx, int dy, int grid, int least);

// As far back onto a form of the size (width, height) as it takes to get hold of it again: `least` of it
// shows.
Place KeptOn(const Place& place, int width, int height, int least);

}  // namespace designer
