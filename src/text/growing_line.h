// A line that grows at its end, shrinks at its start and is measured at each step.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/types.h"

namespace marklet {

class GrowingLine {
 public:
  // `extent` counts until a measure succeeds.
  GrowingLine(HDC dc, SIZE extent) : dc_(dc), extent_(extent) {}

  std::u16string_view Text() const { return std::u16string_view(units_).substr(start_); }
  bool Empty() const { return start_ == units_.size(); }
  SIZE Extent() const { return extent_; }  // of the last measure that succeeded

  void Append(char16_t unit) { units_ += unit; }
  void DropLeft(std::size_t count) { start_ += count; }

  // Measures the line as it stands. A line longer than any screen's, and each line past the first million
  // units measured, is as wide as its characters one by one, so that a step costs the same however long the
  // line is; what joins or stands above another is then apart. It stays so until the line begins anew.
  void Measure();

 private:
  void AddWidths();

  HDC dc_;
  SIZE extent_;
  std::u16string units_;  // all that was ever appended
  bool by_characters_ = false;
  std::size_t measured_units_ = 0;  // in whole lines
  std::size_t start_ = 0;           // of the line within it
  std::vector<std::int64_t> ends_;  // of the units that were measured one by one: where each ends
};

}  // namespace marklet
