// Where the controls of a sheet stand. Without titles and captions no glyph is involved.
#include "render/sheet.h"

#include <gtest/gtest.h>

#include "render/render_error.h"

namespace marklet {
namespace {

struct Shown {
  explicit Shown(std::string_view json, double scale = 1) : picture(RenderSheet(json, scale)) {}
  unsigned At(Long x, Long y) const {
    const auto row = picture.Row(y);
    const std::size_t i = static_cast<std::size_t>(x) * 3;
    return static_cast<unsigned>(row[i] << 16 | row[i + 1] << 8 | row[i + 2]);
  }
  Picture picture;
};

constexpr const char* kFour = R"({
  "columns": 2, "margin": 10, "gap": 4, "background": "#FFFFFF",
  "properties": { "BackColor": "#FF0000" },
  "items": [ { "size": "30x20" },
             { "size": "20x8", "properties": { "BackColor": "#00FF00" } },
             { "size": "64x5", "span": 2, "properties": { "BackColor": "#0000FF" } },
             { "size": "10x10" } ] })";

TEST(Sheet, RowsAreFilledFromTheLeftInColumnsOfOneWidth) {
  const Shown shown(kFour);
  // Two columns of 30 with a gap of 4; rows of 20, 5 and 10.
  EXPECT_EQ(shown.picture.width, 10 + 30 + 4 + 30 + 10);
  EXPECT_EQ(shown.picture.height, 10 + 20 + 4 + 5 + 4 + 10 + 10);
  EXPECT_EQ(shown.At(9, 9), 0xFFFFFFu);
  EXPECT_EQ(shown.At(10, 10), 0xFF0000u);
  EXPECT_EQ(shown.At(39, 29), 0xFF0000u);
  EXPECT_EQ(shown.At(40, 10), 0xFFFFFFu);
  EXPECT_EQ(shown.At(44, 10), 0x00FF00u);
  EXPECT_EQ(shown.At(63, 17), 0x00FF00u);
  EXPECT_EQ(shown.At(64, 10), 0xFFFFFFu);
  EXPECT_EQ(shown.At(10, 34), 0x0000FFu);
  EXPECT_EQ(shown.At(73, 38), 0x0000FFu);
  EXPECT_EQ(shown.At(10, 43), 0xFF0000u);
  EXPECT_EQ(shown.At(20, 43), 0xFFFFFFu);
}

TEST(Sheet, AnItemThatDoesNotFitItsRowStartsTheNext) {
  const Shown shown(R"({ "columns": 3, "margin": 0, "gap": 0, "properties": { "BackColor": 0 },
    "items": [ { "size": "10x10" }, { "size": "10x10" }, { "size": "20x10", "span": 2 } ] })");
  EXPECT_EQ(shown.picture.width, 30);
  EXPECT_EQ(shown.picture.height, 20);
  EXPECT_EQ(shown.At(25, 5), 0xFFFFFFu);
  EXPECT_EQ(shown.At(15, 15), 0u);
}

TEST(Sheet, ASpanIsAtMostTheColumns) {
  const Shown shown(R"({ "columns": 1, "margin": 0, "gap": 5,
    "items": [ { "size": "10x10", "span": 9 } ] })");
  EXPECT_EQ(shown.picture.width, 10);
}

TEST(Sheet, AWideItemWidensTheColumnsItSpans) {
  const Shown shown(R"({ "columns": 2, "margin": 0, "gap": 4,
    "items": [ { "size": "10x10" }, { "size": "101x10", "span": 2 } ] })");
  EXPECT_EQ(shown.picture.width, 49 + 4 + 49) << "97 shared by two, rounded up";
}

TEST(Sheet, EverythingScales) {
  const Shown shown(kFour, 2);
  EXPECT_EQ(shown.picture.width, 168);
  EXPECT_EQ(shown.picture.height, 126);
  EXPECT_EQ(shown.At(20, 20), 0xFF0000u);
  EXPECT_EQ(shown.At(79, 59), 0xFF0000u);
  EXPECT_EQ(shown.At(80, 20), 0xFFFFFFu);
}

