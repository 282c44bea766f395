#include <gtest/gtest.h>

#include <ctime>

namespace marklet::test {
namespace {

// Each test's result tells how much of the processor's time it took, which does not depend on how busy the
// machine is.
class ProcessorTimes : public testing::EmptyTestEventListener {
 public:
  void OnTestStart(const testing::TestInfo& /*test*/) override { start_ = std::clock(); }
  void OnTestEnd(const testing::TestInfo& /*test*/) override {
    testing::Test::RecordProperty("processor_ms",
                                  static_cast<int>((std::clock() - start_) / (CLOCKS_PER_SEC / 1000)));
  }

 private:
  std::clock_t start_ = 0;
};

// The main function is GoogleTest's own, so that an environment is where a program can come in.
class Listening : public testing::Environment {
 public:
  void SetUp() override { testing::UnitTest::GetInstance()->listeners().Append(new ProcessorTimes); }
};

const testing::Environment* const kListening = testing::AddGlobalTestEnvironment(new Listening);

}  // namespace
}  // namespace marklet::test
