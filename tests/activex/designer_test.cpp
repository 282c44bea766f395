// What designers ask of the control: its pages, its enumerations by name, its categories.
#include <map>

#include "activex/container.h"
#include "examples/designer/categories.h"

namespace ocx_test {
namespace {

class Designer : public ::testing::Test {
 protected:
  void SetUp() override {
    container_.ambients.user_mode = false;
    container_.Host();
    object_ = container_.Dispatch();
  }
  DISPID Id(const wchar_t* name) { return IdOf(object_.Get(), name); }
  // Empty where the control leaves it to the designer.
  std::wstring Display(const wchar_t* name) {
    Variant text;
    text.vt = VT_BSTR;
    text.bstrVal = nullptr;
    const HRESULT result = As<IPerPropertyBrowsing>(object_)->GetDisplayString(Id(name), &text.bstrVal);
    EXPECT_EQ(text.bstrVal ? S_OK : S_FALSE, result);
    return text.Text();
  }

  Container container_;
  ComPtr<IDispatch> object_;
};

TEST_F(Designer, GetsTheImagesTheFontAndTheColourPageInThisOrder) {
  CAUUID pages = {};
  ASSERT_EQ(S_OK, As<ISpecifyPropertyPages>(object_)->GetPages(&pages));
  ASSERT_EQ(3u, pages.cElems);
  constexpr GUID kImages = {0xE7111604, 0x8459, 0x4582, {0xBA, 0xD0, 0x28, 0x91, 0x5B, 0x59, 0xAB, 0x15}};
  EXPECT_EQ(kImages, pages.pElems[0]);
  EXPECT_EQ(CLSID_CFontPropPage, pages.pElems[1]);
  EXPECT_EQ(CLSID_CColorPropPage, pages.pElems[2]);
  CoTaskMemFree(pages.pElems);
  EXPECT_EQ(E_POINTER, As<ISpecifyPropertyPages>(object_)->GetPages(nullptr));
}

// --- Enumerations -----------------------------------------------------------------------------------------

using Members = std::vector<std::pair<std::wstring, int>>;

const std::map<std::wstring, Members> kEnumerations = {
    {L"Appearance", {{L"Flat", 0}, {L"3d", 1}}},
    {L"BorderStyle", {{L"None", 0}, {L"Fixed Single", 1}}},
    {L"BackStyle", {{L"TRANSPARENT", 0}, {L"OPAQUE", 1}}},
    {L"ImageAlignment", {{L"Left Justify", 0}, {L"Right Justify", 1}, {L"Center", 2}}},
    {L"ImageSize",
     {{L"16x16", 0},
      {L"24x24", 1},
      {L"32x32", 2},
      {L"48x48", 3},
      {L"72x72", 4},
      {L"96x96", 5},
      {L"128x128", 6},
      {L"256x256", 7}}},
    {L"TextEffect",
     {{L"effectNone", 0},
      {L"effectStroke", 1},
      {L"effectShadow", 2},
      {L"effectEmboss", 3},
      {L"effectEngrave", 4},
      {L"effectHollow", 5}}},
};

TEST_F(Designer, ListsTheMembersOfEveryEnumerationAsTheTypeLibrarySpellsThem) {
  const auto browsing = As<IPerPropertyBrowsing>(object_);
  for (const auto& [name, members] : kEnumerations) {
    SCOPED_TRACE(std::string(name.begin(), name.end()));
    const DISPID id = Id(name.c_str());
    CALPOLESTR texts = {};
    CADWORD cookies = {};
    ASSERT_EQ(S_OK, browsing->GetPredefinedStrings(id, &texts, &cookies));
    ASSERT_EQ(members.size(), texts.cElems);
    ASSERT_EQ(members.size(), cookies.cElems);
    for (std::size_t i = 0; i < members.size(); ++i) {
      EXPECT_EQ(members[i].first, texts.pElems[i]);
      Variant value;
      EXPECT_EQ(S_OK, browsing->GetPredefinedValue(id, cookies.pElems[i], &value));
      EXPECT_EQ(VT_I4, value.vt);
      EXPECT_EQ(members[i].second, value.lVal);
      EXPECT_EQ(S_OK, Put(object_.Get(), id, value));
      EXPECT_EQ(members[i].first, Display(name.c_str()));
      CoTaskMemFree(texts.pElems[i]);
    }
    CoTaskMemFree(texts.pElems);
    CoTaskMemFree(cookies.pElems);
    Variant value;
    EXPECT_EQ(E_INVALIDARG, browsing->GetPredefinedValue(id, 77, &value));
  }
}

TEST_F(Designer, ANumberThatIsNoMembersIsLeftToTheDesigner) {
  PutNumber(object_.Get(), L"ImageSize", 9);
  EXPECT_EQ(L"", Display(L"ImageSize"));
  EXPECT_EQ(9, GetNumber(object_.Get(), L"ImageSize"));
}

TEST_F(Designer, OtherPropertiesAreLeftToTheDesigner) {
  const auto browsing = As<IPerPropertyBrowsing>(object_);
  for (const wchar_t* name : {L"Caption", L"AutoSize", L"Font", L"BackColor", L"MousePointer", L"FontSize"}) {
    EXPECT_EQ(L"", Display(name)) << name;
    CALPOLESTR texts = {1, nullptr};
    CADWORD cookies = {1, nullptr};
    Variant value;
    EXPECT_EQ(E_NOTIMPL, browsing->GetPredefinedStrings(Id(name), &texts, &cookies));
    EXPECT_EQ(0u, texts.cElems);
    EXPECT_EQ(E_NOTIMPL, browsing->GetPredefinedValue(Id(name), 0, &value));
  }
}

TEST_F(Designer, LeadsToThePageForImagesFromTheKeyOfOne) {
  constexpr GUID kImages = {0xE7111604, 0x8459, 0x4582, {0xBA, 0xD0, 0x28, 0x91, 0x5B, 0x59, 0xAB, 0x15}};
  CLSID page = {};
  EXPECT_EQ(S_OK, As<IPerPropertyBrowsing>(object_)->MapPropertyToPage(Id(L"ImageKey"), &page));
  EXPECT_EQ(kImages, page);
}

// The two texts name one, which isn't in this library.
TEST_F(Designer, NoOtherPropertyHasAPageOfItsOwn) {
  const auto browsing = As<IPerPropertyBrowsing>(object_);
  for (const wchar_t* name :
       {L"AutoSize",   L"BackColor",   L"BackStyle",   L"Appearance",     L"BorderStyle",   L"Caption",
        L"Font",       L"FontBold",    L"FontItalic",  L"FontStrikethru", L"FontUnderline", L"FontName",
        L"FontSize",   L"ForeColor",   L"EffectColor", L"ImageKeyhover",  L"UseMnemonic",   L"UniToolTipText",
        L"TextEffect", L"Enabled",     L"WordWrap",    L"ImageAlignment", L"ImageSize",     L"hwnd",
        L"MouseIcon",  L"MousePointer"}) {
    CLSID page = kClassId;
    EXPECT_EQ(PERPROP_E_NOPAGEAVAILABLE, browsing->MapPropertyToPage(Id(name), &page)) << name;
    EXPECT_EQ(GUID_NULL, page);
  }
  EXPECT_EQ(E_POINTER, browsing->MapPropertyToPage(Id(L"Caption"), nullptr));
}

TEST_F(Designer, KnowsNoOtherProperties) {
  const auto browsing = As<IPerPropertyBrowsing>(object_);
  BSTR text = nullptr;
  CLSID page = {};
  CALPOLESTR texts = {};
  CADWORD cookies = {};
  Variant value;
  PROPCAT category = 0;
  EXPECT_EQ(DISP_E_MEMBERNOTFOUND, browsing->GetDisplayString(4711, &text));
  EXPECT_EQ(DISP_E_MEMBERNOTFOUND, browsing->MapPropertyToPage(4711, &page));
  EXPECT_EQ(DISP_E_MEMBERNOTFOUND, browsing->GetPredefinedStrings(4711, &texts, &cookies));
  EXPECT_EQ(DISP_E_MEMBERNOTFOUND, browsing->GetPredefinedValue(4711, 0, &value));
  EXPECT_EQ(DISP_E_MEMBERNOTFOUND,
            As<ICategorizeProperties>(object_)->MapPropertyToCategory(4711, &category));
}

// --- Categories -------------------------------------------------------------------------------------------

TEST_F(Designer, FindsPropertiesUnderTheirCategories) {
  const std::map<std::wstring, PROPCAT> expected = {
      {L"AutoSize", -6},       {L"BackColor", -5}, {L"Font", -3},     {L"Caption", -5},
      {L"UniToolTipText", -2}, {L"ImageKey", 1},   {L"WordWrap", -2}, {L"ImageKeyhover", -2}};
  const auto categories = As<ICategorizeProperties>(object_);
  for (const auto& [name, number] : expected) {
    PROPCAT category = 0;
    EXPECT_EQ(S_OK, categories->MapPropertyToCategory(Id(name.c_str()), &category));
    EXPECT_EQ(number, category) << std::string(name.begin(), name.end());
  }
}

TEST_F(Designer, NamesItsOwnCategoryAndNoOther) {
  const auto categories = As<ICategorizeProperties>(object_);
  Variant name;
  name.vt = VT_BSTR;
  name.bstrVal = nullptr;
  EXPECT_EQ(S_OK, categories->GetCategoryName(1, 0x409, &name.bstrVal));
  EXPECT_EQ(L"Image", name.Text());
  for (const PROPCAT other : {0, 2, -1, -2, -5}) {
    BSTR text = nullptr;
    EXPECT_EQ(E_INVALIDARG, categories->GetCategoryName(other, 0x409, &text)) << other;
    EXPECT_EQ(nullptr, text);
  }
}

}  // namespace
}  // namespace ocx_test
