// What a piece of code takes from the heap at most. Only the address sanitizer tells, by its hooks; without
// it the tests that ask are skipped and say so.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>

#if defined(__SANITIZE_ADDRESS__)
extern "C" {
int __sanitizer_install_malloc_and_free_hooks(void (*after_malloc)(const volatile void*, std::size_t),
                                              void (*before_free)(const volatile void*));
std::size_t __sanitizer_get_allocated_size(const volatile void* memory);
}
#endif

namespace marklet {

#if defined(__SANITIZE_ADDRESS__)
inline constexpr bool kWatchesHeap = true;

// There can only be a few hooks in a program: these are the only ones.
class HeapWatch {
 public:
  static bool Start() {
    static const bool installed =
        __sanitizer_install_malloc_and_free_hooks(
            [](const volatile void*, std::size_t bytes) {
              held_ += static_cast<std::ptrdiff_t>(bytes);
              peak_ = std::max(peak_, held_);
            },
            [](const volatile void* memory) {
              held_ -= static_cast<std::ptrdiff_t>(__sanitizer_get_allocated_size(memory));
            }) != 0;
    held_ = peak_ = 0;
    return installed;
  }
  static std::size_t Peak() { return static_cast<std::size_t>(peak_); }

 private:
  static inline thread_local std::ptrdiff_t held_ = 0, peak_ = 0;
};

// The most bytes that were allocated at once while `work` ran, beside those that were before.
template <typename Work>
std::size_t PeakOfHeap(Work work) {
  const bool watches = HeapWatch::Start();
  work();
  return watches ? HeapWatch::Peak() : ~std::size_t{0};
}
#else
inline constexpr bool kWatchesHeap = false;

template <typename Work>
std::size_t PeakOfHeap(Work) {
  return 0;
}
#endif

class HeapTest : public testing::Test {
 protected:
  void SetUp() override {
    if (!kWatchesHeap) GTEST_SKIP() << "only the address sanitizer tells what is allocated";
  }
};

}  // namespace marklet
