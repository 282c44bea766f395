// How a fuzzer reports a finding.
#pragma once

#include <cstdio>
#include <cstdlib>

namespace marklet {

inline void Require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "%s\n", what);
  std::abort();
}

}  // namespace marklet
