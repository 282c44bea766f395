// Captions that no designer would type, and rectangles and fonts that no form would have.
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "markup/canvas.h"
#include "markup/markup_caption.h"
#include "markup/played_system.h"
#include "platform/text.h"
#include "support/processor_time.h"
#include "text/caption_style.h"

namespace marklet {
namespace {

constexpr Long kMin = std::numeric_limits<Long>::min(), kMax = std::numeric_limits<Long>::max();
// Wide enough for a sanitizer on a busy machine, and far below what anything quadratic takes.
constexpr double kSeconds = 20;

class BadCaption : public testing::Test {
 protected:
  BadCaption() {
    style_.Font = std::make_shared<StdFont>();
    style_.SingleLine = true;
    style_.SurfaceDC = canvas_.dc();
  }

  void Draw(std::u16string_view caption, RECT rect = {0, 0, 300, 60}) {
    DrawMarkupCaption(canvas_.dc(), caption, rect, style_);
  }

  double SecondsToDraw(std::u16string_view caption) {
    const double start = ProcessorSeconds();
    Draw(caption);
    return ProcessorSeconds() - start;
  }

  // The shortest of a few, since the machine may be busy with other things.
  double LeastSecondsToDraw(std::u16string_view caption, double enough) {
    double least = SecondsToDraw(caption);
    for (int again = 0; again < 4 && least >= enough; ++again)
      least = std::min(least, SecondsToDraw(caption));
    return least;
  }

  // What the platform takes to measure and draw as many letters one by one.
  double SecondsOfPlatform(int letters) {
    constexpr int kSample = 10;
    const double start = ProcessorSeconds();
    for (int i = 0; i < letters / kSample; ++i) {
      SIZE size;
      GetTextExtentPoint32W(canvas_.dc(), u"x", size);
      RECT rect = {0, 0, 300, 20};
      DrawTextW(canvas_.dc(), u"x", rect, DT_SINGLELINE | DT_BOTTOM | DT_WORD_ELLIPSIS);
    }
    return (ProcessorSeconds() - start) * kSample;
  }

  // Draws with every effect, in every generation.
  void DrawInEveryWay(std::u16string_view caption, RECT rect = {0, 0, 300, 60}) {
    for (const SystemGeneration& played : {generation::kWindows95, generation::kNT4, generation::kWindows2000,
                                           generation::kXP, generation::kVista}) {
      const PlayedSystem system(played);
      for (Long effect = effectNone; effect <= effectHollow + 1; ++effect) {
        style_.TextEffect = effect;
        for (Long alignment = 0; alignment <= 4; ++alignment) {
          style_.Alignment = alignment;
          Draw(caption, rect);
        }
      }
    }
  }

