#include "text/script_records.h"

#include <gtest/gtest.h>

#include <limits>

namespace marklet {
namespace {

TEST(ScriptRecords, OfNobodyAreZero) {
  EXPECT_EQ(Packed(static_cast<const ScriptControl*>(nullptr)).bits, 0u);
  EXPECT_EQ(Packed(static_cast<const ScriptState*>(nullptr)).bits, 0u);
  const SCRIPT_TABDEF tabs = Packed(nullptr, SSA_TAB);
  EXPECT_EQ(tabs.cTabStops, 0);
  EXPECT_EQ(tabs.iScale, 0);
  EXPECT_EQ(tabs.pTabStops, nullptr);
  EXPECT_EQ(tabs.iTabOrigin, 0);
}

TEST(ScriptRecords, ControlHasTheLanguageBelowItsFlags) {
  ScriptControl control;
  control.uDefaultLanguage = 0x12345;
  EXPECT_EQ(Packed(&control).bits, 0x2345u);
  control.uDefaultLanguage = 0;
  bool ScriptControl::*const flags[] = {
      &ScriptControl::fContextDigits,      &ScriptControl::fInvertPreBoundDir,
      &ScriptControl::fInvertPostBoundDir, &ScriptControl::fLinkStringBefore,
      &ScriptControl::fLinkStringAfter,    &ScriptControl::fNeutralOverride,
      &ScriptControl::fNumericOverride,    &ScriptControl::fLegacyBidiClass};
  for (int bit = 0; bit < 8; ++bit) {
    ScriptControl one;
    one.*flags[bit] = true;
    EXPECT_EQ(Packed(&one).bits, 0x10000u << bit);
  }
}

TEST(ScriptRecords, StateHasItsFlagsInTwoBytes) {
  bool ScriptState::*const flags[] = {&ScriptState::fOverrideDirection, &ScriptState::fInhibitSymSwap,
                                      &ScriptState::fCharShape,         &ScriptState::fDigitSubstitute,
                                      &ScriptState::fInhibitLigate,     &ScriptState::fDisplayZWG,
                                      &ScriptState::fArabicNumContext,  &ScriptState::fGcpClusters};
  for (int i = 0; i < 8; ++i) {
    ScriptState one;
    one.*flags[i] = true;
    EXPECT_EQ(Packed(&one).bits, 0x20u << i) << "bits 5 to 7 of the first byte, 0 to 4 of the second";
  }
}

TEST(ScriptRecords, StateShiftsItsLevelByFour) {
  ScriptState state;
  state.uBidiLevel = 1;
  EXPECT_EQ(Packed(&state).bits, 0x10u);
  state.uBidiLevel = 0x1F;
  EXPECT_EQ(Packed(&state).bits, 0xF0u) << "and no further than its byte";
}

TEST(ScriptRecords, TabsAreReadOnlyWhenTheFlagsHaveThem) {
  ScriptTabDef tabs;
  tabs.cTabStops = 2;
  tabs.iScale = 4;
  tabs.pTabStops = {10, 30};
  tabs.iTabOrigin = 5;
  const SCRIPT_TABDEF read = Packed(&tabs, 0x4E6);
  EXPECT_EQ(read.cTabStops, 2);
  EXPECT_EQ(read.iScale, 4);
  EXPECT_EQ(read.pTabStops[1], 30);
  EXPECT_EQ(read.iTabOrigin, 5);
  EXPECT_EQ(Packed(&tabs, 0x4E4).cTabStops, 0);
}

TEST(ScriptRecords, BitsShiftByPowersOfTwo) {
  EXPECT_EQ(ShiftBits(5, 0), 5);
  EXPECT_EQ(ShiftBits(5, 4), 80);
  EXPECT_EQ(ShiftBits(-3, 3), -24);
  EXPECT_EQ(ShiftBits(1, 40), std::numeric_limits<Long>::max());
  EXPECT_EQ(UnshiftBits(80, 4), 5);
  EXPECT_EQ(UnshiftBits(0xE0, 5), 7);
  EXPECT_EQ(UnshiftBits(3, 1), 2) << "to nearest, ties to even";
  EXPECT_EQ(UnshiftBits(5, 1), 2);
}

}  // namespace
}  // namespace marklet
