// What the tags that carry a value do to colour and typeface, and links.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "markup/markup_caption_fixture.h"

namespace marklet {
namespace {

// How the log spells a font of ten points. `style` has "u" for underlined.
std::string Named(const std::string& name, const std::string& style = "", int weight = 400) {
  return "font(\"" + name + "\",-13," + std::to_string(weight) + ",\"" + style + "\")";
}

// --- Colour ---

TEST_F(MarkupCaption, ColoursRunsUntilTheCloser) {
  EXPECT_EQ(ColoursOf(u"a<c=FF8000>b</c>c"), (Strings{"#112233", "#FF8000", "#112233"}));
}

TEST_F(MarkupCaption, BringsBackTheContextsColourAndNotTheCaptions) {
  SetTextColor(canvas_.dc(), MakeRgb(1, 2, 3));
  EXPECT_EQ(ColoursOf(u"<c=FF8000>b</c>c"), (Strings{"#FF8000", "#010203"}));
}

TEST_F(MarkupCaption, GoesBackOneColourOnly) {
  EXPECT_EQ(ColoursOf(u"a<c=FF0000>b<c=00FF00>c</c>d</c>e"),
            (Strings{"#112233", "#FF0000", "#00FF00", "#FF0000", "#FF0000"}));
}

TEST_F(MarkupCaption, TurnsBlackWithAColourCloserAlone) {
  EXPECT_EQ(ColoursOf(u"<p>a</c>b"), (Strings{"#112233", "#000000"}));
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
  // A word of eleven characters that looks like a tag.
  EXPECT_EQ(ColoursOf(u"<b></b><c=#123456> x"), Strings{"#123405"});
}

TEST_F(MarkupCaption, DrawsALinkBlueAndUnderlined) {
  const auto* const caption = u"<b></b>a<a>b</a>c";
  EXPECT_EQ(ColoursOf(caption), (Strings{"#112233", "#0000FF", "#112233"}));
  EXPECT_EQ(FontsOf(caption), (Strings{Named("Tahoma"), Named("Tahoma", "u"), Named("Tahoma")}));
}

TEST_F(MarkupCaption, TurnsTheUnderlineOffWithALinkOnAnUnderlinedFont) {
  style_.Font->PutUnderline(true);
  EXPECT_EQ(FontsOf(u"<b></b><a>b</a>c"), (Strings{Named("Tahoma"), Named("Tahoma", "u")}));
}

TEST_F(MarkupCaption, SharesOneSavedColourBetweenLinkAndColour) {
  Draw(u"a<c=FF0000>b<a>c</c>d</a>e");
  ASSERT_EQ(runs_.size(), 5u);
  EXPECT_EQ(runs_[2].colour, "#0000FF");
  EXPECT_EQ(runs_[3].colour, "#FF0000") << "what the link saved";
  EXPECT_EQ(runs_[3].font, Named("Tahoma", "u")) << "and its underline stays";
  EXPECT_EQ(runs_[4].colour, "#FF0000");
}

TEST_F(MarkupCaption, OpensAndClosesALinkInThisOrder) {
  Draw(u"<b></b><a></a>");
  const auto link = std::find(lines_.begin(), lines_.end(), "SelectObject(" + Named("Tahoma", "u") + ")");
  ASSERT_NE(link, lines_.end());
  EXPECT_EQ(Strings(link + 1, lines_.end()),
            (Strings{"GetTextColor()", "SetTextColor(#0000FF)", "GetTextColor()",
                     "SelectObject(" + Named("Tahoma") + ")", "SetTextColor(#000000)", "GetTextColor()"}));
}

// --- Font names ---

TEST_F(MarkupCaption, SetsAFontNameWithItsSpaces) {
  EXPECT_EQ(FontsOf(u"<f=Times New Roman>x"), Strings{Named("Times New Roman")});
}

TEST_F(MarkupCaption, KeepsQuotesInAFontName) { EXPECT_EQ(FontsOf(u"<f='A'>x"), Strings{Named("'A'")}); }

TEST_F(MarkupCaption, GoesBackOneFontNameOnly) {
  EXPECT_EQ(FontsOf(u"<f=A><f=B>1</f>2</f>3"), (Strings{Named("B"), Named("A"), Named("A")}));
}

TEST_F(MarkupCaption, KeepsTheNameWithAFontCloserAlone) {
  EXPECT_EQ(FontsOf(u"<p></f>x"), Strings{Named("Tahoma")});
}

TEST_F(MarkupCaption, SetsAnEmptyNameInMidCaption) { EXPECT_EQ(FontsOf(u"<f=>xy"), Strings{Named("")}); }

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
  EXPECT_EQ(FontsOf(u"<f=a<f=b<f<f==c>x"), Strings{Named("ab<f=c")});
}

TEST_F(MarkupCaption, LetsTagsOverlap) {
  EXPECT_EQ(FontsOf(u"<b><f=Arial>1</b>2</f>3"),
            (Strings{Named("Arial", "", 700), Named("Arial"), Named("Tahoma")}));
}

}  // namespace
}  // namespace marklet