  Canvas canvas_{300, 60};
  CaptionStyle style_;
};

std::u16string Repeated(std::u16string_view piece, std::size_t length) {
  std::u16string text;
  while (text.size() < length) text += piece;
  return text;
}

using SlowBadCaption = BadCaption;

TEST_F(BadCaption, WithBrokenTags) {
  for (const char16_t* caption : {u"<b",
                                  u"<b><",
                                  u"<b></",
                                  u"<b></b",
                                  u"<b><>",
                                  u"<b>><",
                                  u"<b><<<>>>",
                                  u"<b><f=",
                                  u"<b><f=>",
                                  u"<b><c=>",
                                  u"<b><c=12",
                                  u"<b><c=#>",
                                  u"<c=<c=<c=",
                                  u"<b></f></c></a></sub></sup></i>",
                                  u"<b><sub><sub><sup></sub></sup>",
                                  u"<f=<f=>>>",
                                  u"<c=######>x",
                                  u"<c>",
                                  u"<f>",
                                  u"<b>\t\t\t",
                                  u"<p><p><.><.>",
                                  u"<b><f=<b>>x"}) {
    DrawInEveryWay(caption);
  }
}

TEST_F(SlowBadCaption, WithNulsSurrogatesAndNoncharacters) {
  using namespace std::literals;
  for (const std::u16string_view caption :
       {u"<b>a\0b"sv, u"<b>\0"sv, u"<b>abc\0"sv, u"<f=a\0b>x"sv, u"<b>\xD800"sv, u"<b>\xDC00\xD800"sv,
        u"<b>abc\xD800 def\xDC00"sv, u"<b>&\xFFFF"sv, u"&\xFFFF"sv, u"<b>\xFFFE\xFFFF"sv, u"<b>&&&"sv,
        u"<b>&"sv, u"<b>\u200D\u200E\u202E\u2066"sv, u"<b>\u0301\u0301\u0301"sv, u"\0"sv}) {
    DrawInEveryWay(caption);
  }
}

TEST_F(SlowBadCaption, WithEveryCodeUnit) {
  std::u16string caption = u"<b>";
  for (unsigned code = 0; code <= 0xFFFF; ++code) caption += static_cast<char16_t>(code);
  const PlayedSystem system(generation::kVista);
  EXPECT_LT(SecondsToDraw(caption), kSeconds);
}

TEST_F(BadCaption, InAnyRectangle) {
  const Long ends[] = {kMin, -1000000, -1, 0, 300, 1000000, kMax};
  const PlayedSystem system(generation::kVista);
  for (const Long alignment : {0, 1}) {
    style_.Alignment = alignment;
    for (const Long left : ends)
      for (const Long top : ends)
        for (const Long right : ends)
          for (const Long bottom : {kMin, 60, kMax}) {
            Draw(u"<b></b>one<i>\t<sub>two</sub><p>\u05D0\u05D1\u05D2 three<.>four",
                 {left, top, right, bottom});
          }
  }
}

TEST_F(BadCaption, WithAnyFont) {
  for (const double size : {0.0, 0.0001, 0.4, 0.5, 1.0, 500.0, 32767.0, -5.0, 1e9}) {
    for (const char16_t* name : {u"", u"Tahoma", u"no such face", u"\xD800"}) {
      style_.Font = std::make_shared<StdFont>();
      style_.Font->PutName(name);
      style_.Font->PutSize(size);
      style_.Font->PutWeight(size > 100 ? 32767 : -1);
      const PlayedSystem system(generation::kVista);
      Draw(u"<b>a</b>b<sub>c</sub>d<sup>e</sup>\u05D0");
    }
  }
  style_.Font = nullptr;
  DrawInEveryWay(u"<b>a</b>b<sub>c</sub>d<f=Arial>e</f>");
}

TEST_F(BadCaption, WithoutAContext) {
  const PlayedSystem system(generation::kVista);
  RECT rect = {0, 0, 300, 60};
  style_.SurfaceDC = nullptr;
  for (Long effect = effectNone; effect <= effectHollow; ++effect) {
    style_.TextEffect = effect;
    DrawMarkupCaption(nullptr, u"plain", rect, style_);
    DrawMarkupCaption(nullptr, u"<b>rich</b> <sub>x</sub>\t\u05D0\u05D1", rect, style_);
  }
}

TEST_F(SlowBadCaption, OfAMegabyteWithoutABreak) {
  for (const SystemGeneration& played : {generation::kNT4, generation::kVista}) {
    const PlayedSystem system(played);
    EXPECT_LT(SecondsToDraw(u"<b>" + Repeated(u"x", std::size_t{1} << 20)), kSeconds) << played.name;
    EXPECT_LT(SecondsToDraw(u"<b>" + Repeated(u"<", std::size_t{1} << 20)), kSeconds) << played.name;
    EXPECT_LT(SecondsToDraw(u"<b>" + Repeated(u"<f=", std::size_t{1} << 20)), kSeconds) << played.name;
    EXPECT_LT(SecondsToDraw(u"<f=" + Repeated(u"x", std::size_t{1} << 20) + u">y"), kSeconds) << played.name;
  }
}

// Pieces put one after the other, then texts of which no part comes twice.
std::vector<std::u16string> LongCaptions() {
  constexpr std::size_t kLength = 100000;
  std::vector<std::u16string> captions;
  for (const std::u16string_view piece :
       {u"a ", u"word ", u"x", u"<b>x</b>", u"\u05D0", u"\u0627\u0644", u"\u4E00", u"\t", u"<p>",
        u"<sub>x</sub>", u"\xD800", u"<c=FF0000>x"}) {
    captions.push_back(u"<b></b>" + Repeated(piece, kLength));
  }
  std::mt19937 random(7);
  for (const std::size_t word_length : {10u, 100u, 250u, 100000u}) {
    std::u16string hebrew = u"<b></b>";
    while (hebrew.size() < kLength) {
      for (std::size_t i = 0; i < word_length; ++i) hebrew += static_cast<char16_t>(0x5D0 + random() % 27);
      hebrew += u' ';
    }
    captions.push_back(hebrew);
  }
  return captions;
}

TEST_F(SlowBadCaption, OfAHundredThousandCharactersIsDrawnInUnderASecond) {
  // In one system's 32-bit form the platform itself is slower than that when each letter is a run of its own.
  const double bound = std::max(1.0, 2 * SecondsOfPlatform(100000));
  for (const std::u16string& caption : LongCaptions()) {
    for (const SystemGeneration& played : {generation::kNT4, generation::kVista}) {
      const PlayedSystem system(played);
      EXPECT_LT(LeastSecondsToDraw(caption, bound), bound)
          << testing::PrintToString(caption.substr(0, 40)) << " " << played.name;
    }
  }
}

TEST_F(SlowBadCaption, OfThousandsOfFontsThatNobodyHas) {
  std::u16string caption;
  while (caption.size() < 100000) {
    const std::string number = std::to_string(caption.size());
    caption += u"<f=" + std::u16string(number.begin(), number.end()) + u">x";
  }
  const PlayedSystem system(generation::kVista);
  EXPECT_LT(SecondsToDraw(caption), kSeconds);
}

}  // namespace
}  // namespace marklet
