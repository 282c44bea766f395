// Text through GDI: what its contract promises and the platform alone doesn't keep everywhere.
#include "platform/text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <string>
#include <vector>

#include "platform/gdi.h"
#include "platform/win32/handles.h"
#include "support/processor_time.h"

namespace marklet {
namespace {

constexpr COLORREF kGround = 0x404040, kBox = 0x00FF00, kInk = 0xFFFFFF;

class WindowsText : public testing::Test {
 protected:
  static constexpr Long kWidth = 300, kHeight = 60;

  WindowsText() {
    dc_ = CreateCompatibleDC(nullptr);
    bitmap_ = CreateDIBSection(dc_, kWidth, kHeight, 24, bits_);
    former_bitmap_ = SelectObject(dc_, bitmap_);
    UseFont(-13);
    SetBkMode(dc_, TRANSPARENT);
    SetBkColor(dc_, kBox);
    SetTextColor(dc_, kInk);
    Clear();
  }
  ~WindowsText() override {
    SelectObject(dc_, former_font_);
    SelectObject(dc_, former_bitmap_);
    DeleteObject(font_);
    DeleteObject(bitmap_);
    DeleteDC(dc_);
  }

  // Arial, since some systems draw their Tahoma with a spacing that isn't the one they measure.
  void UseFont(Long height, std::u16string name = u"Arial") {
    LOGFONTW record;
    record.lfHeight = height;
    record.lfFaceName = std::move(name);
    const HFONT font = CreateFontIndirectW(record);
    const HGDIOBJ former = SelectObject(dc_, font);
    if (font_)
      DeleteObject(font_);
    else
      former_font_ = former;
    font_ = font;
  }

  void Clear() {
    const HBRUSH brush = CreateSolidBrush(kGround);
    FillRect(dc_, {0, 0, kWidth, kHeight}, brush);
    DeleteObject(brush);
    GdiFlush();
  }

  COLORREF At(Long x, Long y) {
    GdiFlush();
    const std::uint8_t* pixel = bits_ + std::ptrdiff_t{3} * ((kHeight - 1 - y) * kWidth + x);
    return MakeRgb(pixel[2], pixel[1], pixel[0]);
  }
  Long Count(COLORREF colour, const RECT& area) {
    Long count = 0;
    for (Long y = area.top; y < area.bottom; ++y)
      for (Long x = area.left; x < area.right; ++x) count += At(x, y) == colour;
    return count;
  }
  // The smallest rectangle around everything that isn't the ground any more.
  RECT Touched() {
    RECT box = {kWidth, kHeight, 0, 0};
    for (Long y = 0; y < kHeight; ++y)
      for (Long x = 0; x < kWidth; ++x)
        if (At(x, y) != kGround)
          box = {std::min(box.left, x), std::min(box.top, y), std::max(box.right, x + 1),
                 std::max(box.bottom, y + 1)};
    return box;
  }
  std::vector<std::uint8_t> TakePixels() {
    GdiFlush();
    std::vector<std::uint8_t> pixels(bits_, bits_ + std::ptrdiff_t{3} * kWidth * kHeight);
    Clear();
    return pixels;
  }
  SIZE Extent(std::u16string_view text) {
    SIZE size = {-1, -1};
    EXPECT_TRUE(GetTextExtentPoint32W(dc_, text, size));
    return size;
  }

  HDC dc_ = nullptr;

