// The control as an owner of images, and where it draws one.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <utility>

#include "bitmaps/cdib24.h"
#include "images/image_sizes.h"
#include "images/png_pictures.h"
#include "support/fake_host.h"
#include "support/memory_bag.h"
#include "support/temporary_folder.h"

namespace marklet {
namespace {

using testing::FakeHost;
using testing::HostedControl;
using testing::PlacedControl;
using Log = FakeHost::Log;

// An image that draws nothing and remembers how it was asked to.
class AskedImage final : public CIconBytes {
 public:
  Log asked;
  void Render(HDC, Long size, Long depth, Long x, Long y, bool enabled, OLE_COLOR background,
              Long further) override {
    char line[96];
    std::snprintf(line, sizeof line, "size %d depth %d at %d,%d enabled %d on %08X, %d", size, depth, x, y,
                  enabled ? 1 : 0, background, further);
    asked.push_back(line);
  }
};

struct ImageFixture : ::testing::Test {
  HostedControl hosted;
  std::shared_ptr<AskedImage> normal = std::make_shared<AskedImage>();
  std::shared_ptr<AskedImage> hover = std::make_shared<AskedImage>();

  void SetUp() override {
    hosted.Init();
    hosted.State().Images->Add(u"normal", normal);
    hosted.State().Images->Add(u"hover", hover);
  }
  void Show(const char16_t* key, const char16_t* hover_key = u"") {
    hosted.State().ImageKey = key;
    hosted.State().ImageKeyhover = hover_key;
    Redraw();
  }
  void Redraw() {
    Forget();
    hosted.control.RedrawNow();
  }
  // The pointer comes in, or goes: what that draws is in `asked`.
  void Enter() {
    Forget();
    hosted.control.MouseMove(0, 0, 5, 5);
  }
  void Leave() {
    Forget();
    hosted.control.EndHover();
  }
  void Forget() {
    normal->asked.clear();
    hover->asked.clear();
  }
};

TEST_F(ImageFixture, IsAskedForItsSizeAtDepthFourOnTheButtonFace) {
  hosted.Set("ImageSize", Long{2});
  Show(u"normal");
  EXPECT_EQ(normal->asked, (Log{"size 2 depth 4 at 0,0 enabled 1 on 8000000F, 0"}));
  hosted.host.enabled = false;
  hosted.Set("ImageSize", Long{9});
  Redraw();
  EXPECT_EQ(normal->asked, (Log{"size 0 depth 4 at 0,0 enabled 0 on 8000000F, 0"}));
}

TEST_F(ImageFixture, LeftOfABorderSitsTwoPixelsInAndDown) {
  hosted.State().BorderStyle = 1;
  Show(u"normal");
  EXPECT_EQ(normal->asked, (Log{"size 0 depth 4 at 2,2 enabled 1 on 8000000F, 0"}));
}

TEST_F(ImageFixture, RightOfABorderSitsThreePixelsAndItsSizeFromTheEdge) {
  hosted.State().BorderStyle = 1;
  hosted.State().ImageAlignment = 1;
  Show(u"normal");
  EXPECT_EQ(normal->asked, (Log{"size 0 depth 4 at 81,2 enabled 1 on 8000000F, 0"}));  // 100 - 16 - 3
}

TEST_F(ImageFixture, NothingIsDrawnWithoutAKeyOrForAnUnknownOne) {
  Show(u"");
  EXPECT_TRUE(normal->asked.empty());
  Show(u"unknown");
  EXPECT_TRUE(normal->asked.empty());
  hosted.State().Images.reset();
  Show(u"normal");
  EXPECT_TRUE(normal->asked.empty());
}

TEST_F(ImageFixture, TheHoverKeyCountsOnlyWhileHoveringOnAControlWithANormalImage) {
  Show(u"normal", u"hover");
  EXPECT_EQ(normal->asked.size(), 1u);
  EXPECT_TRUE(hover->asked.empty());
  Enter();
  EXPECT_TRUE(normal->asked.empty());
  EXPECT_EQ(hover->asked.size(), 1u);
  Leave();
  EXPECT_EQ(normal->asked.size(), 1u);
  EXPECT_TRUE(hover->asked.empty());
  Enter();
  Show(u"", u"hover");
  EXPECT_TRUE(hover->asked.empty()) << "without a normal image there is no hover image";
}

TEST_F(ImageFixture, HoverWithAnEmptyHoverKeyDrawsTheNormalImageAnew) {
  Show(u"normal");
  Enter();
  EXPECT_EQ(normal->asked.size(), 1u);
  Leave();
  EXPECT_EQ(normal->asked.size(), 1u);
}

TEST_F(ImageFixture, AnUnknownHoverKeyShowsNothing) {
  Show(u"normal", u"unknown");
  EXPECT_EQ(normal->asked.size(), 1u);
  Enter();
  EXPECT_TRUE(normal->asked.empty());
}

// --- LoadIconImageFromFile --------------------------------------------------------------------------------

TEST(LoadIconImageFromFile, RefusesAFileNameOfTwoCharacters) {
  HostedControl hosted;
  EXPECT_FALSE(hosted.control.LoadIconImageFromFile(u"ab", u"key"));
  EXPECT_TRUE(hosted.host.log.empty());
}

TEST(LoadIconImageFromFile, ThreeCharactersPassTheLengthTest) {
  HostedControl hosted;
  EXPECT_TRUE(hosted.control.LoadIconImageFromFile(u"abc", u"key"))
      << "a file that isn't there is listed too";
  EXPECT_EQ(hosted.host.log, (Log{"PropertyChanged()"}));
}

TEST(LoadIconImageFromFile, RefusesAnEmptyKey) {
  HostedControl hosted;
  EXPECT_FALSE(hosted.control.LoadIconImageFromFile(u"no such file.bmp", u""));
  EXPECT_TRUE(hosted.host.log.empty());
}

TEST(LoadIconImageFromFile, RefusesAKeyThatStartsWithADigit) {
  HostedControl hosted;
  for (const char16_t* key : {u"1a", u"0", u"9 lives"}) {
    EXPECT_FALSE(hosted.control.LoadIconImageFromFile(u"no such file.bmp", key));
    EXPECT_TRUE(hosted.host.log.empty());
  }
}

TEST(LoadIconImageFromFile, AKeyMayStartWithABlankOrAnythingElse) {
  for (const char16_t* key : {u" 1", u"/1", u":1", u"a1"}) {
    HostedControl hosted;
    EXPECT_TRUE(hosted.control.LoadIconImageFromFile(u"no such file.bmp", key));
    EXPECT_EQ(hosted.host.log, (Log{"PropertyChanged()"}));
    EXPECT_EQ(hosted.State().Images->Item(1)->Key(), key) << "as it was given";
  }
}

TEST(LoadIconImageFromFile, AKeyInUseIsRefusedWithoutTouchingTheList) {
  HostedControl hosted;
  hosted.State().Images->Add(u"Key", std::make_shared<AskedImage>());
  EXPECT_FALSE(hosted.control.LoadIconImageFromFile(u"no such file.bmp", u"KEY"));
  EXPECT_TRUE(hosted.host.log.empty());
  EXPECT_EQ(hosted.State().Images->Count(), 1);
}

TEST(LoadIconImageFromFile, DoesNotRedraw) {
  PlacedControl hosted;
  hosted.control.LoadIconImageFromFile(u"no such file.bmp", u"key");
  EXPECT_EQ(hosted.host.Paints(), 0);
}

TEST(LoadIconImageFromFile, MakesTheListWhenThereIsNone) {
  HostedControl hosted;
  hosted.State().Images.reset();
  hosted.control.LoadIconImageFromFile(u"no such file.bmp", u"key");
  EXPECT_TRUE(hosted.State().Images);
}

TEST(LoadIconImageFromFile, TheHostMayTakeTheImageAwayWhenItHearsOfIt) {
  for (const bool all : {false, true}) {
    HostedControl hosted;
    bool taken = false;
    hosted.host.on_property_changed = [&](std::string_view) {
      if (std::exchange(taken, true)) return;
      if (all)
        hosted.State().Images.reset();
      else
        hosted.control.DeleteIconImage(u"key");
    };
    EXPECT_FALSE(hosted.control.LoadIconImageFromFile(u"no such file.bmp", u"key")) << "it isn't there";
    EXPECT_TRUE(taken);
    EXPECT_EQ(hosted.State().Images == nullptr, all);
    if (!all) {
      EXPECT_EQ(hosted.State().Images->Count(), 0);
    }
  }
}

TEST(LoadIconImageFromFile, ShowsTheImageAtTheNextRepaint) {
  const testing::TemporaryFolder folder;
  const auto png = pictures::Png(16, [](int, int) { return 0xFF203040u; });
  folder.Write("a.png", std::string(png.begin(), png.end()));
  PlacedControl hosted;
  hosted.Set("Caption", std::u16string());
  hosted.Set("ImageKey", std::u16string(u"key"));
  EXPECT_TRUE(hosted.control.LoadIconImageFromFile(folder.Path("a.png").u16string(), u"key"));
  EXPECT_NE(hosted.host.Pixel(5, 5), MakeRgb(0x20, 0x30, 0x40));
  hosted.control.RedrawNow();
  EXPECT_EQ(hosted.host.Pixel(5, 5), MakeRgb(0x20, 0x30, 0x40));
  EXPECT_NE(hosted.host.Pixel(16, 5), MakeRgb(0x20, 0x30, 0x40));
}

// --- Painted ----------------------------------------------------------------------------------------------

struct PaintedImages : ::testing::Test {
  HostedControl hosted;
  static constexpr COLORREF kNormal = MakeRgb(10, 20, 30), kHover = MakeRgb(200, 100, 50);

