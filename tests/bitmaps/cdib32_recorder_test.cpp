// The platform calls of CDib32, and what it does when one of them fails.
#include <gtest/gtest.h>

#include <utility>

#include "bitmaps/alpha_pixels.h"
#include "bitmaps/recorded_handles.h"
#include "platform/shared/os_tests.h"
#include "platform/system.h"

namespace marklet {
namespace {

TEST(CDib32Handles, Want24ChangesTheDepthAlone) {
  CDib32 surface;
  Recorder recorder;
  surface.Create(5, 3, true);
  EXPECT_EQ(recorder.Lines("CreateDIBSection"), Lines{"CreateDIBSection(5,3,24)"});
}

TEST(CDib32Handles, TakeBitmapSelectsTheBitmapAndDeletesItAtTheEnd) {
  for (const char* failing : {"", "CreateCompatibleDC", "SelectObject", "PixelsOf"}) {
    std::uint8_t* bits = nullptr;
    ObjectRef bitmap(CreateDIBSection(nullptr, 5, 3, 32, bits));
    Recorder recorder;
    if (*failing) recorder.Fail(failing);
    CDib32 surface;
    surface.TakeBitmap(std::move(bitmap));
    EXPECT_EQ(surface.Bits(), *failing ? nullptr : bits) << failing;
    EXPECT_EQ(recorder.Lines("CreateDIBSection"), Lines{});
    surface.ClearUp();
    EXPECT_EQ(recorder.Lines("DeleteObject"), Lines{"DeleteObject(bitmap(5x3x32))"}) << failing;
  }
}

TEST(CDib32Handles, ResampleNearestToBothSizes0CreatesNoSurface) {
  const auto source = AlphaSurface(3, 3);
  Recorder recorder;
  EXPECT_EQ(source->ResampleNearest(0, 0), nullptr);
  EXPECT_EQ(recorder.Lines(), Lines{});
}

TEST(CDib32Stretching, SetsTheModeAndStretchesTheWholeSurface) {
  CDib32 source;
  source.Create(5, 3);
  CDib24 target;
  target.Create(9, 9);
  const Recorder recorder;
  source.StretchPaintTo(target.hDC(), 1, 2, 7, -1, SRCINVERT);
  EXPECT_EQ(recorder.Lines(), (Lines{"SetStretchBltMode(4)", "StretchBlt(1,2,7,3,0,0,5,3,0x660046)"}));
}

class AlphaPaintCalls : public testing::Test {
 protected:
  AlphaPaintCalls() {
    ForgetOsTests();
    Configuration().version = OSVERSIONINFOA{5, 1, 2};
    source_.Create(5, 3);
    target_.Create(9, 9);
  }
  ~AlphaPaintCalls() override {
    Configuration() = {};
    ForgetOsTests();
  }
  CDib32 source_;
  CDib24 target_;
};

TEST_F(AlphaPaintCalls, TheSecondPaintIsOneAlphaBlendWithTheSizesResolved) {
  source_.AlphaPaint(target_.hDC(), 1, 2, -1, -1, 0, 0, -1, -1, 255, true);
  Recorder recorder;
  source_.AlphaPaint(target_.hDC(), 1, 2, -1, -1, 0, 0, -1, -1, 92, true);
  source_.AlphaPaint(target_.hDC(), 1, 2, 3, 2, 1, 1, -1, 1, 255, false);
  EXPECT_EQ(recorder.Lines(),
            (Lines{"AlphaBlend(1,2,5,3,0,0,5,3,92,1)", "AlphaBlend(1,2,3,2,1,1,3,1,255,0)"}));
}

TEST_F(AlphaPaintCalls, TheFirstPaintIsWithoutAlphaBlend) {
  Recorder recorder;
  source_.AlphaPaint(target_.hDC(), 1, 2, -1, -1, 0, 0, -1, -1, 255, true);
  EXPECT_EQ(recorder.Lines("AlphaBlend"), Lines{});
}

TEST_F(AlphaPaintCalls, ADestinationThatIsntPixelsOfOursIsCompositedThroughACopy) {
  Random random(61);
  FillWithAlphaNoise(source_, random);
  CDib24 expected;
  expected.Create(9, 9);
  FillWithNoise(target_, random, KeyColour);
  expected.LoadFromDC(target_.hDC(), 0, 0, -1, -1, SRCCOPY);
  source_.SoftwareAlphaPaint(expected.hDC(), 6, -1, 200);
  Recorder recorder;
  recorder.Fail("PixelsOf");
  source_.SoftwareAlphaPaint(target_.hDC(), 6, -1, 200);
  EXPECT_EQ(recorder.Lines("BitBlt"),
            (Lines{"BitBlt(0,0,5,3,6,-1,0xCC0020)", "BitBlt(6,-1,5,3,0,0,0xCC0020)"}));
  ExpectNoLeak(recorder);
  EXPECT_EQ(Colours(target_), Colours(expected));
}

TEST_F(AlphaPaintCalls, WithoutMemoryForTheCopyNothingIsPainted) {
  const auto before = Colours(target_);
  source_.SetConstantAlpha(255);
  Recorder recorder;
  recorder.Fail("PixelsOf");
  recorder.Fail("CreateDIBSection");
  source_.SoftwareAlphaPaint(target_.hDC(), 0, 0, 255);
  EXPECT_EQ(recorder.Lines("BitBlt"), Lines{});
  EXPECT_EQ(Colours(target_), before);
}

}  // namespace
}  // namespace marklet
