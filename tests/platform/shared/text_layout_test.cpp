// The layout alone, in a font whose characters are all ten pixels wide, and twenty high.
#include "platform/shared/text_layout.h"

#include <gtest/gtest.h>

#include <limits>
#include <ostream>
#include <random>
#include <string>
#include <vector>

namespace marklet {
namespace {

constexpr Long kWidth = 10, kHeight = 20, kAscent = 15;
constexpr Long kMin = std::numeric_limits<Long>::min(), kMax = std::numeric_limits<Long>::max();

struct DrawnLine {
  std::u16string text;
  std::int64_t x, y;
  friend bool operator==(const DrawnLine&, const DrawnLine&) = default;
};
struct DrawnBar {
  std::int64_t left, right, y;
  friend bool operator==(const DrawnBar&, const DrawnBar&) = default;
};
[[maybe_unused]] void PrintTo(const DrawnLine& line, std::ostream* out) {
  *out << testing::PrintToString(line.text) << " at " << line.x << "," << line.y;
}
[[maybe_unused]] void PrintTo(const DrawnBar& bar, std::ostream* out) {
  *out << bar.left << ".." << bar.right << " at " << bar.y;
}

class Notebook final : public LineDevice {
 public:
  Long LineHeight() override { return kHeight; }
  Long Ascent() override { return kAscent; }
  std::int64_t WidthOf(std::u16string_view line) override {
    units_measured += line.size();
    return static_cast<std::int64_t>(line.size()) * kWidth;
  }
  void UnitWidths(std::u16string_view line, std::vector<Long>& widths) override {
    units_measured += line.size();
    widths.assign(line.size(), kWidth);
  }
  LineStretch StretchOf(std::u16string_view line, std::size_t unit) override {
    EXPECT_LT(unit, line.size());
    const auto left = static_cast<std::int64_t>(unit) * kWidth;
    return {left, left + kWidth};
  }
  void DrawLine(std::u16string_view line, std::int64_t x, std::int64_t y, std::int64_t width) override {
    EXPECT_EQ(width, static_cast<std::int64_t>(line.size()) * kWidth);
    lines.push_back({std::u16string(line), x, y});
  }
  void DrawBar(std::int64_t left, std::int64_t right, std::int64_t y) override {
    bars.push_back({left, right, y});
  }

