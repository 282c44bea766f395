// Files that released versions of the control have saved. They load for ever and are never changed: a new
// version adds its own folder. All were put together from the format's description, not by the control.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "base/byte_reader.h"
#include "control/saved_bag.h"
#include "control/saved_extent.h"
#include "support/bag_file.h"
#include "support/fake_host.h"
#include "support/memory_bag.h"

namespace marklet {
namespace {

using testing::HostedControl;
using Bytes = std::vector<std::uint8_t>;

Bytes FileOf(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  EXPECT_TRUE(file) << path;
  const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
  return {bytes.begin(), bytes.end()};
}

Bytes EveryProperty() { return FileOf(MARKLET_TESTS "/saved_forms/1.0/every_property.form"); }

// The same of the version that this control saves, but for AutoSize, which is off, and with a size of 8000 by
// 3000.
Bytes EveryPropertyOfThisVersion() {
  const Bytes header = SavedBag().Bytes();
  const std::string version = std::to_string(header[8]) + '.' + std::to_string(header[10]);
  return FileOf(std::filesystem::path(MARKLET_TESTS "/saved_forms") / version / "every_property.form");
}

BagValue FromFile(const std::int32_t& number) { return Long{number}; }
BagValue FromFile(const testing::FontInFile& font) {
  auto made = std::make_shared<StdFont>();
  made->PutName(font.name);
  made->PutSize(font.size / 10000.0);
  made->PutWeight(font.weight);
  made->PutItalic(font.italic);
  made->PutUnderline(font.underline);
  made->PutStrikethrough(font.strikethrough);
  made->PutCharset(font.charset);
  return made;
}
template <class Held>
BagValue FromFile(const Held& held) {
  return held;
}

testing::MemoryBag EveryPropertyAsABag() {
  testing::MemoryBag bag;
  for (const auto& entry : testing::ReadBagFile(MARKLET_TESTS "/saved_forms/1.0/every_property.bag"))
    bag.Put(entry.name, std::visit([](const auto& held) { return FromFile(held); }, entry.value));
  return bag;
}

// A control with a form loaded.
std::unique_ptr<HostedControl> Load(const Bytes& form) {
  SavedBag bag;
  EXPECT_EQ(bag.Read(form), SavedBag::State::Whole);
  auto hosted = std::make_unique<HostedControl>();
  hosted->control.ReadProperties(bag);
  return hosted;
}

TEST(SavedForms, EveryPropertyOfTheFirstVersionIsRead) {
  const auto hosted = Load(EveryProperty());
  const MarkletState& state = hosted->State();
  EXPECT_EQ(state.Appearance, 0);
  EXPECT_TRUE(state.AutoSize);
  EXPECT_EQ(state.BackColor, 0x00CCBBAAu);
  EXPECT_EQ(state.BackStyle, 0);
  EXPECT_EQ(state.BorderStyle, 1);
  EXPECT_EQ(state.Caption, u"<b>Gr\u00F6\u00DFe</b> \u05E9\u05DC\u05D5\u05DD \u4E16\u754C \U0001F600 &x");
  EXPECT_FALSE(hosted->host.enabled);
  EXPECT_EQ(state.ForeColor, 0x8000000Du);
  EXPECT_TRUE(state.RightToLeft);
  EXPECT_EQ(state.UniToolTipText, u"\u2603 tip\r\nsecond line");
  EXPECT_FALSE(state.UseMnemonic);
  EXPECT_EQ(state.Padding, 7);
  EXPECT_FALSE(state.WordWrap);
  EXPECT_EQ(state.EffectColor, 0x00030201u);
  EXPECT_EQ(state.VerticalAlignment, 2);
  EXPECT_EQ(state.TextEffect, 3);
  EXPECT_EQ(state.ImageSize, 5);
  EXPECT_EQ(state.ImagePixels, 96);
  EXPECT_EQ(state.ImageAlignment, 1);
  EXPECT_EQ(state.ImageKey, u"logo");
  EXPECT_EQ(state.ImageKeyhover, u"\u03A9 hover");
}

TEST(SavedForms, TheFontOfTheFirstVersionIsRead) {
  const auto hosted = Load(EveryProperty());
  const StdFont& font = *hosted->host.font;
  EXPECT_EQ(font.Name(), u"DejaVu Serif");
  EXPECT_EQ(font.Size(), 11.25);
  EXPECT_EQ(font.Weight(), 700);
  EXPECT_TRUE(font.Italic());
  EXPECT_TRUE(font.Underline());
  EXPECT_TRUE(font.Strikethrough());
  EXPECT_EQ(font.Charset(), 177);
}

// `factor` times the place plus `first`, without the multiples of `modulus`.
Bytes Pattern(std::size_t count, unsigned factor, unsigned first, unsigned modulus) {
  Bytes bytes;
  for (unsigned i = 0; i < count; ++i)
    bytes.push_back(static_cast<std::uint8_t>((i * factor + first) % modulus));
  return bytes;
}

TEST(SavedForms, TheImagesOfTheFirstVersionAreRead) {
  const auto hosted = Load(EveryProperty());
  const auto images = hosted->State().Images;
  ASSERT_EQ(images->Count(), 3);
  const ImageRef logo = images->Item(u"LOGO"), hover = images->Item(2), unnamed = images->Item(u"");
  ASSERT_TRUE(logo && hover && unnamed);
  EXPECT_EQ(hover->Key(), u"\u03A9 hover");
  EXPECT_EQ(logo->GetBytes(0, 4), (ByteArray{{{0, 4}, {0, 16}, {0, 16}}, Pattern(1024, 7, 3, 256)}));
  EXPECT_EQ(logo->GetBytes(1, 3), (ByteArray{{{0, 3}, {0, 24}, {0, 24}}, Pattern(1728, 5, 1, 251)}));
  EXPECT_EQ(hover->GetBytes(0, 0), OneDimension({1, 2}));
  EXPECT_EQ(hover->GetBytes(7, 1), (ByteArray{{{-1, 4}, {2, 1}, {5, 3}}, Pattern(12, 1, 240, 256)}));
  EXPECT_EQ(unnamed->GetBytes(0, 4), ByteArray());
}

TEST(SavedForms, EveryFileOfEveryVersionLoadsWhole) {
  int files = 0;
  for (const auto& entry :
       std::filesystem::recursive_directory_iterator(std::filesystem::path(MARKLET_TESTS "/saved_forms"))) {
    if (entry.path().extension() != ".form") continue;
    SCOPED_TRACE(entry.path().string());
    EXPECT_GT(Load(FileOf(entry.path()))->State().Caption.size(), 0u);
    ++files;
  }
  EXPECT_GE(files, 2);
}

TEST(SavedForms, SavingThisVersionAgainGivesTheSameFile) {
  const Bytes form = EveryPropertyOfThisVersion();
  SavedBag saved, again;
  ASSERT_EQ(saved.Read(form), SavedBag::State::Whole);
  const auto extent = ReadExtent(saved);
  ASSERT_EQ(extent, (SavedExtent{8000, 3000}));
  Load(form)->control.WriteProperties(again);
  WriteExtent(again, *extent);
  EXPECT_EQ(again.Bytes(), form);
}

// The records of a form, as they stand in it.
std::vector<Bytes> RecordsOf(const Bytes& form) {
  constexpr std::size_t kChecksumBytes = 4;
  const auto bytes = std::span(form).first(form.size() - kChecksumBytes).subspan(SavedBag::kHeaderBytes);
  std::vector<Bytes> records;
  for (ByteReader reader(bytes); reader.Left() > 0;) {
    const auto record = bytes.last(reader.Left());
    reader.U8();  // the type
    reader.Take(reader.U8());
    reader.Take(reader.U32());
    records.emplace_back(record.begin(), record.end() - static_cast<std::ptrdiff_t>(reader.Left()));
  }
  return records;
}

// What a minor version adds may stand between.
TEST(SavedForms, EveryRecordOfTheFirstVersionIsSavedAgainInItsOrder) {
  SavedBag again;
  Load(EveryProperty())->control.WriteProperties(again);
  const std::vector<Bytes> saved = RecordsOf(again.Bytes());
  auto place = saved.begin();
  for (const Bytes& record : RecordsOf(EveryProperty())) {
    place = std::find(place, saved.end(), record);
    ASSERT_NE(place++, saved.end()) << ::testing::PrintToString(record);
  }
}

// The two files were put together one by one: what is loaded from the one is saved as the other.
TEST(SavedForms, TheBagOfTheFirstVersionHoldsTheSameAsItsStream) {
  testing::MemoryBag bag = EveryPropertyAsABag();
  HostedControl hosted;
  EXPECT_TRUE(hosted.control.ReadProperties(bag));
  SavedBag stream;
  EXPECT_TRUE(hosted.control.WriteProperties(stream));
  SavedBag expected;
  Load(EveryProperty())->control.WriteProperties(expected);
  EXPECT_EQ(stream.Bytes(), expected.Bytes());
}

TEST(SavedForms, SavingTheStreamIntoABagGivesTheBagOfTheFirstVersion) {
  const testing::MemoryBag expected = EveryPropertyAsABag();
  testing::MemoryBag bag;
  EXPECT_TRUE(Load(EveryProperty())->control.WriteProperties(bag));
  const testing::MemoryBag::Entry* before = nullptr;
  for (const auto& wanted : expected.entries) {
    const auto* got = bag.Find(wanted.name);
    ASSERT_NE(got, nullptr) << wanted.name;
    EXPECT_TRUE(before == nullptr || before < got) << wanted.name << " stands too early";
    before = got;
    const auto *got_font = std::get_if<FontRef>(&got->value), *font = std::get_if<FontRef>(&wanted.value);
    EXPECT_TRUE(font ? got_font && (*got_font)->Name() == (*font)->Name() : got->value == wanted.value)
        << wanted.name;
  }
}

TEST(SavedForms, NoPropertyOfTheFirstVersionHasItsDefault) {
  const auto hosted = Load(EveryProperty());
  testing::MemoryBag bag;
  hosted->control.WriteProperties(bag);
  for (const auto& wanted : EveryPropertyAsABag().entries) {
    if (wanted.name == "IcoBytesKey_3") continue;  // an image without a key
    const auto* entry = bag.Find(wanted.name);
    ASSERT_NE(entry, nullptr) << wanted.name;
    EXPECT_FALSE(entry->value == entry->fallback) << wanted.name;
  }
}

}  // namespace
}  // namespace marklet
