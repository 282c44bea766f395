#include "control/saved_bag.h"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "support/fake_host.h"
#include "support/saved_bytes.h"

namespace marklet {
namespace {

using testing::HostedControl;
using testing::Join;
using testing::PlacedControl;
using testing::Seal;
using testing::U32;
using Bytes = std::vector<std::uint8_t>;
using State = SavedBag::State;

// One record, from its parts as the format's page tells them.
Bytes Record(std::uint8_t type, const std::string& name, const Bytes& value) {
  Bytes record = {type, static_cast<std::uint8_t>(name.size())};
  record.insert(record.end(), name.begin(), name.end());
  return Join({record, U32(static_cast<std::uint32_t>(value.size())), value});
}

Bytes Saved(std::string_view name, const BagValue& value) {
  SavedBag bag;
  bag.WriteProperty(name, value, {});
  return bag.Bytes();
}

BagValue Loaded(const Bytes& records, std::string_view name, BagType type, State expected = State::Whole) {
  SavedBag bag;
  EXPECT_EQ(bag.Read(Seal(records)), expected);
  const auto value = bag.ReadProperty(name, type);
  EXPECT_TRUE(value.has_value()) << name;
  return value ? *value : BagValue();
}

// --- Every byte -------------------------------------------------------------------------------------------

TEST(SavedBag, AnEmptyBagIsHeaderAndChecksum) {
  // The checksum of these sixteen bytes was worked out with another program.
  const Bytes expected = {'M', 'a', 'r', 'k', 'l', 'e', 't',  0x1A, 1,    0,
                          1,   0,   0,   0,   0,   0,   0x2D, 0x56, 0x10, 0x1F};
  EXPECT_EQ(SavedBag().Bytes(), expected);
}

TEST(SavedBag, AShortNumberStandsInTwoBytes) {
  EXPECT_EQ(Saved("Ab", std::int16_t{-2}), Seal({1, 2, 'A', 'b', 2, 0, 0, 0, 0xFE, 0xFF}));
}

TEST(SavedBag, ALongNumberStandsInFourBytes) {
  EXPECT_EQ(Saved("N", static_cast<Long>(0x80000010)), Seal({2, 1, 'N', 4, 0, 0, 0, 0x10, 0x00, 0x00, 0x80}));
}

TEST(SavedBag, ABooleanStandsInOneByte) {
  EXPECT_EQ(Saved("T", true), Seal({3, 1, 'T', 1, 0, 0, 0, 1}));
  EXPECT_EQ(Saved("F", false), Seal({3, 1, 'F', 1, 0, 0, 0, 0}));
}

TEST(SavedBag, ATextStandsInItsCodeUnits) {
  EXPECT_EQ(Saved("K", std::u16string(u"A\u05E9\0\xD800", 4)),
            Seal({4, 1, 'K', 8, 0, 0, 0, 0x41, 0x00, 0xE9, 0x05, 0x00, 0x00, 0x00, 0xD8}));
  EXPECT_EQ(Saved("K", std::u16string()), Seal({4, 1, 'K', 0, 0, 0, 0}));
}

TEST(SavedBag, AnArrayKeepsItsDimensionsAndBounds) {
  const ByteArray array = {{{-1, 2}, {5, 3}}, {10, 11, 12, 13, 14, 15}};
  EXPECT_EQ(Saved("B", array), Seal({5,    1,    'B',  23,   0,  0, 0,     //
                                     2,                                    //
                                     0xFF, 0xFF, 0xFF, 0xFF, 2,  0, 0, 0,  //
                                     5,    0,    0,    0,    3,  0, 0, 0,  //
                                     10,   11,   12,   13,   14, 15}));
}

TEST(SavedBag, AnEmptyArrayHasADimensionAndNoArrayHasNone) {
  EXPECT_EQ(Saved("B", OneDimension({})), Seal({5, 1, 'B', 9, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(Saved("B", ByteArray()), Seal({5, 1, 'B', 1, 0, 0, 0, 0}));
}

TEST(SavedBag, AFontStandsInItsProperties) {
  const auto font = std::make_shared<StdFont>();
  font->PutName(u"Ab");
  font->PutSize(8.25);  // 82,500 ten-thousandths
  font->PutWeight(700);
  font->PutUnderline(true);
  font->PutStrikethrough(true);
  font->PutCharset(177);
  EXPECT_EQ(Saved("Font", font), Seal({6,    4,    'F', 'o', 'n', 't', 19,  0, 0, 0,  //
                                       1,    6,    177,                               //
                                       0xBC, 0x02, 0,   0,                            //
                                       0x44, 0x42, 1,   0,                            //
                                       2,    0,    0,   0,   'A', 0,   'b', 0}));
}

TEST(SavedBag, NoObjectStandsInOneByte) {
  EXPECT_EQ(Saved("Font", FontRef()), Seal({6, 4, 'F', 'o', 'n', 't', 1, 0, 0, 0, 0}));
}

TEST(SavedBag, RecordsStandInTheOrderOfWriting) {
  SavedBag bag;
  bag.WriteProperty("Z", true, true);  // a default is no reason to leave one out
  bag.WriteProperty("A", std::int16_t{1}, {});
  EXPECT_EQ(bag.Bytes(), Seal({3, 1, 'Z', 1, 0, 0, 0, 1, 1, 1, 'A', 2, 0, 0, 0, 1, 0}));
}

TEST(SavedBag, WritingMayGoOnAfterALookAtTheBytes) {
  SavedBag bag;
  bag.WriteProperty("Z", true, {});
  EXPECT_EQ(bag.Bytes(), Seal({3, 1, 'Z', 1, 0, 0, 0, 1}));
  bag.WriteProperty("A", false, {});
  EXPECT_EQ(bag.Bytes(), Seal({3, 1, 'Z', 1, 0, 0, 0, 1, 3, 1, 'A', 1, 0, 0, 0, 0}));
  EXPECT_TRUE(bag.ReadProperty("Z", BagType::Boolean) == BagValue(true));
}

TEST(SavedBag, WhatCannotBeSavedIsThrownAndLeavesTheRest) {
  SavedBag bag;
  bag.WriteProperty("A", true, {});
  const Bytes before = bag.Bytes();
  EXPECT_THROW(bag.WriteProperty(std::string(256, 'n'), true, {}), std::length_error);
  EXPECT_THROW(bag.WriteProperty("", true, {}), std::length_error);
  EXPECT_THROW(bag.WriteProperty("B", ByteArray{{{0, 3}}, {1, 2}}, {}), std::length_error);
  EXPECT_EQ(bag.Bytes(), before);
  bag.WriteProperty(std::string(255, 'n'), true, {});
  EXPECT_TRUE(bag.ReadProperty(std::string(255, 'n'), BagType::Boolean) == BagValue(true));
}

// --- Reading ----------------------------------------------------------------------------------------------

TEST(SavedBag, EveryValueReadsBack) {
  const std::pair<BagType, BagValue> values[] = {
      {BagType::I2, std::int16_t{-32768}},
      {BagType::I4, std::numeric_limits<Long>::min()},
      {BagType::Boolean, true},
      {BagType::Boolean, false},
      {BagType::Text, std::u16string(u"<b>\u4E16\0\xDC00", 6)},
      {BagType::Text, std::u16string()},
      {BagType::Bytes, ByteArray{{{0, 4}, {0, 2}, {7, 1}}, {1, 2, 3, 4, 5, 6, 7, 8}}},
      {BagType::Bytes, OneDimension({})},
      {BagType::Bytes, ByteArray()},
      {BagType::Bytes, ByteArray{{{std::numeric_limits<Long>::max(), 1}}, {1}}},
      {BagType::Font, FontRef()},
  };
  for (const auto& [type, value] : values) {
    SavedBag bag;
    EXPECT_EQ(bag.Read(Saved("name", value)), State::Whole);
    EXPECT_TRUE(bag.ReadProperty("name", type) == value) << value.index();
  }
}

TEST(SavedBag, AFontReadsBack) {
  const auto font = std::make_shared<StdFont>();
  font->PutName(u"\u30E1\u30A4\u30EA\u30AA");
  font->PutSize(11.0625);
  font->PutWeight(-1);
  font->PutItalic(true);
  font->PutCharset(255);
  SavedBag bag;
  EXPECT_EQ(bag.Read(Saved("Font", font)), State::Whole);
  const auto read = std::get<FontRef>(*bag.ReadProperty("Font", BagType::Font));
  ASSERT_TRUE(read);
  EXPECT_EQ(read->Name(), font->Name());
  EXPECT_EQ(read->Size(), 11.0625);
  EXPECT_EQ(read->Weight(), -1);
  EXPECT_TRUE(read->Italic());
  EXPECT_FALSE(read->Underline());
  EXPECT_FALSE(read->Strikethrough());
  EXPECT_EQ(read->Charset(), 255);
}

TEST(SavedBag, AMissingNameIsNothing) {
  SavedBag bag;
  ASSERT_EQ(bag.Read(Saved("Caption", true)), State::Whole);
  EXPECT_FALSE(bag.ReadProperty("caption", BagType::Boolean).has_value()) << "names have a case";
  EXPECT_FALSE(bag.ReadProperty("Captio", BagType::Boolean).has_value());
  EXPECT_FALSE(SavedBag().ReadProperty("Caption", BagType::Boolean).has_value());
}

TEST(SavedBag, TheFirstOfTwoRecordsOfANameCounts) {
  const Bytes records = Join({Record(3, "A", {1}), Record(3, "B", {0}), Record(3, "A", {0})});
  EXPECT_TRUE(Loaded(records, "A", BagType::Boolean) == BagValue(true));
}

TEST(SavedBag, ConvertibleShapesAreTaken) {
  const Bytes records =
      Join({Record(1, "short", {0xFE, 0xFF}), Record(2, "long", {0xFF, 0x7F, 0, 0}),
            Record(2, "big", {0, 0, 1, 0}), Record(3, "flag", {1}), Record(4, "text", {'4', 0, '2', 0}),
            Record(5, "array", {1, 0, 0, 0, 0, 3, 0, 0, 0, 'x', 0, 'y'})});
  EXPECT_TRUE(Loaded(records, "short", BagType::I4) == BagValue(Long{-2}));
  EXPECT_TRUE(Loaded(records, "short", BagType::Boolean) == BagValue(true));
  EXPECT_TRUE(Loaded(records, "long", BagType::I2) == BagValue(std::int16_t{32767}));
  EXPECT_TRUE(Loaded(records, "big", BagType::I2) == BagValue()) << "out of range";
  EXPECT_TRUE(Loaded(records, "flag", BagType::I4) == BagValue(Long{-1}));
  EXPECT_TRUE(Loaded(records, "text", BagType::Bytes) == BagValue(std::u16string(u"42"))) << "stays a text";
  EXPECT_TRUE(Loaded(records, "array", BagType::Text) == BagValue(std::u16string(u"x")));
  EXPECT_TRUE(Loaded(records, "text", BagType::I4) == BagValue());
  EXPECT_TRUE(Loaded(records, "array", BagType::Boolean) == BagValue());
  EXPECT_TRUE(Loaded(records, "flag", BagType::Font) == BagValue());
  EXPECT_TRUE(Loaded(records, "flag", BagType::Bytes) == BagValue());
}

// --- Versions ---------------------------------------------------------------------------------------------

TEST(SavedBag, WhatALaterMinorVersionAddsIsPassedOver) {
  Bytes bytes = Join({Record(200, "Glow", {1, 2, 3}), Record(3, "A", {1}), Record(6, "Pen", {9, 1, 2}),
                      Record(6, "Font",
                             {1, 0x80 | 1, 0, 0x90, 1, 0, 0, 0x44, 0x42, 1, 0, 1, 0, 0, 0, 'A', 0,  //
                              77, 78})});
  SavedBag bag;
  ASSERT_EQ(bag.Read(Seal(bytes, 1, 9)), State::Whole);
  EXPECT_TRUE(bag.ReadProperty("A", BagType::Boolean) == BagValue(true));
  EXPECT_TRUE(bag.ReadProperty("Glow", BagType::I4) == BagValue());
  EXPECT_TRUE(bag.ReadProperty("Pen", BagType::Font) == BagValue());
  const auto font = std::get<FontRef>(*bag.ReadProperty("Font", BagType::Font));
  ASSERT_TRUE(font);
  EXPECT_EQ(font->Name(), u"A");
  EXPECT_TRUE(font->Italic());
}

TEST(SavedBag, ALaterMajorVersionIsRefused) {
  SavedBag bag;
  EXPECT_EQ(bag.Read(Seal(Record(3, "A", {1}), 2, 0)), State::TooNew);
  EXPECT_FALSE(bag.ReadProperty("A", BagType::Boolean).has_value());
  EXPECT_EQ(bag.Read(Seal(Record(3, "A", {1}), 0, 0)), State::NotABag);
}

TEST(SavedBag, BytesOfAnotherKindAreRefused) {
  SavedBag bag;
  for (const char* text : {"", "M", "Marklet", "Marklet\x1A\x01", "\x89PNG\r\n\x1A\n, and some more of it"}) {
    const Bytes bytes(text, text + std::strlen(text));
    EXPECT_EQ(bag.Read(bytes), State::NotABag) << text;
  }
  EXPECT_EQ(bag.Bytes(), SavedBag().Bytes());
}

TEST(SavedBag, AHeaderTellsHowManyBytesFollow) {
  State state = State::Whole;
  const Bytes whole = Seal(Record(3, "A", {1}));
  EXPECT_EQ(SavedBag::BytesAfter(std::span(whole).first(SavedBag::kHeaderBytes), state),
            whole.size() - SavedBag::kHeaderBytes);
  Bytes longest = whole;
  for (std::size_t i = 12; i < 16; ++i) longest[i] = 0xFF;
  EXPECT_EQ(SavedBag::BytesAfter(std::span(longest).first(16), state), 0x100000003u);
  EXPECT_EQ(SavedBag::BytesAfter(std::span(whole).first(15), state), std::nullopt);
  EXPECT_EQ(state, State::NotABag);
}

TEST(SavedBag, BytesPastTheEndArePassedOver) {
  Bytes bytes = Seal(Record(3, "A", {1}));
  bytes.insert(bytes.end(), {1, 2, 3});
  SavedBag bag;
  EXPECT_EQ(bag.Read(bytes), State::Whole);
  bytes.resize(bytes.size() - 3);
  EXPECT_EQ(bag.Bytes(), bytes);
}

// --- Bad data ---------------------------------------------------------------------------------------------

// A control with everything set, as bytes.
Bytes RichForm() {
  PlacedControl hosted;
  hosted.Set("Caption", std::u16string(u"<b>\u05E9\u4E16</b>"));
  hosted.Set("ImageKey", std::u16string(u"logo"));
  const auto image = std::make_shared<CIconBytes>();
  image->PutKey(u"logo");
  image->SetBytes(0, 4, {{{0, 4}, {0, 2}, {0, 2}}, Bytes(16, 7)});
  hosted.State().Images->Add(u"logo", image);
  SavedBag bag;
  hosted.control.WriteProperties(bag);
  return bag.Bytes();
}

// Loads whatever the bytes are; the control lives through it.
State LoadAnything(const Bytes& bytes) {
  SavedBag bag;
  const State state = bag.Read(bytes);
  HostedControl hosted;
  hosted.host.has_surface = false;
  hosted.control.ReadProperties(bag);
  return state;
}

TEST(SavedBag, AFormThatEndsEarlyIsDamagedWhereverItEnds) {
  const Bytes whole = RichForm();
  ASSERT_EQ(LoadAnything(whole), State::Whole);
  for (std::size_t size = 0; size < whole.size(); ++size) {
    const Bytes part(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
    EXPECT_EQ(LoadAnything(part), size < SavedBag::kHeaderBytes ? State::NotABag : State::Damaged) << size;
  }
}

TEST(SlowSavedBag, NoFlippedBitGoesUnnoticed) {
  const Bytes whole = RichForm();
  for (std::size_t i = 0; i < whole.size() * 8; ++i) {
    Bytes flipped = whole;
    flipped[i / 8] = static_cast<std::uint8_t>(flipped[i / 8] ^ 1 << i % 8);
    EXPECT_NE(LoadAnything(flipped), State::Whole) << "bit " << i;
  }
}

TEST(SavedBag, WhatStandsBeforeTheDamageIsRead) {
  Bytes bytes = Seal(Join({Record(3, "A", {1}), Record(3, "B", {1}), Record(3, "C", {1})}));
  bytes.resize(bytes.size() - 4 - 8 - 1);  // inside the value of the second
  SavedBag bag;
  EXPECT_EQ(bag.Read(bytes), State::Damaged);
  EXPECT_TRUE(bag.ReadProperty("A", BagType::Boolean) == BagValue(true));
  EXPECT_FALSE(bag.ReadProperty("B", BagType::Boolean).has_value());
  EXPECT_EQ(bag.Bytes(), Seal(Record(3, "A", {1}))) << "what could be read is sound";
}

TEST(SavedBag, AValueThatIsNoneDoesNotHideTheNextOne) {
  const std::pair<std::uint8_t, Bytes> bad[] = {
      {1, {1}},
      {1, {1, 2, 3}},
      {2, {1, 2}},
      {3, {}},
      {3, {2}},
      {4, {1, 2, 3}},
      {5, {}},
      {5, {1}},
      {5, {0, 1}},                                               // no array, with a byte
      {5, {1, 0, 0, 0, 0, 2, 0, 0, 0, 1}},                       // one byte too few
      {5, {1, 0, 0, 0, 0, 1, 0, 0, 0, 1, 2}},                    // and too many
      {5, {1, 0, 0, 0, 0, 0, 0x94, 0x35, 0x77}},                 // two billion
      {5, {1, 0, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0xFF}},              // as many as none
      {5, {1, 0xFF, 0xFF, 0xFF, 0x7F, 2, 0, 0, 0, 1, 2}},        // an upper bound beyond all numbers
      {5, {2, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 1, 0}},  // 2^32 elements
      {5, Join({{61}, Bytes(488, 0)})},                          // more dimensions than there can be
      {5, Join({{255}, Bytes(40, 0)})},                          // and more than are there
      {6, {}},
      {6, {1, 0, 0}},
      {6, {1, 0, 0, 0x90, 1, 0, 0, 0x44, 0x42, 1, 0, 2, 0, 0, 0, 'A', 0}},              // a name that's short
      {6, {1, 0, 0, 0x90, 1, 0, 0, 0x44, 0x42, 1, 0, 0, 0x94, 0x35, 0x77, 'A', 0}},     // of two billion
      {6, {1, 0, 0, 0x90, 1, 0, 0, 0x44, 0x42, 1, 0, 0xFF, 0xFF, 0xFF, 0xFF, 'A', 0}},  // of -1
  };
  for (const auto& [type, value] : bad) {
    SCOPED_TRACE(::testing::PrintToString(value));
    const Bytes records = Join({Record(type, "bad", value), Record(3, "A", {1})});
    for (const BagType wanted :
         {BagType::I2, BagType::I4, BagType::Boolean, BagType::Text, BagType::Bytes, BagType::Font})
      EXPECT_TRUE(Loaded(records, "bad", wanted, State::Damaged) == BagValue());
    EXPECT_TRUE(Loaded(records, "A", BagType::Boolean, State::Damaged) == BagValue(true));
  }
}

TEST(SavedBag, ARecordWithoutANameIsDamage) {
  SavedBag bag;
  EXPECT_EQ(bag.Read(Seal(Record(3, "", {1}))), State::Damaged);
}

TEST(SavedBag, LengthsOfTwoBillionFindNothing) {
  for (const std::uint32_t length : {2'000'000'000u, 0x7FFFFFFFu, 0xFFFFFFFFu, 0xFFFFFFF0u}) {
    SavedBag bag;
    EXPECT_EQ(bag.Read(Seal(Join({{5, 1, 'A'}, U32(length), {1, 2, 3}}))), State::Damaged) << length;
    EXPECT_FALSE(bag.ReadProperty("A", BagType::Bytes).has_value());
    Bytes header = Seal(Record(3, "A", {1}));
    for (std::size_t i = 0; i < 4; ++i) header[12 + i] = U32(length)[i];
    EXPECT_EQ(bag.Read(header), State::Damaged) << length;
  }
}

TEST(SavedBag, NestedNonsenseIsOnlyBytes) {
  Bytes inner = Seal(Record(3, "A", {1}));
  for (int depth = 0; depth < 20; ++depth) inner = Seal(Record(200, "A", inner));
  EXPECT_EQ(LoadAnything(inner), State::Whole);
  EXPECT_EQ(LoadAnything(Seal(Record(6, "Font", inner))), State::Whole) << "an object of a later version";
}

TEST(SavedBag, NoiseUnderASoundHeaderIsLivedThrough) {
  std::mt19937 random(7);
  for (int round = 0; round < 2000; ++round) {
    Bytes noise(random() % 100);
    for (auto& byte : noise) byte = static_cast<std::uint8_t>(random() % 7 == 0 ? random() : random() % 8);
    LoadAnything(Seal(noise));
  }
}

TEST(SavedBag, ManyImagesThatAreNotThereCostNothing) {
  Bytes records = Record(2, "NumOfIconBytes", U32(2'000'000'000));
  for (int i = 1; i <= 3000; i += 2)
    records = Join({records, Record(4, "IcoBytesKey_" + std::to_string(i), {'k', 0})});
  SavedBag bag;
  ASSERT_EQ(bag.Read(Seal(records)), State::Whole);
  HostedControl hosted;
  hosted.control.ReadProperties(bag);
  EXPECT_EQ(hosted.State().Images->Count(), 2) << "the first, and the first gap";
}

// --- Whole controls ---------------------------------------------------------------------------------------

TEST(SavedBag, SavingLoadingAndSavingAgainGivesTheSameBytes) {
  const Bytes first = RichForm();
  SavedBag bag, again;
  ASSERT_EQ(bag.Read(first), State::Whole);
  HostedControl hosted;
  hosted.control.ReadProperties(bag);
  EXPECT_EQ(hosted.Text("Caption"), u"<b>\u05E9\u4E16</b>");
  hosted.control.WriteProperties(again);
  EXPECT_EQ(again.Bytes(), first);
}

}  // namespace
}  // namespace marklet
