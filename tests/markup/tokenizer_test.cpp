// Where a caption is cut. Both cutting rules: with shaping separators end a word, without they open the next.
#include "markup/tokenizer.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "markup/naive_tokenizer.h"
#include "markup/played_system.h"
#include "support/processor_time.h"

namespace marklet {
namespace {

using Tokens = std::vector<std::u16string>;

Tokens Cut(std::u16string_view text) {
  Tokens tokens;
  for (const std::u16string_view token : TokenizeMarkup(text)) tokens.emplace_back(token);
  return tokens;
}

Tokens CutWithShaping(std::u16string_view text) {
  const PlayedSystem system(generation::kXP);
  return Cut(text);
}

Tokens CutWithoutShaping(std::u16string_view text) {
  const PlayedSystem system(generation::kNT4);
  return Cut(text);
}

TEST(Tokenizer, GivesNoTokensForAnEmptyText) {
  EXPECT_TRUE(CutWithShaping(u"").empty());
  EXPECT_TRUE(CutWithoutShaping(u"").empty());
}

TEST(Tokenizer, CutsTheSentinelIntoItsTwoTags) {
  EXPECT_EQ(CutWithShaping(u"<sub></sub>abc"), (Tokens{u"<sub>", u"</sub>", u"abc"}));
  EXPECT_EQ(CutWithoutShaping(u"<sub></sub>abc"), (Tokens{u"<sub>", u"</sub>", u"abc"}));
}

TEST(Tokenizer, JoinsALoneOpeningBracketToTheWord) {
  EXPECT_EQ(CutWithShaping(u"a<"), Tokens{u"a<"});
  EXPECT_EQ(CutWithShaping(u"a<b"), Tokens{u"a<b"});
  EXPECT_EQ(CutWithShaping(u"a<>"), Tokens{u"a<>"});
  EXPECT_EQ(CutWithShaping(u"1 < 2"), (Tokens{u"1 ", u"< ", u"2"}));
  EXPECT_EQ(CutWithoutShaping(u"1 < 2"), (Tokens{u"1", u" <", u" 2"}));
}

TEST(Tokenizer, TakesAClosingTagAtTheVeryEnd) {
  EXPECT_EQ(CutWithShaping(u"<b>x</b>"), (Tokens{u"<b>", u"x", u"</b>"}));
  EXPECT_EQ(CutWithShaping(u"<sub>x</sub>"), (Tokens{u"<sub>", u"x", u"</sub>"}));
}

TEST(Tokenizer, LeavesAColourTagAtTheVeryEndAsText) {
  EXPECT_EQ(CutWithShaping(u"<c=FF0000>"), Tokens{u"<c=FF0000>"});
  EXPECT_EQ(CutWithShaping(u"a<c=FF0000>"), Tokens{u"a<c=FF0000>"});
  EXPECT_EQ(CutWithShaping(u"<c=FF0000>x"), (Tokens{u"<c=FF0000>", u"x"}));
}

TEST(Tokenizer, JoinsAShortColourTagToTheWord) {
  EXPECT_EQ(CutWithShaping(u"a<c=12>b"), Tokens{u"a<c=12>b"});
  EXPECT_EQ(CutWithoutShaping(u"a <c=12> b"), (Tokens{u"a", u" <c=12>", u" b"}));
  EXPECT_EQ(CutWithShaping(u"a<c=>b"), Tokens{u"a<c=>b"});
  EXPECT_EQ(CutWithShaping(u"a<c=x>b"), (Tokens{u"a", u"<c=x>", u"b"})) << "five characters make a tag";
}

TEST(Tokenizer, KeepsTheSpacesOfAFontName) {
  EXPECT_EQ(CutWithShaping(u"<f=Times New Roman>x"), (Tokens{u"<f=Times New Roman>", u"x"}));
  EXPECT_EQ(CutWithoutShaping(u"<f=Times-New\tRoman>x"), (Tokens{u"<f=Times-New\tRoman>", u"x"}));
}

TEST(Tokenizer, TakesAFontTagOnlyWithSixCharactersFromItsStart) {
  EXPECT_EQ(CutWithShaping(u"<f=>xy"), (Tokens{u"<f=>", u"xy"}));
  EXPECT_EQ(CutWithShaping(u"<f=>x"), Tokens{u"<f=>x"});
  EXPECT_EQ(CutWithShaping(u"abc<f=>"), Tokens{u"abc<f=>"});
  EXPECT_EQ(CutWithShaping(u"<f=ab>"), Tokens{u"<f=ab>"}) << "six characters, the last the bracket";
  EXPECT_EQ(CutWithShaping(u"x<f=a>"), (Tokens{u"x", u"<f=a>"})) << "five characters by the rule for <xyz>";
}

TEST(Tokenizer, LeavesAFontTagWithoutItsEndAsText) {
  EXPECT_EQ(CutWithShaping(u"<f=Arial x"), (Tokens{u"<f=Arial ", u"x"}));
}

TEST(Tokenizer, CutsAtAnySingleLetterTag) {
  EXPECT_EQ(CutWithShaping(u"a<x>b"), (Tokens{u"a", u"<x>", u"b"}));
  EXPECT_EQ(CutWithShaping(u"a<xy>b"), Tokens{u"a<xy>b"});
  EXPECT_EQ(CutWithShaping(u"a< >b"), (Tokens{u"a", u"< >", u"b"})) << "its characters are taken unseen";
  EXPECT_EQ(CutWithShaping(u"a<xyz>b"), (Tokens{u"a", u"<xyz>", u"b"}));
  EXPECT_EQ(CutWithShaping(u"a</xyz>b"), (Tokens{u"a", u"</xyz>", u"b"}));
  EXPECT_EQ(CutWithShaping(u"a<abcd>b"), Tokens{u"a<abcd>b"});
}

TEST(Tokenizer, NeverTakesTheBreakTag) { EXPECT_EQ(CutWithShaping(u"a<br>b"), Tokens{u"a<br>b"}); }

TEST(Tokenizer, DoesNotTryTheColourTagAfterAFailedCloser) {
  EXPECT_EQ(CutWithShaping(u"<c=xx>xxx>y"), Tokens{u"<c=xx>xxx>y"});
  EXPECT_EQ(CutWithShaping(u"<c=xxx>xx>y"), (Tokens{u"<c=xxx>xx>", u"y"}));
}

TEST(Tokenizer, GluesSeparatorsToTheWordBeforeWithShaping) {
  EXPECT_EQ(CutWithShaping(u"one two"), (Tokens{u"one ", u"two"}));
  EXPECT_EQ(CutWithShaping(u"one  two"), (Tokens{u"one ", u" ", u"two"}));
  EXPECT_EQ(CutWithShaping(u"<b> x"), (Tokens{u"<b>", u" ", u"x"}));
}

TEST(Tokenizer, LeadsTheNextPieceWithTheSeparatorWithoutShaping) {
  EXPECT_EQ(CutWithoutShaping(u"one two"), (Tokens{u"one", u" two"}));
  EXPECT_EQ(CutWithoutShaping(u"one  two"), (Tokens{u"one", u" ", u" two"}));
  EXPECT_EQ(CutWithoutShaping(u"<b> x"), (Tokens{u"<b>", u" ", u"x"}));
}

TEST(Tokenizer, TreatsLineEndsAsSeparators) {
  EXPECT_EQ(CutWithShaping(u"a\r\nb"), (Tokens{u"a\r", u"\n", u"b"}));
  EXPECT_EQ(CutWithoutShaping(u"a\r\nb"), (Tokens{u"a", u"\r", u"\nb"}));
}

TEST(Tokenizer, BreaksScriptsWithoutSpacesOnlyWithoutShaping) {
  EXPECT_EQ(CutWithShaping(u"\u4E00\u4E01\u4E02"), Tokens{u"\u4E00\u4E01\u4E02"});
  EXPECT_EQ(CutWithoutShaping(u"x\u4E00\u4E01\u4E02"), (Tokens{u"x", u"\u4E00", u"\u4E01", u"\u4E02"}));
}

TEST(Tokenizer, KnowsItsBreakCharactersAndNoOthers) {
  for (const bool shaping : {true, false}) {
    const PlayedSystem system(shaping ? generation::kXP : generation::kNT4);
    for (unsigned code = 0; code <= 0xFFFF; ++code) {
      const auto unit = static_cast<char16_t>(code);
      ASSERT_EQ(IsBreakCharacter(unit), naive::IsBreakCharacter(unit, shaping))
          << std::hex << code << " shaping " << shaping;
    }
  }
}

TEST(Tokenizer, DoesNotBreakAtHangulSyllablesOrFullwidthDigits) {
  const PlayedSystem system(generation::kNT4);
  for (const char16_t unit : {u'\uAC00', u'\uD7AF', u'\uFF10', u'\uFF19', u'\u2007', u'\u2011', u'\u200C'}) {
    EXPECT_FALSE(IsBreakCharacter(unit)) << std::hex << static_cast<unsigned>(unit);
  }
}

TEST(Tokenizer, CountsOnlyOpenersAsMarkup) {
  for (const char16_t* text : {u"x<b>", u"<i>", u"<u>", u"<s>", u"<p>", u"<.>", u"<br>", u"a<cb", u"<f"}) {
    EXPECT_TRUE(HasMarkup(text)) << testing::PrintToString(std::u16string(text));
  }
  for (const char16_t* text : {u"", u"plain", u"</b>", u"<a>", u"</a>", u"<sub>x</sub>", u"<sup>", u"<B>",
                               u"< b>", u"<", u"</c>", u"</f>", u"&lt;b&gt;"}) {
    EXPECT_FALSE(HasMarkup(text)) << testing::PrintToString(std::u16string(text));
  }
}

// Captions made mostly of what the rules look at.
class RandomCaptions {
 public:
  std::u16string Next() {
    std::u16string text;
    const std::size_t length = random_() % 40;
    while (text.size() < length) text += Piece();
    return text;
  }

