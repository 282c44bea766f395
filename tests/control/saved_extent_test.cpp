// The size in a saved form: what is kept, and what no form can make of a control.
#include "control/saved_extent.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>

#include "control/saved_bag.h"
#include "support/memory_bag.h"

namespace marklet {
namespace {

std::optional<SavedExtent> SavedAndRead(SavedExtent extent) {
  SavedBag written, read;
  WriteExtent(written, extent);
  EXPECT_EQ(read.Read(written.Bytes()), SavedBag::State::Whole);
  return ReadExtent(read);
}

TEST(SavedExtent, ComesBackAsItWasSaved) {
  for (const SavedExtent& extent :
       {SavedExtent{8000, 3000}, SavedExtent{1, 1}, SavedExtent{3201, 661}, SavedExtent{200000, 200000},
        SavedExtent{1000000, 40000}, SavedExtent{0, 0}, SavedExtent{0, 1000000}})
    EXPECT_EQ(SavedAndRead(extent), extent) << extent.width << " by " << extent.height;
}

TEST(SavedExtent, IsTwoNumbersByName) {
  testing::MemoryBag bag;
  WriteExtent(bag, {8000, 3000});
  ASSERT_EQ(bag.entries.size(), 2u);
  EXPECT_EQ(bag.entries[0].name, "ExtentWidth");
  EXPECT_TRUE(bag.entries[0].value == BagValue(Long{8000}));
  EXPECT_EQ(bag.entries[1].name, "ExtentHeight");
  EXPECT_TRUE(bag.entries[1].value == BagValue(Long{3000}));
}

TEST(SavedExtent, OfASizeThatNoFormHasIsNone) {
  constexpr Long kMost = std::numeric_limits<Long>::max(), kLeast = std::numeric_limits<Long>::min();
  for (const SavedExtent& extent :
       {SavedExtent{-1, 100}, SavedExtent{100, -1}, SavedExtent{kLeast, kLeast}, SavedExtent{-5000, -5000},
        SavedExtent{kMost, 100}, SavedExtent{100, kMost}, SavedExtent{kMost, kMost}, SavedExtent{1000001, 1},
        SavedExtent{1, 1000001}, SavedExtent{1000000, 40001}, SavedExtent{1000000, 1000000}})
    EXPECT_EQ(SavedAndRead(extent), std::nullopt) << extent.width << " by " << extent.height;
}

TEST(SavedExtent, WithoutBothSidesIsNone) {
  SavedBag bag;
  EXPECT_EQ(ReadExtent(bag), std::nullopt);
  bag.WriteProperty("ExtentWidth", Long{8000}, {});
  EXPECT_EQ(ReadExtent(bag), std::nullopt);
  SavedBag other;
  other.WriteProperty("ExtentHeight", Long{3000}, {});
  EXPECT_EQ(ReadExtent(other), std::nullopt);
}

TEST(SavedExtent, OfAnotherTypeIsTakenWhereThereIsAWay) {
  SavedBag bag, text;
  bag.WriteProperty("ExtentWidth", std::int16_t{8000}, {});
  bag.WriteProperty("ExtentHeight", std::int16_t{3000}, {});
  EXPECT_EQ(ReadExtent(bag), (SavedExtent{8000, 3000}));
  text.WriteProperty("ExtentWidth", std::u16string(u"wide"), {});
  text.WriteProperty("ExtentHeight", Long{3000}, {});
  EXPECT_EQ(ReadExtent(text), std::nullopt);
}

}  // namespace
}  // namespace marklet
