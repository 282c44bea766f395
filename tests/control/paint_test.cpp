// The picture where no glyph is involved: backgrounds, borders, copies. Exact on every platform.
#include <gtest/gtest.h>

#include "platform/system.h"
#include "support/fake_host.h"
#include "support/memory_form.h"

namespace marklet {
namespace {

using testing::FakeHost;
using testing::HostedControl;
using testing::MemoryForm;

struct Paint : ::testing::Test {
  HostedControl hosted;
  FakeHost& host = hosted.host;

  void SetUp() override {
    hosted.Init();
    hosted.Set("BackColor", Long{0x00C08040});
  }
  void TearDown() override { Configuration() = {}; }
};

TEST_F(Paint, AnOpaqueBackgroundFillsTheClientArea) {
  for (const auto& [x, y] : {std::pair<Long, Long>{0, 0}, {99, 0}, {0, 49}, {99, 49}, {50, 25}})
    EXPECT_EQ(host.Pixel(x, y), 0x00C08040u);
}

TEST_F(Paint, ASystemColourIsResolvedWhenItIsPainted) {
  Configuration().system_colours[15] = 0x00112233;
  hosted.Set("BackColor", static_cast<Long>(0x8000000F));
  EXPECT_EQ(host.Pixel(7, 7), 0x00112233u);
}

TEST_F(Paint, ClientSizesAreRoundedHalvesToEven) {
  host.scale_width = 20.5;
  host.scale_height = 11.5;
  hosted.control.RedrawNow();
  EXPECT_EQ(hosted.State().BackBuffer->Width(), 20);
  EXPECT_EQ(hosted.State().BackBuffer->Height(), 12);
}

TEST_F(Paint, AFlatBorderIsBlackWhateverTheForeColor) {
  hosted.Set("ForeColor", Long{0x0000FF});
  hosted.Set("Appearance", Long{0});
  hosted.Set("BackColor", Long{0x00C08040});
  hosted.Set("BorderStyle", Long{1});
  for (Long x = 0; x < 100; ++x) {
    ASSERT_EQ(host.Pixel(x, 0), 0u) << x;
    ASSERT_EQ(host.Pixel(x, 49), 0u) << x;
  }
  for (Long y = 0; y < 50; ++y) {
    ASSERT_EQ(host.Pixel(0, y), 0u) << y;
    ASSERT_EQ(host.Pixel(99, y), 0u) << y;
  }
  EXPECT_EQ(host.Pixel(1, 1), 0x00C08040u);
  EXPECT_EQ(host.Pixel(98, 48), 0x00C08040u);
}

TEST_F(Paint, AnAppearanceOutOfRangeHasTheFlatBorder) {
  hosted.Set("Appearance", Long{2});
  hosted.Set("BorderStyle", Long{1});
  EXPECT_EQ(host.Pixel(0, 0), 0u);
}

TEST_F(Paint, ABorderStyleOutOfRangeDrawsNoBorder) {
  hosted.Set("Appearance", Long{0});
  hosted.Set("BackColor", Long{0x00C08040});
  hosted.Set("BorderStyle", Long{2});
  EXPECT_EQ(host.Pixel(0, 0), 0x00C08040u);
}

// --- The three-dimensional border -------------------------------------------------------------------------

constexpr COLORREF Grey(unsigned level) { return MakeRgb(level, level, level); }

// What stands at a pixel of the edge around 100 by 50 pixels, drawn in turn left, top, right and bottom, each
// line without its last pixel.
COLORREF EdgeAt(Long x, Long y, COLORREF face, COLORREF dark, COLORREF light, COLORREF shadow) {
  if (y == 49 && x >= 1) return light;
  if (x == 99 && y <= 48) return light;
  if (x == 0 || y == 0) return shadow;
  if (y == 48 && x >= 2) return face;
  if (x == 98 && y >= 2) return face;
  return dark;
}

void ExpectEdge(FakeHost& host, COLORREF face, COLORREF dark, COLORREF light, COLORREF shadow) {
  for (Long y = 0; y < 50; ++y)
    for (Long x = 0; x < 100; ++x) {
      const bool inside = x >= 2 && x < 98 && y >= 2 && y < 48;
      if (inside) continue;
      ASSERT_EQ(host.Pixel(x, y), EdgeAt(x, y, face, dark, light, shadow)) << x << "," << y;
    }
}

TEST_F(Paint, AThreeDimensionalBorderIsShadedFromTheParentsColour) {
  MemoryForm form;
  form.form->numbers["BackColor"] = Grey(100);
  host.parent = form.form;
  hosted.Set("BorderStyle", Long{1});
  ExpectEdge(host, Grey(100), Grey(43), Grey(140), Grey(66));
  EXPECT_EQ(host.Pixel(2, 2), 0x00C08040u) << "the control's own colour inside";
}

TEST_F(Paint, ATransparentControlsBorderIsShadedFromTheButtonFace) {
  Configuration().system_colours[15] = Grey(100);
  MemoryForm form;
  form.form->numbers["BackColor"] = 0x0000FF;
  host.parent = form.form;
  hosted.Set("BackStyle", Long{0});
  hosted.Set("BorderStyle", Long{1});
  ExpectEdge(host, Grey(100), Grey(43), Grey(140), Grey(66));
}

TEST_F(Paint, AParentWithoutAColourGivesTheButtonFaceToo) {
  Configuration().system_colours[15] = Grey(100);
  for (const bool parent : {false, true}) {
    MemoryForm form;
    form.form->numbers.erase("BackColor");
    host.parent = parent ? form.form : nullptr;
    hosted.Set("BorderStyle", Long{1});
    ExpectEdge(host, Grey(100), Grey(43), Grey(140), Grey(66));
  }
}

// --- The designer's outline -------------------------------------------------------------------------------

bool AnyInkOnTheEdge(FakeHost& host) {
  for (Long x = 0; x < 100; ++x)
    if (host.Pixel(x, 0) != host.Pixel(50, 25)) return true;
  return false;
}

TEST_F(Paint, ABorderlessEmptyTransparentControlIsOutlinedInTheDesignerAlone) {
  hosted.Set("BackStyle", Long{0});
  EXPECT_FALSE(AnyInkOnTheEdge(host));
  host.ambient.user_mode = false;
  hosted.control.RedrawNow();
  EXPECT_TRUE(AnyInkOnTheEdge(host));
  EXPECT_NE(host.Pixel(1, 0), host.Pixel(2, 0)) << "a dotted line";
}

TEST_F(Paint, TheOutlineNeedsAllThreeOfItsConditions) {
  host.ambient.user_mode = false;
  hosted.control.RedrawNow();
  EXPECT_FALSE(AnyInkOnTheEdge(host)) << "opaque";
  hosted.State().BackStyle = 0;
  hosted.State().Caption = u" ";
  hosted.control.RedrawNow();
  EXPECT_FALSE(AnyInkOnTheEdge(host)) << "a caption, though it shows nothing";
}

// --- The cache --------------------------------------------------------------------------------------------

TEST_F(Paint, ARepaintWithoutAChangeKeepsThePicture) {
  const auto before = hosted.State().BackBuffer;
  hosted.control.PaintControl(nullptr);
  EXPECT_EQ(hosted.State().BackBuffer, before);
}

TEST_F(Paint, AnotherContextGetsTheSamePictureWithoutRebuilding) {
  const auto before = hosted.State().BackBuffer;
  CDib24 other;
  ASSERT_TRUE(other.Create(100, 50));
  host.TakeLog();
  hosted.control.PaintControl(other.hDC());
  EXPECT_EQ(hosted.State().BackBuffer, before);
  EXPECT_TRUE(host.log.empty()) << "the host's own context isn't asked for";
  PixelView copy, picture;
  ASSERT_TRUE(PixelsOf(other.hDC(), copy));
  ASSERT_TRUE(PixelsOf(before->hDC(), picture));
  EXPECT_TRUE(std::equal(copy.bits, copy.bits + std::ptrdiff_t{copy.stride} * copy.height, picture.bits));
}

TEST_F(Paint, HoverChangesAndResizesAreNotSeenByARepaintAlone) {
  hosted.State().Hover = true;
  const auto before = hosted.State().BackBuffer;
  hosted.control.PaintControl(nullptr);
  EXPECT_EQ(hosted.State().BackBuffer, before) << "only a drop of the picture rebuilds it";
}

TEST_F(Paint, ThePointersComingAndGoingRebuildEvenWithoutAnImage) {
  const auto before = hosted.State().BackBuffer;
  hosted.control.MouseMove(0, 0, 5, 5);
  const auto hovered = hosted.State().BackBuffer;
  EXPECT_NE(hovered, before);
  hosted.control.MouseMove(0, 0, 6, 6);
  EXPECT_EQ(hosted.State().BackBuffer, hovered) << "it is in already";
  hosted.control.EndHover();
  EXPECT_NE(hosted.State().BackBuffer, hovered);
}

TEST_F(Paint, AChangedSystemColourIsNoticedAtTheNextPaint) {
  hosted.Set("BackColor", static_cast<Long>(0x80000005));
  const auto before = hosted.State().BackBuffer;
  Configuration().system_colours[5] = 0x00010203;
  hosted.control.PaintControl(nullptr);
  EXPECT_NE(hosted.State().BackBuffer, before);
  EXPECT_EQ(host.Pixel(3, 3), 0x00010203u);
  EXPECT_EQ(hosted.State().SystemColorCache[2], 0x00010203u);
  const auto after = hosted.State().BackBuffer;
  hosted.control.PaintControl(nullptr);
  EXPECT_EQ(hosted.State().BackBuffer, after) << "the change is noticed once";
}

TEST_F(Paint, EachOfTheSixWatchedColoursCounts) {
  const int watched[] = {15, 13, 5, 8, 15, 18};
  for (std::size_t i = 0; i < 6; ++i) {
    hosted.control.PaintControl(nullptr);
    const auto before = hosted.State().BackBuffer;
    Configuration().system_colours[watched[i]] = static_cast<COLORREF>(0x00AB0001 + i);
    hosted.control.PaintControl(nullptr);
    EXPECT_NE(hosted.State().BackBuffer, before) << watched[i];
    EXPECT_EQ(hosted.State().SystemColorCache[i], 0x00AB0001u + i);
  }
  EXPECT_EQ(hosted.State().SystemColorCache[0], hosted.State().SystemColorCache[4])
      << "one colour, kept twice";
}

TEST_F(Paint, OtherSystemColoursAreNotWatched) {
  hosted.control.PaintControl(nullptr);
  const auto before = hosted.State().BackBuffer;
  Configuration().system_colours[16] = 0x00010203;
  hosted.control.PaintControl(nullptr);
  EXPECT_EQ(hosted.State().BackBuffer, before);
}

TEST_F(Paint, NothingIsNoticedWhileNoColourIsASystemColour) {
  for (const char* name : {"BackColor", "ForeColor", "EffectColor"}) hosted.Set(name, Long{0});
  const auto before = hosted.State().BackBuffer;
  Configuration().system_colours[15] = 0x00010203;
  hosted.control.PaintControl(nullptr);
  EXPECT_EQ(hosted.State().BackBuffer, before);
}

TEST_F(Paint, OfAnEmptySurfaceCopiesNothing) {
  host.Surface().Clear(0x00445566);
  hosted.State().BackBuffer = std::make_shared<CDib24>();
  for (const char* name : {"BackColor", "ForeColor", "EffectColor"}) hosted.Set(name, Long{0});
  hosted.State().BackBuffer = std::make_shared<CDib24>();
  host.Surface().Clear(0x00445566);
  hosted.control.PaintControl(nullptr);
  EXPECT_EQ(host.Pixel(3, 3), 0x00445566u);
}

// --- Out of sight -----------------------------------------------------------------------------------------

TEST_F(Paint, NothingIsDrawnWhereNobodySeesIt) {
  host.is_seen = false;
  host.TakeLog();
  hosted.Set("BackColor", Long{0x00112233});
  hosted.control.PaintControl(nullptr);
  EXPECT_EQ(host.Paints(), 0);
  EXPECT_EQ(hosted.State().BackBuffer, nullptr) << "the former picture is out of date";
}

TEST_F(Paint, WhatWasSetOutOfSightShowsWhenItIsAskedFor) {
  host.is_seen = false;
  hosted.Set("BackColor", Long{0x00112233});
  CDib24 other;
  ASSERT_TRUE(other.Create(100, 50));
  hosted.control.PaintControl(other.hDC());
  PixelView copy;
  ASSERT_TRUE(PixelsOf(other.hDC(), copy));
  EXPECT_EQ(MakeRgb(copy.bits[2], copy.bits[1], copy.bits[0]), 0x00112233u);
  host.is_seen = true;
  hosted.control.PaintControl(nullptr);
  EXPECT_EQ(host.Pixel(7, 7), 0x00112233u);
}

TEST_F(Paint, ASnapshotIsTakenOutOfSightToo) {
  host.is_seen = false;
  hosted.State().Background.reset();
  host.asked_behind = 0;
  host.paint_behind = [](HDC) { return true; };
  hosted.Set("BackStyle", Long{0});
  EXPECT_EQ(host.asked_behind, 0) << "without a window it would not last";
  host.window = MemoryForm::Window(7);
  hosted.control.RedrawNow();
  EXPECT_EQ(host.asked_behind, 1);
  EXPECT_NE(hosted.State().Background, nullptr);
}

TEST_F(Paint, AFormsPictureIsCopiedOutOfSightToo) {
  MemoryForm form;
  host.parent = form.form;
  host.extender = form.extender;
  host.container = MemoryForm::Window(MemoryForm::kForm);
  host.is_seen = false;
  hosted.State().Background.reset();
  host.asked_behind = 0;
  hosted.Set("BackStyle", Long{0});
  ASSERT_NE(hosted.State().Background, nullptr);
  EXPECT_EQ(host.asked_behind, 0);
}

}  // namespace
}  // namespace marklet
