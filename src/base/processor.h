// What the processor can do beyond what everything is compiled for.
//
// A loop that makes use of it is compiled twice, out of one function that is always inlined: in a plain form,
// and in one marked with an ability. Both give the same bytes; which one runs is chosen once, at run time.
#pragma once

#include <cstdint>

// For each ability: whether there can be forms for it on this architecture, and the mark of such a form,
// which the functions that are inlined into it carry too.
#if defined(__SSE2__)
#define MARKLET_HAS_AVX2_PATH 1
#define MARKLET_AVX2 __attribute__((target("avx2")))
#else
#define MARKLET_HAS_AVX2_PATH 0
#define MARKLET_AVX2
#endif
#if defined(__x86_64__)
#define MARKLET_HAS_BMI2_PATH 1
#define MARKLET_BMI2 __attribute__((target("bmi,bmi2")))
#else
#define MARKLET_HAS_BMI2_PATH 0
#define MARKLET_BMI2
#endif
#define MARKLET_INLINE inline __attribute__((always_inline))

namespace marklet {

// Whether to work on registers of 32 bytes.
bool TakesAvx2();
// Whether to shift by variable numbers in a way that leaves the flags alone.
bool TakesBmi2();

enum class ProcessorForm : std::uint8_t { kPlain, kBest };

// For tests and measurements: takes the plain forms, or the best that the processor has, until it ends, on
// all threads.
class ProcessorFormOverride {
 public:
  explicit ProcessorFormOverride(ProcessorForm form);
  ~ProcessorFormOverride();
  ProcessorFormOverride(const ProcessorFormOverride&) = delete;
  ProcessorFormOverride& operator=(const ProcessorFormOverride&) = delete;

 private:
  std::uint8_t former_;
};

}  // namespace marklet
