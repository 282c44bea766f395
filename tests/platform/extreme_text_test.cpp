// Text that no form should have: nothing may crash, overflow or take long.
#include <limits>

#include "platform/shared/std_font.h"
#include "platform/test_picture.h"
#include "support/processor_time.h"

namespace marklet {
namespace {

constexpr Long kMin = std::numeric_limits<Long>::min(), kMax = std::numeric_limits<Long>::max();

class ExtremeText : public testing::Test {
 protected:
  ~ExtremeText() override { SelectObject(Context(), former_); }
  HDC Context() const { return picture_.Context(); }
  void UseSize(double points) {
    font_.PutSize(points);
    SelectObject(Context(), font_.hFont());
  }
  void DrawEverywhere(std::u16string_view text) {
    for (const RECT& rect : {RECT{5, 5, 90, 50}, RECT{kMin, kMin, kMax, kMax}, RECT{kMax, kMax, kMin, kMin},
                             RECT{kMax - 5, kMax - 5, kMax, kMax}, RECT{kMin, kMin, kMin + 5, kMin + 5},
                             RECT{-30000, -30000, 30000, 30000}})
      for (const std::uint32_t flags :
           {0u, DT_SINGLELINE | DT_VCENTER | DT_CENTER | DT_WORD_ELLIPSIS,
            DT_WORDBREAK | DT_RIGHT | DT_WORD_ELLIPSIS, DT_SINGLELINE | DT_BOTTOM | DT_RTLREADING,
            DT_CALCRECT | DT_WORDBREAK, DT_CALCRECT | DT_SINGLELINE}) {
        RECT copy = rect;
        EXPECT_GE(DrawTextW(Context(), text, copy, flags), 0);
      }
  }

