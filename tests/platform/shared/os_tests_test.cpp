#include "platform/shared/os_tests.h"

#include <gtest/gtest.h>

#include <thread>

#include "text/system_fixture.h"

namespace marklet {
namespace {

using OsTests = SystemTest;

struct Answers {
  Generation generation;
  bool nt4, windows_2000_family, xp, vista, unicode;
};

constexpr Answers kAnswers[] = {
    {{"95", kWindows95}, false, false, false, false, false},
    {{"98", kWindows98}, false, false, false, false, false},
    {{"NT 3.51", kNt351}, false, false, false, false, false},
    {{"NT 4", kNt4}, true, false, false, false, true},
    {{"2000", kWindows2000}, true, true, false, false, true},
    {{"XP", kXp}, true, true, true, false, true},
    {{"Server 2003", kServer2003}, true, true, true, false, true},
    {{"Vista", kVista}, true, false, false, true, true},
    {{"7", kWindows7}, true, false, true, true, true},
    {{"10", kWindows10}, true, false, false, true, true},
};

TEST_F(OsTests, EveryGenerationAnswersAsItsVersionSays) {
  for (const Answers& expected : kAnswers) {
    SCOPED_TRACE(expected.generation.name);
    Play(expected.generation.version);
    EXPECT_EQ(IsUnicodeCapable(), expected.unicode);
    EXPECT_EQ(IsNT4OrLater(), expected.nt4);
    EXPECT_EQ(IsXPOrLater(), expected.xp);
    EXPECT_EQ(IsVistaOrLater(), expected.vista);
    IsWindows2000Family();
    EXPECT_EQ(IsWindows2000Family(), expected.windows_2000_family);
  }
}

TEST_F(OsTests, FirstCallOfIsWindows2000FamilyIsFalseOnAnySystem) {
  for (const Answers& system : kAnswers) {
    SCOPED_TRACE(system.generation.name);
    Play(system.generation.version);
    EXPECT_FALSE(IsWindows2000Family());
  }
}

TEST_F(OsTests, FirstCallOfIsWindows2000FamilyReadsTheVersionThatLaterCallsAnswerFor) {
  Play(kWindows2000);
  EXPECT_FALSE(IsWindows2000Family());
  Configuration().version = kVista;
  EXPECT_TRUE(IsWindows2000Family());
}

TEST_F(OsTests, IsXPOrLaterIsFalseWhereTheMinorVersionIsZero) {
  Play(kVista);
  EXPECT_FALSE(IsXPOrLater());
  Play(kWindows10);
  EXPECT_FALSE(IsXPOrLater());
}

TEST_F(OsTests, AnswersAreKeptBothTrueAndFalse) {
  Play(kXp);
  EXPECT_TRUE(IsXPOrLater());
  EXPECT_FALSE(IsVistaOrLater());
  Configuration().version = kVista;
  EXPECT_TRUE(IsXPOrLater());
  EXPECT_FALSE(IsVistaOrLater());
}

TEST_F(OsTests, IsNT4OrLaterAsksOnEachCall) {
  Play(kNt4);
  EXPECT_TRUE(IsNT4OrLater());
  Configuration().version = kWindows95;
  EXPECT_FALSE(IsNT4OrLater());
  Configuration().version = kNt4;
  EXPECT_TRUE(IsNT4OrLater());
}

TEST_F(OsTests, IsUnicodeCapableFollowsTheSharedFlagOfTheOtherTests) {
  Play(kNt4);
  EXPECT_TRUE(IsUnicodeCapable());
  Configuration().version = kWindows95;
  EXPECT_TRUE(IsUnicodeCapable()) << "the flag is set, so the system isn't asked";
  EXPECT_FALSE(IsNT4OrLater());
  EXPECT_FALSE(IsUnicodeCapable());

  Configuration().version = kVista;
  EXPECT_FALSE(IsUnicodeCapable());
  EXPECT_TRUE(IsVistaOrLater());
  EXPECT_TRUE(IsUnicodeCapable()) << "a true answer of any test sets the flag";
}

TEST_F(OsTests, FalseAnswersButThatOfIsNT4OrLaterLeaveTheSharedFlagAlone) {
  Play(kWindows95);
  EXPECT_FALSE(IsXPOrLater());
  EXPECT_FALSE(IsVistaOrLater());
  EXPECT_FALSE(IsWindows2000Family());
  Configuration().version = kNt4;
  EXPECT_TRUE(IsUnicodeCapable()) << "the flag is still unset";
}

TEST_F(OsTests, CachesBelongToTheThread) {
  Play(kXp);
  EXPECT_FALSE(IsVistaOrLater());
  bool on_other_thread = false, first_2000_call_on_other_thread = true;
  IsWindows2000Family();
  std::thread([&] {
    Configuration().version = kVista;
    on_other_thread = IsVistaOrLater();
    Configuration().version = kWindows2000;
    first_2000_call_on_other_thread = IsWindows2000Family();
  }).join();
  EXPECT_TRUE(on_other_thread);
  EXPECT_FALSE(first_2000_call_on_other_thread);
  EXPECT_FALSE(IsVistaOrLater());
}

}  // namespace
}  // namespace marklet
