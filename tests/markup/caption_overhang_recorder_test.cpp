// When the pen moves by what a leaning word hangs over.
#include <gtest/gtest.h>

#include <string>

#include "markup/markup_caption_fixture.h"

namespace marklet {
namespace {

class MarkupOverhang : public MarkupCaption {
 protected:
  MarkupOverhang() { style_.Font = FontOf(30); }
  StdFont Italic() const { return *FontOf(30, true); }
};

TEST_F(MarkupOverhang, IsAskedForOfWordsOfThreeCharactersAndMore) {
  Draw(u"<b></b>a ab abc");
  // "ab " has three, the blank included.
  EXPECT_EQ(Lines("GetCharABCWidthsA"),
            (std::vector<std::string>{"GetCharABCWidthsA(97)", "GetCharABCWidthsA(32)",
                                      "GetCharABCWidthsA(97)", "GetCharABCWidthsA(99)"}));
}

TEST_F(MarkupOverhang, IsAskedForOnceWhenTheFirstCharacterHasNone) {
  Recorder recorder;
  recorder.Fail("GetCharABCWidthsA");
  DrawRecorded(u"<b></b>abc", recorder);
  EXPECT_EQ(Lines("GetCharABCWidthsA"), std::vector<std::string>{"GetCharABCWidthsA(97)"});
}

TEST_F(MarkupOverhang, MovesThePenBeforeAnItalicTag) {
  const Long trail = canvas_.Trail(*FontOf(30), 'f');
  ASSERT_NE(trail, 0);
  Draw(u"<b></b>iff<i>x</i>y");
  ASSERT_EQ(runs_.size(), 3u);
  EXPECT_EQ(runs_[1].rect.left, Width(u"iff", 30) + trail);
}

TEST_F(MarkupOverhang, IsLeftOutBeforeAnotherTag) {
  ASSERT_NE(canvas_.Trail(*FontOf(30), 'f'), 0);
  for (const char16_t* caption : {u"<b></b>iff<u>x", u"<b></b>iff</i>x", u"<b></b>iff<I>x"}) {
    Draw(caption);
    ASSERT_GE(runs_.size(), 2u);
    EXPECT_EQ(runs_[1].rect.left, Width(u"iff", 30));
  }
}

TEST_F(MarkupOverhang, IsLeftOutWhenTheLastCharacterHasNone) {
  ASSERT_NE(canvas_.Trail(*FontOf(30), 'f'), 0);
  Recorder recorder;
  recorder.Fail("GetCharABCWidthsA", 1);
  DrawRecorded(u"<b></b>iff<i>x</i>y", recorder);
  EXPECT_EQ(Lines("GetCharABCWidthsA").size(), 2u);
  ASSERT_EQ(runs_.size(), 3u);
  EXPECT_EQ(runs_[1].rect.left, Width(u"iff", 30));
}

TEST_F(MarkupOverhang, IsAskedForByTheCodePagesCodes) {
  Draw(u"<b></b>\u00E9b\u20AC \u03A9bc");
  EXPECT_EQ(Lines("GetCharABCWidthsA"),
            (std::vector<std::string>{"GetCharABCWidthsA(233)", "GetCharABCWidthsA(32)",
                                      "GetCharABCWidthsA(63)", "GetCharABCWidthsA(99)"}))
      << "a question mark stands for what the code page lacks";
  Draw(u"<b></b>ab\u20AC");
  EXPECT_EQ(Lines("GetCharABCWidthsA").back(), "GetCharABCWidthsA(128)");
}

TEST_F(MarkupOverhang, MovesThePenPastTheLastTokenButOneInsideItalic) {
  const StdFont italic = Italic();
  const Long trail = canvas_.Trail(italic, ' ');
  const Long trail_f = canvas_.Trail(italic, 'f');
  ASSERT_NE(trail_f, 0);
  Draw(u"<b></b><i>off x");
  ASSERT_EQ(runs_.size(), 2u);
  EXPECT_EQ(runs_[1].rect.left, canvas_.Measure(italic, u"off ").cx + trail);
  // The last but one is a word here, with no blank after it.
  Draw(u"<b></b><i>off<x>");
  ASSERT_EQ(runs_.size(), 2u);
  EXPECT_EQ(runs_[1].rect.left, canvas_.Measure(italic, u"off").cx + trail_f);
}

TEST_F(MarkupOverhang, IsLeftOutInTheMiddleOfItalicText) {
  const StdFont italic = Italic();
  Draw(u"<b></b><i>off<x>y z");
  ASSERT_EQ(runs_.size(), 4u);
  EXPECT_EQ(runs_[1].rect.left, canvas_.Measure(italic, u"off").cx);
}

TEST_F(MarkupOverhang, OfAnEarlierWordCountsNearTheEnd) {
  const StdFont italic = Italic();
  const Long trail = canvas_.Trail(italic, 'f');
  ASSERT_NE(trail, 0);
  Draw(u"<b></b><i>off<x>y z");
  ASSERT_EQ(runs_.size(), 4u);
  // "<x>" is three characters long and ends in ">": that one's trail is the last one asked for.
  const Long last = canvas_.Trail(italic, '>');
  EXPECT_EQ(runs_[3].rect.left - runs_[2].rect.left, canvas_.Measure(italic, u"y ").cx + last);
}

TEST_F(MarkupOverhang, OfAnEarlierWordDoesNotCountBeforeAnItalicTag) {
  ASSERT_NE(canvas_.Trail(*FontOf(30), 'f'), 0);
  Draw(u"<b></b>iff<u></u>ab<i>x</i>y");
  ASSERT_EQ(runs_.size(), 4u);
  EXPECT_EQ(runs_[2].rect.left - runs_[1].rect.left, Width(u"ab", 30)) << "too short to have one of its own";
}

TEST_F(MarkupOverhang, IsLeftOutAfterTheItalicCloser) {
  ASSERT_NE(canvas_.Trail(*FontOf(30), 'f'), 0);
  Draw(u"<i>a</i>off<x>");
  ASSERT_EQ(runs_.size(), 3u);
  EXPECT_EQ(runs_[2].rect.left - runs_[1].rect.left, Width(u"off", 30));
}

TEST_F(MarkupOverhang, NeedsItalicToBeOpenedByItsTag) {
  style_.Font = FontOf(30, true);  // an italic font isn't enough
  Draw(u"<b></b>off<x>");
  ASSERT_EQ(runs_.size(), 2u);
  EXPECT_EQ(runs_[1].rect.left, canvas_.Measure(Italic(), u"off").cx);
}

}  // namespace
}  // namespace marklet
