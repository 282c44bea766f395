#include "png/processor.h"

#include <gtest/gtest.h>

namespace marklet::png {
namespace {

TEST(Processor, ItsBestFormIsTaken) {
#if defined(MARKLET_BMI2)
  EXPECT_EQ(TakesBmi2(), __builtin_cpu_supports("bmi2") != 0);
#else
  EXPECT_FALSE(TakesBmi2());
#endif
}

TEST(Processor, PlainFormIsTakenUntilTheOverrideEnds) {
  const bool former = TakesBmi2();
  {
    const PlainFormOverride plain;
    EXPECT_FALSE(TakesBmi2());
  }
  EXPECT_EQ(TakesBmi2(), former);
}

}  // namespace
}  // namespace marklet::png