TEST(Sheet, ATitleStandsAboveItsControlAndControlsOfARowOnOneLine) {
  const Shown shown(R"({ "columns": 2, "margin": 0, "gap": 0, "background": "#FEFEFE",
    "properties": { "BackColor": 255 },
    "items": [ { "title": "One", "size": "80x10" }, { "size": "80x10" } ] })");
  const Long title = shown.picture.height - 10;
  EXPECT_GT(title, 8);
  EXPECT_EQ(shown.At(0, title - 1), 0xFEFEFEu);
  EXPECT_EQ(shown.At(0, title), 0xFF0000u);
  EXPECT_EQ(shown.At(80, title - 1), 0xFEFEFEu);
  EXPECT_EQ(shown.At(80, title), 0xFF0000u);
  bool ink = false;
  for (Long x = 0; x < 80; ++x)
    for (Long y = 0; y < title; ++y) ink |= shown.At(x, y) != 0xFEFEFEu;
  EXPECT_TRUE(ink);
}

TEST(Sheet, AHeadingHasARowAndARuleOfItsOwn) {
  const Shown shown(R"({ "columns": 2, "margin": 0, "gap": 0,
    "items": [ { "size": "50x10", "properties": { "BackColor": 0 } }, { "heading": "Head" },
               { "size": "50x10", "properties": { "BackColor": 255 } } ] })");
  EXPECT_EQ(shown.At(10, 5), 0u);
  EXPECT_EQ(shown.At(60, 5), 0xFFFFFFu) << "the row ends before the heading";
  EXPECT_EQ(shown.At(10, shown.picture.height - 1), 0xFF0000u);
  int rules = 0;
  for (Long y = 10; y < shown.picture.height - 10; ++y) rules += shown.At(99, y) == 0xC9D1D9u;
  EXPECT_EQ(rules, 1);
}

// Twenty columns as wide as the widest control, and a hundred and twenty thousand lines.
TEST(Sheet, TooLargeASheetIsRefused) {
  std::string json = R"({ "columns": 20, "items": [ { "size": "4096x1" })";
  for (int i = 0; i < 30; ++i) json += R"(, { "size": "1x4096", "span": 20 })";
  json += "] }";
  EXPECT_THROW(RenderSheet(json, 1), RenderError);
}

TEST(SlowSheet, OfTheMostPixelsIsDrawnAndOfARowMoreIsRefusedInOneLine) {
  const auto sheet = [](int height) {
    return R"({ "columns": 16, "margin": 0, "gap": 0, "items": [ { "size": "4096x1024" }, { "size": "1x)" +
           std::to_string(height) + R"(" } ] })";
  };
  EXPECT_EQ(RenderSheet(sheet(1024), 1).height, 1024);
  try {
    RenderSheet(sheet(1025), 1);
    FAIL();
  } catch (const RenderError& error) {
    EXPECT_STREQ(error.what(), "the sheet is too large to draw: it has more than 67108864 pixels");
  }
}

TEST(Sheet, AControlThatIsWiderThanTheSheetIsCutOff) {
  const Shown shown(R"({ "columns": 1, "margin": 0, "gap": 0, "background": "#FFFFFF",
    "items": [ { "size": "10x10", "properties": { "BackColor": 255, "Caption": "A long caption", "AutoSize": true } },
               { "size": "10x10", "properties": { "BackColor": 0 } } ] })");
  EXPECT_EQ(shown.picture.width, 10);
  EXPECT_EQ(shown.At(0, shown.picture.height - 1), 0u);
  EXPECT_EQ(shown.At(9, shown.picture.height - 10), 0u);
  EXPECT_EQ(shown.At(0, 0), 0xFF0000u);
}

TEST(Sheet, ShowsEachControlOnce) {
  int seen = 0;
  RenderSheet(kFour, 1, {}, [&seen](RenderedControl& control) {
    ++seen;
    EXPECT_GT(control.Height(), 0);
  });
  EXPECT_EQ(seen, 4);
}

}  // namespace
}  // namespace marklet
