// How much of a text is handed to the script processor to find one line.
#include "platform/shared/script_window.h"

#include <gtest/gtest.h>

#include <string>

namespace marklet {
namespace {

constexpr Long kWidth = 600, kHeight = 13;
const std::u16string kLong(5'000, u'a');

std::size_t Units(std::u16string_view text, Long width = kWidth, Long line_height = kHeight) {
  return ScriptWindow(text, width, line_height).Text().size();
}

void ALineEnded(std::size_t units, Long width = kWidth) { ScriptWindow(kLong, width, kHeight).Ended(units); }

// So that no test finds what another one left.
void ForgetLines() { ALineEnded(1, 1); }

TEST(ScriptWindow, IsGuessedFromTheHeightOfTheFirstLine) {
  ForgetLines();
  EXPECT_EQ(Units(kLong), 600u * 25 / 10 / 13 + 16);
  EXPECT_EQ(Units(std::u16string(5'000, u'\u0628')), 600u * 33 / 10 / 13 + 16)
      << "letters that join are narrow";
  EXPECT_EQ(Units(std::u16string(5'000, u'\u4E2D')), 600u * 12 / 10 / 13 + 16) << "ideographs are square";
}

TEST(ScriptWindow, IsALittleMoreThanTheLineBefore) {
  ALineEnded(160);
  EXPECT_EQ(Units(kLong), 160u + 10 + 8);
  ALineEnded(32);
  EXPECT_EQ(Units(kLong), 32u + 2 + 8);
}

TEST(ScriptWindow, LearnsNothingForLinesOfAnotherKind) {
  ForgetLines();
  const std::size_t narrower = Units(kLong, kWidth - 1), higher = Units(kLong, kWidth, kHeight + 1);
  const std::size_t joining = Units(std::u16string(5'000, u'\u0628'));
  ALineEnded(40);
  EXPECT_EQ(Units(kLong, kWidth - 1), narrower);
  EXPECT_EQ(Units(kLong, kWidth, kHeight + 1), higher);
  EXPECT_EQ(Units(std::u16string(5'000, u'\u0628')), joining);
}

TEST(ScriptWindow, TellsWhenSomethingIsToSpare) {
  const ScriptWindow window(kLong, kWidth, kHeight);
  EXPECT_FALSE(window.Tells(kWidth));
  EXPECT_FALSE(window.Tells(kWidth + kHeight)) << "the last letter may be another one before a cut";
  EXPECT_TRUE(window.Tells(kWidth + kHeight + 1));
  EXPECT_TRUE(ScriptWindow(u"all there is", kWidth, kHeight).Tells(0));
}

TEST(ScriptWindow, GrowsUntilItTells) {
  ALineEnded(2);
  ScriptWindow window(kLong, kWidth, kHeight);
  std::size_t before = 0;
  int steps = 0;
  for (; !window.Tells(0) && steps < 100; ++steps, window.Grow()) {
    EXPECT_GT(window.Text().size(), before);
    before = window.Text().size();
  }
  // The width holds no more than 512 + 2 * 600 characters, each step adds half.
  EXPECT_EQ(window.Text().size(), 1'712u);
  EXPECT_LT(steps, 12);
}

TEST(ScriptWindow, NeverEndsInsideASurrogatePair) {
  std::u16string pairs;
  for (int i = 0; i < 2'000; ++i) pairs += u"\U0001F600";
  for (std::size_t units = 1; units < 60; ++units) {
    ScriptWindow(pairs, kWidth, kHeight).Ended(units);
    EXPECT_EQ(Units(pairs) % 2, 0u) << units;
  }
}

TEST(ScriptWindow, EndsWithTheFirstLineEnd) {
  ALineEnded(160);
  EXPECT_EQ(ScriptWindow(u"ab\r\ncd", kWidth, kHeight).Text(), u"ab\r\n");
}

}  // namespace
}  // namespace marklet
