// The font of a saved control is the very object that its host has: it isn't copied.
#include "activex/container.h"
#include "activex/saving.h"

namespace ocx_test {
namespace {

ComPtr<IFont> FontOf(IUnknown* control) {
  Variant font;
  EXPECT_EQ(S_OK, GetByName(As<IDispatch>(control).Get(), L"Font", font));
  return As<IFont>(font.pdispVal);
}

bool AreSame(IUnknown* a, IUnknown* b) { return As<IUnknown>(a).Get() == As<IUnknown>(b).Get(); }

bool IsBold(IFont* font) {
  BOOL bold = FALSE;
  EXPECT_EQ(S_OK, font->get_Bold(&bold));
  return bold != FALSE;
}

class SavedFont : public ::testing::Test {
 protected:
  void SetUp() override {
    bag_.Put(L"Font", font_);
    control_ = CreateControl();
    ASSERT_EQ(S_OK, LoadFromBag(control_.Get(), bag_));
  }
  IFont* Font() { return interface_.Get(); }

  const Variant font_ = NewFont(L"Tahoma", 120000, false);
  const ComPtr<IFont> interface_ = As<IFont>(font_.pdispVal);
  MemoryBag bag_;
  ComPtr<IUnknown> control_;
};

TEST_F(SavedFont, IsTheObjectOfTheBag) { EXPECT_TRUE(AreSame(FontOf(control_.Get()).Get(), Font())); }

TEST_F(SavedFont, IsSavedAsTheSameObject) {
  MemoryBag again;
  ASSERT_EQ(S_OK, SaveToBag(control_.Get(), again));
  EXPECT_TRUE(AreSame(again.Find(L"Font")->punkVal, Font()));
}

TEST_F(SavedFont, FollowsWhatTheHostSetsOnTheObject) {
  const auto object = As<IDispatch>(control_);
  EXPECT_EQ(S_OK, Font()->put_Bold(TRUE));
  EXPECT_EQ(-1, GetNumber(object.Get(), L"FontBold"));
  CY size = {};
  size.int64 = 200000;
  EXPECT_EQ(S_OK, Font()->put_Size(size));
  EXPECT_EQ(20, GetNumber(object.Get(), L"FontSize"));
  EXPECT_EQ(S_OK, Font()->put_Underline(TRUE));
  EXPECT_EQ(-1, GetNumber(object.Get(), L"FontUnderline"));
  EXPECT_EQ(-1, GetNumber(object.Get(), L"FontBold")) << "the others stay";
}

// The member is set on the font that stands, which others may hold, and a copy of that is the new font.
TEST_F(SavedFont, HasAMemberSetOnItBeforeItIsReplaced) {
  EXPECT_EQ(S_OK, PutByName(As<IDispatch>(control_).Get(), L"FontBold", Variant::Bool(true)));
  EXPECT_TRUE(IsBold(Font()));
  const ComPtr<IFont> now = FontOf(control_.Get());
  EXPECT_FALSE(AreSame(now.Get(), Font()));
  EXPECT_TRUE(IsBold(now.Get()));
  EXPECT_EQ(S_OK, Font()->put_Bold(FALSE));
  EXPECT_EQ(-1, GetNumber(As<IDispatch>(control_).Get(), L"FontBold")) << "the old one is on its own";
}

TEST_F(SavedFont, IsCopiedByTheSetterAsAnyOtherIs) {
  EXPECT_EQ(S_OK, PutByName(As<IDispatch>(control_).Get(), L"Font", font_));
  EXPECT_FALSE(AreSame(FontOf(control_.Get()).Get(), Font()));
}

TEST_F(SavedFont, IsLetGoOf) {
  control_.Reset();
  bag_.entries.clear();
  EXPECT_EQ(2u, References(Font())) << "that of the variant and that of the interface";
}

TEST_F(SavedFont, IsReplacedByThatOfTheNextLoad) {
  MemoryBag other;
  const Variant next = NewFont(L"Tahoma", 90000, true);
  other.Put(L"Font", next);
  ASSERT_EQ(S_OK, LoadFromBag(control_.Get(), other));
  EXPECT_TRUE(AreSame(FontOf(control_.Get()).Get(), next.pdispVal));
  EXPECT_EQ(S_OK, Font()->put_Bold(TRUE));
  EXPECT_EQ(0, GetNumber(As<IDispatch>(control_).Get(), L"FontBold"));
}

TEST(AmbientFont, OfALoadWithoutAFontIsTheHostsOwnObject) {
  Container container;
  const Variant font = NewFont(L"Tahoma", 140000, true);
  container.ambients.font = font.pdispVal;
  container.HostObject(CreateControl());
  MemoryBag bag;
  ASSERT_EQ(S_OK, LoadFromBag(container.Object(), bag));
  EXPECT_TRUE(AreSame(FontOf(container.Object()).Get(), font.pdispVal));
  EXPECT_EQ(14, GetNumber(container.Dispatch().Get(), L"FontSize"));
  EXPECT_EQ(S_OK, As<IFont>(font.pdispVal)->put_Italic(FALSE));
  EXPECT_EQ(0, GetNumber(container.Dispatch().Get(), L"FontItalic"));
}

TEST(AmbientFont, OfANewControlIsCopied) {
  Container container;
  const Variant font = NewFont(L"Tahoma", 140000, true);
  container.ambients.font = font.pdispVal;
  container.Host();
  EXPECT_FALSE(AreSame(FontOf(container.Object()).Get(), font.pdispVal));
  EXPECT_EQ(14, GetNumber(container.Dispatch().Get(), L"FontSize"));
  EXPECT_EQ(S_OK, As<IFont>(font.pdispVal)->put_Italic(FALSE));
  EXPECT_EQ(-1, GetNumber(container.Dispatch().Get(), L"FontItalic"));
}

// A host may read the font in the middle of being told of it.
TEST(AmbientFont, MayBeAskedForInsideALoad) {
  const ComPtr<IUnknown> control = CreateControl();
  MemoryBag bag;
  const Variant font = NewFont(L"Tahoma", 140000, true);
  bag.Put(L"Font", font);
  bag.on_read = [&](const std::wstring&) { FontOf(control.Get()); };
  ASSERT_EQ(S_OK, LoadFromBag(control.Get(), bag));
  EXPECT_TRUE(AreSame(FontOf(control.Get()).Get(), font.pdispVal));
}

}  // namespace
}  // namespace ocx_test
