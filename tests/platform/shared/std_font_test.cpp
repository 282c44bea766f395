#include "platform/shared/std_font.h"

#include <limits>
#include <memory>
#include <optional>
#include <thread>

#include "platform/system.h"
#include "platform/test_picture.h"

namespace marklet {
namespace {

// A screen of a known resolution, while it lives.
class Screen {
 public:
  explicit Screen(Long pixels_per_inch) : former_(Configuration().pixels_per_inch) { Put(pixels_per_inch); }
  ~Screen() { Configuration().pixels_per_inch = former_; }
  Screen(const Screen&) = delete;
  Screen& operator=(const Screen&) = delete;
  void Put(Long pixels_per_inch) { Configuration().pixels_per_inch = pixels_per_inch; }

 private:
  const std::optional<Long> former_;
};

TEST(StdFont, IsTahomaAtFirst) {
  const StdFont font;
  EXPECT_EQ(font.Name(), u"Tahoma");
  EXPECT_EQ(font.Size(), 8.25);
  EXPECT_EQ(font.Weight(), 400);
  EXPECT_EQ(font.Charset(), 0);
  EXPECT_FALSE(font.Bold() || font.Italic() || font.Underline() || font.Strikethrough());
}

TEST(StdFont, KeepsWhatIsPut) {
  StdFont font;
  font.PutName(u"Verdana");
  font.PutSize(12.5);
  font.PutItalic(true);
  font.PutUnderline(true);
  font.PutStrikethrough(true);
  font.PutCharset(204);
  EXPECT_EQ(font.Name(), u"Verdana");
  EXPECT_EQ(font.Size(), 12.5);
  EXPECT_TRUE(font.Italic() && font.Underline() && font.Strikethrough());
  EXPECT_EQ(font.Charset(), 204);
}

// Handles from elsewhere: which one a font has, and how long it is kept.
class ForeignHandle final : public FontHandle {
 public:
  ForeignHandle(HFONT font, bool& is_there) : FontHandle(font), is_there_(is_there) { is_there_ = true; }
  ~ForeignHandle() override { is_there_ = false; }

