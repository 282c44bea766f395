// The flows of the page on which images are added, looked through and deleted.
#include "imagelist/prp_image.h"

#include <gtest/gtest.h>

#include <limits>
#include <stdexcept>

#include "imagelist/fake_page.h"
#include "images/png_pictures.h"
#include "support/temporary_folder.h"

namespace marklet {
namespace {

using namespace std::string_view_literals;
using testing::FakePageView;
using testing::HiddenObject;
using testing::LabelObject;
using Boxes = std::vector<std::u16string>;

constexpr auto kRefusal = u"Keys can not start with a numeric character.";
constexpr auto kQuestion = u"Are you sure you want to delete all assigned icons?|Delete All";

class ImagePage : public ::testing::Test {
 protected:
  ImagePage() { view_.page = &page_; }

  // Selects a control with so many images, "image1" and on.
  std::shared_ptr<LabelObject> SelectLabel(int images = 0) {
    auto label = std::make_shared<LabelObject>();
    Fill(label->Images(), images);
    Select(label);
    return label;
  }
  std::shared_ptr<HiddenObject> SelectHidden(int images = 0) {
    auto hidden = std::make_shared<HiddenObject>();
    Fill(*hidden->list.IconCollection(), images);
    Select(hidden);
    return hidden;
  }
  void Select(std::shared_ptr<PageObject> object) {
    view_.selected = std::move(object);
    page_.SelectionChanged();
  }
  static void Fill(ImageCollection& list, int images) {
    for (int i = 1; i <= images; ++i) {
      const auto number = std::to_string(i);
      const std::u16string key = u"image" + std::u16string(number.begin(), number.end());
      const auto image = std::make_shared<CIconBytes>();
      image->PutKey(key);
      list.Add(key, image);
    }
  }
  // A press on the strip, in pixels.
  void Press(float x) { page_.StripPressed(x * 15); }
  bool IsOn(PageButton button) { return view_.enabled[button]; }
  std::u16string Png(const std::string& name) {
    const auto png = pictures::Png(16, [](int, int) { return 0xFF203040u; });
    folder_.Write(name, std::string(png.begin(), png.end()));
    return folder_.Path(name).u16string();
  }