  TestPicture picture_{100, 60};
  StdFont font_;
  HGDIOBJ former_ = SelectObject(Context(), font_.hFont());
};

using SlowExtremeText = ExtremeText;

TEST_F(ExtremeText, OfAnySizeInAnyRectangle) {
  for (const double size : {0.0, 0.01, 1.0, 8.25, 200.0, 1000.0, 32767.0}) {
    UseSize(size);
    DrawEverywhere(u"Total & more\r\nwords \u05E9\u05DC\u05D5\u05DD \u4E2D");
    SIZE extent;
    EXPECT_TRUE(GetTextExtentPoint32W(Context(), u"Total", extent));
    EXPECT_GE(extent.cx, 0);
    EXPECT_GT(extent.cy, 0);
  }
}

TEST_F(ExtremeText, OfTheLargestSizeStillGrows) {
  UseSize(16000);
  const SIZE half = picture_.Extent(u"Total");
  UseSize(32000);
  const SIZE whole = picture_.Extent(u"Total");
  EXPECT_NEAR(whole.cx, 2.0 * half.cx, half.cx / 100.0);
  EXPECT_NEAR(whole.cy, 2.0 * half.cy, half.cy / 100.0);
}

TEST_F(ExtremeText, ThatCoversThePictureFillsIt) {
  UseSize(20000);
  SetBkMode(Context(), TRANSPARENT);
  SetTextColor(Context(), 0x0000FF);
  const SIZE extent = picture_.Extent(u"I");
  // The middle of a bar of a hundred pixels and more.
  TextOutW(Context(), 50 - extent.cx / 2, 30 - extent.cy / 2, u"I");
  EXPECT_EQ(picture_.Pixel(50, 30), 0x0000FFu);
}

TEST_F(ExtremeText, InFontsThatNobodyMakes) {
  for (const Long height : {kMin, kMin + 1, -70000, kMax, 70000, 1, -1, 0})
    for (const Long weight : {kMin, -1, 0, 1, 1000, kMax}) {
      LOGFONTW record;
      record.lfHeight = height;
      record.lfWeight = weight;
      record.lfItalic = true;
      record.lfFaceName = u"Tahoma";
      const HFONT font = CreateFontIndirectW(record);
      if (font == nullptr) continue;
      const HGDIOBJ former = SelectObject(Context(), font);
      SIZE extent;
      GetTextExtentPoint32W(Context(), u"Total", extent);
      TextOutW(Context(), 5, 5, u"Total");
      ABC widths;
      GetCharABCWidthsA(Context(), 'T', widths);
      SelectObject(Context(), former);
      EXPECT_TRUE(DeleteObject(font));
    }
}

TEST_F(ExtremeText, InTypefacesWithoutAName) {
  using namespace std::string_literals;
  const std::u16string names[] = {
      u"",       u"\0hidden"s,           u",,,",       u" ", std::u16string(1000, u'x'),
      u"\xD800", u"Sans Bold Italic 99", u"\U0001F600"};
  for (const std::u16string& name : names) {
    font_.PutName(name);
    SelectObject(Context(), font_.hFont());
    EXPECT_GT(picture_.Extent(u"Total").cx, 0);
    EXPECT_GT(picture_.Extent(u"Total").cy, 0);
  }
}

TEST_F(SlowExtremeText, OfEveryCodeUnit) {
  std::u16string text;
  for (unsigned unit = 0; unit <= 0xFFFF; unit += 7) {
    text += static_cast<char16_t>(unit);
    if (text.size() < 40) continue;
    DrawEverywhere(text);
    text.clear();
  }
}

TEST_F(ExtremeText, WithLoneSurrogatesAndNuls) {
  using namespace std::string_literals;
  for (const std::u16string& text :
       {u"a\xD800z"s, u"a\xDC00z"s, u"\xD800"s, u"\xDC00\xD800"s, u"\0"s, u"a\0z"s, u"\xFFFF\xFFFE"s,
        u"\u05D0\xD800\u05D1"s, u"\u0627\0\u0628"s, u"&\xD800"s, u"&&&&&"s, u"&"s, u"\u200D\u200D"s}) {
    const SIZE extent = picture_.Extent(text);
    EXPECT_GE(extent.cx, 0);
    DrawEverywhere(text);
  }
}

struct LongText {
  const char* name;
  std::u16string piece;
};

class SlowLongTexts : public ExtremeText, public testing::WithParamInterface<LongText> {};

TEST_P(SlowLongTexts, TakeNoTimeToSpeakOf) {
  std::u16string text;
  while (text.size() < 100'000) text += GetParam().piece;
  const double start = ProcessorSeconds();
  for (const std::uint32_t flags : {DT_SINGLELINE | DT_WORD_ELLIPSIS, DT_WORDBREAK | DT_WORD_ELLIPSIS,
                                    DT_WORDBREAK | DT_CALCRECT, DT_CALCRECT, DT_NOCLIP | DT_WORDBREAK}) {
    RECT rect = {5, 5, 95, 55};
    EXPECT_GT(DrawTextW(Context(), text, rect, flags), 0);
  }
  SIZE extent;
  EXPECT_TRUE(GetTextExtentPoint32W(Context(), text, extent));
  EXPECT_GE(extent.cx, 0);
  // Bounded generously: sanitizers are slow, a quadratic time would be minutes.
  EXPECT_LT(ProcessorSeconds() - start, 20);
}

INSTANTIATE_TEST_SUITE_P(
    Pieces, SlowLongTexts,
    testing::Values(LongText{"OneWord", u"x"}, LongText{"Words", u"word "}, LongText{"Blanks", u" "},
                    LongText{"Lines", u"a\n"}, LongText{"Marks", u"&x"}, LongText{"Ampersands", u"&"},
                    LongText{"Hebrew", u"\u05E9\u05DC\u05D5\u05DD "}, LongText{"OneHebrewWord", u"\u05E9"},
                    LongText{"Mixed", u"a\u05E9 "}, LongText{"Chinese", u"\u4E2D"},
                    LongText{"Surrogates", u"\xD800"}, LongText{"Nul", std::u16string(1, u'\0')},
                    LongText{"Accents", u"\u0301"},
                    LongText{"AccentsOnALetter", u"x" + std::u16string(100'000, u'\u0301')}),
    [](const auto& tested) { return tested.param.name; });

TEST_F(ExtremeText, WiderThanANumberSaysSo) {
  UseSize(32767);
  const std::u16string text(200'000, u'W');
  EXPECT_EQ(picture_.Extent(text).cx, kMax);
  RECT rect = {5, 5, 90, 50};
  DrawTextW(Context(), text, rect, DT_CALCRECT);
  EXPECT_EQ(rect.right, kMax);
}

}  // namespace
}  // namespace marklet
