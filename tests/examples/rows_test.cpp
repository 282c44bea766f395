// The rows of the form designer's property grid.
#include "examples/designer/rows.h"

#include <gtest/gtest.h>

namespace designer {
namespace {

// "+" before a heading that is folded, "-" before one that isn't.
std::vector<std::wstring> Texts(const std::vector<GridEntry>& entries,
                                const std::set<std::wstring>& folded = {}) {
  std::vector<std::wstring> texts;
  for (const GridRow& row : RowsOf(entries, folded)) {
    texts.push_back(row.is_heading ? (row.folded ? L"+" : L"-") + row.text : row.text);
    if (row.is_heading) continue;
    EXPECT_EQ(row.text, entries[row.entry].name);
  }
  return texts;
}
using Expected = std::vector<std::wstring>;

const std::vector<GridEntry> kEntries = {{L"WordWrap", L"Misc"},
                                         {L"fontSize", L"Font"},
                                         {L"FontBold", L"Font"},
                                         {L"Tip", L""},
                                         {L"BackColor", L"Zone"}};

TEST(GridRows, AreGroupedAndSortedWithTheOtherGroupLast) {
  EXPECT_EQ(
      (Expected{L"-Font", L"FontBold", L"fontSize", L"-Zone", L"BackColor", L"-Misc", L"Tip", L"WordWrap"}),
      Texts(kEntries));
}

TEST(GridRows, OfAFoldedGroupAreLeftOut) {
  EXPECT_EQ((Expected{L"+Font", L"-Zone", L"BackColor", L"+Misc"}),
            Texts(kEntries, {L"Font", L"Misc", L"Gone"}));
}

TEST(GridRows, OfNothingAreNone) { EXPECT_EQ(Expected{}, Texts({})); }

}  // namespace
}  // namespace designer
