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

// The most bytes that were allocated at once while `work` ran, beside those that were before.
template <typename Work>
std::size_t PeakOfHeap(Work work) {
  static thread_local std::ptrdiff_t held;
  static thread_local std::ptrdiff_t peak;
  static const bool installed = __sanitizer_install_malloc_and_free_hooks(
                                    [](const volatile void*, std::size_t bytes) {
                                      held += static_cast<std::ptrdiff_t>(bytes);
                                      peak = std::max(peak, held);
                                    },
                                    [](const volatile void* memory) {
                                      held -=
                                          static_cast<std::ptrdiff_t>(__sanitizer_get_allocated_size(memory));
                                    }) != 0;
  held = peak = 0;
  work();
  return installed ? static_cast<std::size_t>(peak) : ~std::size_t{0};
}

}  // namespace marklet::png::test
