// What a piece of code takes from the heap at most, by the sanitizer's hooks.
#pragma once

#include <algorithm>
#include <cstddef>

extern "C" {
int __sanitizer_install_malloc_and_free_hooks(void (*after_malloc)(const volatile void*, std::size_t),
                                              void (*before_free)(const volatile void*));
std::size_t __sanitizer_get_allocated_size(const volatile void* memory);
}

namespace marklet::png::test {

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

}  // namespace marklet::png::test
