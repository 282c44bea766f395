// Suites that run with what the processor is best at, and again with the plain form of all code.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "base/processor.h"

namespace marklet {

constexpr ProcessorForm kProcessorForms[] = {ProcessorForm::kBest, ProcessorForm::kPlain};

class ProcessorFormTest : public testing::TestWithParam<ProcessorForm> {
  ProcessorFormOverride form_{GetParam()};
};

inline std::string NameOf(const testing::TestParamInfo<ProcessorForm>& info) {
  return info.param == ProcessorForm::kPlain ? "Plain" : "Best";
}

#define MARKLET_FOR_PROCESSOR_FORMS(suite) \
  INSTANTIATE_TEST_SUITE_P(Forms, suite, testing::ValuesIn(kProcessorForms), NameOf)

}  // namespace marklet
