#include "rows.h"

#include <algorithm>
#include <map>
#include <tuple>

namespace designer {
namespace {

std::wstring Lower(const std::wstring& text) {
  std::wstring lower = text;
  for (wchar_t& letter : lower)
    if (letter >= L'A' && letter <= L'Z') letter = static_cast<wchar_t>(letter + (L'a' - L'A'));
  return lower;
}

// The other group comes after all that have names.
std::tuple<bool, std::wstring, std::wstring> Order(const std::wstring& group) {
  return {group == kOtherGroup, Lower(group), group};
}

}  // namespace

std::vector<GridRow> RowsOf(const std::vector<GridEntry>& entries, const std::set<std::wstring>& folded) {
  std::map<std::tuple<bool, std::wstring, std::wstring>, std::vector<std::size_t>> groups;
  for (std::size_t i = 0; i < entries.size(); ++i) {
    const std::wstring& group = entries[i].group;
    groups[Order(group.empty() ? kOtherGroup : group)].push_back(i);
  }
  std::vector<GridRow> rows;
  for (auto& [order, members] : groups) {
    const std::wstring& name = std::get<2>(order);
    const bool is_folded = folded.contains(name);
    rows.push_back({true, name, 0, is_folded});
    if (is_folded) continue;
    std::ranges::stable_sort(members, {}, [&](std::size_t entry) { return Lower(entries[entry].name); });
    for (const std::size_t entry : members) rows.push_back({false, entries[entry].name, entry, false});
  }
  return rows;
}

}  // namespace designer
