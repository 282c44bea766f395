// The form designer's files, byte by byte, and what is refused.
#include "examples/designer/file_format.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "base/crc32.h"

namespace designer {
namespace {

using Bytes = std::vector<std::uint8_t>;

// Written by hand, after the description of the format; the sum is of zip.
Bytes SmallFile() {
  Bytes bytes = {'M',  'A',  'R', 'K', 'F',  'O',  'R', 'M',  // what it is
                 1,    0,    0,   0,                          // version
                 0x20, 0x1C, 0,   0,   0xC0, 0x12, 0,   0,    // 7200 by 4800
                 1,    0,    0,   0};                         // one control
  for (int i = 1; i <= 16; ++i) bytes.push_back(static_cast<std::uint8_t>(i));
  const Bytes rest = {2,    0,    0,    0,    'a',  0,    0x16, 0x04,  // its name, in two scripts
                      0xE2, 0xFF, 0xFF, 0xFF, 0x3C, 0,    0,    0,     // at -30, 60
                      0x58, 0x02, 0,    0,    0x2C, 0x01, 0,    0,     // 600 by 300
                      3,    0,    0,    0,    7,    8,    9};
  bytes.insert(bytes.end(), rest.begin(), rest.end());
  return bytes;
}

Bytes Summed(Bytes bytes) {
  const std::uint32_t sum = marklet::Crc32(bytes);
  for (int shift = 0; shift < 32; shift += 8) bytes.push_back(static_cast<std::uint8_t>(sum >> shift));
  return bytes;
}

SavedForm SmallForm() {
  SavedControl control;
  for (std::uint8_t i = 0; i < 16; ++i) control.class_id[i] = static_cast<std::uint8_t>(i + 1);
  control.name = u"aЖ";
  control.place = {-30, 60, 600, 300};
  control.state = {7, 8, 9};
  return {7200, 4800, {control}};
}

std::optional<FileFault> Fault(const Bytes& bytes) {
  const auto result = Decode(bytes);
  const auto* fault = std::get_if<FileFault>(&result);
  return fault ? std::optional(*fault) : std::nullopt;
}

// The small file with another number at a place, its sum right.
std::optional<FileFault> FaultWith(std::size_t at, std::uint32_t number) {
  Bytes bytes = SmallFile();
  for (std::size_t i = 0; i < 4; ++i) bytes[at + i] = static_cast<std::uint8_t>(number >> i * 8);
  return Fault(Summed(bytes));
}
constexpr std::size_t kVersionAt = 8, kWidthAt = 12, kHeightAt = 16, kCountAt = 20, kNameAt = 40,
                      kLeftAt = 48, kSizeAt = 56, kStateAt = 64;

TEST(FormFile, IsWhatItsDescriptionSays) { EXPECT_EQ(Summed(SmallFile()), Encode(SmallForm())); }

TEST(FormFile, HasAChecksumAsZipFiles) {
  const Bytes digits = {'1', '2', '3', '4', '5', '6', '7', '8', '9'};
  EXPECT_EQ(0xCBF43926u, marklet::Crc32(digits));
}

TEST(FormFile, GivesBackWhatWasSaved) {
  EXPECT_EQ(SmallForm(), std::get<SavedForm>(Decode(Summed(SmallFile()))));
  SavedForm form = SmallForm();
  form.controls.clear();
  EXPECT_EQ(form, std::get<SavedForm>(Decode(Encode(form))));
  for (int i = 0; i < 1000; ++i) {
    form.controls.push_back(SmallForm().controls[0]);
    form.controls.back().name = std::u16string(1, static_cast<char16_t>(0x4E00 + i));
    form.controls.back().state.assign(static_cast<std::size_t>(i), std::uint8_t{5});
  }
  EXPECT_EQ(form, std::get<SavedForm>(Decode(Encode(form))));
}

TEST(FormFile, OfAnotherKindIsNoForm) {
  EXPECT_EQ(FileFault::NoForm, Fault({}));
  EXPECT_EQ(FileFault::NoForm, Fault({'M', 'A', 'R', 'K'}));
  EXPECT_EQ(FileFault::NoForm, Fault(Bytes(5000, 0)));
}

TEST(FormFile, OfANewerVersionSaysSo) {
  EXPECT_EQ(FileFault::Newer, FaultWith(kVersionAt, 2));
  EXPECT_EQ(FileFault::Newer, FaultWith(kVersionAt, 0xFFFFFFFF));
  EXPECT_EQ(FileFault::Damaged, FaultWith(kVersionAt, 0));
}

TEST(FormFile, CutOffAnywhereIsRefused) {
  const Bytes whole = Summed(SmallFile());
  for (std::size_t size = 0; size < whole.size(); ++size)
    EXPECT_TRUE(Fault(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)))) << size;
}