 private:
  std::u16string Piece() {
    static const std::u16string kPieces[] = {
        u"<",  u"<",      u">",      u">",      u"/",          u"=",      u"f",      u"c",
        u"b",  u".",      u" ",      u"-",      u"\t",         u"\r\n",   u"x",      u"#",
        u"<c", u"<f=",    u"<c=",    u"</",     u"<b>",        u"</b>",   u"<sub>",  u"</sub>",
        u"7A", u"\u4E00", u"\uAC00", u"\u3000", u"<c=FF0000>", u"\xD800", u"\uFF15", u"\u200B",
    };
    return kPieces[random_() % std::size(kPieces)];
  }

  std::mt19937 random_{20240229};
};

TEST(SlowTokenizer, AgreesWithTheNaiveOneOnRandomCaptions) {
  for (const bool shaping : {true, false}) {
    const PlayedSystem system(shaping ? generation::kXP : generation::kNT4);
    RandomCaptions captions;
    for (int round = 0; round < 100000; ++round) {
      const std::u16string text = captions.Next();
      ASSERT_EQ(Cut(text), naive::TokenizeMarkup(text, shaping))
          << "shaping " << shaping << " round " << round;
      ASSERT_EQ(HasMarkup(text), naive::HasMarkup(text)) << "round " << round;
    }
  }
}

// The interpreter relies on it: it runs the two tags itself and has only the caption cut.
TEST(SlowTokenizer, CutsACaptionTheSameWayAfterTheSentinel) {
  for (const bool shaping : {true, false}) {
    const PlayedSystem system(shaping ? generation::kXP : generation::kNT4);
    RandomCaptions captions;
    for (int round = 0; round < 10000; ++round) {
      const std::u16string text = captions.Next();
      Tokens expected = Cut(text);
      expected.insert(expected.begin(), {u"<sub>", u"</sub>"});
      ASSERT_EQ(Cut(u"<sub></sub>" + text), expected);
    }
  }
}

TEST(Tokenizer, GivesTokensThatTogetherAreTheText) {
  for (const bool shaping : {true, false}) {
    const PlayedSystem system(shaping ? generation::kXP : generation::kNT4);
    RandomCaptions captions;
    for (int round = 0; round < 10000; ++round) {
      const std::u16string text = captions.Next();
      std::u16string together;
      for (const std::u16string_view token : TokenizeMarkup(text)) {
        ASSERT_FALSE(token.empty());
        together += token;
      }
      ASSERT_EQ(together, text);
    }
  }
}

std::u16string Repeated(std::u16string_view piece, std::size_t length) {
  std::u16string text;
  while (text.size() < length) text += piece;
  return text;
}

// A quadratic search would take minutes for any of these.
TEST(SlowTokenizer, TakesHugeCaptionsInLinearTime) {
  for (const std::u16string_view piece : {u"x", u"<", u">", u"<f=", u"<f=<c=", u"<c=", u" ", u"</", u"<b>",
                                          u"<f=a>", u"\u4E00", u"\xDC00", u"a b"}) {
    const std::u16string text = Repeated(piece, std::size_t{1} << 20);
    for (const SystemGeneration& played : {generation::kXP, generation::kNT4}) {
      const PlayedSystem system(played);
      const double start = ProcessorSeconds();
      EXPECT_FALSE(TokenizeMarkup(text).empty());
      HasMarkup(text);
      EXPECT_LT(ProcessorSeconds() - start, 5)
          << testing::PrintToString(std::u16string(piece)) << " " << played.name;
    }
  }
}

}  // namespace
}  // namespace marklet
