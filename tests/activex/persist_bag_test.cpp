// Saving into and loading from the bag of a host, through the interface of the built server.
#include "activex/container.h"
#include "activex/saving.h"

namespace ocx_test {
namespace {

// --- Bags: saving -----------------------------------------------------------------------------------------

TEST(PersistBag, ValuesHaveTheirTypesAndOrder) {
  const struct {
    const wchar_t* name;
    VARTYPE type;
  } kExpected[] = {{L"Appearance", VT_I4},
                   {L"AutoSize", VT_BOOL},
                   {L"BackColor", VT_I4},
                   {L"BackStyle", VT_I4},
                   {L"BorderStyle", VT_I4},
                   {L"Caption", VT_ARRAY | VT_UI1},
                   {L"Enabled", VT_BOOL},
                   {L"Font", VT_DISPATCH},
                   {L"ForeColor", VT_I4},
                   {L"RightToLeft", VT_BOOL},
                   {L"UniToolTipText", VT_ARRAY | VT_UI1},
                   {L"UseMnemonic", VT_BOOL},
                   {L"Padding", VT_I4},
                   {L"WordWrap", VT_BOOL},
                   {L"EffectColor", VT_I4},
                   {L"VerticalAlignment", VT_I4},
                   {L"TextEffect", VT_I4},
                   {L"ImageSize", VT_I4},
                   {L"ImageAlignment", VT_I4},
                   {L"ImageKey", VT_BSTR},
                   {L"ImageKeyHover", VT_BSTR},
                   {L"NumOfIconBytes", VT_I4}};
  MemoryBag bag;
  ASSERT_EQ(S_OK, SaveToBag(NewCaptioned().Get(), bag));
  ASSERT_EQ(std::size(kExpected), bag.entries.size());
  for (std::size_t i = 0; i < bag.entries.size(); ++i) {
    EXPECT_EQ(kExpected[i].name, bag.entries[i].name);
    EXPECT_EQ(kExpected[i].type, bag.entries[i].value.vt) << i;
  }
}

// The numbers whose defaults are of another type are always there; so are the texts, as arrays.
TEST(PersistBag, DefaultsMayBeLeftOut) {
  const ComPtr<IUnknown> control = CreateControl();
  ASSERT_EQ(S_OK, As<IPersistStreamInit>(control)->InitNew());
  MemoryBag bag;
  ASSERT_EQ(S_OK, SaveToBag(control.Get(), bag, true, false));
  std::vector<std::wstring> names;
  for (const auto& entry : bag.entries) names.push_back(entry.name);
  EXPECT_EQ((std::vector<std::wstring>{L"Appearance", L"BorderStyle", L"Caption", L"UniToolTipText",
                                       L"Padding", L"NumOfIconBytes"}),
            names);
  PutNumber(As<IDispatch>(control).Get(), L"FontSize", 20);
  MemoryBag other;
  ASSERT_EQ(S_OK, SaveToBag(control.Get(), other, true, false));
  EXPECT_TRUE(other.Find(L"Font"));
}

TEST(PersistBag, WhatWasLeftOutFollowsTheHostsAmbients) {
  MemoryBag bag;
  const ComPtr<IUnknown> plain = CreateControl();
  ASSERT_EQ(S_OK, As<IPersistStreamInit>(plain)->InitNew());
  ASSERT_EQ(S_OK, SaveToBag(plain.Get(), bag, true, false));
  Container container;
  container.ambients.back_color = 0x00112233;
  container.HostObject(CreateControl());
  ASSERT_EQ(S_OK, LoadFromBag(container.Object(), bag));
  EXPECT_EQ(0x00112233, GetNumber(container.Dispatch().Get(), L"BackColor"));
}

TEST(PersistBag, AnArrayKeepsItsDimensionsAndBounds) {
  MemoryBag bag;
  ASSERT_EQ(S_OK, SaveToBag(ControlOf(SavedForm()).Get(), bag));
  const VARIANT* cell = bag.Find(L"IconBytesJ7K1_2");
  ASSERT_TRUE(cell);
  const LONG expected[][2] = {{-1, 2}, {2, 2}, {5, 7}};
  ASSERT_EQ(3u, SafeArrayGetDim(cell->parray));
  for (UINT i = 0; i < 3; ++i) {
    LONG lower = 0, upper = 0;
    EXPECT_EQ(S_OK, SafeArrayGetLBound(cell->parray, i + 1, &lower));
    EXPECT_EQ(S_OK, SafeArrayGetUBound(cell->parray, i + 1, &upper));
    EXPECT_EQ(expected[i][0], lower);
    EXPECT_EQ(expected[i][1], upper);
  }
  // The first dimension's elements are neighbours.
  LONG place[] = {2, 2, 6};
  BYTE byte = 0;
  EXPECT_EQ(S_OK, SafeArrayGetElement(cell->parray, place, &byte));
  EXPECT_EQ(240 + 3 + 4, byte);
}

TEST(PersistBag, AnEmptyTextIsAnArrayWithoutElements) {
  MemoryBag bag;
  ASSERT_EQ(S_OK, SaveToBag(NewCaptioned(L"").Get(), bag));
  const VARIANT* caption = bag.Find(L"Caption");
  LONG lower = 7, upper = 7;
  ASSERT_EQ(1u, SafeArrayGetDim(caption->parray));
  EXPECT_EQ(S_OK, SafeArrayGetLBound(caption->parray, 1, &lower));
  EXPECT_EQ(S_OK, SafeArrayGetUBound(caption->parray, 1, &upper));
  EXPECT_EQ(0, lower);
  EXPECT_EQ(-1, upper);
}

TEST(PersistBag, AValueThatTheBagRefusesIsToldAndTheRestIsWritten) {
  const ComPtr<IUnknown> control = NewCaptioned();
  MemoryBag bag;
  bag.failing[L"Caption"] = STG_E_MEDIUMFULL;
  bag.failing[L"Font"] = E_FAIL;
  EXPECT_EQ(STG_E_MEDIUMFULL, SaveToBag(control.Get(), bag));
  EXPECT_TRUE(bag.Find(L"NumOfIconBytes"));
  EXPECT_TRUE(IsDirty(control.Get()));
}

// --- Bags: loading ----------------------------------------------------------------------------------------

// A control loaded from a bag with one value.
ComPtr<IDispatch> LoadedWith(const wchar_t* name, const VARIANT& value) {
  MemoryBag bag;
  bag.Put(name, value);
  const ComPtr<IUnknown> control = CreateControl();
  EXPECT_EQ(S_OK, LoadFromBag(control.Get(), bag));
  return As<IDispatch>(control);
}

TEST(PersistBag, NumbersOfAnyShapeAreTaken) {
  Variant real;
  real.vt = VT_R8;
  real.dblVal = 2.5;  // halves go to the even neighbour
  EXPECT_EQ(2, GetNumber(LoadedWith(L"TextEffect", real).Get(), L"TextEffect"));
  Variant two(2);
  Variant reference;
  reference.vt = VT_BYREF | VT_I4;
  reference.plVal = &two.lVal;
  EXPECT_EQ(2, GetNumber(LoadedWith(L"TextEffect", reference).Get(), L"TextEffect"));
  for (const VARTYPE type : {VT_I1, VT_UI1, VT_I2, VT_UI2, VT_I4, VT_UI4, VT_I8, VT_UI8, VT_INT, VT_UINT})
    EXPECT_EQ(2, GetNumber(LoadedWith(L"TextEffect", VariantOf(type, 2)).Get(), L"TextEffect")) << type;
  EXPECT_EQ(3, GetNumber(LoadedWith(L"TextEffect", Variant(L"3")).Get(), L"TextEffect"));
}

TEST(PersistBag, ColoursComeSignedAndUnsigned) {
  const long face = static_cast<long>(0x8000000F);
  for (const Variant& value : {VariantOf(VT_I4, face), VariantOf(VT_UI4, 0x8000000F),
                               VariantOf(VT_I8, 0x8000000F), Variant(L"-2147483633"), Variant(L"2147483663")})
    EXPECT_EQ(face, GetNumber(LoadedWith(L"BackColor", value).Get(), L"BackColor")) << value.vt;
}

TEST(PersistBag, FlagsOfAnyShapeAreTaken) {
  for (const Variant& value : {Variant::Bool(false), VariantOf(VT_I4, 0), VariantOf(VT_I2, 0),
                               Variant(L"False"), Variant(L"0"), Variant(L"#FALSE#")})
    EXPECT_EQ(0, GetNumber(LoadedWith(L"WordWrap", value).Get(), L"WordWrap")) << value.vt;
  for (const Variant& value : {Variant(L"True"), VariantOf(VT_I4, 1), VariantOf(VT_I4, -1)})
    EXPECT_EQ(-1, GetNumber(LoadedWith(L"AutoSize", value).Get(), L"AutoSize")) << value.vt;
}

TEST(PersistBag, TextsAreTakenAsArraysOfAnySortAndAsTexts) {
  EXPECT_EQ(L"A\x05E9", GetText(LoadedWith(L"Caption", BytesVariant({0x41, 0, 0xE9, 5})).Get(), L"Caption"));
  EXPECT_EQ(L"A", GetText(LoadedWith(L"Caption", BytesVariant({0x41, 0, 0xE9})).Get(), L"Caption"));
  EXPECT_EQ(L"by hand", GetText(LoadedWith(L"Caption", Variant(L"by hand")).Get(), L"Caption"));
  EXPECT_EQ(L"logo", GetText(LoadedWith(L"ImageKey", Variant(L"logo")).Get(), L"ImageKey"));
  EXPECT_EQ(L"AB", GetText(LoadedWith(L"ImageKey", BytesVariant({'A', 0, 'B', 0})).Get(), L"ImageKey"));
  EXPECT_EQ(L"12", GetText(LoadedWith(L"ImageKey", Variant(12)).Get(), L"ImageKey"));
}

// What a script calls an array.
TEST(PersistBag, AnArrayOfVariantsIsTaken) {
  Variant array;
  array.parray = SafeArrayCreateVector(VT_VARIANT, 0, 4);
  array.vt = VT_ARRAY | VT_VARIANT;
  const Variant elements[] = {Variant(0x41), Variant(L"0"), VariantOf(VT_I2, 0x42), Variant::Bool(false)};
  for (LONG i = 0; i < 4; ++i)
    EXPECT_EQ(S_OK, SafeArrayPutElement(array.parray, &i, const_cast<Variant*>(&elements[i])));
  EXPECT_EQ(L"AB", GetText(LoadedWith(L"Caption", array).Get(), L"Caption"));
  Variant wide;
  wide.parray = SafeArrayCreateVector(VT_I4, 0, 2);
  wide.vt = VT_ARRAY | VT_I4;
  LONG place = 0, value = 0x58;
  EXPECT_EQ(S_OK, SafeArrayPutElement(wide.parray, &place, &value));
  EXPECT_EQ(L"X", GetText(LoadedWith(L"Caption", wide).Get(), L"Caption"));
  value = 256;
  EXPECT_EQ(S_OK, SafeArrayPutElement(wide.parray, &place, &value));
  EXPECT_EQ(L"", GetText(LoadedWith(L"Caption", wide).Get(), L"Caption")) << "no byte";
}

TEST(PersistBag, AFontIsTakenFromAnyObjectThatIsOne) {
  Variant font = NewFont(L"DejaVu Serif", 120000, true);
  for (const VARTYPE type : {VT_DISPATCH, VT_UNKNOWN}) {
    Variant value;
    EXPECT_EQ(S_OK, VariantCopy(&value, &font));
    value.vt = type;
    const auto control = LoadedWith(L"Font", value);
    EXPECT_EQ(L"DejaVu Serif", GetText(control.Get(), L"FontName"));
    EXPECT_EQ(-1, GetNumber(control.Get(), L"FontItalic"));
    EXPECT_EQ(12, GetNumber(control.Get(), L"FontSize"));
  }
  for (const Variant& other : {Variant(As<IDispatch>(CreateControl()).Get()), VariantOf(VT_UNKNOWN, 0),
                               VariantOf(VT_NULL, 0), Variant(12)})
    EXPECT_EQ(L"Tahoma", GetText(LoadedWith(L"Font", other).Get(), L"FontName")) << other.vt;
}

TEST(PersistBag, AMissingNameIsTheDefaultHoweverTheBagSaysSo) {
  for (const HRESULT missing : {E_INVALIDARG, E_FAIL, STG_E_FILENOTFOUND, E_NOTIMPL, DISP_E_UNKNOWNNAME}) {
    MemoryBag bag;
    bag.missing = missing;
    const ComPtr<IUnknown> control = NewCaptioned();
    const auto object = As<IDispatch>(control);
    PutNumber(object.Get(), L"TextEffect", 4);
    EXPECT_EQ(S_OK, LoadFromBag(control.Get(), bag));
    EXPECT_EQ(0, GetNumber(object.Get(), L"TextEffect"));
    EXPECT_EQ(-1, GetNumber(object.Get(), L"WordWrap"));
    EXPECT_EQ(L"", GetText(object.Get(), L"Caption"));
  }
  EXPECT_EQ(-1, GetNumber(LoadedWith(L"WordWrap", Variant()).Get(), L"WordWrap")) << "an empty value";
}

TEST(PersistBag, ABagThatWantsToBeToldTheTypeIsTold) {
  MemoryBag bag;
  bag.wants_type = true;
  bag.Put(L"TextEffect", Variant(L"2"));
  bag.Put(L"WordWrap", VariantOf(VT_I2, 0));
  bag.Put(L"ImageKey", Variant(5));
  const ComPtr<IUnknown> control = CreateControl();
  EXPECT_EQ(S_OK, LoadFromBag(control.Get(), bag));
  const auto object = As<IDispatch>(control);
  EXPECT_EQ(2, GetNumber(object.Get(), L"TextEffect"));
  EXPECT_EQ(0, GetNumber(object.Get(), L"WordWrap"));
  EXPECT_EQ(L"5", GetText(object.Get(), L"ImageKey"));
}

TEST(PersistBag, AWrongTypeLeavesTheFieldAndIsLogged) {
  MemoryBag bag;
  bag.Put(L"TextEffect", Variant(L"many"));
  bag.Put(L"WordWrap", BytesVariant({1}));
  bag.failing[L"ForeColor"] = DISP_E_TYPEMISMATCH;
  for (const HRESULT answer : {S_OK, E_FAIL}) {
    const ComPtr<IUnknown> control = NewCaptioned();
    const auto object = As<IDispatch>(control);
    PutNumber(object.Get(), L"TextEffect", 3);
    PutNumber(object.Get(), L"ForeColor", 77);
    EXPECT_EQ(S_OK, PutByName(object.Get(), L"WordWrap", Variant::Bool(false)));
    ErrorLog log;
    log.answer = answer;
    EXPECT_EQ(S_OK, LoadFromBag(control.Get(), bag, &log));
    EXPECT_EQ(3, GetNumber(object.Get(), L"TextEffect"));
    EXPECT_EQ(77, GetNumber(object.Get(), L"ForeColor"));
    EXPECT_EQ(0, GetNumber(object.Get(), L"WordWrap"));
    EXPECT_EQ((std::vector<std::wstring>{L"WordWrap", L"TextEffect"}), log.names);
    EXPECT_EQ(DISP_E_TYPEMISMATCH, log.code);
  }
}

TEST(PersistBag, AlignmentIsReadAndNotSavedAgain) {
  MemoryBag bag, again;
  bag.Put(L"Alignment", Variant(3));
  const ComPtr<IUnknown> control = CreateControl();
  ASSERT_EQ(S_OK, LoadFromBag(control.Get(), bag));
  ASSERT_EQ(S_OK, SaveToBag(control.Get(), again));
  EXPECT_FALSE(again.Find(L"Alignment"));
}

TEST(PersistBag, ACountOfTwoBillionImagesEndsSoon) {
  MemoryBag bag;
  bag.Put(L"NumOfIconBytes", Variant(2'000'000'000));
  bag.Put(L"IcoBytesKey_1", Variant(L"logo"));
  int reads = 0;
  bag.on_read = [&](const std::wstring&) { ++reads; };
  EXPECT_EQ(S_OK, LoadFromBag(CreateControl().Get(), bag));
  EXPECT_GT(10'000, reads);
}

}  // namespace
}  // namespace ocx_test
