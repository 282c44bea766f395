// The layers of each text effect: how many, where, in which colour and order.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <vector>

#include "markup/canvas.h"
#include "markup/drawn_runs.h"
#include "markup/markup_caption.h"
#include "markup/played_system.h"
#include "text/emit_text_run.h"

namespace marklet {
namespace {

const std::string kFace = "#112233", kBackground = "#445566", kEffect = "#778899", kDark = "#808080",
                  kLight = "#FFFFFF", kBlack = "#000000";

struct ExpectedLayer {
  Long dx, dy;
  std::string colour;
};

struct ExpectedEffect {
  Long effect;
  std::vector<ExpectedLayer> layers;
};

// Written out by hand, layer by layer.
std::vector<ExpectedLayer> OutlineAround(const std::string& face) {
  return {{-1, 0, kEffect}, {-1, -1, kEffect}, {-1, -1, kEffect}, {-1, 0, kEffect},
          {-1, 2, kEffect}, {0, 0, kEffect},   {0, -1, kEffect},  {0, -1, kEffect},
          {0, 0, kEffect},  {0, 2, kEffect},   {1, 0, kEffect},   {1, -1, kEffect},
          {1, -1, kEffect}, {1, 0, kEffect},   {1, 2, kEffect},   {0, 0, face}};
}

const std::vector<ExpectedEffect>& ExpectedEffects() {
  static const std::vector<ExpectedEffect> effects = {
      {effectStroke, OutlineAround(kFace)},
      {effectShadow, {{1, 1, kDark}, {1, 1, kDark}, {1, 1, kDark}, {0, 0, kBlack}}},
      {effectEmboss, {{-1, 0, kLight}, {-1, -1, kLight}, {0, -1, kDark}, {0, 1, kDark}, {0, 0, kFace}}},
      {effectEngrave, {{-1, 0, kDark}, {-1, -1, kDark}, {1, 0, kLight}, {1, 1, kLight}, {0, 0, kFace}}},
      {effectHollow, OutlineAround(kBackground)},
  };
  return effects;
}

class TextEffectLayers : public testing::Test {
 protected:
  TextEffectLayers() {
    style_.Font = std::make_shared<StdFont>();
    style_.ForeColor = MakeRgb(0x11, 0x22, 0x33);
    style_.BackColor = MakeRgb(0x44, 0x55, 0x66);
    style_.EffectColor = MakeRgb(0x77, 0x88, 0x99);
    style_.SingleLine = true;
    style_.SurfaceDC = canvas_.dc();
  }

  std::vector<DrawnRun> Draw(std::u16string_view caption) {
    Recorder recorder;
    RECT rect = rect_;
    DrawMarkupCaption(canvas_.dc(), caption, rect, style_);
    lines_ = recorder.Lines();
    return DrawnRuns(recorder);
  }

  void ExpectLayers(const std::vector<DrawnRun>& runs, const ExpectedEffect& effect,
                    const std::string& text) {
    ASSERT_EQ(runs.size(), effect.layers.size());
    const RECT face = runs.back().rect;  // of the last layer, which isn't moved
    for (std::size_t at = 0; at < runs.size(); ++at) {
      const auto& [dx, dy, colour] = effect.layers[at];
      const RECT expected = {face.left + dx, face.top + dy, face.right + dx, face.bottom + dy};
      EXPECT_EQ(runs[at].text, text);
      EXPECT_EQ(runs[at].rect, expected) << "layer " << at << ": " << runs[at];
      EXPECT_EQ(runs[at].colour, colour) << "layer " << at;
    }
  }

