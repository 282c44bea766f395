// Suites that run with what the processor is best at, and again with the plain form of all code.
#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "png/processor.h"

namespace marklet::png::test {

enum class ProcessorForm { kBest, kPlain };

class ProcessorFormTest : public testing::TestWithParam<ProcessorForm> {
 protected:
  ProcessorFormTest() {
    if (GetParam() == ProcessorForm::kPlain) plain_.emplace();
  }

 private:
  std::optional<PlainFormOverride> plain_;
};

inline std::string NameOf(const testing::TestParamInfo<ProcessorForm>& info) {
  return info.param == ProcessorForm::kPlain ? "Plain" : "Best";
}

#define MARKLET_FOR_PROCESSOR_FORMS(suite) \
  INSTANTIATE_TEST_SUITE_P(Forms, suite, testing::Values(ProcessorForm::kBest, ProcessorForm::kPlain), NameOf)

}  // namespace marklet::png::test
