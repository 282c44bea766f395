// The control as an owner of images, and where it draws one.
#include <gtest/gtest.h>

#include <cstdio>

#include "support/fake_host.h"

namespace marklet {
namespace {

using testing::FakeHost;
using testing::HostedControl;
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
    normal->asked.clear();
    hover->asked.clear();
    hosted.control.RedrawNow();
  }
};

TEST_F(ImageFixture, IsAskedForItsSizeAtDepthFourOnTheButtonFace) {
  hosted.Set("ImageSize", Long{2});
  Show(u"normal");
  EXPECT_EQ(normal->asked, (Log{"size 2 depth 4 at 0,0 enabled 1 on 8000000F, 0"}));
  hosted.host.enabled = false;
  hosted.Set("ImageSize", Long{9});
  Redraw();
  EXPECT_EQ(normal->asked, (Log{"size 9 depth 4 at 0,0 enabled 0 on 8000000F, 0"}));
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
  hosted.State().Hover = true;
  Redraw();
  EXPECT_TRUE(normal->asked.empty());
  EXPECT_EQ(hover->asked.size(), 1u);
  Show(u"", u"hover");
  EXPECT_TRUE(hover->asked.empty()) << "without a normal image there is no hover image";
}

TEST_F(ImageFixture, HoverWithAnEmptyHoverKeyShowsTheNormalImage) {
  hosted.State().Hover = true;
  Show(u"normal");
  EXPECT_EQ(normal->asked.size(), 1u);
}

TEST_F(ImageFixture, AnUnknownHoverKeyShowsNothing) {
  hosted.State().Hover = true;
  Show(u"normal", u"unknown");
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
  EXPECT_FALSE(hosted.control.LoadIconImageFromFile(u"abc", u"key")) << "there is no such image";
  EXPECT_EQ(hosted.host.log, (Log{"PropertyChanged()"}));
}

TEST(LoadIconImageFromFile, RefusesAnEmptyKey) {
  HostedControl hosted;
  EXPECT_FALSE(hosted.control.LoadIconImageFromFile(u"a.png", u""));
  EXPECT_TRUE(hosted.host.log.empty());
}

TEST(LoadIconImageFromFile, RefusesAKeyThatStartsWithADigit) {
  HostedControl hosted;
  for (const char16_t* key : {u"1a", u"0", u"9 lives"}) {
    EXPECT_FALSE(hosted.control.LoadIconImageFromFile(u"a.png", key));
    EXPECT_TRUE(hosted.host.log.empty());
  }
}

TEST(LoadIconImageFromFile, AKeyMayStartWithABlankOrAnythingElse) {
  for (const char16_t* key : {u" 1", u"/1", u":1", u"a1"}) {
    HostedControl hosted;
    hosted.control.LoadIconImageFromFile(u"a.png", key);
    EXPECT_EQ(hosted.host.log, (Log{"PropertyChanged()"}));
  }
}

TEST(LoadIconImageFromFile, AKeyInUseIsRefusedWithoutTouchingTheList) {
  HostedControl hosted;
  hosted.State().Images->Add(u"Key", std::make_shared<AskedImage>());
  EXPECT_FALSE(hosted.control.LoadIconImageFromFile(u"a.png", u"KEY"));
  EXPECT_TRUE(hosted.host.log.empty());
  EXPECT_EQ(hosted.State().Images->Count(), 1);
}

TEST(LoadIconImageFromFile, DoesNotRedraw) {
  HostedControl hosted;
  hosted.Init();
  hosted.control.LoadIconImageFromFile(u"a.png", u"key");
  EXPECT_EQ(hosted.host.Paints(), 0);
}

TEST(LoadIconImageFromFile, MakesTheListWhenThereIsNone) {
  HostedControl hosted;
  hosted.State().Images.reset();
  hosted.control.LoadIconImageFromFile(u"a.png", u"key");
  EXPECT_TRUE(hosted.State().Images);
}

// --- The owner as the design-time page sees it ------------------------------------------------------------

TEST(ImageOwner, LoadingThroughTheInternalInterfaceGivesNothing) {
  HostedControl hosted;
  EXPECT_EQ(hosted.control.LoadIconByteImageFromDisk(u"a.png", u"key"), nullptr);
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

TEST(ImageOwner, CallsItselfALabel) {
  HostedControl hosted;
  EXPECT_EQ(hosted.control.GetFriendlyString(), u"label");
}

}  // namespace
}  // namespace marklet
