#include "png/processor.h"

#include <atomic>

namespace marklet::png {
namespace {

bool HasBmi2() {
#if defined(MARKLET_BMI2)
  __builtin_cpu_init();
  return __builtin_cpu_supports("bmi") && __builtin_cpu_supports("bmi2");
#else
  return false;
#endif
}

std::atomic<bool>& Chosen() {
  static std::atomic<bool> chosen = HasBmi2();
  return chosen;
}

}  // namespace

bool TakesBmi2() { return Chosen().load(std::memory_order_relaxed); }

PlainFormOverride::PlainFormOverride() : former_(Chosen().exchange(false)) {}
PlainFormOverride::~PlainFormOverride() { Chosen().store(former_); }

}  // namespace marklet::png