  std::vector<DrawnLine> lines;
  std::vector<DrawnBar> bars;
  std::size_t units_measured = 0;
};

class LaidOutLines : public testing::Test {
 protected:
  // In a rectangle of that many characters.
  std::vector<std::u16string> Lines(std::u16string_view text, Long characters, std::uint32_t flags) {
    Notebook notebook;
    RECT rect = {0, 0, characters * kWidth, 10'000};
    const int height = DrawTextOn(notebook, text, rect, flags);
    std::vector<std::u16string> lines;
    for (const DrawnLine& line : notebook.lines) lines.push_back(line.text);
    EXPECT_EQ(height, static_cast<int>(lines.size()) * kHeight);
    return lines;
  }
  using Texts = std::vector<std::u16string>;
};

TEST_F(LaidOutLines, KeepsAWordWhoseBlankDoesNotFit) {
  EXPECT_EQ(Lines(u"one alpha beta", 9, DT_WORDBREAK), (Texts{u"one alpha", u"beta"}));
  EXPECT_EQ(Lines(u"one alpha beta", 10, DT_WORDBREAK), (Texts{u"one alpha ", u"beta"}));
  EXPECT_EQ(Lines(u"one alpha beta", 8, DT_WORDBREAK), (Texts{u"one ", u"alpha ", u"beta"}));
}

TEST_F(LaidOutLines, HangsBlanksThatDoNotFitOverTheEdge) {
  EXPECT_EQ(Lines(u"one    two", 3, DT_WORDBREAK), (Texts{u"one", u"two"}));
  EXPECT_EQ(Lines(u"one    two", 5, DT_WORDBREAK), (Texts{u"one  ", u"two"}));
  EXPECT_EQ(Lines(u"one    two", 5, DT_WORDBREAK | DT_RIGHT), (Texts{u"one  ", u"two"}));
  EXPECT_EQ(Lines(u"one    two", 7, DT_WORDBREAK | DT_RIGHT), (Texts{u"one   ", u"two"}));
  EXPECT_EQ(Lines(u"toowide   is", 4, DT_WORDBREAK), (Texts{u"toowide", u"is"}));
}

TEST_F(LaidOutLines, OpensNoLineForBlanksAtTheEnd) {
  EXPECT_EQ(Lines(u"one    ", 4, DT_WORDBREAK), (Texts{u"one "}));
  EXPECT_EQ(Lines(u"one    \n", 4, DT_WORDBREAK), (Texts{u"one "}));
  EXPECT_EQ(Lines(u"one    \ntwo", 4, DT_WORDBREAK), (Texts{u"one ", u"two"}));
  EXPECT_EQ(Lines(u"      ", 2, DT_WORDBREAK), (Texts{u"  "}));
  EXPECT_EQ(Lines(u"one  ", 9, DT_WORDBREAK | DT_RIGHT), (Texts{u"one  "})) << "those that fit count";
}

TEST_F(LaidOutLines, KeepsASignThatMayNotBeginALineWithItsWord) {
  EXPECT_EQ(Lines(u"one two !", 8, DT_WORDBREAK), (Texts{u"one ", u"two !"}));
  EXPECT_EQ(Lines(u"one two !", 7, DT_WORDBREAK), (Texts{u"one ", u"two !"}));
}

TEST_F(LaidOutLines, LeavesRoomForNothingInANarrowRectangle) {
  for (const Long characters : {0, -5}) {
    EXPECT_EQ(Lines(u"one two-three", characters, DT_WORDBREAK), (Texts{u"one", u"two-three"}));
    EXPECT_EQ(Lines(u" one", characters, DT_WORDBREAK), (Texts{u"", u"one"}));
    EXPECT_EQ(Lines(u"one two", characters, DT_WORDBREAK | DT_WORD_ELLIPSIS), (Texts{u"...", u"..."}));
  }
}

TEST_F(LaidOutLines, BeginsWithTheEmptyLinesOfTheText) {
  for (const std::uint32_t flags :
       {0u, DT_WORDBREAK, DT_WORDBREAK | DT_WORD_ELLIPSIS, DT_CENTER | DT_WORDBREAK}) {
    EXPECT_EQ(Lines(u"\r\n\n a", 5, flags), (Texts{u"", u"", u" a"}));
    EXPECT_EQ(Lines(u"\n\n", 5, flags), (Texts{u"", u""}));
    EXPECT_EQ(Lines(u"&\n&\na", 5, flags), (Texts{u"", u"", u"a"})) << "a mark on a line end";
  }
}

TEST_F(LaidOutLines, ShortensNoPairByHalf) {
  EXPECT_EQ(Lines(u"\U0001F600\U0001F600\U0001F600", 4, DT_SINGLELINE | DT_WORD_ELLIPSIS), (Texts{u"..."}));
  EXPECT_EQ(Lines(u"\U0001F600\U0001F600\U0001F600", 5, DT_SINGLELINE | DT_WORD_ELLIPSIS),
            (Texts{u"\U0001F600..."}));
}

TEST_F(LaidOutLines, UnderlinesTheLastMarkThatALineStillHas) {
  Notebook notebook;
  RECT rect = {100, 40, 160, 1000};
  DrawTextOn(notebook, u"&a&b c&defg\n&&&", rect, DT_WORDBREAK);
  EXPECT_EQ(notebook.lines,
            (std::vector<DrawnLine>{{u"ab ", 100, 40}, {u"cdefg", 100, 60}, {u"&&", 100, 80}}));
  EXPECT_EQ(notebook.bars,
            (std::vector<DrawnBar>{{110, 119, 40 + kAscent + 1}, {110, 119, 60 + kAscent + 1}}));

  Notebook shortened;
  DrawTextOn(shortened, u"&abcdefg&hi", rect, DT_SINGLELINE | DT_WORD_ELLIPSIS);
  EXPECT_EQ(shortened.lines, (std::vector<DrawnLine>{{u"abc...", 100, 40}}));
  EXPECT_EQ(shortened.bars, (std::vector<DrawnBar>{{100, 109, 40 + kAscent + 1}}));
}

TEST_F(LaidOutLines, StopsAtTheFirstLineBelowTheRectangle) {
  std::u16string text;
  for (int i = 0; i < 1000; ++i) text += u"word\n";
  Notebook notebook;
  RECT rect = {0, 0, 100, 50};
  EXPECT_EQ(DrawTextOn(notebook, text, rect, DT_WORDBREAK), 3 * kHeight);
  EXPECT_EQ(notebook.lines.size(), 3u);
  EXPECT_EQ(DrawTextOn(notebook, text, rect, DT_WORDBREAK | DT_NOCLIP), 1000 * kHeight);
  EXPECT_EQ(DrawTextOn(notebook, text, rect, DT_WORDBREAK | DT_CALCRECT), 1000 * kHeight);
  EXPECT_EQ(rect, (RECT{0, 0, 40, 1000 * kHeight}));
}

TEST_F(LaidOutLines, MeasuresEachUnitAFewTimesWhateverTheText) {
  constexpr std::size_t kUnits = 100'000;
  for (const std::u16string_view piece :
       {u"x", u" ", u"a ", u"word ", u"a\n", u"&x", u"-", u"a !", u"\u4E2D"}) {
    std::u16string text;
    while (text.size() < kUnits) text += piece;
    for (const Long width : {-10, 0, 30, 1000}) {
      Notebook notebook;
      RECT rect = {0, 0, width, 0};
      DrawTextOn(notebook, text, rect, DT_WORDBREAK | DT_CALCRECT | DT_WORD_ELLIPSIS);
      // Dots are measured once for each line that is shortened.
      EXPECT_LE(notebook.units_measured, 8 * text.size());
    }
  }
}

TEST_F(LaidOutLines, HoldsItsResultsInTheRangeOfNumbers) {
  Notebook notebook;
  RECT rect = {kMax - 5, kMax - 5, kMin, kMin};
  DrawTextOn(notebook, u"one\ntwo", rect, DT_CALCRECT);
  EXPECT_EQ(rect, (RECT{kMax - 5, kMax - 5, kMax, kMax}));
  for (const std::uint32_t flags :
       {DT_CENTER, DT_RIGHT, DT_SINGLELINE | DT_VCENTER, DT_SINGLELINE | DT_BOTTOM}) {
    rect = {kMin, kMin, kMax, kMax};
    DrawTextOn(notebook, u"one &two", rect, flags);
    rect = {kMax, kMax, kMin, kMin};
    DrawTextOn(notebook, u"one &two", rect, flags);
  }
}

// Every line is a stretch of the text, the stretches follow one another, and only blanks are left out.
TEST_F(LaidOutLines, LosesNoCharacterButBlanks) {
  std::mt19937 random(7);
  constexpr std::u16string_view kAlphabet = u"ab  -!(\u4E2D\u3002\t/5";
  for (int i = 0; i < 3000; ++i) {
    std::u16string text(1 + random() % 30, u'x'), kept;
    for (char16_t& unit : text) unit = kAlphabet[random() % kAlphabet.size()];
    const std::uint32_t flags = DT_WORDBREAK | (i % 3 == 0 ? DT_CENTER : 0);
    for (const std::u16string& line : Lines(text, static_cast<Long>(random() % 12), flags)) kept += line;
    std::erase(text, u' ');
    std::erase(kept, u' ');
    EXPECT_EQ(kept, text);
  }
}

}  // namespace
}  // namespace marklet
