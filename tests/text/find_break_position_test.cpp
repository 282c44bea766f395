#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>

#include "text/shaping.h"

namespace marklet {
namespace {

// "w" a blank, "s" a soft break, "b" both, "-" neither.
std::vector<LogAttr> Attrs(std::string_view flags) {
  std::vector<LogAttr> attrs(flags.size());
  for (std::size_t i = 0; i < flags.size(); ++i) {
    attrs[i].fWhiteSpace = flags[i] == 'w' || flags[i] == 'b';
    attrs[i].fSoftBreak = flags[i] == 's' || flags[i] == 'b';
  }
  return attrs;
}

Long Break(std::u16string_view text, std::string_view flags, Long count) {
  return FindBreakPosition(text, Attrs(flags), count);
}

TEST(FindBreakPosition, IsAllOfATextThatFits) { EXPECT_EQ(Break(u"one two", "---ws--", 7), 7); }

TEST(FindBreakPosition, IsAfterTheLastBlankThatFits) {
  EXPECT_EQ(Break(u"one two", "---ws--", 6), 4);
  EXPECT_EQ(Break(u"one two", "---ws--", 4), 4);
}

TEST(FindBreakPosition, IsInFrontOfTheLastSoftBreak) {
  EXPECT_EQ(Break(u"well-to-do", "-----s--s-", 9), 8);
  EXPECT_EQ(Break(u"well-to-do", "-----s--s-", 8), 5);
}

TEST(FindBreakPosition, TakesABlankThatIsASoftBreakAsABlank) { EXPECT_EQ(Break(u"abcd", "--b-", 3), 3); }

TEST(FindBreakPosition, CutsHardWhereThereIsNoBreak) {
  EXPECT_EQ(Break(u"unbroken", "--------", 5), 5);
  EXPECT_EQ(Break(u"unbroken", "s-------", 5), 5) << "nothing stands in front of the first";
  EXPECT_EQ(Break(u"unbroken", "", 5), 5) << "attributes that couldn't be read";
}

// The character past those that fit isn't looked at, even when it is a blank.
TEST(FindBreakPosition, NeverSeesTheBlankThatNoLongerFits) {
  EXPECT_EQ(Break(u"aa bbb cc", "--ws--ws-", 6), 3);
}

TEST(FindBreakPosition, IsTheFirstLineEndThatFits) {
  EXPECT_EQ(Break(u"ab\r\ncd", "------", 6), 3) << "its LF begins the next line";
  EXPECT_EQ(Break(u"ab\r\ncd\r\n", "--------", 8), 3);
  EXPECT_EQ(Break(u"ab\r\ncd", "------", 3), 3) << "its LF needn't fit";
  EXPECT_EQ(Break(u"a \r\ncd", "-w----", 2), 2) << "but its CR must";
  EXPECT_EQ(Break(u"\r\ncd", "----", 4), 1);
  EXPECT_EQ(Break(u"a\rb\nc", "-----", 4), 4) << "neither alone is one";
}

TEST(FindBreakPosition, IsNothingWhereNothingFits) {
  EXPECT_EQ(Break(u"abc", "", 0), 0);
  EXPECT_EQ(Break(u"\r\n", "", 0), 0);
  EXPECT_EQ(Break(u"", "", 0), 0);
}

// Word for word as the rule is told, with positions from 1.
Long Naive(const std::u16string& text, const std::vector<LogAttr>& attrs, Long count) {
  const auto found = text.find(u"\r\n");
  const Long pair = found == text.npos ? 0 : static_cast<Long>(found) + 1;
  if (pair >= 1 && pair <= count) return pair;
  Long answer = 0;
  if (static_cast<Long>(text.size()) > count) {
    for (Long i = count; i >= 1; --i) {
      const LogAttr& attr = attrs[static_cast<std::size_t>(i) - 1];
      if (attr.fWhiteSpace == 0 && attr.fSoftBreak == 0) continue;
      answer = attr.fWhiteSpace != 0 ? i : i - 1;
      break;
    }
  }
  return answer != 0 ? answer : count;
}

TEST(FindBreakPosition, FollowsTheRuleOnRandomTexts) {
  std::mt19937 random(1);
  for (int round = 0; round < 20'000; ++round) {
    std::u16string text;
    std::string flags;
    for (std::size_t length = random() % 12; text.size() < length;) {
      text += u"ab \r\n\r\n"[random() % 7];
      flags += "----wsb"[random() % 7];
    }
    const auto count = static_cast<Long>(random() % (text.size() + 1));
    ASSERT_EQ(FindBreakPosition(text, Attrs(flags), count), Naive(text, Attrs(flags), count))
        << testing::PrintToString(text) << flags << count;
  }
}

}  // namespace
}  // namespace marklet
