// The rows of a property grid: headings, and below each its properties, both sorted.
#pragma once

#include <cstddef>
#include <set>
#include <string>
#include <vector>

namespace designer {

// Groups that aren't named otherwise, and the name of those that have none.
inline constexpr wchar_t kOtherGroup[] = L"Misc";

struct GridEntry {
  std::wstring name, group;  // an empty group: the other one
};

struct GridRow {
  bool is_heading = false;
  std::wstring text;
  std::size_t entry = 0;  // of a row that is no heading
  bool folded = false;    // of a heading: its properties aren't shown
};

// In the order of the alphabet without regard to case, the other group last.
std::vector<GridRow> RowsOf(const std::vector<GridEntry>& entries, const std::set<std::wstring>& folded);

}  // namespace designer
