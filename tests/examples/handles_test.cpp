// The handles of the form designer: where they are and what dragging them does.
#include "examples/designer/handles.h"

#include <gtest/gtest.h>

namespace designer {
namespace {

constexpr Place kPlace = {100, 50, 40, 20};
constexpr Grip kAll[] = {Grip::TopLeft, Grip::Top,        Grip::TopRight, Grip::Left,
                         Grip::Right,   Grip::BottomLeft, Grip::Bottom,   Grip::BottomRight};

TEST(Handles, StandAroundThePlaceAndHideNothingOfIt) {
  const auto handles = HandlesAround(kPlace, 7);
  EXPECT_EQ((Place{93, 43, 7, 7}), handles[0]);
  EXPECT_EQ((Place{116, 43, 7, 7}), handles[1]) << "around the middle";
  EXPECT_EQ((Place{140, 70, 7, 7}), handles[7]);
  for (const Place& handle : handles)
    EXPECT_TRUE(handle.Right() <= kPlace.left || handle.left >= kPlace.Right() ||
                handle.Bottom() <= kPlace.top || handle.top >= kPlace.Bottom());
}

TEST(Handles, AreFoundUnderEachOfTheirCorners) {
  const auto handles = HandlesAround(kPlace, 7);
  for (std::size_t i = 0; i < kHandles; ++i) {
    EXPECT_EQ(kAll[i], GripAt(kPlace, 7, {handles[i].left, handles[i].top}));
    EXPECT_EQ(kAll[i], GripAt(kPlace, 7, {handles[i].Right() - 1, handles[i].Bottom() - 1}));
  }
  EXPECT_EQ(Grip::Body, GripAt(kPlace, 7, {100, 50}));
  EXPECT_EQ(Grip::None, GripAt(kPlace, 7, {105, 45})) << "between two";
  EXPECT_EQ(Grip::None, GripAt(kPlace, 7, {0, 0}));
}

TEST(Handles, MoveTheEdgesThatTheyAreOn) {
  constexpr Place kExpected[] = {{103, 54, 37, 16}, {100, 54, 40, 16}, {100, 54, 43, 16}, {103, 50, 37, 20},
                                 {100, 50, 43, 20}, {103, 50, 37, 24}, {100, 50, 40, 24}, {100, 50, 43, 24}};
  for (std::size_t i = 0; i < kHandles; ++i)
    EXPECT_EQ(kExpected[i], Dragged(kPlace, kAll[i], 3, 4, 1, 8)) << i;
  EXPECT_EQ((Place{103, 54, 40, 20}), Dragged(kPlace, Grip::Body, 3, 4, 1, 8));
  EXPECT_EQ(kPlace, Dragged(kPlace, Grip::None, 3, 4, 1, 8));
}

TEST(Handles, LeaveWhatDoesntMoveOffTheGrid) {
  EXPECT_EQ((Place{104, 50, 36, 20}), Dragged(kPlace, Grip::Left, 3, 9, 8, 8));
  EXPECT_EQ((Place{104, 50, 40, 20}), Dragged(kPlace, Grip::Body, 5, 0, 8, 8)) << "its top stays at 50";
  EXPECT_EQ((Place{-8, 50, 40, 20}), Dragged(kPlace, Grip::Body, -109, 0, 8, 8)) << "also left of the form";
}

TEST(Handles, StopBeforeTheEdgeOpposite) {
  EXPECT_EQ((Place{132, 62, 8, 8}), Dragged(kPlace, Grip::TopLeft, 500, 500, 1, 8));
  EXPECT_EQ((Place{100, 50, 8, 8}), Dragged(kPlace, Grip::BottomRight, -500, -500, 1, 8));
}

TEST(Places, ComeBackOntoTheFormAsFarAsNeeded) {
  EXPECT_EQ((Place{192, 92, 40, 20}), KeptOn({500, 500, 40, 20}, 200, 100, 8));
  EXPECT_EQ((Place{-32, -12, 40, 20}), KeptOn({-500, -500, 40, 20}, 200, 100, 8));
  EXPECT_EQ(kPlace, KeptOn(kPlace, 200, 100, 8));
}

// --- Twips ------------------------------------------------------------------------------------------------

TEST(Twips, BringBackEveryPixelOfTheUsualScreens) {
  for (const int per_inch : {96, 120, 144, 192, 288})
    for (int pixels = -3000; pixels <= 3000; ++pixels)
      EXPECT_EQ(pixels, ToPixels(ToTwips(pixels, per_inch), per_inch)) << per_inch;
}

TEST(Twips, KeepTheSizeInInchesFromScreenToScreen) {
  EXPECT_EQ((Place{150, 75, 60, 30}), ToPixels(ToTwips(Place{100, 50, 40, 20}, 96), 144));
  EXPECT_EQ(1440, ToTwips(144, 144));
}

}  // namespace
}  // namespace designer
