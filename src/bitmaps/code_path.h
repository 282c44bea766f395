// Which of a loop's compiled forms runs. All forms of a loop give the same bytes; the best that the processor
// has is chosen once, at run time.
#pragma once

#include <cstdint>

// Marks the forms of a loop that may use AVX2, and what must become part of any form that calls it. A loop
// has its text once, in a function that is always inlined.
#if defined(__SSE2__)
#define MARKLET_HAS_AVX2_PATH 1
#define MARKLET_AVX2 __attribute__((target("avx2")))
#else
#define MARKLET_HAS_AVX2_PATH 0
#define MARKLET_AVX2
#endif
#define MARKLET_INLINE inline __attribute__((always_inline))

namespace marklet {

enum class CodePath : std::uint8_t { kPlain, kAvx2 };

// The one that loops take.
CodePath ChosenCodePath();
inline bool TakesAvx2() { return MARKLET_HAS_AVX2_PATH && ChosenCodePath() == CodePath::kAvx2; }

// For tests and measurements: takes another path until it ends, on all threads. Nothing changes where the
// processor hasn't got it.
class CodePathOverride {
 public:
  explicit CodePathOverride(CodePath path);
  ~CodePathOverride();
  CodePathOverride(const CodePathOverride&) = delete;
  CodePathOverride& operator=(const CodePathOverride&) = delete;

 private:
  CodePath former_;
};

}  // namespace marklet
