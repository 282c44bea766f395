// What the Windows benchmarks share: the wall clock, since much of the work is the window system's, and
// results in the shape that the other benchmarks have.
#pragma once

#include <cstdio>
#include <string>

#include "platform/win32/sdk.h"

inline double Now() {
  LARGE_INTEGER count, frequency;
  QueryPerformanceCounter(&count);
  QueryPerformanceFrequency(&frequency);
  return static_cast<double>(count.QuadPart) * 1e9 / static_cast<double>(frequency.QuadPart);
}

template <typename Work>
double TimeOf(Work&& work) {
  const double start = Now();
  work();
  return Now() - start;
}

inline void Require(bool well, const char* what) {
  if (well) return;
  std::fprintf(stderr, "bench: %s\n", what);
  ExitProcess(1);
}

class Report {
 public:
  // `counters`: more members of the result, each after a comma.
  void Add(const std::string& name, double nanoseconds, const std::string& counters = "") {
    char times[96];
    std::snprintf(times, sizeof times, "\"cpu_time\": %.3f, \"time_unit\": \"ns\"", nanoseconds);
    if (!text_.empty()) text_ += ",\n";
    text_ += "{\"run_name\": \"" + name + "\", \"run_type\": \"iteration\", " + times + counters + "}";
  }
  bool Write(const wchar_t* path) const {
    FILE* const file = _wfopen(path, L"wb");
    if (!file) return false;
    std::fprintf(file, "{\"benchmarks\": [\n%s\n]}\n", text_.c_str());
    return std::fclose(file) == 0;
  }

 private:
  std::string text_;
};
