#include "base/processor.h"

#include <gtest/gtest.h>

namespace marklet {
namespace {

TEST(Processor, ItsBestFormsAreTaken) {
#if MARKLET_HAS_AVX2_PATH
  EXPECT_EQ(TakesAvx2(), __builtin_cpu_supports("avx2") != 0);
#else
  EXPECT_FALSE(TakesAvx2());
#endif
#if MARKLET_HAS_BMI2_PATH
  EXPECT_EQ(TakesBmi2(), __builtin_cpu_supports("bmi2") != 0);
#else
  EXPECT_FALSE(TakesBmi2());
#endif
}

TEST(Processor, PlainFormsAreTakenUntilTheOverrideEnds) {
  const bool avx2 = TakesAvx2(), bmi2 = TakesBmi2();
  {
    const ProcessorFormOverride plain(ProcessorForm::kPlain);
    EXPECT_FALSE(TakesAvx2());
    EXPECT_FALSE(TakesBmi2());
  }
  EXPECT_EQ(TakesAvx2(), avx2);
  EXPECT_EQ(TakesBmi2(), bmi2);
}

TEST(Processor, AnOverrideNeverTakesAFormThatTheProcessorHasNot) {
  const bool avx2 = TakesAvx2(), bmi2 = TakesBmi2();
  const ProcessorFormOverride plain(ProcessorForm::kPlain);
  const ProcessorFormOverride best(ProcessorForm::kBest);
  EXPECT_EQ(TakesAvx2(), avx2);
  EXPECT_EQ(TakesBmi2(), bmi2);
}

}  // namespace
}  // namespace marklet