  void SetUp() override {
    hosted.Init();
    hosted.Set("Caption", std::u16string());
    Add(u"normal", kNormal);
    Add(u"hover", kHover);
    hosted.Set("ImageKey", std::u16string(u"normal"));
    hosted.Set("ImageKeyhover", std::u16string(u"hover"));
  }
  // An image without alpha, of every size.
  void Add(const char16_t* key, COLORREF colour) {
    const auto image = std::make_shared<CIconBytes>();
    image->PutKey(key);
    for (Long index = 0; index < CIconBytes::kSizes; ++index) {
      const Long size = SizeFromIndex(index);
      CDib24 surface;
      ASSERT_TRUE(surface.Create(size, size));
      surface.Clear(colour);
      image->StoreBits(index, 3, 24, 0, 0, size, size, surface.hDC());
    }
    hosted.State().Images->Add(key, image);
  }
  // The box that a colour takes on the control.
  RECT BoxOf(COLORREF colour) {
    RECT box = {1000, 1000, -1, -1};
    for (Long y = 0; y < 50; ++y)
      for (Long x = 0; x < 100; ++x)
        if (hosted.host.Pixel(x, y) == colour)
          box = {std::min(box.left, x), std::min(box.top, y), std::max(box.right, x),
                 std::max(box.bottom, y)};
    return box;
  }
};

TEST_F(PaintedImages, StandLeftRightAndCentred) {
  hosted.Set("ImageSize", Long{1});
  EXPECT_EQ(BoxOf(kNormal), (RECT{0, 0, 23, 23}));
  hosted.Set("ImageAlignment", Long{1});
  EXPECT_EQ(BoxOf(kNormal), (RECT{75, 0, 98, 23}));
  hosted.Set("ImageAlignment", Long{2});
  EXPECT_EQ(BoxOf(kNormal), (RECT{38, 0, 61, 23}));
  hosted.Set("BorderStyle", Long{1});
  EXPECT_EQ(BoxOf(kNormal), (RECT{38, 2, 61, 25}));
}

TEST_F(PaintedImages, OfASizeOutOfRangeAre16Pixels) {
  for (const Long size : {9, -1, 2147483647}) {
    hosted.Set("ImageSize", Long{3});
    hosted.Set("ImageSize", size);
    EXPECT_EQ(BoxOf(kNormal), (RECT{0, 0, 15, 15})) << size;
  }
}

TEST_F(PaintedImages, AreThoseOfTheHoverKeyInAPictureBuiltWhileThePointerIsInside) {
  EXPECT_EQ(BoxOf(kHover).right, -1);
  hosted.State().Hover = true;
  hosted.control.RedrawNow();
  EXPECT_EQ(BoxOf(kHover), (RECT{0, 0, 15, 15}));
  EXPECT_EQ(BoxOf(kNormal).right, -1);
}

TEST_F(PaintedImages, AreGreyOnADisabledControl) {
  hosted.Set("Enabled", false);
  EXPECT_EQ(BoxOf(kNormal).right, -1);
  EXPECT_EQ(hosted.host.Pixel(3, 3), MakeRgb(20, 20, 20));
}

TEST_F(PaintedImages, AreThereAgainAfterTheFormIsSavedAndLoaded) {
  testing::MemoryBag bag;
  hosted.control.WriteProperties(bag);
  HostedControl loaded;
  loaded.control.ReadProperties(bag);
  for (Long y = 0; y < 20; ++y)
    for (Long x = 0; x < 20; ++x)
      ASSERT_EQ(loaded.host.Pixel(x, y), hosted.host.Pixel(x, y)) << x << "," << y;
  EXPECT_EQ(loaded.host.Pixel(15, 15), kNormal);
}

TEST_F(PaintedImages, OfAListThatHoldsNothingRaiseNothing) {
  hosted.control.DestroyIconByteCollectionData();
  hosted.control.RedrawNow();
  EXPECT_EQ(BoxOf(kNormal).right, -1);
}

// --- The owner as the design-time page sees it ------------------------------------------------------------

TEST(ImageOwner, LoadingThroughTheInternalInterfaceGivesNothingEvenForAGoodFile) {
  const testing::TemporaryFolder folder;
  const auto png = pictures::Png(16, [](int, int) { return 0xFF203040u; });
  folder.Write("a.png", std::string(png.begin(), png.end()));
  const std::u16string file = folder.Path("a.png").u16string();
  HostedControl good;
  ASSERT_TRUE(good.control.LoadIconImageFromFile(file, u"key"));
  ASSERT_TRUE(good.State().Images->Item(u"key")->HasImage(0));
  HostedControl hosted;
  EXPECT_EQ(hosted.control.LoadIconByteImageFromDisk(file, u"key"), nullptr);
  EXPECT_TRUE(hosted.host.log.empty());
  EXPECT_EQ(hosted.State().Images->Count(), 0);
}

TEST(ImageOwner, DeletingTellsTheHostEvenWhenThereWasNoSuchImage) {
  HostedControl hosted;
  hosted.State().Images->Add(u"key", std::make_shared<AskedImage>());
  hosted.control.DeleteIconImage(u"other");
  EXPECT_EQ(hosted.host.TakeLog(), (Log{"PropertyChanged()"}));
  EXPECT_EQ(hosted.State().Images->Count(), 1);
  hosted.control.DeleteIconImage(u"KEY");
  EXPECT_EQ(hosted.host.TakeLog(), (Log{"PropertyChanged()"}));
  EXPECT_EQ(hosted.State().Images->Count(), 0);
  hosted.State().Images.reset();
  hosted.control.DeleteIconImage(u"key");
  EXPECT_TRUE(hosted.host.log.empty()) << "without a list nothing happens";
}

TEST(ImageOwner, DestroyingLeavesANewEmptyList) {
  HostedControl hosted;
  const auto before = hosted.control.GetIconByteCollection();
  before->Add(u"key", std::make_shared<AskedImage>());
  hosted.control.DestroyIconByteCollectionData();
  const auto after = hosted.control.GetIconByteCollection();
  ASSERT_TRUE(after);
  EXPECT_NE(after, before);
  EXPECT_EQ(after->Count(), 0);
  EXPECT_TRUE(hosted.host.log.empty());
}

// --- The hidden list --------------------------------------------------------------------------------------

TEST(HiddenList, IsThereAndEmptyFromTheStart) {
  HostedControl hosted;
  ASSERT_NE(hosted.control.InternalAlphaImageList1().IconCollection(), nullptr);
  EXPECT_EQ(hosted.control.InternalAlphaImageList1().IconCollection()->Count(), 0);
  EXPECT_TRUE(hosted.host.log.empty());
}

TEST(HiddenList, IsAnotherThanTheControlsOwn) {
  const testing::TemporaryFolder folder;
  const auto png = pictures::Png(16, [](int, int) { return 0xFF203040u; });
  folder.Write("a.png", std::string(png.begin(), png.end()));
  const std::u16string file = folder.Path("a.png").u16string();
  HostedControl hosted;
  InternalAlphaImageList& list = hosted.control.InternalAlphaImageList1();
  ASSERT_TRUE(hosted.control.LoadIconImageFromFile(file, u"own"));
  list.LoadImageIntoList(file, u"hidden");
  EXPECT_EQ(list.GetIcoBytes(u"own"), nullptr);
  EXPECT_EQ(hosted.State().Images->Item(u"hidden"), nullptr);
  EXPECT_EQ(hosted.host.TakeLog(), (Log{"PropertyChanged()", "PropertyChanged()"}))
      << "the host hears of both";
  hosted.control.DestroyIconByteCollectionData();
  EXPECT_EQ(list.IconCollection()->Count(), 1);
}

TEST(HiddenList, StandsInNoSavedForm) {
  PlacedControl hosted;
  testing::MemoryBag without, with;
  ASSERT_TRUE(hosted.control.WriteProperties(without));
  hosted.control.InternalAlphaImageList1().LoadImageIntoList(u"no such file.bmp", u"hidden");
  ASSERT_TRUE(hosted.control.WriteProperties(with));
  ASSERT_EQ(with.entries.size(), without.entries.size());
  for (std::size_t i = 0; i < with.entries.size(); ++i)
    EXPECT_EQ(with.entries[i].name, without.entries[i].name);
  ASSERT_TRUE(hosted.control.ReadProperties(with));
  EXPECT_NE(hosted.control.InternalAlphaImageList1().GetIcoBytes(u"hidden"), nullptr)
      << "nor does a form empty it";
}

TEST(HiddenList, HasTheThemeColoursOfItsControl) {
  HostedControl hosted;
  EXPECT_EQ(hosted.control.InternalAlphaImageList1().ThemeColors(), hosted.control.GetThemeColors());
}

TEST(ImageOwner, CallsItselfALabel) {
  HostedControl hosted;
  EXPECT_EQ(hosted.control.GetFriendlyString(), u"label");
}

}  // namespace
}  // namespace marklet