  FakePageView view_;
  prpImage page_{view_};
  testing::TemporaryFolder folder_;
};

// --- The key ----------------------------------------------------------------------------------------------

TEST_F(ImagePage, AllowsBrowsingOnlyWithAKey) {
  SelectLabel();
  view_.Type(u"a");
  EXPECT_TRUE(IsOn(PageButton::Browse));
  for (const char16_t* no_key : {u"   ", u"", u"1", u"0a", u"9"}) {
    view_.Type(u"a");
    view_.Type(no_key);
    EXPECT_FALSE(IsOn(PageButton::Browse)) << view_.key.size();
  }
  for (const char16_t* key : {u"a1", u"-1", u"\t", u".5", u"\uFF11"}) {
    view_.Type(u"");
    view_.Type(key);
    EXPECT_TRUE(IsOn(PageButton::Browse)) << static_cast<int>(key[0]);
  }
}

TEST_F(ImagePage, AllowsBrowsingWithADigitAfterABlankAndRefusesTheKeyThen) {
  const auto label = SelectLabel();
  view_.Type(u" 1");
  EXPECT_TRUE(IsOn(PageButton::Browse));
  view_.dialog.file = Png("a.png");
  page_.Browse();
  EXPECT_EQ(view_.log, Boxes{kRefusal});
  ASSERT_EQ(label->Images().Count(), 1) << "added under an empty key";
  EXPECT_EQ(label->Images().Item(1)->Key(), u"");
  EXPECT_NE(label->Images().Item(u""), nullptr);
}

// --- Browsing ---------------------------------------------------------------------------------------------

TEST_F(ImagePage, AddsTheChosenFileUnderTheTrimmedKey) {
  const auto label = SelectLabel(3);
  view_.Type(u"  my key ");
  Press(6);
  view_.Type(u"  my key ");
  view_.dialog.file = Png("a.png");
  label->hosted.host.TakeLog();
  page_.Browse();
  ASSERT_EQ(label->Images().Count(), 4);
  const ImageRef added = label->Images().Item(u"MY KEY");
  ASSERT_NE(added, nullptr);
  EXPECT_EQ(added->Key(), u"my key");
  EXPECT_TRUE(added->HasImage16());
  EXPECT_EQ(label->hosted.host.TakeLog(), (testing::FakeHost::Log{"PropertyChanged()"}));
  EXPECT_EQ(page_.Fields().FileName, view_.dialog.file);
  EXPECT_EQ(page_.Fields().SelectedX, 0);
  EXPECT_EQ(view_.key, u"");
  EXPECT_FALSE(IsOn(PageButton::Browse));
  EXPECT_TRUE(view_.changed);
  EXPECT_EQ(view_.log, Boxes{});
}

TEST_F(ImagePage, OpensTheDialogOverItsButtonWithTheFilter) {
  SelectLabel();
  page_.Browse();
  const OpenFileRecord& seen = view_.dialog.seen;
  EXPECT_EQ(seen.owner, reinterpret_cast<HWND>(0x20));
  EXPECT_EQ(seen.title, u"Select an image to add...");
  EXPECT_EQ(seen.default_extension, u"ICO");
  EXPECT_EQ(seen.initial_directory, u"");
  EXPECT_EQ(seen.flags, 0x1000u);
  EXPECT_EQ(seen.filter_index, 1);
  EXPECT_EQ(seen.file, std::u16string(260, u'\0'));
  EXPECT_EQ(seen.file_title, std::u16string(260, u'\0'));
  EXPECT_EQ(seen.filter,
            u"Common image files (*.ico,*.bmp,*.png,*.gif,*.jpg,*.cur)\0"
            u"*.bmp;*.gif;*.jpg;*.ico;*.png;*.cur\0"
            u"Icon files (*.ico)\0*.ico\0PNG files (*.png)\0*.png\0Bitmap files (*.bmp)\0*.bmp\0"
            u"GIF files (*.gif)\0*.gif\0JPG files (*.jpg)\0*.jpg\0Cursor files (*.cur)\0*.cur\0"
            u"All Files (*.*)\0*.*\0\0\0"sv);
}

TEST_F(ImagePage, KeepsKeyAndFlagWhenTheDialogIsCancelled) {
  const auto label = SelectLabel();
  view_.answer_yes = true;
  page_.DeleteAll();
  view_.changed = false;
  view_.Type(u"key");
  page_.Browse();
  EXPECT_EQ(label->Images().Count(), 0);
  EXPECT_EQ(view_.key, u"key");
  EXPECT_TRUE(IsOn(PageButton::Browse));
  EXPECT_FALSE(view_.changed);
  EXPECT_TRUE(page_.Fields().DeleteAllPending);
  EXPECT_EQ(page_.Fields().FileName, u"");
}

TEST_F(ImagePage, NamesTheImageAfterItsFileWhenThereIsNoKey) {
  const auto label = SelectLabel();
  view_.dialog.file = Png("a.png");
  view_.Type(u"  ");
  page_.Browse();
  ASSERT_EQ(label->Images().Count(), 1);
  EXPECT_EQ(label->Images().Item(1)->Key(), u"key_" + view_.dialog.file);
}

TEST_F(ImagePage, DropsAnImageWhoseKeyIsTakenWithoutAWord) {
  const auto label = SelectLabel(1);
  const ImageRef first = label->Images().Item(1);
  view_.dialog.file = Png("a.png");
  view_.Type(u"IMAGE1");
  page_.Browse();
  EXPECT_EQ(label->Images().Count(), 1);
  EXPECT_EQ(label->Images().Item(1), first);
  EXPECT_EQ(view_.log, Boxes{});
  EXPECT_TRUE(view_.changed);
}

TEST_F(ImagePage, KeepsAPlaceForAFileThatCantBeLoaded) {
  const auto label = SelectLabel();
  view_.dialog.file = u"no such file.bmp";
  view_.Type(u"missing");
  page_.Browse();
  ASSERT_EQ(label->Images().Count(), 1);
  Press(6);
  EXPECT_EQ(view_.key, u"missing");
}

TEST_F(ImagePage, AddsToAHiddenListToo) {
  const auto hidden = SelectHidden();
  view_.dialog.file = Png("a.png");
  view_.Type(u"key");
  page_.Browse();
  ASSERT_NE(hidden->list.GetIcoBytes(u"key"), nullptr);
  EXPECT_EQ(hidden->list.FileName(), view_.dialog.file);
  EXPECT_TRUE(view_.changed);
}

TEST_F(ImagePage, AddsNothingToAnOwnerOfAnotherKind) {
  struct Other final : ISupportsAlphaImage {
    std::u16string word = u"Label";
    std::u16string GetFriendlyString() const override { return word; }
    ImageRef LoadIconByteImageFromDisk(std::u16string_view, std::u16string_view) override {
      ADD_FAILURE() << "this way isn't taken";
      return nullptr;
    }
  } other;
  Select(std::make_shared<testing::OwnerObject>(other));
  view_.dialog.file = Png("a.png");
  view_.Type(u"1");
  page_.Browse();
  EXPECT_EQ(view_.log, Boxes{kRefusal}) << "the key is asked for first";
  EXPECT_TRUE(view_.changed);
  EXPECT_EQ(view_.key, u"");
}

TEST_F(ImagePage, ForgetsAPendingDeletionWhenAnImageIsChosen) {
  const auto label = SelectLabel();
  view_.answer_yes = true;
  page_.DeleteAll();
  view_.dialog.file = Png("a.png");
  view_.Type(u"key");
  page_.Browse();
  page_.ApplyChanges();
  EXPECT_FALSE(page_.Fields().DeleteAllPending);
  EXPECT_EQ(label->Images().Count(), 1);
}

// --- Apply and Delete All ---------------------------------------------------------------------------------

TEST_F(ImagePage, DeletesAllAtOnceAndAgainOnEveryApply) {
  const auto label = SelectLabel(2);
  view_.answer_yes = true;
  page_.DeleteAll();
  EXPECT_EQ(view_.log, Boxes{kQuestion});
  EXPECT_EQ(label->Images().Count(), 0);
  EXPECT_TRUE(view_.changed);
  EXPECT_TRUE(page_.Fields().DeleteAllPending);
  Fill(label->Images(), 1);
  page_.ApplyChanges();
  EXPECT_EQ(label->Images().Count(), 0) << "the flag stayed";
}

TEST_F(ImagePage, ChangesNothingWhenDeleteAllIsRefused) {
  const auto label = SelectLabel(2);
  const int strips = view_.strips;
  page_.DeleteAll();
  EXPECT_EQ(view_.log, Boxes{kQuestion});
  EXPECT_EQ(label->Images().Count(), 2);
  EXPECT_FALSE(view_.changed);
  EXPECT_FALSE(page_.Fields().DeleteAllPending);
  EXPECT_EQ(view_.strips, strips + 1) << "but it is painted again";
}

TEST_F(ImagePage, AppliesNothingToAControlUnlessADeletionIsPending) {
  const auto label = SelectLabel(2);
  page_.ApplyChanges();
  EXPECT_EQ(label->Images().Count(), 2);
}

TEST_F(ImagePage, EmptiesAHiddenListOnEveryApply) {
  const auto hidden = SelectHidden(2);
  page_.ApplyChanges();
  ASSERT_NE(hidden->list.IconCollection(), nullptr);
  EXPECT_EQ(hidden->list.IconCollection()->Count(), 0);
}

TEST_F(ImagePage, DeletesAllOfAHiddenList) {
  const auto hidden = SelectHidden(2);
  view_.answer_yes = true;
  page_.DeleteAll();
  EXPECT_EQ(hidden->list.IconCollection()->Count(), 0);
}

// --- The strip --------------------------------------------------------------------------------------------

TEST_F(ImagePage, TurnsPagesOfFifteen) {
  SelectLabel(15);
  EXPECT_FALSE(IsOn(PageButton::Next));
  EXPECT_FALSE(IsOn(PageButton::Previous));
  const auto label = SelectLabel(16);
  EXPECT_TRUE(IsOn(PageButton::Next));
  Press(6 + 14 * 21);
  EXPECT_EQ(view_.key, u"image15");
  page_.Navigate(PageButton::Next);
  EXPECT_FALSE(IsOn(PageButton::Next));
  EXPECT_TRUE(IsOn(PageButton::Previous));
  EXPECT_FALSE(IsOn(PageButton::DeleteIcon));
  EXPECT_EQ(page_.Fields().SelectedX, 0);
  EXPECT_EQ(view_.key, u"");
  EXPECT_EQ(page_.Fields().CurrentKey, u"image15") << "kept";
  Press(6);
  EXPECT_EQ(view_.key, u"image16");
  view_.Type(u"");
  Press(27);
  EXPECT_EQ(view_.key, u"") << "there is only one image";
  page_.Navigate(PageButton::Previous);
  EXPECT_FALSE(IsOn(PageButton::Previous));
  EXPECT_EQ(page_.Fields().PreviewPage, 0);
}

TEST_F(ImagePage, StopsAtTheFirstPageButNotAtTheLast) {
  SelectLabel(1);
  page_.Navigate(PageButton::Previous);
  EXPECT_EQ(page_.Fields().PreviewPage, 0);
  page_.Navigate(PageButton::Next);
  page_.Navigate(PageButton::Next);
  EXPECT_EQ(page_.Fields().PreviewPage, 2);
  EXPECT_FALSE(IsOn(PageButton::Next));
  EXPECT_TRUE(IsOn(PageButton::Previous));
}

TEST_F(ImagePage, StaysOnItsPageWhenAnotherObjectIsSelected) {
  SelectLabel(31);
  page_.Navigate(PageButton::Next);
  SelectLabel(31);
  EXPECT_EQ(page_.Fields().PreviewPage, 1);
  Press(6);
  EXPECT_EQ(view_.key, u"image16");
}

TEST_F(ImagePage, SelectsByThePlaceOfThePress) {
  SelectLabel(3);
  const struct {
    float x;
    const char16_t* key;
  } kPresses[] = {{0, u""},        {5, u""},        {6, u"image1"},  {26, u"image1"},     {26.9f, u"image1"},
                  {27, u"image2"}, {47, u"image2"}, {48, u"image3"}, {68.99f, u"image3"}, {69, u""},
                  {-6, u""}};
  for (const auto& press : kPresses) {
    view_.Type(u"");
    Press(press.x);
    EXPECT_EQ(view_.key, press.key) << press.x;
  }
}

TEST_F(ImagePage, MeasuresThePressInTheScreensTwips) {
  SelectLabel(2);
  view_.twips_per_pixel = 7.5;
  page_.StripPressed(27 * 7.5f);
  EXPECT_EQ(page_.Fields().SelectedX, 27);
  page_.StripPressed(-1);
  EXPECT_EQ(page_.Fields().SelectedX, 0) << "truncated";
  page_.StripPressed(std::numeric_limits<float>::max());
  EXPECT_EQ(page_.Fields().SelectedX, std::numeric_limits<Long>::max());
  view_.twips_per_pixel = 0;
  page_.StripPressed(15);
  EXPECT_EQ(page_.Fields().SelectedX, std::numeric_limits<Long>::max()) << "the division fails";
}

TEST_F(ImagePage, TakesKeyAndDeletionFromTheSelectedImage) {
  SelectLabel(2);
  EXPECT_FALSE(IsOn(PageButton::DeleteIcon));
  Press(30);
  EXPECT_TRUE(IsOn(PageButton::DeleteIcon));
  EXPECT_EQ(view_.key, u"image2");
  EXPECT_EQ(page_.Fields().CurrentKey, u"image2");
  EXPECT_TRUE(IsOn(PageButton::Browse));
}

TEST_F(ImagePage, KeepsKeyAndDeletionOnAPressOnAnEmptyPlace) {
  SelectLabel(2);
  Press(30);
  Press(200);
  EXPECT_EQ(page_.Fields().SelectedX, 200);
  EXPECT_EQ(view_.key, u"image2");
  EXPECT_EQ(page_.Fields().CurrentKey, u"image2");
  EXPECT_TRUE(IsOn(PageButton::DeleteIcon));
}

TEST_F(ImagePage, AllowsDeletingAllOfAnyListThatIsThere) {
  const auto label = SelectLabel(0);
  EXPECT_TRUE(IsOn(PageButton::DeleteAll)) << "an empty one too";
  label->hosted.State().Images = nullptr;
  page_.ShowPreview();
  EXPECT_FALSE(IsOn(PageButton::DeleteAll));
}

TEST_F(ImagePage, GivesItemsThatAreNoneNoPlace) {
  const auto label = SelectLabel(1);
  label->Images().Add(u"none", nullptr);
  Fill(label->Images(), 2);
  Press(27);
  EXPECT_EQ(view_.key, u"image2");
}

// --- Deleting ---------------------------------------------------------------------------------------------

TEST_F(ImagePage, DeletesTheSelectedImageAndTurnsBrowsingOff) {
  const auto label = SelectLabel(3);
  Press(27);
  label->hosted.host.TakeLog();
  page_.DeleteIcon();
  EXPECT_EQ(label->Images().Count(), 2);
  EXPECT_EQ(label->Images().Item(u"image2"), nullptr);
  EXPECT_EQ(label->hosted.host.TakeLog(), (testing::FakeHost::Log{"PropertyChanged()"}));
  EXPECT_EQ(view_.key, u"0");
  EXPECT_FALSE(IsOn(PageButton::Browse));
  EXPECT_FALSE(IsOn(PageButton::DeleteIcon));
  EXPECT_EQ(page_.Fields().SelectedX, 0);
  EXPECT_EQ(page_.Fields().CurrentKey, u"image2") << "kept";
  EXPECT_FALSE(view_.changed);
}

TEST_F(ImagePage, DeletesByTheKeyItRemembersAndNotByTheTypedOne) {
  const auto label = SelectLabel(3);
  Press(6);
  view_.Type(u"image3");
  page_.DeleteIcon();
  EXPECT_EQ(label->Images().Item(u"image1"), nullptr);
  EXPECT_EQ(label->Images().Count(), 2);
  Press(6);
  EXPECT_EQ(view_.key, u"image2");
}

TEST_F(ImagePage, KeepsTheImageOfAHiddenList) {
  const auto hidden = SelectHidden(2);
  Press(6);
  EXPECT_TRUE(IsOn(PageButton::DeleteIcon));
  page_.DeleteIcon();
  EXPECT_EQ(hidden->list.IconCollection()->Count(), 2);
  EXPECT_EQ(hidden->host.log, testing::FakeHost::Log{});
  EXPECT_EQ(view_.key, u"0");
  EXPECT_FALSE(IsOn(PageButton::DeleteIcon));
}

TEST_F(ImagePage, AsksForNoDeletionBeforeAnyImageWasSelected) {
  const auto label = SelectLabel(2);
  label->hosted.host.TakeLog();
  page_.DeleteIcon();
  EXPECT_EQ(label->Images().Count(), 2);
  EXPECT_EQ(label->hosted.host.log, testing::FakeHost::Log{});
  EXPECT_EQ(view_.key, u"0") << "all the same";
}

// --- Hostile objects and windows --------------------------------------------------------------------------

TEST_F(ImagePage, IsBlankAndInertForAnObjectThatOwnsNoImages) {
  Select(std::make_shared<testing::NoOwner>());
  for (const PageButton button : {PageButton::Next, PageButton::Previous, PageButton::DeleteAll,
                                  PageButton::DeleteIcon, PageButton::Browse})
    EXPECT_FALSE(IsOn(button));
  view_.answer_yes = true;
  view_.dialog.file = Png("a.png");
  view_.Type(u"1");
  page_.Browse();
  page_.DeleteAll();
  page_.DeleteIcon();
  Press(6);
  EXPECT_EQ(view_.log, Boxes{kQuestion}) << "no key is asked for";
  EXPECT_FALSE(IsOn(PageButton::DeleteIcon));
}

TEST_F(ImagePage, DoesNothingWithoutASelection) {
  SelectLabel(16);
  Select(nullptr);
  EXPECT_EQ(page_.Fields().SelectedControl, nullptr) << "the control is held only as long as it is selected";
  page_.ApplyChanges();
  page_.DeleteIcon();
  Press(6);
  EXPECT_FALSE(IsOn(PageButton::Next));
  EXPECT_FALSE(IsOn(PageButton::DeleteIcon));
}

// Fails every call.
struct Failing final : ISupportsAlphaImage, PageObject {
  bool gives_itself = true;
  ISupportsAlphaImage* AlphaImages() override {
    if (!gives_itself) throw std::runtime_error("AlphaImages");
    return this;
  }
  InternalAlphaImageList* HiddenList() override { throw std::runtime_error("HiddenList"); }
  ImageRef LoadImageIntoLabel(std::u16string_view, std::u16string_view) override {
    throw std::runtime_error("LoadImageIntoLabel");
  }
  void DestroyIconByteCollectionData() override { throw std::runtime_error("Destroy"); }
  void DeleteIconImage(std::u16string_view) override { throw std::runtime_error("Delete"); }
  std::shared_ptr<ImageCollection> GetIconByteCollection() const override {
    throw std::runtime_error("GetIconByteCollection");
  }
  std::u16string GetFriendlyString() const override { throw std::runtime_error("GetFriendlyString"); }
};

TEST_F(ImagePage, SurvivesAnObjectThatFailsEachCall) {
  for (const bool gives_itself : {true, false}) {
    const auto failing = std::make_shared<Failing>();
    failing->gives_itself = gives_itself;
    view_.Type(u"");
    view_.changed = false;
    Select(failing);
    EXPECT_FALSE(IsOn(PageButton::DeleteAll)) << "no list";
    view_.Type(u"key");
    view_.dialog.file = Png("a.png");
    page_.Browse();
    EXPECT_TRUE(view_.changed);
    EXPECT_EQ(view_.key, u"");
    view_.answer_yes = true;
    page_.DeleteAll();
    page_.DeleteIcon();
    page_.ApplyChanges();
    EXPECT_EQ(view_.key, u"0");
  }
}

TEST_F(ImagePage, SurvivesAWindowThatFailsEachCall) {
  struct FailingView final : ImagePageView {
    [[noreturn]] static void Fail() { throw std::runtime_error("view"); }
    std::shared_ptr<PageObject> SelectedControl() override { Fail(); }
    std::u16string KeyText() override { Fail(); }
    void PutKeyText(std::u16string) override { Fail(); }
    void Enable(PageButton, bool) override { Fail(); }
    SIZE StripSize() override { Fail(); }
    void StripChanged() override { Fail(); }
    double TwipsPerPixelX() override { Fail(); }
    HWND BrowseWindow() override { Fail(); }
    OpenFileDialog& Dialog() override { Fail(); }
    void Inform(std::u16string_view) override { Fail(); }
    bool Ask(std::u16string_view, std::u16string_view) override { Fail(); }
    void PutChanged(bool) override { Fail(); }
  } view;
  prpImage page(view);
  page.SelectionChanged();
  page.KeyChanged();
  page.Browse();
  page.StripPressed(90);
  page.Navigate(PageButton::Next);
  page.DeleteIcon();
  page.DeleteAll();
  page.ApplyChanges();
  EXPECT_EQ(page.Fields().PreviewPage, 1);
  EXPECT_FALSE(page.Fields().DeleteAllPending) << "nobody said yes";
}

TEST_F(ImagePage, OutlivesAnObjectThatIsReleasedWhileItsBoxIsShown) {
  auto label = std::make_shared<LabelObject>();
  const std::weak_ptr<LabelObject> watched = label;
  Select(std::move(label));
  view_.Type(u" 1");
  view_.dialog.file = Png("a.png");
  view_.on_box = [&] { Select(nullptr); };
  page_.Browse();
  EXPECT_EQ(view_.log, Boxes{kRefusal});
  EXPECT_TRUE(watched.expired());
}

TEST_F(ImagePage, WorksOnWhatIsSelectedWhenTheDialogCloses) {
  const auto first = SelectLabel(), second = std::make_shared<LabelObject>();
  view_.Type(u"key");
  view_.dialog.file = Png("a.png");
  view_.dialog.on_shown = [&] { Select(second); };
  page_.Browse();
  EXPECT_EQ(first->Images().Count(), 0);
  EXPECT_EQ(second->Images().Count(), 1);
}

TEST_F(ImagePage, PaintsAListThatShrinksUnderIt) {
  const auto label = SelectLabel(15);
  view_.on_key_text = [&] { label->Images() = ImageCollection(); };
  Press(27);
  EXPECT_EQ(page_.Fields().CurrentKey, u"image2");
}

TEST_F(ImagePage, TurnsThePageWhileItPaintsOne) {
  SelectLabel(40);
  view_.on_key_text = [&] {
    view_.on_key_text = nullptr;
    page_.Navigate(PageButton::Next);
  };
  Press(27);
  EXPECT_EQ(page_.Fields().PreviewPage, 1);
}

TEST_F(ImagePage, ShowsAsManyPagesOfOneControlAsThereAre) {
  const auto label = SelectLabel(2);
  FakePageView other_view;
  prpImage other(other_view);
  other_view.page = &other;
  other_view.selected = label;
  other.SelectionChanged();
  Press(6);
  page_.DeleteIcon();
  other.StripPressed(6 * 15);
  EXPECT_EQ(other_view.key, u"image2");
  other.DeleteIcon();
  Press(6);
  EXPECT_EQ(view_.key, u"0") << "nothing is left to select";
}

}  // namespace
}  // namespace marklet
