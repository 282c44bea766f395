// The message tables of a block, by what stands in them.
#include "plumbing/message_table.h"

#include <gtest/gtest.h>

#include <vector>

namespace marklet::plumbing {
namespace {

class MessageTable : public ::testing::Test {
 protected:
  bool Add(Long message) { return zAddMsg(message, kTable, block_); }
  void Delete(Long message) { zDelMsg(message, kTable, block_); }
  Word Count() { return zData(kTable, block_); }
  std::vector<Word> Entries() { return {block_ + kTable + 1, block_ + kTable + 1 + Count()}; }

  static constexpr std::size_t kTable = subclass_block::kBefore;
  Word block_[subclass_block::kWords] = {};
};

TEST_F(MessageTable, KeepsMessagesInTheirOrder) {
  EXPECT_TRUE(Add(20));
  EXPECT_TRUE(Add(15));
  EXPECT_EQ((std::vector<Word>{20, 15}), Entries());
}

TEST_F(MessageTable, KeepsAMessageOnce) {
  EXPECT_TRUE(Add(20));
  EXPECT_TRUE(Add(20));
  EXPECT_EQ(1, Count());
}

TEST_F(MessageTable, TakesThirtyTwoMessagesAndNoMore) {
  for (Long message = 1; message <= 32; ++message) EXPECT_TRUE(Add(message));
  EXPECT_FALSE(Add(33));
  EXPECT_EQ(32, Count());
  EXPECT_EQ(0, zData(subclass_block::kAfter, block_)) << "written past its end";
  EXPECT_TRUE(Add(32)) << "already there";
}

TEST_F(MessageTable, LeavesAHoleThatTheNextMessageFills) {
  for (const Long message : {20, 15, 16}) Add(message);
  Delete(15);
  EXPECT_EQ((std::vector<Word>{20, 0, 16}), Entries());
  EXPECT_TRUE(Add(17));
  EXPECT_EQ((std::vector<Word>{20, 17, 16}), Entries());
}

TEST_F(MessageTable, FillsAHoleWithAMessageThatStandsAfterIt) {
  for (const Long message : {20, 15}) Add(message);
  Delete(20);
  EXPECT_TRUE(Add(15));
  EXPECT_EQ((std::vector<Word>{15, 15}), Entries());
  Delete(15);
  EXPECT_EQ((std::vector<Word>{0, 15}), Entries());
}

TEST_F(MessageTable, AFullTableTakesAMessageInItsHole) {
  for (Long message = 1; message <= 32; ++message) Add(message);
  Delete(7);
  EXPECT_TRUE(Add(99));
  EXPECT_FALSE(Add(100));
}

TEST_F(MessageTable, MinusOneIsEveryMessage) {
  Add(20);
  EXPECT_TRUE(Add(kAllMessages));
  EXPECT_EQ(-1, Count());
}

TEST_F(MessageTable, AMessageAfterMinusOneStandsAlone) {
  for (const Long message : {20, 15}) Add(message);
  Add(kAllMessages);
  EXPECT_TRUE(Add(16));
  EXPECT_EQ((std::vector<Word>{16}), Entries());
}

TEST_F(MessageTable, TakingMinusOneOutEmptiesIt) {
  Add(20);
  Delete(kAllMessages);
  EXPECT_EQ(0, Count());
  Add(kAllMessages);
  Delete(20);
  EXPECT_EQ(-1, Count()) << "a single message leaves every message alone";
  Delete(kAllMessages);
  EXPECT_EQ(0, Count());
}

}  // namespace
}  // namespace marklet::plumbing
