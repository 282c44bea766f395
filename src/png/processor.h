// What the processor can do beyond what everything is compiled for. Code that makes use of it exists twice,
// out of one inline function, and the way is chosen once per process.
#pragma once

namespace marklet::png {

#if defined(__x86_64__)
#define MARKLET_BMI2 1
// Shifts by a variable number that leave the flags alone.
inline bool HasBmi2() { return __builtin_cpu_supports("bmi2"); }
#endif

}  // namespace marklet::png
