// What the tags that carry a value do to colour and typeface, and links.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "markup/markup_caption_fixture.h"

namespace marklet {
namespace {

// --- Colour ---

TEST_F(MarkupCaption, ColoursRunsUntilTheCloser) {
  Draw(u"a<c=FF8000>b</c>c");
  ASSERT_EQ(runs_.size(), 3u);
  EXPECT_EQ(runs_[0].colour, "#112233");
  EXPECT_EQ(runs_[1].colour, "#FF8000");
  EXPECT_EQ(runs_[2].colour, "#112233");
}

TEST_F(MarkupCaption, BringsBackTheContextsColourAndNotTheCaptions) {
  SetTextColor(canvas_.dc(), MakeRgb(1, 2, 3));
  Draw(u"<c=FF8000>b</c>c");
  ASSERT_EQ(runs_.size(), 2u);
  EXPECT_EQ(runs_[1].colour, "#010203");
}

TEST_F(MarkupCaption, GoesBackOneColourOnly) {
  Draw(u"a<c=FF0000>b<c=00FF00>c</c>d</c>e");
  ASSERT_EQ(runs_.size(), 5u);
  EXPECT_EQ(runs_[3].colour, "#FF0000");
  EXPECT_EQ(runs_[4].colour, "#FF0000");
}

TEST_F(MarkupCaption, TurnsBlackWithAColourCloserAlone) {
  Draw(u"<p>a</c>b");
  ASSERT_EQ(runs_.size(), 2u);
  EXPECT_EQ(runs_[0].colour, "#112233");
  EXPECT_EQ(runs_[1].colour, "#000000");
}

TEST_F(MarkupCaption, DrawsAColourTagAtTheVeryEnd) {
  for (const char16_t* caption : {u"a <c=FF0000>", u"<c=FF0000>", u"a<c=FF0000>", u"<b></b><c=FF0000>"}) {
    Draw(caption);
    ASSERT_FALSE(runs_.empty());
    EXPECT_TRUE(runs_.back().text.ends_with("<c=FF0000>"));
    EXPECT_EQ(runs_.back().colour, "#112233");
  }
  // Any other length has the shape of a tag and no such exception.
  for (const char16_t* caption : {u"<b></b><c=FF000>", u"<b></b><c=FF00000>"}) {
    Draw(caption);
    EXPECT_TRUE(runs_.empty());
  }
}

TEST_F(MarkupCaption, TakesAWordForAColourTagWhenItHasTheShape) {
  {
    const PlayedSystem without_shaping(generation::kNT4);
    Draw(u"<b></b><c=12> x");
    ASSERT_EQ(runs_.size(), 1u);
    EXPECT_EQ(runs_[0].text, " x");
    EXPECT_EQ(runs_[0].colour, "#120000");
  }
  Draw(u"<b></b><c=12> x");  // the blank is glued to it
  ASSERT_EQ(runs_.size(), 2u);
  EXPECT_EQ(runs_[0].text, "<c=12> ");
  EXPECT_EQ(runs_[0].colour, "#112233");
}

TEST_F(MarkupCaption, ReadsSixCharactersOfAColourHashIncluded) {
  const PlayedSystem without_shaping(generation::kNT4);
  Draw(u"<b></b><c=#123456> x");  // a word of eleven characters that looks like a tag
  ASSERT_EQ(runs_.size(), 1u);
  EXPECT_EQ(runs_[0].colour, "#123405");
}

TEST_F(MarkupCaption, DrawsALinkBlueAndUnderlined) {
  Draw(u"<b></b>a<a>b</a>c");
  ASSERT_EQ(runs_.size(), 3u);
  EXPECT_EQ(runs_[1].colour, "#0000FF");
  EXPECT_EQ(runs_[1].font, "font(\"Tahoma\",-13,400,\"u\")");
  EXPECT_EQ(runs_[2].colour, "#112233");
  EXPECT_EQ(runs_[2].font, "font(\"Tahoma\",-13,400,\"\")");
}

TEST_F(MarkupCaption, TurnsTheUnderlineOffWithALinkOnAnUnderlinedFont) {
  style_.Font->PutUnderline(true);
  Draw(u"<b></b><a>b</a>c");
  ASSERT_EQ(runs_.size(), 2u);
  EXPECT_EQ(runs_[0].font, "font(\"Tahoma\",-13,400,\"\")");
  EXPECT_EQ(runs_[1].font, "font(\"Tahoma\",-13,400,\"u\")");
}

TEST_F(MarkupCaption, SharesOneSavedColourBetweenLinkAndColour) {
  Draw(u"a<c=FF0000>b<a>c</c>d</a>e");
  ASSERT_EQ(runs_.size(), 5u);
  EXPECT_EQ(runs_[2].colour, "#0000FF");
  EXPECT_EQ(runs_[3].colour, "#FF0000") << "what the link saved";
  EXPECT_EQ(runs_[3].font, "font(\"Tahoma\",-13,400,\"u\")") << "and its underline stays";
  EXPECT_EQ(runs_[4].colour, "#FF0000");
}

TEST_F(MarkupCaption, OpensAndClosesALinkInThisOrder) {
  Draw(u"<b></b><a></a>");
  const auto link = std::find(lines_.begin(), lines_.end(), "SelectObject(font(\"Tahoma\",-13,400,\"u\"))");
  ASSERT_NE(link, lines_.end());
  EXPECT_EQ(std::vector<std::string>(link + 1, lines_.end()),
            (std::vector<std::string>{"GetTextColor()", "SetTextColor(#0000FF)", "GetTextColor()",
                                      "SelectObject(font(\"Tahoma\",-13,400,\"\"))", "SetTextColor(#000000)",
                                      "GetTextColor()"}));
}

// --- Font names ---

std::string Named(const std::string& name) { return "font(\"" + name + "\",-13,400,\"\")"; }

TEST_F(MarkupCaption, SetsAFontNameWithItsSpaces) {
  Draw(u"<f=Times New Roman>x");
  ASSERT_EQ(runs_.size(), 1u);
  EXPECT_EQ(runs_[0].font, Named("Times New Roman"));
}

TEST_F(MarkupCaption, KeepsQuotesInAFontName) {
  Draw(u"<f='A'>x");
  ASSERT_EQ(runs_.size(), 1u);
  EXPECT_EQ(runs_[0].font, Named("'A'"));
}

TEST_F(MarkupCaption, GoesBackOneFontNameOnly) {
  Draw(u"<f=A><f=B>1</f>2</f>3");
  ASSERT_EQ(runs_.size(), 3u);
  EXPECT_EQ(runs_[0].font, Named("B"));
  EXPECT_EQ(runs_[1].font, Named("A"));
  EXPECT_EQ(runs_[2].font, Named("A"));
}

TEST_F(MarkupCaption, KeepsTheNameWithAFontCloserAlone) {
  Draw(u"<p></f>x");
  ASSERT_EQ(runs_.size(), 1u);
  EXPECT_EQ(runs_[0].font, Named("Tahoma"));
}

TEST_F(MarkupCaption, SetsAnEmptyNameInMidCaption) {
  Draw(u"<f=>xy");
  ASSERT_EQ(runs_.size(), 1u);
  EXPECT_EQ(runs_[0].font, Named(""));
}

TEST_F(MarkupCaption, TakesAWordForAFontTagAtTheVeryEnd) {
  Draw(u"x abc<f=>");
  ASSERT_EQ(runs_.size(), 1u) << "the word is not drawn";
  EXPECT_EQ(runs_[0].text, "x ");
  EXPECT_EQ(Lines("SelectObject").back(), "SelectObject(" + Named("abc") + ")");
}

TEST_F(MarkupCaption, TakesNoWordForAFontTagThatDoesNotEndInABracket) {
  const PlayedSystem without_shaping(generation::kNT4);
  Draw(u"<b></b>x\ta<f=Arial b<f=c");
  ASSERT_EQ(runs_.size(), 3u);
  EXPECT_EQ(runs_[1].text, "\\u0009a<f=Arial");
  EXPECT_EQ(runs_[2].text, " b<f=c");
  EXPECT_EQ(runs_[2].font, Named("Tahoma"));
}

TEST_F(MarkupCaption, LooksForAFontTagBeforeAColourTag) {
  Draw(u"x <c=<f=>");
  ASSERT_EQ(runs_.size(), 1u);
  EXPECT_EQ(Lines("SelectObject").back(), "SelectObject(" + Named("<c=") + ")");
}

TEST_F(MarkupCaption, TakesEveryOpenerAndBracketOutOfAFontName) {
  // Taken out once from left to right: what closes up to a new opener stays.
  Draw(u"<f=a<f=b<f<f==c>x");
  ASSERT_EQ(runs_.size(), 1u);
  EXPECT_EQ(runs_[0].font, Named("ab<f=c"));
}

TEST_F(MarkupCaption, LetsTagsOverlap) {
  Draw(u"<b><f=Arial>1</b>2</f>3");
  ASSERT_EQ(runs_.size(), 3u);
  EXPECT_EQ(runs_[0].font, "font(\"Arial\",-13,700,\"\")");
  EXPECT_EQ(runs_[1].font, "font(\"Arial\",-13,400,\"\")");
  EXPECT_EQ(runs_[2].font, "font(\"Tahoma\",-13,400,\"\")");
}

}  // namespace
}  // namespace marklet
