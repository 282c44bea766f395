// What a recorder tells of the handles that surfaces get and give back.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

#include "platform/headless/recorder/recorder.h"

namespace marklet {

using Lines = std::vector<std::string>;

// The names of calls alone, queries left out.
inline Lines Names(const Recorder& recorder) {
  Lines names;
  for (const std::string& line : recorder.Lines()) {
    const std::string name = line.substr(0, line.find('('));
    if (name != "PixelsOf") names.push_back(name);
  }
  return names;
}

inline std::ptrdiff_t CountOf(const Lines& names, const std::string& name) {
  return std::count(names.begin(), names.end(), name);
}

// Every context and object that was made is given back.
inline void ExpectNoLeak(const Recorder& recorder) {
  const Lines names = Names(recorder);
  EXPECT_EQ(CountOf(names, "CreateCompatibleDC"), CountOf(names, "DeleteDC"));
  EXPECT_EQ(
      CountOf(names, "CreateDIBSection") + CountOf(names, "CreateSolidBrush") + CountOf(names, "CreatePen"),
      CountOf(names, "DeleteObject"));
}

}  // namespace marklet
