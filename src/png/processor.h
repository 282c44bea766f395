// What the processor can do beyond what everything is compiled for. Code that makes use of it exists twice,
// out of one inline function: the better form is chosen once, at run time, and both give the same bytes.
#pragma once

#if defined(__x86_64__)
#define MARKLET_BMI2 1
#endif

namespace marklet::png {

// Whether to shift by variable numbers in a way that leaves the flags alone.
bool TakesBmi2();

// For tests and measurements: takes the plain form until it ends, on all threads.
class PlainFormOverride {
 public:
  PlainFormOverride();
  ~PlainFormOverride();
  PlainFormOverride(const PlainFormOverride&) = delete;
  PlainFormOverride& operator=(const PlainFormOverride&) = delete;

 private:
  bool former_;
};

}  // namespace marklet::png
