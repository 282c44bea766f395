#include "bitmaps/code_path.h"

#include <atomic>

namespace marklet {
namespace {

CodePath BestOfProcessor() {
#if MARKLET_HAS_AVX2_PATH
  // Tells too whether the system saves the wide registers.
  __builtin_cpu_init();
  if (__builtin_cpu_supports("avx2")) return CodePath::kAvx2;
#endif
  return CodePath::kPlain;
}

std::atomic<CodePath>& Chosen() {
  static std::atomic<CodePath> chosen = BestOfProcessor();
  return chosen;
}

}  // namespace

CodePath ChosenCodePath() { return Chosen().load(std::memory_order_relaxed); }

CodePathOverride::CodePathOverride(CodePath path) : former_(ChosenCodePath()) {
  if (path == CodePath::kPlain || BestOfProcessor() == path) Chosen().store(path);
}
CodePathOverride::~CodePathOverride() { Chosen().store(former_); }

}  // namespace marklet
