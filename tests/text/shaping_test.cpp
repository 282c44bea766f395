#include "text/shaping.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "markup/canvas.h"
#include "text/system_fixture.h"

namespace marklet {
namespace {

using Shaping = SystemTest;

TEST_F(Shaping, IsThereBeforeVistaWhenItsLibraryIs) {
  for (const OSVERSIONINFOA& version : {kWindows95, kWindows98, kNt4, kWindows2000, kXp, kServer2003}) {
    Play(version, true);
    EXPECT_TRUE(UniscribeAvailable());
    Play(version, false);
    EXPECT_FALSE(UniscribeAvailable());
  }
}

TEST_F(Shaping, IsThereFromVistaOnWithoutLoadingAnything) {
  for (const OSVERSIONINFOA& version : {kVista, kWindows7, kWindows10}) {
    Play(version, false);
    EXPECT_TRUE(UniscribeAvailable());
  }
}

TEST_F(Shaping, AvailabilityIsFixedOnceTrue) {
  Play(kXp, true);
  EXPECT_TRUE(UniscribeAvailable());
  Configuration().libraries["usp10.dll"] = false;
  EXPECT_TRUE(UniscribeAvailable());
}

TEST_F(Shaping, AbsenceIsAskedAgain) {
  Play(kXp, false);
  EXPECT_FALSE(UniscribeAvailable());
  Configuration().libraries["usp10.dll"] = true;
  EXPECT_TRUE(UniscribeAvailable());
}

TEST_F(Shaping, AvailabilityIsKeptPerThread) {
  Play(kXp, true);
  EXPECT_TRUE(UniscribeAvailable());
  bool on_other_thread = true;
  std::thread([&] {
    Configuration().version = kXp;
    Configuration().libraries["usp10.dll"] = false;
    on_other_thread = UniscribeAvailable();
  }).join();
  EXPECT_FALSE(on_other_thread);
}

TEST_F(Shaping, ScriptsThatJoinReorderOrRunRightToLeftAreComplex) {
  EXPECT_TRUE(IsComplexText(u"\u05E9\u05DC\u05D5\u05DD")) << "Hebrew";
  EXPECT_TRUE(IsComplexText(u"\u0645\u0631\u062D\u0628\u0627")) << "Arabic";
  EXPECT_TRUE(IsComplexText(u"\u0928\u092E\u0938\u094D\u0924\u0947")) << "Devanagari";
  EXPECT_TRUE(IsComplexText(u"\u0E2A\u0E27\u0E31\u0E2A")) << "Thai";
  EXPECT_TRUE(IsComplexText(u"Total \u05E9")) << "one character is enough";
}

TEST_F(Shaping, PlainScriptsAreNotComplex) {
  EXPECT_FALSE(IsComplexText(u"Total: 12"));
  EXPECT_FALSE(IsComplexText(u"Caf\u00E9"));
  EXPECT_FALSE(IsComplexText(u"\u03A9\u03BC\u03AD\u03B3\u03B1")) << "Greek";
  EXPECT_FALSE(IsComplexText(u"\u041F\u0440\u0438\u0432\u0435\u0442")) << "Cyrillic";
  EXPECT_FALSE(IsComplexText(u"\u4E2D\u6587")) << "Chinese";
}

// ---- What is read of an analysis ----

TEST_F(Shaping, AttributesAreUnpackedBitByBitAndTheLastThreeTogether) {
  std::uint8_t LogAttr::*const fields[] = {&LogAttr::fSoftBreak, &LogAttr::fWhiteSpace, &LogAttr::fCharStop,
                                           &LogAttr::fWordStop,  &LogAttr::fInvalid,    &LogAttr::fReserved};
  const auto read = [&](std::uint8_t byte) {
    std::vector<int> values;
    for (const auto field : fields) values.push_back(Unpacked(byte).*field);
    return values;
  };
  EXPECT_EQ(read(0), (std::vector{0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(read(1), (std::vector{1, 0, 0, 0, 0, 0}));
  EXPECT_EQ(read(2), (std::vector{0, 1, 0, 0, 0, 0}));
  EXPECT_EQ(read(4), (std::vector{0, 0, 1, 0, 0, 0}));
  EXPECT_EQ(read(8), (std::vector{0, 0, 0, 1, 0, 0}));
  EXPECT_EQ(read(16), (std::vector{0, 0, 0, 0, 1, 0}));
  EXPECT_EQ(read(0xA0), (std::vector{0, 0, 0, 0, 0, 5}));
  EXPECT_EQ(read(0xFF), (std::vector{1, 1, 1, 1, 1, 7}));
}

TEST_F(Shaping, AnAnalysisTellsWhatFitsAndHowLargeItIsUntilItIsFreed) {
  const Canvas canvas(100, 40);
  const std::u16string_view text = u"a b";
  SCRIPT_STRING_ANALYSIS analysis = AnalyseScriptString(canvas.dc(), text, 3, kScriptFlags, 1000);
  ASSERT_NE(analysis, nullptr);
  EXPECT_EQ(OutCharCount(analysis), 3);
  EXPECT_EQ(ScriptStringSize(analysis), canvas.Measure(StdFont(), text));
  std::vector<LogAttr> attrs;
  ReadLogAttrs(analysis, 2, attrs);
  ASSERT_EQ(attrs.size(), 2u) << "as many as are asked for";
  EXPECT_EQ(attrs[0].fWhiteSpace, 0);
  EXPECT_EQ(attrs[1].fWhiteSpace, 1);
  FreeScriptString(analysis);
  EXPECT_EQ(analysis, nullptr);
  FreeScriptString(analysis);
}

TEST_F(Shaping, NoAnalysisIsEmptyAndLeavesTheAttributesAsTheyAre) {
  EXPECT_EQ(OutCharCount(nullptr), 0);
  EXPECT_EQ(ScriptStringSize(nullptr), SIZE{});
  std::vector<LogAttr> attrs(1);
  ReadLogAttrs(nullptr, 5, attrs);
  EXPECT_EQ(attrs.size(), 1u);
}

TEST_F(Shaping, AScriptErrorCarriesThePlatformsNumber) {
  const ScriptError error(-2147467259);
  EXPECT_EQ(error.Code(), -2147467259);
  EXPECT_STREQ(error.what(), "the script processor answered -2147467259");
}

}  // namespace
}  // namespace marklet
