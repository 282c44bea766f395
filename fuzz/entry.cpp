// What libFuzzer calls; MARKLET_FUZZER names the function behind it.
#include <cstddef>

#include "fuzz/fuzzers.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  marklet::MARKLET_FUZZER({data, size});
  return 0;
}
