#include "base/processor.h"

#include <atomic>

namespace marklet {
namespace {

constexpr std::uint8_t kPlain = 0, kAvx2 = 1, kBmi2 = 2;  // bits of a set of abilities

std::uint8_t AbilitiesOfProcessor() {
  std::uint8_t abilities = kPlain;
#if MARKLET_HAS_AVX2_PATH
  __builtin_cpu_init();
  // This asks as well whether the system saves the wide registers.
  if (__builtin_cpu_supports("avx2")) abilities |= kAvx2;
#endif
#if MARKLET_HAS_BMI2_PATH
  __builtin_cpu_init();
  if (__builtin_cpu_supports("bmi") && __builtin_cpu_supports("bmi2")) abilities |= kBmi2;
#endif
  return abilities;
}

std::atomic<std::uint8_t>& Taken() {
  static std::atomic<std::uint8_t> taken = AbilitiesOfProcessor();
  return taken;
}

bool Takes(std::uint8_t ability) { return (Taken().load(std::memory_order_relaxed) & ability) != 0; }

}  // namespace

bool TakesAvx2() { return Takes(kAvx2); }
bool TakesBmi2() { return Takes(kBmi2); }

ProcessorFormOverride::ProcessorFormOverride(ProcessorForm form)
    : former_(Taken().exchange(form == ProcessorForm::kBest ? AbilitiesOfProcessor() : kPlain)) {}
ProcessorFormOverride::~ProcessorFormOverride() { Taken().store(former_); }

}  // namespace marklet
