// The shades that an edge derives from its base colour, and what its setters refuse.
#include "bitmaps/edge.h"

#include <gtest/gtest.h>

#include "platform/system.h"

namespace marklet {
namespace {

constexpr OLE_COLOR kUntranslatable = 0x7F000000;

TEST(Edge, StartsWithTheSystemsColours) {
  const CEdge edge;
  EXPECT_EQ(edge.FaceColor(), GetSysColor(15));
  EXPECT_EQ(edge.DkShadowColor(), GetSysColor(21));
  EXPECT_EQ(edge.HighlightColor(), GetSysColor(20));
  EXPECT_EQ(edge.ShadowColor(), GetSysColor(16));
}

TEST(Edge, DerivesThreeShadesFromItsBase) {
  CEdge edge;
  edge.PutBaseColor(MakeRgb(100, 100, 100));
  EXPECT_EQ(edge.FaceColor(), MakeRgb(100, 100, 100));
  EXPECT_EQ(edge.ShadowColor(), MakeRgb(66, 66, 66));
  EXPECT_EQ(edge.HighlightColor(), MakeRgb(140, 140, 140));
  EXPECT_EQ(edge.DkShadowColor(), MakeRgb(43, 43, 43));
}

TEST(Edge, KeepsTheHighlightOfWhiteWhite) {
  CEdge edge;
  edge.PutBaseColor(MakeRgb(255, 255, 255));
  EXPECT_EQ(edge.HighlightColor(), MakeRgb(255, 255, 255));
}

TEST(Edge, KeepsHueAndSaturationOfTheBase) {
  CEdge edge;
  edge.PutBaseColor(MakeRgb(204, 153, 102));  // 30 degrees, 50, 80
  // Value 53: 135.15, half of it 67.5 to the even 68, and between them 67 / 60 * 30 + 68, a little above
  // 101.5 because the slope as a 32-bit float is.
  EXPECT_EQ(edge.ShadowColor(), MakeRgb(135, 102, 68));
  // Value 112, clamped to 100: 127 / 60 * 30 + 128 is a little below 191.5.
  EXPECT_EQ(edge.HighlightColor(), MakeRgb(255, 191, 128));
}

TEST(Edge, KeepsASystemColourAsGiven) {
  Configuration().system_colours[15] = MakeRgb(100, 100, 100);
  CEdge edge;
  edge.PutBaseColor(0x8000000F);
  EXPECT_EQ(edge.FaceColor(), 0x8000000Fu);
  EXPECT_EQ(edge.ShadowColor(), MakeRgb(66, 66, 66));
  Configuration().system_colours.clear();
}

TEST(Edge, TakesItsFourColoursAtOnce) {
  CEdge edge;
  edge.Attach(1, 2, 3, 4);
  EXPECT_EQ(edge.FaceColor(), 1u);
  EXPECT_EQ(edge.DkShadowColor(), 2u);
  EXPECT_EQ(edge.HighlightColor(), 3u);
  EXPECT_EQ(edge.ShadowColor(), 4u);
}

TEST(Edge, RefusesAColourThatCannotBeTranslated) {
  CEdge edge;
  edge.Attach(1, 2, 3, 4);
  EXPECT_THROW(edge.PutFaceColor(kUntranslatable), EdgeColorError);
  EXPECT_THROW(edge.PutDkShadowColor(kUntranslatable), EdgeColorError);
  EXPECT_THROW(edge.PutHighlightColor(kUntranslatable), EdgeColorError);
  EXPECT_THROW(edge.PutShadowColor(kUntranslatable), EdgeColorError);
  EXPECT_EQ(edge.FaceColor(), 1u);
  EXPECT_EQ(edge.DkShadowColor(), 2u);
  EXPECT_EQ(edge.HighlightColor(), 3u);
  EXPECT_EQ(edge.ShadowColor(), 4u);
}

TEST(Edge, SaysWhyAColourWasRefused) {
  EXPECT_EQ(EdgeColorError::kNumber, 380);
  EXPECT_STREQ(EdgeColorError::kSource, "Edge");
  EXPECT_STREQ(EdgeColorError().what(), "Invalid color specification.");
}

TEST(Edge, TakesAnUntranslatableBaseInSilence) {
  CEdge edge;
  EXPECT_NO_THROW(edge.PutBaseColor(kUntranslatable));
  EXPECT_EQ(edge.FaceColor(), kUntranslatable);
  EXPECT_EQ(edge.HighlightColor(), MakeRgb(255, 255, 255));
}

}  // namespace
}  // namespace marklet
