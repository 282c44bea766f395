#include "base/byte_reader.h"

#include <gtest/gtest.h>

#include <vector>

namespace marklet {
namespace {

constexpr std::uint8_t kBytes[] = {0x81, 0x02, 0x03, 0x84, 0x05};

TEST(ByteOrder, LoadsEitherWayFromAnyAddress) {
  EXPECT_EQ(LoadLittleEndian<std::uint16_t>(kBytes + 1), 0x0302);
  EXPECT_EQ(LoadBigEndian<std::uint16_t>(kBytes + 1), 0x0203);
  EXPECT_EQ(LoadLittleEndian<std::uint32_t>(kBytes + 1), 0x05840302u);
  EXPECT_EQ(LoadBigEndian<std::uint32_t>(kBytes + 1), 0x02038405u);
  constexpr std::uint8_t kEight[] = {1, 2, 3, 4, 5, 6, 7, 8};
  EXPECT_EQ(LoadLittleEndian<std::uint64_t>(kEight), 0x0807060504030201u);
  EXPECT_EQ(LoadBigEndian<std::uint64_t>(kEight), 0x0102030405060708u);
}

TEST(ByteOrder, StoresLowByteFirst) {
  std::uint8_t bytes[5] = {9, 9, 9, 9, 9};
  StoreLittleEndian(bytes, std::uint32_t{0x01020304});
  EXPECT_EQ(std::vector(bytes, bytes + 5), (std::vector<std::uint8_t>{4, 3, 2, 1, 9}));
}

TEST(ByteOrder, AppendsEitherWay) {
  std::vector<std::uint8_t> bytes = {9};
  AppendLittleEndian(bytes, std::uint16_t{0x0102});
  AppendBigEndian(bytes, std::uint32_t{0x03040506});
  EXPECT_EQ(bytes, (std::vector<std::uint8_t>{9, 2, 1, 3, 4, 5, 6}));
}

TEST(PaddedBytes, ReadsEitherWayAtAnyPlace) {
  const PaddedBytes bytes(kBytes);
  EXPECT_EQ(bytes.Size(), 5u);
  EXPECT_EQ(bytes.U8(0), 0x81);
  EXPECT_EQ(bytes.U16(2), 0x8403);
  EXPECT_EQ(bytes.BigU16(2), 0x0384);
  EXPECT_EQ(bytes.U32(0), 0x84030281u);
  EXPECT_EQ(bytes.BigU32(0), 0x81020384u);
  EXPECT_EQ(bytes.I32(0), static_cast<Long>(0x84030281u));
  EXPECT_EQ(bytes.BigI32(0), static_cast<Long>(0x81020384u));
}

TEST(PaddedBytes, ThosePastTheEndAreZero) {
  const PaddedBytes bytes(kBytes);
  EXPECT_EQ(bytes.U8(5), 0);
  EXPECT_EQ(bytes.U16(4), 0x0005);
  EXPECT_EQ(bytes.BigU16(4), 0x0500);
  EXPECT_EQ(bytes.U32(3), 0x0584u);
  EXPECT_EQ(bytes.BigU32(3), 0x84050000u);
  EXPECT_EQ(bytes.U32(5), 0u);
  EXPECT_EQ(bytes.BigU32(std::size_t{1} << 31), 0u);
  EXPECT_EQ(PaddedBytes({}).U32(0), 0u);
}

TEST(ByteReader, GivesOneNumberAfterTheOther) {
  ByteReader reader(kBytes);
  EXPECT_EQ(reader.U16(), 0x0281);
  EXPECT_EQ(reader.U8(), 3);
  EXPECT_EQ(reader.Left(), 2u);
  EXPECT_EQ(reader.TakeRest().size(), 2u);
  EXPECT_FALSE(reader.Overran());
}

TEST(ByteReader, ThatRunsOutGivesZerosAndTakesWhatIsLeft) {
  ByteReader reader(kBytes);
  EXPECT_EQ(reader.U32(), 0x84030281u);
  EXPECT_EQ(reader.I32(), 0);
  EXPECT_TRUE(reader.Overran());
  EXPECT_EQ(reader.Left(), 0u);
  EXPECT_EQ(reader.U8(), 0);
}

}  // namespace
}  // namespace marklet