 private:
  HBITMAP bitmap_ = nullptr;
  HFONT font_ = nullptr;
  HGDIOBJ former_bitmap_ = nullptr, former_font_ = nullptr;
  std::uint8_t* bits_ = nullptr;
};

constexpr RECT kAll = {0, 0, 300, 60};

// Runs a drawing and expects it to come back soon.
template <typename Drawing>
void ExpectWithin(int milliseconds, Drawing drawing) {
  const double start = ProcessorSeconds();
  drawing();
  EXPECT_LT(ProcessorSeconds() - start, milliseconds / 1000.0);
}

TEST_F(WindowsText, NullContextsAreRefusedQuietly) {
  SIZE size = {5, 6};
  RECT rect = {1, 2, 3, 4};
  ABC widths = {7, 8, 9};
  EXPECT_EQ(SetTextColor(nullptr, 0), CLR_INVALID);
  EXPECT_EQ(GetTextColor(nullptr), CLR_INVALID);
  EXPECT_EQ(SetBkColor(nullptr, 0), CLR_INVALID);
  EXPECT_EQ(SetBkMode(nullptr, TRANSPARENT), 0);
  EXPECT_EQ(SetBkMode(nullptr, 0), 0);
  EXPECT_EQ(SetTextAlign(nullptr, 0), 0u);
  EXPECT_FALSE(GetTextExtentPoint32W(nullptr, u"x", size));
  EXPECT_FALSE(GetTextExtentPoint32W(nullptr, u"", size));
  EXPECT_FALSE(GetTextExtentPoint32A(nullptr, "x", 1, size));
  EXPECT_FALSE(GetCharABCWidthsA(nullptr, 'x', widths));
  EXPECT_EQ(DrawTextW(nullptr, u"x", rect, DT_CALCRECT), 0);
  EXPECT_EQ(DrawTextA(nullptr, "x", rect, DT_CALCRECT), 0);
  EXPECT_FALSE(TextOutW(nullptr, 0, 0, u"x"));
  EXPECT_FALSE(ExtTextOutW(nullptr, 0, 0, 0, nullptr, u"x"));
  EXPECT_EQ(size, (SIZE{5, 6}));
  EXPECT_EQ(rect, (RECT{1, 2, 3, 4}));
  EXPECT_EQ(widths.abcB, 8u);
}

TEST_F(WindowsText, BackgroundModeZeroDrawsNoBox) {
  SetBkMode(dc_, OPAQUE);
  TextOutW(dc_, 0, 0, u"Text");
  EXPECT_GT(Count(kBox, kAll), 0) << "mode 2 does";
  for (const int mode : {0, 1, 7, -1}) {
    Clear();
    SetBkMode(dc_, OPAQUE);
    EXPECT_EQ(SetBkMode(dc_, mode), 2) << mode;
    TextOutW(dc_, 0, 0, u"Text");
    EXPECT_EQ(Count(kBox, kAll), 0) << mode;
    EXPECT_GT(Count(kInk, kAll), 0) << mode;
  }
}

TEST_F(WindowsText, BackgroundModesComeBackAsTheyWereSet) {
  SetBkMode(dc_, OPAQUE);
  EXPECT_EQ(SetBkMode(dc_, TRANSPARENT), 2);
  EXPECT_EQ(SetBkMode(dc_, OPAQUE), 1);
  SetBkMode(dc_, 0);
  const int former = SetBkMode(dc_, OPAQUE);
  EXPECT_TRUE(former == 0 || former == 1) << former;
  EXPECT_EQ(SetBkMode(dc_, OPAQUE), 2) << "mode 0 leaves no trace";
}

TEST_F(WindowsText, AnEmptyStringIsWhatThePlatformSays) {
  ::SIZE platform = {7, 7};
  ASSERT_TRUE(::GetTextExtentPoint32W(win32::Native(dc_), L"", 0, &platform));
  for (const std::u16string_view text : {std::u16string_view(u""), std::u16string_view()}) {
    SIZE size = {7, 7};
    EXPECT_TRUE(GetTextExtentPoint32W(dc_, text, size));
    EXPECT_EQ(size, (SIZE{platform.cx, platform.cy}));
  }
  SIZE size = {7, 7};
  EXPECT_TRUE(GetTextExtentPoint32A(dc_, "xyz", 0, size));
  EXPECT_EQ(size, (SIZE{platform.cx, platform.cy}));
}

TEST_F(WindowsText, ByteTextIsMeasuredInTheSystemCodePageUpToItsEnd) {
  SIZE size;
  EXPECT_TRUE(GetTextExtentPoint32A(dc_, "caf\xE9", 100, size));
  EXPECT_EQ(size, Extent(u"caf\u00E9")) << "code page 1252";
  EXPECT_TRUE(GetTextExtentPoint32A(dc_, "WWW", 2, size));
  EXPECT_EQ(size, Extent(u"WW"));
  EXPECT_TRUE(GetTextExtentPoint32A(dc_, "WWW", -1, size));
  EXPECT_EQ(size, Extent(u""));
}

TEST_F(WindowsText, ExtentsAddUpWithoutALimit) {
  const Long one = Extent(u"x").cx;
  for (const Long count : {999, 1000, 1001, 8192, 8193, 65535, 100000})
    EXPECT_EQ(Extent(std::u16string(static_cast<std::size_t>(count), u'x')).cx, one * count) << count;
}

TEST_F(WindowsText, AnExtentBeyondTheNumbersStaysAtTheirEnd) {
  UseFont(-43000);
  EXPECT_EQ(Extent(std::u16string(1000000, u'W')).cx, std::numeric_limits<Long>::max());
}

TEST_F(WindowsText, SurrogatePairsSurviveTheSeamsBetweenPieces) {
  std::u16string pairs;
  for (int i = 0; i < 1501; ++i) pairs += u"\U0001D400";
  const Long one = Extent(u"\U0001D400").cx;
  EXPECT_EQ(Extent(pairs).cx, 1501 * one);
  EXPECT_EQ(Extent(u"x" + pairs).cx, Extent(u"x").cx + 1501 * one);
}

TEST_F(WindowsText, AnythingAtAllMayStandInAText) {
  std::u16string text;
  for (unsigned unit = 0; unit < 0x10000; unit += 7) text += static_cast<char16_t>(unit);
  for (const std::uint32_t flags : {DT_SINGLELINE, DT_WORDBREAK, DT_SINGLELINE | DT_RTLREADING, 0u}) {
    RECT rect = kAll;
    EXPECT_GT(DrawTextW(dc_, text, rect, flags | DT_WORD_ELLIPSIS), 0);
  }
  EXPECT_TRUE(TextOutW(dc_, 0, 0, text));
  EXPECT_TRUE(TextOutW(dc_, 0, 0, std::u16string_view(u"a\0b", 3)));
  EXPECT_TRUE(TextOutW(dc_, 0, 0, u""));
}

TEST_F(WindowsText, OneLineIsMeasuredToItsEnd) {
  const std::u16string text(5000, u'x');
  RECT rect = {10, 20, 0, 0};
  const SIZE extent = Extent(text);
  EXPECT_EQ(DrawTextW(dc_, text, rect, DT_CALCRECT | DT_SINGLELINE), extent.cy);
  EXPECT_EQ(rect, (RECT{10, 20, 10 + extent.cx, 20 + extent.cy}));
  rect = {10, 20, 0, 0};
  EXPECT_EQ(DrawTextW(dc_, text + u"\n" + text + u"xx", rect, DT_CALCRECT), 2 * extent.cy);
  EXPECT_EQ(rect, (RECT{10, 20, 10 + extent.cx + 2 * Extent(u"x").cx, 20 + 2 * extent.cy}));
}

TEST_F(WindowsText, ALongLineShowsItsEndAtTheRight) {
  RECT rect = kAll;
  DrawTextW(dc_, std::u16string(5000, u'.') + u"WWW", rect, DT_SINGLELINE | DT_RIGHT);
  const auto shown = TakePixels();
  DrawTextW(dc_, std::u16string(300, u'.') + u"WWW", rect, DT_SINGLELINE | DT_RIGHT);
  EXPECT_TRUE(shown == TakePixels());
}

TEST_F(WindowsText, ALongLineShowsItsMiddleInTheMiddle) {
  RECT rect = kAll;
  const std::u16string dots(3000, u'.'), few(200, u'.');
  DrawTextW(dc_, dots + u"WWW" + dots, rect, DT_SINGLELINE | DT_CENTER);
  const auto shown = TakePixels();
  DrawTextW(dc_, few + u"WWW" + few, rect, DT_SINGLELINE | DT_CENTER);
  EXPECT_TRUE(shown == TakePixels());
}

TEST_F(WindowsText, ALongLineIsShortenedLikeAShortOne) {
  for (const std::uint32_t flags : {0u, DT_RIGHT, DT_CENTER, DT_VCENTER, DT_BOTTOM}) {
    RECT rect = {20, 5, 250, 55};
    DrawTextW(dc_, std::u16string(5000, u'x'), rect, flags | DT_SINGLELINE | DT_WORD_ELLIPSIS);
    const auto shown = TakePixels();
    DrawTextW(dc_, std::u16string(500, u'x'), rect, flags | DT_SINGLELINE | DT_WORD_ELLIPSIS);
    EXPECT_TRUE(shown == TakePixels()) << flags;
  }
}

TEST_F(WindowsText, NothingIsDrawnOutsideTheRectangle) {
  const std::u16string long_line(3000, u'W');
  const std::u16string_view texts[] = {u"WWWW WWWWWWWWW &WWWWWWWW", long_line};
  for (const std::u16string_view text : texts)
    for (const std::uint32_t flags : {DT_SINGLELINE, DT_WORDBREAK, DT_SINGLELINE | DT_RIGHT, DT_CENTER}) {
      RECT rect = {40, 10, 80, 21};
      DrawTextW(dc_, text, rect, flags);
      const RECT touched = Touched();
      EXPECT_GE(touched.left, 40) << flags;
      EXPECT_GE(touched.top, 10) << flags;
      EXPECT_LE(touched.right, 80) << flags;
      EXPECT_LE(touched.bottom, 21) << flags;
      Clear();
    }
}

TEST_F(WindowsText, TheHeightOfALineDoesNotDependOnItsPlace) {
  const Long height = Extent(u"x").cy;
  for (const std::uint32_t place : {0u, DT_VCENTER, DT_BOTTOM}) {
    RECT rect = {0, 7, 300, 50};
    EXPECT_EQ(DrawTextW(dc_, u"Text", rect, DT_SINGLELINE | place), height) << place;
  }
}

TEST_F(WindowsText, AMarkUnderlinesTheCharacterAfterIt) {
  RECT rect = kAll;
  DrawTextW(dc_, u"&a b", rect, DT_SINGLELINE);
  const auto marked = TakePixels();
  DrawTextW(dc_, u"a b", rect, DT_SINGLELINE);
  const auto plain = TakePixels();
  std::size_t differences = 0;
  for (std::size_t i = 0; i < plain.size(); i += 3) differences += plain[i] != marked[i];
  EXPECT_GT(differences, 0u);
  EXPECT_LE(differences, static_cast<std::size_t>(Extent(u"a").cx));
  rect = {0, 0, 0, 0};
  DrawTextW(dc_, u"a&&b&c", rect, DT_SINGLELINE | DT_CALCRECT);
  EXPECT_EQ(rect.right, Extent(u"a&bc").cx);
}

TEST_F(WindowsText, RectanglesMayBeAnything) {
  constexpr Long kLow = std::numeric_limits<Long>::min(), kHigh = std::numeric_limits<Long>::max();
  const RECT rects[] = {{kLow, kLow, kHigh, kHigh},
                        {kHigh, kHigh, kLow, kLow},
                        {0, 0, kHigh, kHigh},
                        {300, 60, 0, 0},
                        {5, 5, 5, 5},
                        {kHigh - 5, 0, kHigh, 9}};
  const std::u16string long_text(3000, u'x');
  for (const RECT& it : rects)
    for (const std::uint32_t place : {0u, DT_RIGHT, DT_CENTER, DT_VCENTER, DT_BOTTOM})
      for (const std::uint32_t lines : {DT_SINGLELINE, DT_WORDBREAK, DT_WORDBREAK | DT_CALCRECT}) {
        RECT rect = it;
        ExpectWithin(300, [&] { DrawTextW(dc_, u"some words", rect, place | lines | DT_WORD_ELLIPSIS); });
        rect = it;
        ExpectWithin(300, [&] { DrawTextW(dc_, long_text, rect, place | lines | DT_WORD_ELLIPSIS); });
      }
}

TEST_F(WindowsText, AnEnormousRectangleShowsItsTextAtItsCorner) {
  RECT rect = {3, 4, std::numeric_limits<Long>::max(), std::numeric_limits<Long>::max()};
  DrawTextW(dc_, u"Text", rect, DT_SINGLELINE);
  const auto shown = TakePixels();
  rect = {3, 4, 300, 60};
  DrawTextW(dc_, u"Text", rect, DT_SINGLELINE);
  EXPECT_TRUE(shown == TakePixels());
}

TEST_F(WindowsText, SizesAreMeasuredWhereverTheRectangleIs) {
  const SIZE extent = Extent(u"Text");
  for (const Long corner : {-2000000000, -70000000, 0, 70000000, 2000000000}) {
    RECT rect = {corner, corner, corner, corner};
    DrawTextW(dc_, u"Text", rect, DT_SINGLELINE | DT_CALCRECT);
    EXPECT_EQ(rect, (RECT{corner, corner, corner + extent.cx, corner + extent.cy}));
  }
}

TEST_F(WindowsText, AHundredThousandUnitsTakeUnderASecond) {
  const std::u16string unbroken(100000, u'x');
  std::u16string words, many_kinds;
  for (unsigned i = 0; i < 100000; ++i) words += i % 6 == 5 ? u' ' : u'a';
  for (unsigned i = 0; i < 100000; ++i) many_kinds += static_cast<char16_t>(0x4E00 + i % 0x5000);
  for (const std::u16string& text : {unbroken, words, many_kinds}) {
    ExpectWithin(500, [&] { Extent(text); });
    ExpectWithin(500, [&] { TextOutW(dc_, 0, 0, text); });
    for (const std::uint32_t flags : {DT_SINGLELINE, DT_WORDBREAK, 0u})
      for (const std::uint32_t extra : {0u, DT_RIGHT, DT_WORD_ELLIPSIS, DT_CALCRECT}) {
        RECT rect = kAll;
        SCOPED_TRACE("\"" + std::string(1, static_cast<char>(text[0])) + "...\" with flags " +
                     std::to_string(flags | extra));
        ExpectWithin(900, [&] { EXPECT_GT(DrawTextW(dc_, text, rect, flags | extra), 0); });
      }
  }
}

TEST_F(WindowsText, GiantFontsTakeUnderASecond) {
  std::u16string accents(100000, u'\u0301');
  for (const Long height :
       {-5000, -43690, 43690, std::numeric_limits<Long>::max(), std::numeric_limits<Long>::min()}) {
    ExpectWithin(500, [&] { UseFont(height); });
    for (const std::u16string& text : {std::u16string(u"Hello World"), std::u16string(100000, u'@'), accents})
      for (const std::uint32_t flags :
           {DT_SINGLELINE | DT_WORD_ELLIPSIS, DT_WORDBREAK, DT_SINGLELINE | DT_RIGHT}) {
        RECT rect = kAll;
        ExpectWithin(1000, [&] { DrawTextW(dc_, text, rect, flags); });
        ExpectWithin(1000, [&] { TextOutW(dc_, 0, -20000, text); });
      }
  }
}

TEST_F(WindowsText, GiantGlyphsShowWhereTheyCoverTheSurface) {
  UseFont(-3000);
  const SIZE extent = Extent(u"I");
  // The stem of an I, brought to the surface's middle.
  RECT rect = {150 - extent.cx / 2, 30 - extent.cy / 2, 150 + extent.cx, 30 + extent.cy};
  DrawTextW(dc_, u"I", rect, DT_SINGLELINE);
  EXPECT_EQ(At(150, 30), kInk);
  Clear();
  SetBkMode(dc_, OPAQUE);
  rect = {0, -extent.cy / 2, extent.cx, extent.cy};
  DrawTextW(dc_, u"  ", rect, DT_SINGLELINE | DT_NOCLIP);
  EXPECT_EQ(At(0, 0), kBox) << "mode 2 fills behind giants too";
}

TEST_F(WindowsText, TextStandsWhereItsAlignmentPutsItAtAnyLength) {
  for (const std::uint32_t align : {0u, TA_RIGHT, TA_CENTER, TA_BASELINE, TA_RIGHT | TA_BASELINE}) {
    EXPECT_EQ(SetTextAlign(dc_, align), 0u);
    const Long x = align & TA_RIGHT ? 250 : 20, y = 30;
    TextOutW(dc_, x, y, std::u16string(900, u'x'));
    const auto expected = TakePixels();
    // Ten times as long; in the middle of an even number of characters the cut is the same.
    TextOutW(dc_, x, y, std::u16string(9000, u'x'));
    EXPECT_TRUE(expected == TakePixels()) << align;
    EXPECT_EQ(SetTextAlign(dc_, 0), align);
  }
}

TEST_F(WindowsText, OutputOptionsHoldForLongTextsToo) {
  const RECT rect = {50, 10, 100, 40};
  for (const std::size_t length : {20u, 5000u}) {
    Clear();
    ExtTextOutW(dc_, 0, 10, 4, &rect, std::u16string(length, u'W'));
    EXPECT_GE(Touched().left, 50) << length;
    EXPECT_LE(Touched().right, 100) << length;
    Clear();
    ExtTextOutW(dc_, 0, 10, 2 | 4, &rect, std::u16string(length, u' '));
    EXPECT_EQ(Touched(), rect) << length;
    EXPECT_EQ(Count(kBox, rect), 50 * 30) << length;
  }
}

TEST_F(WindowsText, SpacingsOfACharacterAddUpToItsWidth) {
  ABC widths;
  ASSERT_TRUE(GetCharABCWidthsA(dc_, 'W', widths));
  EXPECT_EQ(widths.abcA + static_cast<Long>(widths.abcB) + widths.abcC, Extent(u"W").cx);
  ASSERT_TRUE(GetCharABCWidthsA(dc_, 0xE9, widths));
  EXPECT_EQ(widths.abcA + static_cast<Long>(widths.abcB) + widths.abcC, Extent(u"\u00E9").cx);
  EXPECT_FALSE(GetCharABCWidthsA(dc_, 0x10000, widths));
  EXPECT_FALSE(GetCharABCWidthsA(dc_, 0xFFFFFFFF, widths));
}

TEST_F(WindowsText, FaceNamesCountUpToThirtyOneUnits) {
  UseFont(-13, std::u16string(500, u'q'));
  EXPECT_GT(Extent(u"x").cx, 0);
  UseFont(-13, u"");
  EXPECT_GT(Extent(u"x").cx, 0);
  UseFont(-13, std::u16string(u"Tahoma\0rest", 11));
  EXPECT_GT(Extent(u"x").cx, 0);
}

TEST_F(WindowsText, ColoursComeBackAsTheyWereSet) {
  SetTextColor(dc_, 0x010203);
  EXPECT_EQ(GetTextColor(dc_), 0x010203u);
  EXPECT_EQ(SetTextColor(dc_, 0x040506), 0x010203u);
  SetBkColor(dc_, 0x070809);
  EXPECT_EQ(SetBkColor(dc_, 0), 0x070809u);
}

}  // namespace
}  // namespace marklet
