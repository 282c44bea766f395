// What only the headless platform promises of stretching, and how a recorder sees it.
#include "platform/headless/recorder/recorder.h"
#include "platform/test_picture.h"

namespace marklet {
namespace {

TEST(HeadlessStretchBlt, RepeatsPixelsAndLeavesThemOutWithTheirAlpha) {
  std::mt19937 random(9);
  TestPicture from(5, 4, 32), to(12, 3, 32);
  from.FillRandomly(random);
  ASSERT_TRUE(StretchBlt(to.Context(), 0, 0, 12, 3, from.Context(), 0, 0, 5, 4, SRCCOPY));
  for (Long y = 0; y < 3; ++y)
    for (Long x = 0; x < 12; ++x)
      EXPECT_EQ(std::memcmp(to.At(x, y), from.At(x * 5 / 12, y * 4 / 3), 4), 0) << x << ',' << y;
}

TEST(HeadlessStretchBlt, RefusesToReadOutsideTheSourceOrFromItself) {
  TestPicture from(4, 4), to(4, 4);
  from.Fill(0xFF);
  EXPECT_FALSE(StretchBlt(to.Context(), 0, 0, 4, 4, from.Context(), 1, 0, 4, 4, SRCCOPY));
  EXPECT_FALSE(StretchBlt(to.Context(), 0, 0, 4, 4, from.Context(), 0, 0, 4, 5, SRCCOPY));
  EXPECT_FALSE(StretchBlt(to.Context(), 0, 0, 4, 4, to.Context(), 0, 0, 2, 2, SRCCOPY));
  EXPECT_FALSE(StretchBlt(to.Context(), 0, 0, 4, 4, from.Context(), 0, 0, 4, 4, 0x00FF0062));
  EXPECT_EQ(InkOf(to, 0), RECT{});
}

TEST(RecordedStretching, IsALineAndCanBeMadeToFail) {
  TestPicture from(4, 4), to(4, 4);
  from.Fill(0xFF);
  Recorder recorder;
  recorder.Fail("StretchBlt", 1);
  SetStretchBltMode(to.Context(), 4);
  EXPECT_TRUE(StretchBlt(to.Context(), 0, 1, 2, 3, from.Context(), 0, 0, 4, 4, SRCCOPY));
  EXPECT_FALSE(StretchBlt(to.Context(), 0, 0, 4, 4, from.Context(), 0, 0, 4, 4, SRCCOPY));
  EXPECT_EQ(recorder.Lines(),
            (std::vector<std::string>{"SetStretchBltMode(4)", "StretchBlt(0,1,2,3,0,0,4,4,0xCC0020)",
                                      "StretchBlt(0,0,4,4,0,0,4,4,0xCC0020)"}));
  to.Fill(0);
  recorder.Replay();
  EXPECT_EQ(InkOf(to, 0), (RECT{0, 1, 2, 4}));
}

}  // namespace
}  // namespace marklet
