#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <limits>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "bitmaps/colour.h"
#include "control/saved_bag.h"
#include "platform/shared/os_tests.h"
#include "platform/system.h"
#include "support/fake_host.h"
#include "support/memory_bag.h"

namespace marklet {
namespace {

using testing::HostedControl;
using testing::MemoryBag;
using testing::PlacedControl;

std::vector<std::uint8_t> Utf16Bytes(std::u16string_view text) {
  std::vector<std::uint8_t> bytes;
  for (const char16_t unit : text) {
    bytes.push_back(static_cast<std::uint8_t>(unit));
    bytes.push_back(static_cast<std::uint8_t>(unit >> 8));
  }
  return bytes;
}

std::vector<std::string> Names(const MemoryBag& bag) {
  std::vector<std::string> names;
  for (const auto& entry : bag.entries) names.push_back(entry.name);
  return names;
}

std::vector<std::string> FromTheImagesOn(const std::vector<std::string>& names) {
  return {std::ranges::find(names, "NumOfIconBytes"), names.end()};
}

// A form without a system colour.
MemoryBag PlainColours() {
  MemoryBag bag;
  bag.Put("BackColor", Long{1});
  bag.Put("ForeColor", Long{2});
  bag.Put("EffectColor", Long{3});
  return bag;
}

// Channel, column, row: the shape in which images are kept.
ByteArray Cell(Long channels, Long columns, Long rows, std::uint8_t fill) {
  const auto count = static_cast<std::size_t>(channels) * static_cast<std::size_t>(columns * rows);
  return {{{0, channels}, {0, columns}, {0, rows}}, std::vector<std::uint8_t>(count, fill)};
}

ImageRef MakeImage(std::u16string key, ByteArray cell, Long size, Long depth) {
  auto image = std::make_shared<CIconBytes>();
  image->PutKey(std::move(key));
  image->SetBytes(size, depth, std::move(cell));
  return image;
}

// --- Writing ----------------------------------------------------------------------------------------------

TEST(Persistence, KeysAreWrittenInTheOrderOfSavedForms) {
  PlacedControl hosted;
  MemoryBag bag;
  hosted.control.WriteProperties(bag);
  EXPECT_EQ(
      Names(bag),
      (std::vector<std::string>{
          "Appearance",     "AutoSize", "BackColor",     "BackStyle",         "BorderStyle",    "Caption",
          "Enabled",        "Font",     "ForeColor",     "RightToLeft",       "UniToolTipText", "UseMnemonic",
          "Padding",        "WordWrap", "EffectColor",   "VerticalAlignment", "TextEffect",     "ImageSize",
          "ImageAlignment", "ImageKey", "ImageKeyHover", "NumOfIconBytes"}));
}

TEST(Persistence, DefaultsHaveTheTypesOfSavedForms) {
  HostedControl hosted;
  hosted.host.ambient.back_color = 0x80000005;
  hosted.host.ambient.fore_color = 0x00123456;
  hosted.host.ambient.right_to_left = true;
  hosted.Init();
  MemoryBag bag;
  hosted.control.WriteProperties(bag);
  const std::int16_t zero = 0, one = 1;
  const std::pair<const char*, BagValue> expected[] = {
      {"Appearance", one},
      {"AutoSize", false},
      {"BackColor", static_cast<Long>(0x80000005)},
      {"BackStyle", Long{1}},
      {"BorderStyle", zero},
      {"Caption", std::u16string()},
      {"Enabled", true},
      {"Font", hosted.host.ambient.font},
      {"ForeColor", Long{0x00123456}},
      {"RightToLeft", true},
      {"UniToolTipText", std::u16string()},
      {"UseMnemonic", true},
      {"Padding", zero},
      {"WordWrap", true},
      {"EffectColor", static_cast<Long>(0x80000010)},
      {"VerticalAlignment", Long{0}},
      {"TextEffect", Long{0}},
      {"ImageSize", Long{0}},
      {"ImageAlignment", Long{0}},
      {"ImageKey", std::u16string()},
      {"ImageKeyHover", std::u16string()},
      {"NumOfIconBytes", zero},
  };
  for (const auto& [name, fallback] : expected) {
    ASSERT_NE(bag.Find(name), nullptr) << name;
    EXPECT_TRUE(bag.Find(name)->fallback == fallback) << name;
  }
}

TEST(Persistence, ValuesHaveTheTypesOfSavedForms) {
  PlacedControl hosted;
  MemoryBag bag;
  hosted.control.WriteProperties(bag);
  const std::pair<const char*, BagType> expected[] = {
      {"Appearance", BagType::I4},        {"AutoSize", BagType::Boolean},
      {"BackColor", BagType::I4},         {"BackStyle", BagType::I4},
      {"BorderStyle", BagType::I4},       {"Caption", BagType::Bytes},
      {"Enabled", BagType::Boolean},      {"Font", BagType::Font},
      {"ForeColor", BagType::I4},         {"RightToLeft", BagType::Boolean},
      {"UniToolTipText", BagType::Bytes}, {"UseMnemonic", BagType::Boolean},
      {"Padding", BagType::I4},           {"WordWrap", BagType::Boolean},
      {"EffectColor", BagType::I4},       {"VerticalAlignment", BagType::I4},
      {"TextEffect", BagType::I4},        {"ImageSize", BagType::I4},
      {"ImageAlignment", BagType::I4},    {"ImageKey", BagType::Text},
      {"ImageKeyHover", BagType::Text},   {"NumOfIconBytes", BagType::I4},
  };
  for (const auto& [name, type] : expected)
    EXPECT_EQ(bag.Find(name)->value.index(), static_cast<std::size_t>(type) + 1) << name;
}

TEST(Persistence, DefaultTextsAreStillSavedAsByteArrays) {
  PlacedControl hosted;
  MemoryBag bag;
  hosted.control.WriteProperties(bag);
  for (const char* name : {"Caption", "UniToolTipText"}) {
    const auto& array = std::get<ByteArray>(bag.Find(name)->value);
    EXPECT_EQ(array.bounds, (std::vector<ByteArray::Bound>{{0, 0}})) << name;  // one dimension, no element
    EXPECT_EQ(array.UpperBound(), -1) << name;
    EXPECT_FALSE(bag.Find(name)->value == bag.Find(name)->fallback) << name;
  }
}

TEST(Persistence, CaptionIsSavedLowByteFirst) {
  PlacedControl hosted;
  hosted.Set("Caption", std::u16string(u"A\u05E9\u4E16"));
  MemoryBag bag;
  hosted.control.WriteProperties(bag);
  EXPECT_EQ(std::get<ByteArray>(bag.Find("Caption")->value).bytes,
            (std::vector<std::uint8_t>{0x41, 0x00, 0xE9, 0x05, 0x16, 0x4E}));
}

TEST(Persistence, ADesignerSavesTheTextAndNotItsPlaceholder) {
  HostedControl hosted;
  hosted.host.ambient.user_mode = false;
  hosted.Init();
  hosted.Set("Caption", std::u16string(u"\u05E9\u05DC"));
  ASSERT_EQ(hosted.Text("Caption"), u"(Unicode Text)");
  MemoryBag bag;
  hosted.control.WriteProperties(bag);
  EXPECT_EQ(std::get<ByteArray>(bag.Find("Caption")->value).bytes, Utf16Bytes(u"\u05E9\u05DC"));
}

TEST(Persistence, AnImagesKeyHasANullStringAsItsDefaultAndItsCellsHaveNone) {
  PlacedControl hosted;
  hosted.State().Images->Add(u"a", MakeImage(u"a", OneDimension({1, 2}), 0, 4));
  MemoryBag bag;
  hosted.control.WriteProperties(bag);
  EXPECT_TRUE(bag.Find("IcoBytesKey_1")->fallback == BagValue(std::u16string()));
  EXPECT_TRUE(bag.Find("IconBytesJ0K4_1")->fallback == BagValue());
}

// A bag that is told where the bytes are.
struct PlaceBag final : PropertyBag {
  std::vector<const std::uint8_t*> places;
  std::optional<BagValue> ReadProperty(std::string_view, BagType) override { return std::nullopt; }
  void WriteProperty(std::string_view, const BagValue&, const BagValue&) override {}
  void WriteBytes(std::string_view, const ByteArray& bytes) override { places.push_back(bytes.bytes.data()); }
};

TEST(Persistence, CellsAreNotCopiedOnTheirWayIntoABag) {
  PlacedControl hosted;
  hosted.State().Images->Add(u"a", MakeImage(u"a", Cell(4, 16, 16, 3), 0, 4));
  PlaceBag bag;
  hosted.control.WriteProperties(bag);
  EXPECT_EQ(bag.places, std::vector{hosted.State().Images->Item(1)->GetBytes(0, 4).bytes.data()});
}

TEST(Persistence, AlignmentIsNeverWritten) {
  PlacedControl hosted;
  hosted.State().Alignment = 3;
  MemoryBag bag;
  hosted.control.WriteProperties(bag);
  EXPECT_EQ(bag.Find("Alignment"), nullptr);
}

// --- Reading ----------------------------------------------------------------------------------------------

TEST(Persistence, KeysAreReadInTheOrderOfLoading) {
  HostedControl hosted;
  MemoryBag bag;
  hosted.control.ReadProperties(bag);
  EXPECT_EQ(
      bag.asked,
      (std::vector<std::string>{
          "Appearance",     "Alignment",      "BackColor",   "BackStyle",         "BorderStyle", "Caption",
          "Font",           "ForeColor",      "RightToLeft", "UniToolTipText",    "UseMnemonic", "Padding",
          "Enabled",        "WordWrap",       "EffectColor", "VerticalAlignment", "TextEffect",  "ImageSize",
          "ImageAlignment", "NumOfIconBytes", "ImageKey",    "ImageKeyHover",     "AutoSize"}));
}

TEST(Persistence, AnEmptyBagGivesTheDefaults) {
  HostedControl hosted;
  hosted.host.ambient.back_color = 0x00ABCDEF;
  hosted.host.ambient.fore_color = 0x00010203;
  hosted.host.ambient.right_to_left = true;
  MemoryBag bag;
  hosted.control.ReadProperties(bag);
  const MarkletState& state = hosted.State();
  EXPECT_EQ(state.Appearance, 1);
  EXPECT_EQ(state.Alignment, 0);
  EXPECT_EQ(state.BackColor, 0x00ABCDEFu);
  EXPECT_EQ(state.BackStyle, 1);
  EXPECT_EQ(state.BorderStyle, 0);
  EXPECT_EQ(state.Caption, u"");
  EXPECT_EQ(hosted.host.font, hosted.host.ambient.font);  // no copy
  EXPECT_EQ(state.ForeColor, 0x00010203u);
  EXPECT_TRUE(state.RightToLeft);
  EXPECT_TRUE(state.UseMnemonic);
  EXPECT_EQ(state.Padding, 0);
  EXPECT_TRUE(hosted.host.enabled);
  EXPECT_TRUE(state.WordWrap);
  EXPECT_EQ(state.EffectColor, 0x80000010u);
  EXPECT_EQ(state.VerticalAlignment, 0);
  EXPECT_EQ(state.TextEffect, 0);
  EXPECT_EQ(state.ImageSize, 0);
  EXPECT_EQ(state.ImagePixels, 16);
  EXPECT_EQ(state.ImageAlignment, 0);
  EXPECT_FALSE(state.AutoSize);
  EXPECT_FALSE(state.DesignMode);
}

TEST(Persistence, LoadingLeavesTheHostsBackColorAlone) {
  HostedControl hosted;
  hosted.host.back_color = 0x123456;
  MemoryBag bag;
  bag.Put("BackColor", Long{0xFF});
  hosted.control.ReadProperties(bag);
  EXPECT_EQ(hosted.State().BackColor, 0xFFu);
  EXPECT_EQ(hosted.host.back_color, 0x123456u);
}

TEST(Persistence, LoadingAnAppearanceChangesNoColour) {
  HostedControl hosted;
  MemoryBag bag;
  bag.Put("BackColor", Long{0xFF});
  bag.Put("Appearance", Long{0});
  hosted.control.ReadProperties(bag);
  EXPECT_EQ(hosted.State().Appearance, 0);
  EXPECT_EQ(hosted.State().BackColor, 0xFFu);
}

TEST(Persistence, ACaptionBeyondTheCodePageSurvivesASaveAndALoad) {
  using std::string_literals::operator""s;  // for the NUL in it
  const std::u16string caption = u"<b>\u05E9\u4E16\U0001F600</b>\u0001\0x"s;
  PlacedControl saved;
  saved.Set("Caption", caption);
  MemoryBag bag;
  saved.control.WriteProperties(bag);
  HostedControl loaded;
  loaded.control.ReadProperties(bag);
  EXPECT_EQ(loaded.State().Caption, caption);
}

TEST(Persistence, ImageSizeFiveGivesNinetySixPixels) {
  HostedControl hosted;
  MemoryBag bag;
  bag.Put("ImageSize", Long{5});
  hosted.control.ReadProperties(bag);
  EXPECT_EQ(hosted.State().ImagePixels, 96);
}

TEST(Persistence, AlignmentLivesUntilTheNextSave) {
  MemoryBag bag;
  bag.Put("Alignment", Long{3});
  HostedControl first;
  first.control.ReadProperties(bag);
  EXPECT_EQ(first.State().Alignment, 3);
  MemoryBag again;
  first.control.WriteProperties(again);
  HostedControl second;
  second.control.ReadProperties(again);
  EXPECT_EQ(second.State().Alignment, 0);
}

TEST(Persistence, ChangeIsRaisedOnceBeforeTheImagesAreThere) {
  HostedControl hosted;
  MemoryBag bag;
  bag.Put("Caption", OneDimension(Utf16Bytes(u"x")));
  bag.Put("NumOfIconBytes", Long{1});
  bag.Put("IcoBytesKey_1", std::u16string(u"logo"));
  int changes = 0;
  Long images_then = -1;
  hosted.host.on_change = [&] {
    ++changes;
    images_then = hosted.State().Images->Count();
  };
  hosted.control.ReadProperties(bag);
  EXPECT_EQ(changes, 1);
  EXPECT_EQ(images_then, 0);
  EXPECT_EQ(hosted.State().Images->Count(), 1);
}

// The setters on the way paint what is there so far, and announce themselves as ever.
TEST(Persistence, SettersOnTheWayPaintAndTheFinishedControlIsPaintedLast) {
  const testing::FixedSystem system;
  HostedControl hosted;
  MemoryBag bag;
  hosted.control.ReadProperties(bag);
  EXPECT_EQ(hosted.host.log,
            (std::vector<std::string>{"hDC", "PropertyChanged(Caption)", "Change",      //
                                      "Font",                                           // no setter
                                      "PropertyChanged(UniTooltipText)",                // and no paint
                                      "Enabled(1)", "hDC", "PropertyChanged(Enabled)",  //
                                      "hDC", "PropertyChanged(ImageSize)",              //
                                      "hDC", "PropertyChanged(ImageAlignment)", "StartSubclass(0)",  //
                                      "hDC", "PropertyChanged(AutoSize)",                            //
                                      "AccessKeys()", "hDC"}));
}

TEST(Persistence, TheFirstPaintOfPlainColoursStillLooksAtTheSystemColours) {
  HostedControl hosted;
  MemoryBag bag = PlainColours();
  std::vector<bool> flags;
  hosted.host.on_enabled_asked = [&] { flags.push_back(hosted.State().UsesSystemColors); };
  hosted.control.ReadProperties(bag);
  ASSERT_FALSE(flags.empty()) << "nothing was painted";
  EXPECT_TRUE(flags.back());
  EXPECT_FALSE(hosted.State().UsesSystemColors);
  for (std::size_t i = 0; i < kWatchedSystemColours.size(); ++i)
    EXPECT_EQ(hosted.State().SystemColorCache[i], GetSysColor(kWatchedSystemColours[i])) << i;
}

TEST(Persistence, TheAccessKeyAgreesWithTheCaptionWhenALoadHasEnded) {
  HostedControl hosted;
  MemoryBag bag;
  bag.Put("Caption", OneDimension(Utf16Bytes(u"&Save")));
  hosted.control.ReadProperties(bag);
  EXPECT_EQ(hosted.host.access_keys, u"S");
  MemoryBag without;
  without.Put("Caption", OneDimension(Utf16Bytes(u"&Save")));
  without.Put("UseMnemonic", false);
  hosted.control.ReadProperties(without);
  EXPECT_EQ(hosted.host.access_keys, u"");
}

TEST(Persistence, TheAccessKeyAgreesWithTheCaptionOfANewControl) {
  HostedControl hosted;
  hosted.host.ambient.display_name = u"Mark&let1";
  hosted.control.InitProperties();
  EXPECT_EQ(hosted.host.access_keys, u"l");
}

TEST(Persistence, AutoSizeMeasuresWhenEverythingElseIsThere) {
  HostedControl hosted;
  MemoryBag bag;
  bag.Put("Caption", OneDimension(Utf16Bytes(u"A caption")));
  bag.Put("AutoSize", true);
  bag.Put("WordWrap", false);
  bag.Put("Padding", Long{30});
  hosted.control.ReadProperties(bag);
  EXPECT_GT(hosted.host.scale_height, 60);  // twice the padding and a line
}

TEST(Persistence, TheLastStepSettlesTheColourFlag) {
  HostedControl hosted;
  MemoryBag bag = PlainColours();
  hosted.control.ReadProperties(bag);
  EXPECT_FALSE(hosted.State().UsesSystemColors);
}

// --- Bad data ---------------------------------------------------------------------------------------------

TEST(Persistence, AValueOfAWrongTypeLeavesTheField) {
  PlacedControl hosted;
  hosted.State().Padding = 7;
  hosted.State().BackColor = 5;
  MemoryBag bag;
  bag.Put("Padding", std::u16string(u"wide"));
  bag.Put("BackColor", OneDimension({1, 2, 3}));
  bag.Put("Caption", Long{12});
  bag.Put("NumOfIconBytes", std::u16string(u"many"));
  hosted.control.ReadProperties(bag);
  EXPECT_EQ(hosted.State().Padding, 7);
  EXPECT_EQ(hosted.State().BackColor, 5u);
  EXPECT_EQ(hosted.State().Caption, u"");
  EXPECT_EQ(hosted.State().Images->Count(), 0);
}

TEST(Persistence, AnOddByteAtTheEndOfACaptionIsDropped) {
  HostedControl hosted;
  MemoryBag bag;
  bag.Put("Caption", OneDimension({0x41, 0x00, 0x42}));
  hosted.control.ReadProperties(bag);
  EXPECT_EQ(hosted.State().Caption, u"A");
}

TEST(Persistence, ACountOfTwoBillionEndsSoon) {
  HostedControl hosted;
  MemoryBag bag;
  bag.Put("NumOfIconBytes", Long{2'000'000'000});
  bag.Put("IcoBytesKey_1", std::u16string(u"logo"));
  hosted.control.ReadProperties(bag);
  EXPECT_NE(hosted.State().Images->Item(u"logo"), nullptr);
  EXPECT_LT(bag.asked.size(), 10'000u);
}

// A bag that refuses the value under one name.
struct RefusingBag final : PropertyBag {
  std::string refused;
  MemoryBag inner;
  std::optional<BagValue> ReadProperty(std::string_view name, BagType type) override {
    return inner.ReadProperty(name, type);
  }
  void WriteProperty(std::string_view name, const BagValue& value, const BagValue& fallback) override {
    if (name == refused) throw std::bad_alloc();
    inner.WriteProperty(name, value, fallback);
  }
};

TEST(Persistence, AValueThatCannotBeWrittenIsToldAndTheOthersAreWritten) {
  PlacedControl hosted;
  hosted.State().Images->Add(u"a", MakeImage(u"a", OneDimension({1, 2}), 0, 4));
  MemoryBag all;
  EXPECT_TRUE(hosted.control.WriteProperties(all));
  for (const std::string& name : Names(all)) {
    RefusingBag bag;
    bag.refused = name;
    EXPECT_FALSE(hosted.control.WriteProperties(bag)) << name;
    EXPECT_EQ(bag.inner.entries.size(), all.entries.size() - 1) << name;
  }
}

// A bag that has no memory for the value under one name.
struct ForgetfulBag final : PropertyBag {
  explicit ForgetfulBag(MemoryBag& values) : inner(values) {}
  MemoryBag& inner;
  std::string refused;
  std::optional<BagValue> ReadProperty(std::string_view name, BagType type) override {
    if (name == refused) throw std::bad_alloc();
    return inner.ReadProperty(name, type);
  }
  void WriteProperty(std::string_view, const BagValue&, const BagValue&) override {}
};

TEST(Persistence, AValueThatCannotBeHadIsToldAndTheOthersAreRead) {
  PlacedControl saved;
  saved.Set("Caption", std::u16string(u"x"));
  saved.Set("ImageKey", std::u16string(u"a"));
  saved.State().Images->Add(u"a", MakeImage(u"a", OneDimension({1, 2}), 0, 4));
  MemoryBag all;
  saved.control.WriteProperties(all);
  for (const std::string& name : Names(all)) {
    SCOPED_TRACE(name);
    ForgetfulBag bag(all);
    bag.refused = name;
    HostedControl loaded;
    EXPECT_FALSE(loaded.control.ReadProperties(bag));
    EXPECT_EQ(loaded.State().Caption, name == "Caption" ? u"" : u"x");
    EXPECT_EQ(loaded.State().ImageKey, name == "ImageKey" ? u"" : u"a");
    EXPECT_EQ(loaded.State().Images->Count(), name == "NumOfIconBytes" ? 0 : 1);
  }
  HostedControl loaded;
  EXPECT_TRUE(loaded.control.ReadProperties(all));
}

TEST(Persistence, AValueOfAWrongTypeIsNoFailure) {
  HostedControl hosted;
  MemoryBag bag;
  bag.Put("Caption", Long{12});
  bag.Put("NumOfIconBytes", std::u16string(u"many"));
  EXPECT_TRUE(hosted.control.ReadProperties(bag));
}

// --- Images -----------------------------------------------------------------------------------------------

// What counts is the upper bound of an array, and a text is none.
TEST(Persistence, ATextInThePlaceOfACellIsNoCell) {
  SavedBag bag;
  bag.WriteProperty("NumOfIconBytes", Long{1}, {});
  bag.WriteProperty("IcoBytesKey_1", std::u16string(u"a"), {});
  bag.WriteProperty("IconBytesJ0K4_1", std::u16string(u"text"), {});
  bag.WriteProperty("Caption", std::u16string(u"text"), {});
  HostedControl hosted;
  EXPECT_TRUE(hosted.control.ReadProperties(bag));
  EXPECT_EQ(hosted.State().Images->Item(1)->GetBytes(0, 4), ByteArray());
  EXPECT_EQ(hosted.State().Caption, u"text") << "where it is one";
}

TEST(Persistence, AKeyOfAnotherTypeLeavesItsImageWithoutAName) {
  MemoryBag bag;
  bag.Put("NumOfIconBytes", Long{2});
  bag.Put("IcoBytesKey_1", OneDimension({1, 2, 3}));
  bag.Put("IconBytesJ0K4_1", OneDimension({1, 2}));
  bag.Put("IcoBytesKey_2", std::u16string(u"b"));
  bag.Put("IconBytesJ0K4_2", OneDimension({3, 4}));
  HostedControl hosted;
  EXPECT_TRUE(hosted.control.ReadProperties(bag)) << "that is no failure";
  ASSERT_EQ(hosted.State().Images->Count(), 2);
  EXPECT_EQ(hosted.State().Images->Item(1)->Key(), u"");
  EXPECT_EQ(hosted.State().Images->Item(1)->GetBytes(0, 4), OneDimension({1, 2}));
  EXPECT_EQ(hosted.State().Images->Item(2)->Key(), u"b");
}

// A bag whose writing reaches back into the control.
struct MeddlingBag final : PropertyBag {
  std::function<void(std::string_view)> on_write;
  MemoryBag inner;
  std::optional<BagValue> ReadProperty(std::string_view name, BagType type) override {
    return inner.ReadProperty(name, type);
  }
  void WriteProperty(std::string_view name, const BagValue& value, const BagValue& fallback) override {
    on_write(name);
    inner.WriteProperty(name, value, fallback);
  }
};

TEST(Persistence, AListEmptiedWhileItIsWrittenEndsWithTheImageAtHand) {
  for (const bool all_at_once : {false, true}) {
    PlacedControl hosted;
    for (const char16_t* key : {u"a", u"b", u"c"})
      hosted.State().Images->Add(key, MakeImage(key, OneDimension({1, 2}), 0, 4));
    MeddlingBag bag;
    bag.on_write = [&](std::string_view name) {
      if (name != "IcoBytesKey_2") return;
      if (all_at_once) return hosted.control.DestroyIconByteCollectionData();
      for (const char16_t* key : {u"a", u"b", u"c"}) hosted.control.DeleteIconImage(key);
    };
    EXPECT_TRUE(hosted.control.WriteProperties(bag));
    EXPECT_NE(bag.inner.Find("IconBytesJ0K4_2"), nullptr) << "the image at hand is whole";
    // Another list leaves the one that is being written as it was; the same one has nothing after it.
    EXPECT_EQ(bag.inner.Find("IcoBytesKey_3") != nullptr, all_at_once);
    EXPECT_EQ(hosted.State().Images->Count(), 0);
  }
}

TEST(Persistence, ImagesKeepTheirCellsAndShapes) {
  PlacedControl saved;
  const ByteArray cell = Cell(4, 32, 32, 9);
  saved.State().Images->Add(u"logo", MakeImage(u"logo", cell, 2, 4));
  saved.State().Images->Add(u"Next", MakeImage(u"Next", Cell(3, 16, 16, 5), 0, 3));
  MemoryBag bag;
  saved.control.WriteProperties(bag);
  EXPECT_TRUE(bag.Find("NumOfIconBytes")->value == BagValue(Long{2}));
  EXPECT_TRUE(bag.Find("IcoBytesKey_1")->value == BagValue(std::u16string(u"logo")));
  EXPECT_TRUE(bag.Find("IconBytesJ2K4_1")->value == BagValue(cell));
  ASSERT_NE(bag.Find("IconBytesJ0K3_2"), nullptr);

  HostedControl loaded;
  loaded.control.ReadProperties(bag);
  ASSERT_EQ(loaded.State().Images->Count(), 2);
  EXPECT_EQ(loaded.State().Images->Item(1)->Key(), u"logo");
  EXPECT_EQ(loaded.State().Images->Item(1)->GetBytes(2, 4), cell);
  EXPECT_EQ(loaded.State().Images->Item(2)->GetBytes(0, 3), Cell(3, 16, 16, 5));
}

// An image's key, its cells size by size and within a size depth by depth; then the next image.
TEST(Persistence, CellsStandAfterTheirImagesKeySizeBySize) {
  PlacedControl hosted;
  const ImageRef first = MakeImage(u"a", OneDimension({1, 2}), 7, 4);
  for (const auto& [size, depth] : {std::pair<Long, Long>{1, 0}, {0, 4}, {0, 1}})
    first->SetBytes(size, depth, OneDimension({1, 2}));
  hosted.State().Images->Add(u"a", first);
  hosted.State().Images->Add(u"b", MakeImage(u"b", OneDimension({1, 2}), 3, 2));
  MemoryBag bag;
  hosted.control.WriteProperties(bag);
  const std::vector<std::string> expected = {"NumOfIconBytes",  "IcoBytesKey_1",   "IconBytesJ0K1_1",
                                             "IconBytesJ0K4_1", "IconBytesJ1K0_1", "IconBytesJ7K4_1",
                                             "IcoBytesKey_2",   "IconBytesJ3K2_2"};
  EXPECT_EQ(FromTheImagesOn(Names(bag)), expected);
}

TEST(Persistence, EveryCellOfAnImageIsAskedForAfterItsKey) {
  HostedControl hosted;
  MemoryBag bag;
  bag.Put("NumOfIconBytes", Long{1});
  hosted.control.ReadProperties(bag);
  std::vector<std::string> expected = {"NumOfIconBytes", "IcoBytesKey_1"};
  for (const char size : std::string("01234567"))
    for (const char depth : std::string("01234"))
      expected.push_back(std::string("IconBytesJ") + size + "K" + depth + "_1");
  expected.insert(expected.end(), {"ImageKey", "ImageKeyHover", "AutoSize"});
  EXPECT_EQ(FromTheImagesOn(bag.asked), expected);
}

TEST(Persistence, NumbersOfImagesAreNotPadded) {
  PlacedControl hosted;
  for (char16_t key = u'a'; key < u'l'; ++key)
    hosted.State().Images->Add({key}, MakeImage({key}, OneDimension({1, 2}), 0, 4));
  MemoryBag bag;
  hosted.control.WriteProperties(bag);
  EXPECT_TRUE(bag.Find("IcoBytesKey_9") && bag.Find("IcoBytesKey_11") && bag.Find("IconBytesJ0K4_11"));
}

TEST(Persistence, ACellOfOneByteDoesNotSurvive) {
  PlacedControl hosted;
  hosted.State().Images->Add(u"a", MakeImage(u"a", OneDimension({1}), 0, 4));
  hosted.State().Images->Add(u"b", MakeImage(u"b", OneDimension({1, 2}), 0, 4));
  MemoryBag bag;
  hosted.control.WriteProperties(bag);
  EXPECT_EQ(bag.Find("IconBytesJ0K4_1"), nullptr);
  EXPECT_NE(bag.Find("IconBytesJ0K4_2"), nullptr);
  bag.Put("IconBytesJ0K4_1", OneDimension({1}));
  HostedControl loaded;
  loaded.control.ReadProperties(bag);
  EXPECT_EQ(loaded.State().Images->Item(u"a")->GetBytes(0, 4), ByteArray());
}

// What counts is the first dimension's upper bound, not whether there is anything in it.
TEST(Persistence, ACellIsKeptByItsFirstDimensionsUpperBound) {
  const std::pair<ByteArray, bool> cells[] = {
      {{{{0, 4}, {0, 0}}, {}}, true},
      {{{{0, 0}, {0, 4}}, {}}, false},
      {{{{5, 1}}, {1}}, true},
      {{{{-5, 3}}, {1, 2, 3}}, false},
      {{{{0, 1}, {0, 2}}, {1, 2}}, false},
      {{{{std::numeric_limits<Long>::min(), 0}}, {}}, true},  // wraps around to the largest of all
  };
  for (const auto& [cell, kept] : cells) {
    HostedControl hosted;
    MemoryBag bag;
    bag.Put("NumOfIconBytes", Long{1});
    bag.Put("IcoBytesKey_1", std::u16string(u"a"));
    bag.Put("IconBytesJ7K0_1", cell);
    hosted.control.ReadProperties(bag);
    EXPECT_EQ(hosted.State().Images->Item(1)->GetBytes(7, 0), kept ? cell : ByteArray()) << cell.UpperBound();
  }
}

TEST(Persistence, ASecondImageUnderAKeyIsNotInTheList) {
  HostedControl hosted;
  MemoryBag bag;
  bag.Put("NumOfIconBytes", Long{3});
  bag.Put("IcoBytesKey_1", std::u16string(u"Logo"));
  bag.Put("IconBytesJ0K4_1", OneDimension({1, 1}));
  bag.Put("IcoBytesKey_2", std::u16string(u"LOGO"));
  bag.Put("IcoBytesKey_3", std::u16string(u"other"));
  hosted.control.ReadProperties(bag);
  ASSERT_EQ(hosted.State().Images->Count(), 2);
  EXPECT_EQ(hosted.State().Images->Item(1)->GetBytes(0, 4), OneDimension({1, 1}));
  EXPECT_EQ(hosted.State().Images->Item(2)->Key(), u"other");
}

TEST(Persistence, AnEmptyListWritesItsCountAlone) {
  PlacedControl hosted;
  MemoryBag bag;
  hosted.control.WriteProperties(bag);
  EXPECT_TRUE(bag.Find("NumOfIconBytes")->value == BagValue(Long{0}));
  EXPECT_EQ(bag.entries.back().name, "NumOfIconBytes");
  HostedControl loaded;
  loaded.control.ReadProperties(bag);
  EXPECT_EQ(loaded.State().Images->Count(), 0);
}

TEST(Persistence, WithoutAListNoImageKeyIsWritten) {
  PlacedControl hosted;
  hosted.State().Images.reset();
  MemoryBag bag;
  hosted.control.WriteProperties(bag);
  EXPECT_EQ(bag.Find("NumOfIconBytes"), nullptr);
}

TEST(Persistence, SavingLoadingAndSavingAgainGivesTheSame) {
  PlacedControl first;
  first.Set("Caption", std::u16string(u"<b>\u4E16</b> &x"));
  first.Set("TextEffect", Long{3});
  first.Set("BackStyle", Long{0});
  first.Set("ImageKey", std::u16string(u"logo"));
  first.Set("ImageSize", Long{9});
  first.State().Padding = 4;
  first.State().Images->Add(u"logo", MakeImage(u"logo", Cell(4, 16, 16, 3), 0, 4));
  MemoryBag bag, again;
  first.control.WriteProperties(bag);
  HostedControl second;
  second.control.ReadProperties(bag);
  second.control.WriteProperties(again);
  ASSERT_EQ(Names(bag), Names(again));
  for (std::size_t i = 0; i < bag.entries.size(); ++i) {
    if (bag.entries[i].name == "Font") continue;  // an object, which the getter hands out as it is
    EXPECT_TRUE(bag.entries[i].value == again.entries[i].value) << bag.entries[i].name;
  }
}

// What the test of the system answers to the first who asks after a load, on a system of the family.
bool AnswerAfterLoad(bool user_mode) {
  const testing::FixedSystem windows_2000(5, 0);
  HostedControl hosted;
  hosted.host.ambient.user_mode = user_mode;
  MemoryBag bag;
  hosted.control.ReadProperties(bag);
  return IsWindows2000Family();
}

TEST(ReadProperties, TakesTheFalseFirstAnswerAboutTheSystemInRunMode) { EXPECT_TRUE(AnswerAfterLoad(true)); }

TEST(ReadProperties, LeavesTheFalseFirstAnswerAboutTheSystemToAPaintInADesigner) {
  EXPECT_FALSE(AnswerAfterLoad(false));
}

}  // namespace
}  // namespace marklet
