// The hidden list of images, and what owners of images have in common.
#include "imagelist/internal_alpha_image_list.h"

#include <gtest/gtest.h>

#include <string>

#include "imagelist/supports_alpha_image.h"
#include "images/png_pictures.h"
#include "platform/system.h"
#include "support/fake_host.h"
#include "support/memory_bag.h"
#include "support/temporary_folder.h"

namespace marklet {
namespace {

using testing::FakeHost;
using testing::MemoryBag;
using Log = FakeHost::Log;

struct AlphaImageList : ::testing::Test {
  FakeHost host;
  InternalAlphaImageList list{host};
  testing::TemporaryFolder folder;

  std::u16string Png(const std::string& name, int size = 16, int height = 0) {
    const auto png = pictures::Png(
        size, [](int, int) { return 0xFF203040u; }, true, height);
    folder.Write(name, std::string(png.begin(), png.end()));
    return folder.Path(name).u16string();
  }
};

TEST_F(AlphaImageList, HasNoListBeforeItsFirstUse) {
  EXPECT_EQ(list.IconCollection(), nullptr);
  EXPECT_EQ(list.GetIcoBytes(u"key"), nullptr);
  list.RemoveIcon(u"key");
  EXPECT_EQ(host.log, Log{});
  list.InitProperties();
  ASSERT_NE(list.IconCollection(), nullptr);
  EXPECT_EQ(list.IconCollection()->Count(), 0);
}

TEST_F(AlphaImageList, LoadsImagesAndKeepsTheNameOfTheLast) {
  const ImageRef a = list.LoadImageIntoList(Png("a.png"), u"a");
  const ImageRef b = list.LoadImageIntoList(Png("b.png", 32), u"b");
  EXPECT_EQ(host.TakeLog(), (Log{"PropertyChanged()", "PropertyChanged()"}));
  EXPECT_EQ(list.IconCollection()->Count(), 2);
  EXPECT_EQ(list.GetIcoBytes(u"A"), a);
  EXPECT_EQ(list.GetIcoBytes(u"b"), b);
  EXPECT_EQ(list.GetIcoBytes(u"c"), nullptr);
  EXPECT_EQ(b->Key(), u"b");
  EXPECT_TRUE(b->HasImage32());
  EXPECT_EQ(list.FileName(), folder.Path("b.png").u16string());
}

TEST_F(AlphaImageList, ListsAnImageWhoseFileHoldsNone) {
  EXPECT_NE(list.LoadImageIntoList(u"no such file.bmp", u"missing"), nullptr);
  const ImageRef image = list.GetIcoBytes(u"missing");
  ASSERT_NE(image, nullptr);
  for (Long size = 0; size < 8; ++size) EXPECT_FALSE(image->HasImage(size));
}

TEST_F(AlphaImageList, ReturnsButDoesNotListAnImageWhoseKeyIsTaken) {
  const ImageRef first = list.LoadImageIntoList(Png("a.png"), u"key");
  const ImageRef second = list.LoadImageIntoList(Png("b.png"), u"KEY");
  EXPECT_NE(second, nullptr);
  EXPECT_NE(second, first);
  EXPECT_EQ(second->Key(), u"KEY");
  EXPECT_EQ(list.IconCollection()->Count(), 1);
  EXPECT_EQ(list.GetIcoBytes(u"key"), first);
  EXPECT_EQ(host.log.size(), 2u) << "the host hears of it all the same";
}

TEST_F(AlphaImageList, KeepsKeysAsTheyAreGiven) {
  list.LoadImageIntoList(Png("a.png"), u" 1 ");
  EXPECT_EQ(list.GetIcoBytes(u"1"), nullptr);
  EXPECT_NE(list.GetIcoBytes(u" 1 "), nullptr);
}

TEST_F(AlphaImageList, TellsTheHostOfEveryRemoval) {
  list.LoadImageIntoList(Png("a.png"), u"a");
  host.TakeLog();
  list.RemoveIcon(u"b");
  EXPECT_EQ(host.TakeLog(), (Log{"PropertyChanged()"}));
  EXPECT_EQ(list.IconCollection()->Count(), 1);
  list.RemoveIcon(u"A");
  EXPECT_EQ(host.TakeLog(), (Log{"PropertyChanged()"}));
  EXPECT_EQ(list.IconCollection()->Count(), 0);
}

TEST_F(AlphaImageList, IsReplacedWhenItIsCleared) {
  list.LoadImageIntoList(Png("a.png"), u"a");
  const ImagesRef former = list.IconCollection();
  host.TakeLog();
  list.ClearIcons();
  EXPECT_EQ(list.IconCollection()->Count(), 0);
  EXPECT_EQ(former->Count(), 1);
  EXPECT_EQ(host.log, Log{});
}

TEST_F(AlphaImageList, ComesBackFromASavedForm) {
  list.LoadImageIntoList(Png("a.png"), u"a");
  list.LoadImageIntoList(Png("b.png", 24), u"b");
  MemoryBag bag;
  list.WriteProperties(bag);
  EXPECT_EQ(bag.entries.size(), 5u) << "the count, and a key and one entry each";
  InternalAlphaImageList loaded(host);
  loaded.ReadProperties(bag);
  ASSERT_EQ(loaded.IconCollection()->Count(), 2);
  EXPECT_EQ(loaded.GetIcoBytes(u"b")->GetBytes(1, 4), list.GetIcoBytes(u"b")->GetBytes(1, 4));
}

TEST_F(AlphaImageList, ThatIsEmptySavesANumberOfZero) {
  MemoryBag bag;
  list.WriteProperties(bag);
  EXPECT_TRUE(bag.entries.empty()) << "no list at all";
  list.InitProperties();
  list.WriteProperties(bag);
  ASSERT_EQ(bag.entries.size(), 1u);
  EXPECT_EQ(bag.entries[0].name, "NumOfIconBytes");
  EXPECT_EQ(bag.entries[0].value, BagValue(Long{0}));
}

TEST_F(AlphaImageList, OutlivesAHostThatTakesImagesAwayWhenItHearsOfThem) {
  host.on_property_changed = [this](std::string_view) { list.ClearIcons(); };
  EXPECT_NE(list.LoadImageIntoList(Png("a.png"), u"a"), nullptr);
  EXPECT_EQ(list.IconCollection()->Count(), 0);
}

TEST_F(AlphaImageList, ReadingReplacesTheListWhole) {
  list.LoadImageIntoList(Png("a.png"), u"a");
  const ImagesRef former = list.IconCollection();
  MemoryBag empty;
  list.ReadProperties(empty);
  ASSERT_NE(list.IconCollection(), nullptr);
  EXPECT_NE(list.IconCollection(), former);
  EXPECT_EQ(list.IconCollection()->Count(), 0);
}

TEST_F(AlphaImageList, HasTheThemeColoursOfItsDesktop) {
  const testing::FixedSystem system(5, 1);
  Configuration().system_colours[COLOR_BTNFACE] = 0x123456;
  const ThemeColours colours = list.ThemeColors();
  EXPECT_EQ(colours, OwnerThemeColours(host));
  EXPECT_EQ(colours[0], 0x123456u) << "computed: no scheme looks like that";
}

TEST(SupportsAlphaImage, DoesNothingOfItsOwn) {
  ISupportsAlphaImage nothing;
  nothing.DestroyIconByteCollectionData();
  nothing.DeleteIconImage(u"key");
  EXPECT_EQ(nothing.LoadIconByteImageFromDisk(u"a.png", u"key"), nullptr);
  EXPECT_EQ(nothing.GetIconByteCollection(), nullptr);
  EXPECT_EQ(nothing.GetFriendlyString(), u"");
}

TEST(SupportsAlphaImage, IsHowTheControlIsReached) {
  testing::HostedControl hosted;
  ISupportsAlphaImage& owner = hosted.control;
  EXPECT_EQ(owner.GetFriendlyString(), u"label");
  EXPECT_EQ(owner.GetIconByteCollection(), hosted.State().Images);
  EXPECT_EQ(owner.LoadIconByteImageFromDisk(u"a.png", u"key"), nullptr);
  owner.DestroyIconByteCollectionData();
  EXPECT_EQ(owner.GetIconByteCollection()->Count(), 0);
}

}  // namespace
}  // namespace marklet
