#include "bitmaps/code_path.h"

#include <gtest/gtest.h>

namespace marklet {
namespace {

TEST(CodePath, IsTheBestThatTheProcessorHas) {
#if MARKLET_HAS_AVX2_PATH
  const CodePath best = __builtin_cpu_supports("avx2") ? CodePath::kAvx2 : CodePath::kPlain;
#else
  const CodePath best = CodePath::kPlain;
#endif
  EXPECT_EQ(ChosenCodePath(), best);
}

TEST(CodePath, AnOverrideHoldsUntilItEnds) {
  const CodePath former = ChosenCodePath();
  {
    const CodePathOverride plain(CodePath::kPlain);
    EXPECT_EQ(ChosenCodePath(), CodePath::kPlain);
    EXPECT_FALSE(TakesAvx2());
  }
  EXPECT_EQ(ChosenCodePath(), former);
}

TEST(CodePath, AnOverrideNeverTakesAPathThatTheProcessorHasNot) {
  const CodePath former = ChosenCodePath();
  const CodePathOverride best(CodePath::kAvx2);
  EXPECT_EQ(ChosenCodePath(), former);
}

}  // namespace
}  // namespace marklet
