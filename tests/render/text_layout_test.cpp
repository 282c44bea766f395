// Where text stands in a picture, in whatever fonts there are: tested by the box around its ink.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

#include "render/picture.h"
#include "render/render_control.h"

namespace marklet {
namespace {

constexpr const char* kPaper = "#F0F0F0";

struct Box {
  Long left = 100000, top = 100000, right = -1, bottom = -1;  // inclusive
  Long Width() const { return right - left + 1; }
  Long Height() const { return bottom - top + 1; }
  bool Empty() const { return right < 0; }
};

Picture Draw(SIZE size, PropertyTexts properties, double scale = 1) {
  properties.insert(
      properties.begin(),
      {{"BackColor", kPaper}, {"ForeColor", "#000000"}, {"FontName", "DejaVu Sans"}, {"FontSize", "12"}});
  const ScaledScreen screen(scale);
  return PictureOf(RenderedControl(size, properties, scale).Surface());
}

template <class Wanted>
Box BoxOf(const Picture& picture, Wanted wanted) {
  Box box;
  for (Long y = 0; y < picture.height; ++y)
    for (Long x = 0; x < picture.width; ++x) {
      const auto row = picture.Row(y);
      const std::size_t i = static_cast<std::size_t>(x) * 3;
      if (!wanted(row[i], row[i + 1], row[i + 2])) continue;
      box = {std::min(box.left, x), std::min(box.top, y), std::max(box.right, x), std::max(box.bottom, y)};
    }
  return box;
}

Box Ink(const Picture& picture) {
  return BoxOf(picture, [](int r, int g, int b) { return r != 0xF0 || g != 0xF0 || b != 0xF0; });
}
Box Ink(SIZE size, const PropertyTexts& properties) { return Ink(Draw(size, properties)); }

// How many bands of ink there are, separated by clean lines.
int Bands(const Picture& picture) {
  int bands = 0;
  bool inside = false;
  for (Long y = 0; y < picture.height; ++y) {
    const auto row = picture.Row(y);
    const bool ink = std::any_of(row.begin(), row.end(), [](std::uint8_t byte) { return byte != 0xF0; });
    bands += ink && !inside;
    inside = ink;
  }
  return bands;
}

constexpr SIZE kWide = {300, 80};
const PropertyTexts kLine = {{"Caption", "Hamburg"}, {"WordWrap", "false"}};

PropertyTexts With(PropertyTexts properties,
                   std::initializer_list<std::pair<std::string, std::string>> more) {
  properties.insert(properties.end(), more);
  return properties;
}

TEST(TextLayout, PlainTextStartsAtTheTopLeft) {
  const Box box = Ink(kWide, kLine);
  EXPECT_LE(box.left, 3);
  EXPECT_LE(box.top, 8);
  EXPECT_LT(box.right, 150);
  EXPECT_LT(box.bottom, 30);
}

TEST(TextLayout, AlignmentsMoveTheSameInk) {
  const Box left = Ink(kWide, kLine);
  const Box right = Ink(kWide, With(kLine, {{"Alignment", "Right Justify"}}));
  const Box center = Ink(kWide, With(kLine, {{"Alignment", "Center"}}));
  EXPECT_EQ(right.Width(), left.Width());
  EXPECT_EQ(center.Width(), left.Width());
  EXPECT_GE(right.right, 295);
  EXPECT_NEAR(center.left, 299 - center.right, 4);
  const Box bottom = Ink(kWide, With(kLine, {{"VerticalAlignment", "Bottom"}}));
  const Box middle = Ink(kWide, With(kLine, {{"VerticalAlignment", "Center"}}));
  EXPECT_EQ(bottom.left, left.left);
  EXPECT_GE(bottom.bottom, 70);
  EXPECT_NEAR(middle.top, 79 - middle.bottom, 6);
}

TEST(TextLayout, RightToLeftStartsAtTheRight) {
  EXPECT_GE(Ink(kWide, With(kLine, {{"RightToLeft", "true"}})).right, 295);
  EXPECT_LE(Ink(kWide, With(kLine, {{"RightToLeft", "true"}, {"Alignment", "1"}})).left, 3)
      << "the alignments swap sides";
}

TEST(TextLayout, WrappedTextTakesMoreLinesAndStaysInside) {
  const PropertyTexts words = {{"Caption", "one two one two one two"}};
  const Long two_words = Ink(kWide, {{"Caption", "one two"}}).right + 8;
  const Picture wide = Draw({300, 100}, words), narrow = Draw({two_words, 100}, words);
  EXPECT_EQ(Bands(wide), 1);
  EXPECT_EQ(Bands(narrow), 3);
  EXPECT_LT(Ink(narrow).right, two_words - 1);
}

TEST(TextLayout, WithoutWordWrapALongLineIsCut) {
  const PropertyTexts words = {{"Caption", "one two one two one two"}, {"WordWrap", "false"}};
  EXPECT_EQ(Bands(Draw({60, 100}, words)), 1);
}

TEST(TextLayout, MarkupWrapsWhateverWordWrapSays) {
  const Long two_words = Ink(kWide, {{"Caption", "<b>one</b> two "}}).right + 12;
  for (const char* wrap : {"true", "false"}) {
    const PropertyTexts markup = {{"Caption", "<b>one</b> two <b>one</b> two"}, {"WordWrap", wrap}};
    EXPECT_EQ(Bands(Draw({two_words, 100}, markup)), 2) << wrap;
  }
}

TEST(TextLayout, MarkupBreaksLinesAndParagraphs) {
  const PropertyTexts line = {{"Caption", "<b>aa</b><.>bb"}}, paragraph = {{"Caption", "<b>aa</b><p>bb"}};
  const Picture one = Draw({100, 100}, line), two = Draw({100, 100}, paragraph);
  EXPECT_EQ(Bands(one), 2);
  EXPECT_EQ(Bands(two), 2);
  EXPECT_GT(Ink(two).bottom, Ink(one).bottom + 8) << "a paragraph leaves a line free";
}

TEST(TextLayout, MarkupIgnoresCentringAndVerticalAlignment) {
  const PropertyTexts markup = {{"Caption", "<b>Ham</b>burg"}};
  const Box plain = Ink(kWide, markup);
  const Box moved = Ink(kWide, With(markup, {{"Alignment", "Center"}, {"VerticalAlignment", "Bottom"}}));
  EXPECT_EQ(moved.left, plain.left);
  EXPECT_EQ(moved.bottom, plain.bottom);
}

TEST(TextLayout, BoldIsWiderAndLargerIsTaller) {
  const Box plain = Ink(kWide, kLine);
  EXPECT_GT(Ink(kWide, With(kLine, {{"FontBold", "true"}})).Width(), plain.Width());
  EXPECT_GT(Ink(kWide, With(kLine, {{"FontSize", "20"}})).Height(), plain.Height());
}

TEST(TextLayout, AColourTagColoursItsWordAlone) {
  const Picture picture = Draw(kWide, {{"Caption", "<b></b>black <c=FF0000>red</c> black"}});
  const Box red = BoxOf(picture, [](int r, int g, int b) { return r > g + 100 && r > b + 100; });
  const Box all = Ink(picture);
  ASSERT_FALSE(red.Empty());
  EXPECT_GT(red.left, all.left + 20);
  EXPECT_LT(red.right, all.right - 20);
}

TEST(TextLayout, SuperscriptStandsAboveSubscript) {
  const auto small = [](const char* caption) {
    return BoxOf(Draw(kWide, {{"Caption", caption}}),
                 [](int r, int g, int b) { return r > g + 60 && r > b + 60; });
  };
  const Box up = small("<b></b>x<sup><c=FF0000>2</c></sup> ");
  const Box down = small("<b></b>x<sub><c=FF0000>2</c></sub> ");
  ASSERT_FALSE(up.Empty());
  ASSERT_FALSE(down.Empty());
  EXPECT_LT(up.top, down.top);
  EXPECT_LT(up.bottom, down.bottom);
}

TEST(TextLayout, EveryEffectShowsItsColoursOnAnOpaqueControl) {
  struct Effect {
    const char* name;
    int red, green, blue;  // a colour that only its layers bring
  };
  for (const Effect& effect : {Effect{"effectStroke", 0, 0, 255}, Effect{"effectShadow", 128, 128, 128},
                               Effect{"effectEmboss", 255, 255, 255}, Effect{"effectEngrave", 255, 255, 255},
                               Effect{"effectHollow", 0, 0, 255}}) {
    const Picture picture = Draw(kWide, {{"Caption", "HHH"},
                                         {"FontSize", "30"},
                                         {"FontBold", "true"},
                                         {"ForeColor", "#00C000"},
                                         {"EffectColor", "#0000FF"},
                                         {"TextEffect", effect.name}});
    // Smoothed edges may keep a little of what lies below.
    const auto near = [](int colour, int wanted) { return std::abs(colour - wanted) <= 6; };
    const Box layer = BoxOf(picture, [&](int r, int g, int b) {
      return near(r, effect.red) && near(g, effect.green) && near(b, effect.blue);
    });
    EXPECT_FALSE(layer.Empty()) << effect.name;
    // No box stands behind the text: between the letters the background is as it was.
    const Box all = Ink(picture);
    int clean = 0;
    for (Long x = all.left; x <= all.right; ++x) {
      const auto row = picture.Row(all.top);
      clean += row[static_cast<std::size_t>(x) * 3] == 0xF0;
    }
    EXPECT_GT(clean, 0) << effect.name;
  }
}

TEST(TextLayout, AnUnknownEffectDrawsNothing) {
  EXPECT_TRUE(Ink(kWide, With(kLine, {{"TextEffect", "6"}})).Empty());
}

TEST(TextLayout, AHigherDensityDrawsLarger) {
  const Box once = Ink(kWide, kLine), twice = Ink(Draw(kWide, kLine, 2));
  EXPECT_NEAR(twice.Width(), 2 * once.Width(), once.Width() / 4.0);
  EXPECT_NEAR(twice.Height(), 2 * once.Height(), once.Height() / 4.0 + 2);
}

TEST(TextLayout, AutoSizeFitsItsInkTightly) {
  const Picture picture = Draw({10, 10}, With(kLine, {{"AutoSize", "true"}}));
  const Box box = Ink(picture);
  EXPECT_LT(picture.width - box.right, 8);
  EXPECT_LE(box.left, 3);
  EXPECT_GT(picture.height, box.Height());
}

}  // namespace
}  // namespace marklet
