// Outlines filled by our own means against the platform's glyphs, at a size where both can draw.
#include "platform/win32/giant_text.h"

#include <algorithm>
#include <vector>

#include "platform/test_picture.h"
#include "platform/win32/handles.h"

namespace marklet::win32 {
namespace {

class GiantText : public testing::Test {
 protected:
  static constexpr Long kWidth = 1200, kHeight = 700;
  static constexpr COLORREF kInk = 0x0000FF;

  GiantText() {
    LOGFONTW record;
    record.lfHeight = -600;
    record.lfFaceName = u"Arial";
    picture_.UseFont(record);
    SetBkMode(dc_, TRANSPARENT);
    SetTextColor(dc_, kInk);
  }

  // Red above one half, pixel by pixel from the top.
  std::vector<bool> TakeInk() {
    std::vector<bool> ink;
    for (const COLORREF colour : picture_.Colours()) ink.push_back((colour & 0xFF) > 127);
    picture_.Fill(0);
    return ink;
  }
  bool Fill(int x, int y, std::u16string_view text, const RECT& clip) {
    return FillGiantText(Native(dc_), x, y, text, Native(clip));
  }

  TestPicture picture_{kWidth, kHeight, 32};
  const HDC dc_ = picture_.Context();
};

std::ptrdiff_t Count(const std::vector<bool>& ink) { return std::count(ink.begin(), ink.end(), true); }

std::ptrdiff_t Differences(const std::vector<bool>& a, const std::vector<bool>& b) {
  std::ptrdiff_t count = 0;
  for (std::size_t i = 0; i < a.size(); ++i) count += a[i] != b[i];
  return count;
}

constexpr RECT kAll = {0, 0, 1200, 700};

TEST_F(GiantText, HasTheShapeOfThePlatformsOwn) {
  // A bowl with a hole, an overlap of contours, two parts, a slant.
  for (const std::u16string_view text : {u"Rg", u"8@", u"i%", u"A\u00C4"}) {
    TextOutW(dc_, 10, 5, text);
    const auto theirs = TakeInk();
    EXPECT_TRUE(Fill(10, 5, text, kAll));
    const auto ours = TakeInk();
    ASSERT_GT(Count(theirs), 20000);
    // Scaled from another size, edges may be off by a pixel.
    EXPECT_LT(Differences(ours, theirs), Count(theirs) / 20);
  }
}

TEST_F(GiantText, IsTheSameInsideAnyClip) {
  EXPECT_TRUE(Fill(-100, -50, u"R@g", kAll));
  const auto whole = TakeInk();
  const RECT clip = {333, 222, 555, 444};
  EXPECT_TRUE(Fill(-100, -50, u"R@g", clip));
  const auto part = TakeInk();
  std::ptrdiff_t wrong = 0, inked = 0;
  for (Long y = clip.top; y < clip.bottom; ++y)
    for (Long x = clip.left; x < clip.right; ++x) {
      const auto i = static_cast<std::size_t>(y) * kWidth + static_cast<std::size_t>(x);
      wrong += whole[i] != part[i];
      inked += whole[i];
    }
  EXPECT_GT(inked, 1000);
  // Where an edge was cut its slope is rounded anew.
  EXPECT_LT(wrong, 60);
}

TEST_F(GiantText, LeavesTheContextAsItWas) {
  const HBRUSH brush = CreateSolidBrush(0x00FF00);
  const HGDIOBJ former = SelectObject(dc_, brush);
  SetBkMode(dc_, OPAQUE);
  Fill(0, 0, u"g", kAll);
  EXPECT_EQ(SetBkMode(dc_, TRANSPARENT), 2);
  EXPECT_EQ(SelectObject(dc_, former), brush);
  EXPECT_EQ(GetTextColor(dc_), kInk);
  DeleteObject(brush);
}

}  // namespace
}  // namespace marklet::win32