TEST(FormFile, CutOffAnywhereIsRefusedAlsoWithARightSum) {
  const Bytes whole = SmallFile();
  for (std::size_t size = 0; size < whole.size(); ++size)
    EXPECT_TRUE(Fault(Summed(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)))))
        << size;
}

TEST(FormFile, WithAnyBitChangedIsRefused) {
  Bytes bytes = Summed(SmallFile());
  for (std::size_t bit = 0; bit < bytes.size() * 8; ++bit) {
    bytes[bit / 8] = static_cast<std::uint8_t>(bytes[bit / 8] ^ 1u << bit % 8);
    EXPECT_TRUE(Fault(bytes)) << bit;
    bytes[bit / 8] = static_cast<std::uint8_t>(bytes[bit / 8] ^ 1u << bit % 8);
  }
  EXPECT_FALSE(Fault(bytes));
}

TEST(FormFile, WithMoreAfterItIsRefused) {
  Bytes bytes = SmallFile();
  bytes.push_back(0);
  EXPECT_EQ(FileFault::Damaged, Fault(Summed(bytes)));
}

TEST(FormFile, ThatLiesAboutSizesIsRefusedWithoutTakingThem) {
  for (const std::uint32_t much : {0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu, 0x00FFFFFFu}) {
    EXPECT_EQ(FileFault::Damaged, FaultWith(kCountAt, much));
    EXPECT_EQ(FileFault::Damaged, FaultWith(kNameAt, much));
    EXPECT_EQ(FileFault::Damaged, FaultWith(kStateAt, much));
    EXPECT_EQ(FileFault::Damaged, FaultWith(kWidthAt, much));
    EXPECT_EQ(FileFault::Damaged, FaultWith(kHeightAt, much));
    EXPECT_EQ(FileFault::Damaged, FaultWith(kSizeAt, much));
  }
  EXPECT_EQ(FileFault::Damaged, FaultWith(kCountAt, 2)) << "one more than there are";
  EXPECT_EQ(FileFault::Damaged, FaultWith(kNameAt, 0)) << "no name";
  EXPECT_EQ(FileFault::Damaged, FaultWith(kLeftAt, 0x7FFFFFFF));
  EXPECT_EQ(FileFault::Damaged, FaultWith(kLeftAt, 0x80000000));
}

TEST(FormFile, HasPlacesUpToItsBounds) {
  EXPECT_FALSE(FaultWith(kLeftAt, static_cast<std::uint32_t>(-kFarthest)));
  EXPECT_FALSE(FaultWith(kLeftAt, kFarthest));
  EXPECT_TRUE(FaultWith(kLeftAt, kFarthest + 1));
  EXPECT_TRUE(FaultWith(kLeftAt, static_cast<std::uint32_t>(-kFarthest - 1)));
  EXPECT_FALSE(FaultWith(kSizeAt, kFarthest));
}

TEST(FormFile, WithTwoControlsOfOneNameIsRefused) {
  SavedForm form = SmallForm();
  form.controls.push_back(form.controls[0]);
  EXPECT_EQ(FileFault::Damaged, Fault(Encode(form)));
}

TEST(FormFile, SaysWhatIsWrongInWords) {
  for (const FileFault fault : {FileFault::NoForm, FileFault::Newer, FileFault::Damaged})
    EXPECT_NE(std::wstring(), Describe(fault));
}

}  // namespace
}  // namespace designer