  const PlayedSystem system_{generation::kVista};
  Canvas canvas_{200, 60};
  RECT rect_ = {10, 5, 190, 55};
  CaptionStyle style_;
  std::vector<std::string> lines_;
};

TEST_F(TextEffectLayers, DrawAPlainCaptionInTheOrderOfTheTable) {
  for (const ExpectedEffect& effect : ExpectedEffects()) {
    SCOPED_TRACE(effect.effect);
    style_.TextEffect = effect.effect;
    const std::vector<DrawnRun> runs = Draw(u"Total");
    ExpectLayers(runs, effect, "Total");
    ASSERT_FALSE(runs.empty());
    EXPECT_EQ(runs.back().rect, rect_);
  }
}

TEST_F(TextEffectLayers, DrawEachTokenOfAMarkupCaptionOnItsOwn) {
  for (const ExpectedEffect& effect : ExpectedEffects()) {
    SCOPED_TRACE(effect.effect);
    style_.TextEffect = effect.effect;
    const std::vector<DrawnRun> runs = Draw(u"one <b>two");
    const auto middle = runs.begin() + static_cast<std::ptrdiff_t>(effect.layers.size());
    ASSERT_EQ(runs.size(), 2 * effect.layers.size());
    ExpectLayers({runs.begin(), middle}, effect, "one ");
    ExpectLayers({middle, runs.end()}, effect, "two");
  }
}

TEST_F(TextEffectLayers, ShowAllOnAnOpaqueControl) {
  // The paint code has asked for a box behind the text; each layer takes it away again.
  SetBkMode(canvas_.dc(), OPAQUE);
  for (const ExpectedEffect& effect : ExpectedEffects()) {
    SCOPED_TRACE(effect.effect);
    style_.TextEffect = effect.effect;
    ExpectLayers(Draw(u"Total"), effect, "Total");
    std::string mode = "none";
    for (const std::string& line : lines_) {
      if (line.starts_with("SetBkMode(")) mode = line;
      if (line.starts_with("DrawTextW(")) {
        EXPECT_EQ(mode, "SetBkMode(0)");
      }
    }
  }
}

TEST_F(TextEffectLayers, ShowTheEarlierLayersOnAnOpaqueControl) {
  SetBkMode(canvas_.dc(), OPAQUE);
  style_.ForeColor = MakeRgb(0, 0, 0xFF);
  style_.EffectColor = MakeRgb(0xFF, 0, 0);
  style_.TextEffect = effectStroke;
  style_.Font->PutSize(20);
  SelectObject(canvas_.dc(), style_.Font->hFont());
  canvas_.Fill(0xFF);
  Draw(u"Total");
  const std::vector<std::uint8_t> pixels = canvas_.Pixels();
  std::size_t reddish = 0, bluish = 0;
  for (std::size_t at = 0; at + 2 < pixels.size(); at += 3) {
    reddish += pixels[at + 2] > 200 && pixels[at] < 50;
    bluish += pixels[at] > 200 && pixels[at + 2] < 50;
  }
  EXPECT_GT(reddish, 20u);
  EXPECT_GT(bluish, 20u);
}

TEST_F(TextEffectLayers, KeepTheShadowsFaceBlackInsideAColourTag) {
  style_.TextEffect = effectShadow;
  style_.ForeColor = MakeRgb(0xFF, 0, 0);
  const std::vector<DrawnRun> runs = Draw(u"<c=00FF00>x");
  ASSERT_EQ(runs.size(), 4u);
  EXPECT_EQ(runs.back().colour, "#000000");
}

TEST_F(TextEffectLayers, TakeTheTagsColourForTheFaceAlone) {
  style_.TextEffect = effectStroke;
  const std::vector<DrawnRun> runs = Draw(u"<c=00FF00>x");
  ASSERT_EQ(runs.size(), 16u);
  for (std::size_t at = 0; at < 15; ++at) EXPECT_EQ(runs[at].colour, kEffect);
  EXPECT_EQ(runs.back().colour, "#00FF00");
}

TEST_F(TextEffectLayers, FollowTheForeColourInTheFaceAlone) {
  style_.TextEffect = effectEmboss;
  const std::vector<DrawnRun> enabled = Draw(u"x");
  style_.ForeColor = MakeRgb(1, 2, 3);
  const std::vector<DrawnRun> other = Draw(u"x");
  ASSERT_EQ(enabled.size(), 5u);
  ASSERT_EQ(other.size(), 5u);
  for (std::size_t at = 0; at < 4; ++at) EXPECT_EQ(enabled[at].colour, other[at].colour);
  EXPECT_EQ(other[4].colour, "#010203");
}

TEST_F(TextEffectLayers, AreNoneForAnUnknownEffect) {
  for (const Long effect : {6, 7, -1, 0x7FFFFFFF}) {
    style_.TextEffect = effect;
    EXPECT_TRUE(Draw(u"plain").empty());
    EXPECT_TRUE(Draw(u"<b>rich").empty());
  }
}

TEST_F(TextEffectLayers, AreNoneForTheEffectCalledNone) {
  Recorder recorder;
  style_.TextEffect = effectNone;
  DrawTextEffect(canvas_.dc(), u"x", rect_, style_);
  EXPECT_TRUE(recorder.Lines().empty());
}

// Each layer's text is cut at its own rectangle, which is moved with it, and at nothing else.
TEST_F(TextEffectLayers, ReachOutsideTheRectangle) {
  style_.TextEffect = effectStroke;
  style_.Font->PutSize(20);
  SelectObject(canvas_.dc(), style_.Font->hFont());
  for (const bool from_below : {false, true}) {
    // Lower than the text, so that letters are cut off at the bottom, or at the top.
    rect_ = {10, 20, 190, 40};
    style_.VerticalAlignment = from_below ? verticalBottom : verticalTop;
    if (from_below) rect_.top = 30;
    if (!from_below) rect_.bottom = 30;
    canvas_.Fill(0xFF);
    Draw(u"MHM");
    const auto inked = [&](Long y) {
      PixelView view;
      PixelsOf(canvas_.dc(), view);
      return std::any_of(view.At(0, y), view.At(0, y) + std::ptrdiff_t{view.width} * 3,
                         [](int byte) { return byte != 0xFF; });
    };
    EXPECT_TRUE(inked(from_below ? rect_.top - 1 : rect_.bottom + 1)) << from_below;
    EXPECT_FALSE(inked(from_below ? rect_.top - 2 : rect_.bottom + 2)) << from_below;
  }
}

TEST_F(TextEffectLayers, TakeTheirTonesFromTheBackgroundWithoutASurface) {
  style_.SurfaceDC = nullptr;
  style_.BackColor = MakeRgb(100, 100, 100);
  style_.TextEffect = effectEmboss;
  std::vector<DrawnRun> runs = Draw(u"x");
  ASSERT_EQ(runs.size(), 5u);
  EXPECT_EQ(runs[0].colour, "#8C8C8C");  // 140
  EXPECT_EQ(runs[2].colour, "#424242");  // 66
  style_.TextEffect = effectShadow;
  runs = Draw(u"x");
  ASSERT_EQ(runs.size(), 4u);
  EXPECT_EQ(runs[0].colour, "#424242");
  EXPECT_EQ(runs[3].colour, "#000000");
  style_.TextEffect = effectStroke;
  runs = Draw(u"x");
  ASSERT_EQ(runs.size(), 16u);
  EXPECT_EQ(runs[0].colour, kEffect) << "the stroke has no tones";
}

TEST_F(TextEffectLayers, KeepABackgroundThatCannotBeTranslatedAsMinusOne) {
  style_.BackColor = 0x44000000;
  style_.TextEffect = effectHollow;
  const std::vector<DrawnRun> runs = Draw(u"x");
  ASSERT_EQ(runs.size(), 16u);
  EXPECT_EQ(runs.back().colour, "0xFFFFFFFF");
  style_.SurfaceDC = nullptr;
  style_.TextEffect = effectEmboss;
  EXPECT_EQ(Draw(u"x").size(), 5u) << "its shades are then found all the same";
}

TEST_F(TextEffectLayers, AreMeasuredOnceARunOnACopy) {
  style_.TextEffect = effectStroke;
  Draw(u"<b>one two");
  std::size_t measures = 0;
  for (const std::string& line : lines_) measures += line.starts_with("GetTextExtentPoint32A(");
  EXPECT_EQ(measures, 2u) << "one for each of two runs, not one for each layer nor one for all";
  EXPECT_EQ(style_.TextHeight, 0);
}

TEST_F(TextEffectLayers, AreNotMeasuredWhenTheHeightIsKnown) {
  style_.TextEffect = effectStroke;
  style_.TextHeight = 13;
  EXPECT_EQ(Draw(u"one").size(), 16u);
  for (const std::string& line : lines_) EXPECT_FALSE(line.starts_with("GetTextExtentPoint32A(")) << line;
}

TEST_F(TextEffectLayers, LeaveOutOnlyTheLayerThatFailed) {
  const PlayedSystem xp(generation::kXP);
  for (const auto& [effect, drawn] :
       {std::pair{effectStroke, 15u}, {effectShadow, 3u}, {effectEmboss, 4u}, {effectHollow, 15u}}) {
    (void)drawn;
    Recorder recorder;
    recorder.Fail("ScriptIsComplex", 1);
    style_.TextEffect = effect;
    DrawTextEffect(canvas_.dc(), u"x", rect_, style_);
    // The first layer is drawn; those after it fail one by one, each having set its colour.
    EXPECT_EQ(DrawnRuns(recorder).size(), 1u);
    EXPECT_EQ(recorder.Lines("SetTextColor").size(), drawn + 1) << effect;
  }
}

TEST_F(TextEffectLayers, EndWithTheLayerThatFailedWhenEngraving) {
  const PlayedSystem xp(generation::kXP);
  Recorder recorder;
  recorder.Fail("ScriptIsComplex", 1);
  style_.TextEffect = effectEngrave;
  DrawTextEffect(canvas_.dc(), u"x", rect_, style_);
  EXPECT_EQ(DrawnRuns(recorder).size(), 1u);
  EXPECT_EQ(recorder.Lines("SetTextColor").size(), 2u);
}

TEST_F(TextEffectLayers, StayInRangeAtTheEndsOfTheCoordinates) {
  constexpr Long kMin = std::numeric_limits<Long>::min(), kMax = std::numeric_limits<Long>::max();
  for (const ExpectedEffect& effect : ExpectedEffects()) {
    style_.TextEffect = effect.effect;
    for (const RECT& rect : {RECT{kMin, kMin, kMax, kMax}, RECT{kMax, kMax, kMin, kMin}}) {
      DrawTextEffect(canvas_.dc(), u"x", rect, style_);
    }
  }
}

}  // namespace
}  // namespace marklet