 private:
  bool& is_there_;
};

TEST(StdFont, HasTheHandleThatIsPutUntilAPropertyBecomesAnotherOne) {
  using Change = void (*)(StdFont&);
  const Change changes[] = {
      [](StdFont& font) { font.PutName(u"Verdana"); },    [](StdFont& font) { font.PutSize(11); },
      [](StdFont& font) { font.PutBold(true); },          [](StdFont& font) { font.PutWeight(401); },
      [](StdFont& font) { font.PutItalic(true); },        [](StdFont& font) { font.PutUnderline(true); },
      [](StdFont& font) { font.PutStrikethrough(true); }, [](StdFont& font) { font.PutCharset(204); }};
  for (const Change change : changes) {
    const StdFont other;
    bool is_there = false;
    StdFont font;
    font.PutHandle(LocalRef(new ForeignHandle(other.hFont(), is_there)), -11);
    font.PutName(font.Name());
    font.PutBold(font.Bold());
    font.PutItalic(false);
    font.PutUnderline(false);
    font.PutStrikethrough(false);
    font.PutCharset(0);
    EXPECT_EQ(font.hFont(), other.hFont()) << "what was put before is no change";
    EXPECT_TRUE(is_there);
    change(font);
    EXPECT_FALSE(is_there);
    EXPECT_NE(font.hFont(), nullptr);
  }
}

TEST(StdFont, SharesTheHandleThatIsPutWithItsCopies) {
  const StdFont other;
  bool is_there = false;
  auto font = std::make_unique<StdFont>();
  font->PutHandle(LocalRef(new ForeignHandle(other.hFont(), is_there)), -11);
  StdFont copy = *font;
  font.reset();
  EXPECT_TRUE(is_there);
  EXPECT_EQ(copy.hFont(), other.hFont());
  copy = StdFont();
  EXPECT_FALSE(is_there);
}

TEST(StdFont, KeepsTheHeightThatIsPutUntilTheSizeIsSet) {
  const Screen screen(96);
  StdFont font, bold;
  bold.PutSize(24);
  bold.PutBold(true);
  font.PutSize(11);
  bool is_there = false;
  StdFont as_high;
  as_high.PutSize(24);
  font.PutHandle(LocalRef(new ForeignHandle(as_high.hFont(), is_there)), -32);
  font.PutBold(true);
  EXPECT_EQ(font.hFont(), bold.hFont()) << "32 pixels are 24 points";
  font.PutSize(11);
  EXPECT_NE(font.hFont(), bold.hFont());
}

TEST(StdFont, IsBoldAboveAWeightOf550) {
  StdFont font;
  font.PutBold(true);
  EXPECT_EQ(font.Weight(), 700);
  font.PutBold(false);
  EXPECT_EQ(font.Weight(), 400);
  font.PutWeight(550);
  EXPECT_FALSE(font.Bold());
  font.PutWeight(551);
  EXPECT_TRUE(font.Bold());
}

TEST(StdFont, HoldsSizesToATenThousandth) {
  StdFont font;
  font.PutSize(8.123456);
  EXPECT_DOUBLE_EQ(font.Size(), 8.1235);
  font.PutSize(-3);
  EXPECT_EQ(font.Size(), 0);
  font.PutSize(1e300);
  EXPECT_EQ(font.Size(), 32767);
  font.PutSize(std::numeric_limits<double>::quiet_NaN());
  EXPECT_EQ(font.Size(), 0);
}

TEST(StdFont, HasTheSameHandleWheneverItIsTheSame) {
  StdFont font;
  const HFONT regular = font.hFont();
  ASSERT_NE(regular, nullptr);
  EXPECT_EQ(font.hFont(), regular);
  font.PutBold(true);
  const HFONT bold = font.hFont();
  EXPECT_NE(bold, regular);
  font.PutBold(false);
  EXPECT_EQ(font.hFont(), regular);
  font.PutSize(10);
  EXPECT_NE(font.hFont(), regular);
  StdFont other;
  other.PutSize(10);
  EXPECT_EQ(other.hFont(), font.hFont());
}

TEST(StdFont, HasAHandleForEachProperty) {
  const auto changed = [](auto change) {
    StdFont font;
    const HFONT before = font.hFont();
    change(font);
    return font.hFont() != before;
  };
  EXPECT_TRUE(changed([](StdFont& font) { font.PutName(u"Verdana"); }));
  EXPECT_TRUE(changed([](StdFont& font) { font.PutSize(9.75); }));
  EXPECT_TRUE(changed([](StdFont& font) { font.PutWeight(600); }));
  EXPECT_TRUE(changed([](StdFont& font) { font.PutItalic(true); }));
  EXPECT_TRUE(changed([](StdFont& font) { font.PutUnderline(true); }));
  EXPECT_TRUE(changed([](StdFont& font) { font.PutStrikethrough(true); }));
  EXPECT_TRUE(changed([](StdFont& font) { font.PutCharset(204); }));
}

TEST(StdFont, CopiedGoesItsOwnWay) {
  StdFont font;
  const HFONT regular = font.hFont();
  StdFont copy = font;
  copy.PutItalic(true);
  EXPECT_NE(copy.hFont(), regular);
  EXPECT_EQ(font.hFont(), regular);
}

TEST(StdFont, CopiedKeepsTypefaceAndCharset) {
  StdFont font;
  font.PutName(u"A typeface with a long name");
  font.PutCharset(161);
  StdFont copy = font;
  font.PutName(u"Verdana");
  font.PutCharset(0);
  EXPECT_EQ(copy.Name(), u"A typeface with a long name");
  EXPECT_EQ(copy.Charset(), 161);
}

TEST(StdFont, TakesItsOwnNameAgain) {
  StdFont font;
  font.PutName(u"Verdana");
  font.PutName(font.Name());
  EXPECT_EQ(font.Name(), u"Verdana");
}

TEST(StdFont, OfElevenPixelsIsEightAndAQuarterPointsAt96PerInch) {
  const Screen screen(96);
  TestPicture picture(8, 8);
  LOGFONTW record;
  record.lfHeight = -11;
  record.lfFaceName = u"Tahoma";
  picture.UseFont(record);
  const SIZE expected = picture.Extent(u"The quick brown fox");
  StdFont font;
  const HGDIOBJ former = SelectObject(picture.Context(), font.hFont());
  EXPECT_EQ(picture.Extent(u"The quick brown fox"), expected);
  font.PutSize(7.875);  // ten and a half pixels, which round up
  SelectObject(picture.Context(), font.hFont());
  EXPECT_EQ(picture.Extent(u"The quick brown fox"), expected);
  SelectObject(picture.Context(), former);
}

TEST(StdFont, HasTheHeightOfTheResolutionAtWhichItsSizeWasSet) {
  TestPicture picture(8, 8);
  const auto width = [&picture](HFONT font) {
    const HGDIOBJ former = SelectObject(picture.Context(), font);
    const SIZE size = picture.Extent(u"The quick brown fox");
    SelectObject(picture.Context(), former);
    return size.cx;
  };
  Screen screen(96);
  StdFont font;
  font.PutSize(15);  // 20 pixels
  screen.Put(192);
  StdFont moved = font;
  moved.PutItalic(true);
  moved.PutItalic(false);
  EXPECT_EQ(width(moved.hFont()), width(font.hFont()));
  moved.PutSize(15);
  StdFont twice;
  screen.Put(96);
  EXPECT_GT(width(twice.hFont()), width(StdFont().hFont())) << "8.25 points at the resolution of its making";
  twice.PutSize(30);
  EXPECT_EQ(width(moved.hFont()), width(twice.hFont())) << "40 pixels";
}

// A caption can name any number of typefaces and sizes; the handles of those out of use must not pile up, nor
// that of one still in use go.
// On a monitor of its own a font has the handle that it has on a screen of that resolution.
TEST(StdFont, HasTheHeightOfItsOwnResolution) {
  Screen screen(96);
  for (const Long pixels_per_inch : {96, 120, 144, 192, 288}) {
    StdFont font;
    font.PutSize(11);
    font.PutPixelsPerInch(pixels_per_inch);
    StdFont copy = font;
    copy.PutSize(20);
    screen.Put(pixels_per_inch);
    StdFont eleven, twenty;
    eleven.PutSize(11);
    twenty.PutSize(20);
    screen.Put(96);
    EXPECT_EQ(font.hFont(), eleven.hFont()) << pixels_per_inch;
    EXPECT_EQ(copy.hFont(), twenty.hFont()) << pixels_per_inch;
    EXPECT_EQ(font.Size(), 11);
    font.PutPixelsPerInch(0);
    StdFont of_screen;
    of_screen.PutSize(11);
    EXPECT_EQ(font.hFont(), of_screen.hFont());
  }
}

TEST(StdFont, OutlivesAThousandOthers) {
  TestPicture picture(8, 8);
  StdFont kept;
  kept.PutSize(20);
  const HGDIOBJ former = SelectObject(picture.Context(), kept.hFont());
  const SIZE expected = picture.Extent(u"Total");
  StdFont other;
  for (int i = 0; i < 1000; ++i) {
    other.PutName(u"Typeface " + std::u16string(1, static_cast<char16_t>(0x100 + i)));
    ASSERT_NE(other.hFont(), nullptr);
    other.PutName(u"Tahoma");
    other.PutSize(1 + i);
    ASSERT_NE(other.hFont(), nullptr);
  }
  EXPECT_EQ(picture.Extent(u"Total"), expected);
  StdFont again;
  again.PutSize(20);
  SelectObject(picture.Context(), again.hFont());
  EXPECT_EQ(picture.Extent(u"Total"), expected);
  SelectObject(picture.Context(), former);
}

TEST(StdFont, OfAnotherThreadGoesWithIt) {
  const StdFont here;
  const HFONT handle = here.hFont();
  std::thread([] {
    TestPicture picture(20, 20);
    const StdFont font;
    const HGDIOBJ former = SelectObject(picture.Context(), font.hFont());
    EXPECT_GT(picture.Extent(u"Total").cx, 0);
    TextOutW(picture.Context(), 0, 0, u"Total \u05D0\u05D1 \u4E2D");
    SelectObject(picture.Context(), former);
  }).join();
  EXPECT_EQ(here.hFont(), handle);
}

}  // namespace
}  // namespace marklet
