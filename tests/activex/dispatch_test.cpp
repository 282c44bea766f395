// The dispatch interface: the same through its slots, by number and by name.
#include <type_traits>

#include "activex/container.h"

namespace ocx_test {
namespace {

// --- Calls through slots ----------------------------------------------------------------------------------

template <typename... Arguments>
HRESULT CallSlot(IDispatch* object, int slot, Arguments... arguments) {
  using Function = HRESULT(STDMETHODCALLTYPE*)(IDispatch*, std::type_identity_t<Arguments>...);
  void** const table = *reinterpret_cast<void***>(object);
  return reinterpret_cast<Function>(reinterpret_cast<void (*)()>(table[slot]))(object, arguments...);
}

enum class Kind { Bool, Number, Text };

struct Slot {
  const wchar_t* name;
  int get;  // the put comes after it
  Kind kind;
};

// Every property that can be set and isn't an object.
const Slot kSlots[] = {
    {L"AutoSize", 7, Kind::Bool},        {L"BackColor", 9, Kind::Number},
    {L"BackStyle", 11, Kind::Number},    {L"Appearance", 13, Kind::Number},
    {L"BorderStyle", 15, Kind::Number},  {L"Caption", 17, Kind::Text},
    {L"FontBold", 22, Kind::Bool},       {L"FontItalic", 24, Kind::Bool},
    {L"FontStrikethru", 26, Kind::Bool}, {L"FontUnderline", 28, Kind::Bool},
    {L"FontName", 30, Kind::Text},       {L"FontSize", 32, Kind::Number},
    {L"ForeColor", 34, Kind::Number},    {L"EffectColor", 36, Kind::Number},
    {L"ImageKey", 38, Kind::Text},       {L"ImageKeyhover", 40, Kind::Text},
    {L"UseMnemonic", 42, Kind::Bool},    {L"UniToolTipText", 44, Kind::Text},
    {L"TextEffect", 46, Kind::Number},   {L"Enabled", 48, Kind::Bool},
    {L"WordWrap", 50, Kind::Bool},       {L"ImageAlignment", 52, Kind::Number},
    {L"ImageSize", 54, Kind::Number},    {L"MousePointer", 59, Kind::Number},
};
constexpr int kFontSlot = 19, kWindowSlot = 56, kMouseIconSlot = 57, kLoadSlot = 61;

class Dispatch : public ::testing::Test {
 protected:
  void SetUp() override {
    container_.Host();
    object_ = container_.Dispatch();
    ASSERT_TRUE(object_);
  }

  long NumberFromSlot(int slot) {
    LONG value = 0;
    EXPECT_EQ(S_OK, (CallSlot<LONG*>(object_.Get(), slot, &value)));
    return value;
  }
  long BoolFromSlot(int slot) {
    VARIANT_BOOL value = 7;
    EXPECT_EQ(S_OK, (CallSlot<VARIANT_BOOL*>(object_.Get(), slot, &value)));
    return value;
  }
  std::wstring TextFromSlot(int slot) {
    Variant value(L"");
    SysFreeString(value.bstrVal);
    value.bstrVal = nullptr;
    EXPECT_EQ(S_OK, (CallSlot<BSTR*>(object_.Get(), slot, &value.bstrVal)));
    return value.Text();
  }

  HRESULT Invoke(DISPID id, WORD flags, DISPPARAMS parameters, VARIANT* result = nullptr, UINT* bad = nullptr,
                 EXCEPINFO* exception = nullptr) {
    return object_->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters, result, exception, bad);
  }

  Container container_;
  ComPtr<IDispatch> object_;
};

constexpr DISPID kCaption = -518, kBackColor = -501, kForeColor = -513, kFont = -512;
constexpr DISPID kWindow = 0x68030058, kMouseIcon = 0x68030057, kLoad = 0x6003008D, kTextEffect = 0x6803005C;

// What is put one way is read the other way, for every property.
TEST_F(Dispatch, SlotsAndInvokeAgreeOnEveryProperty) {
  for (const Slot& slot : kSlots) {
    SCOPED_TRACE(std::string(slot.name, slot.name + wcslen(slot.name)));
    switch (slot.kind) {
      case Kind::Bool:
        for (const VARIANT_BOOL value : {VARIANT_TRUE, VARIANT_FALSE, VARIANT_TRUE}) {
          EXPECT_EQ(S_OK, (CallSlot<VARIANT_BOOL>(object_.Get(), slot.get + 1, value)));
          EXPECT_EQ(value, GetNumber(object_.Get(), slot.name));
          EXPECT_EQ(value, BoolFromSlot(slot.get));
        }
        EXPECT_EQ(S_OK, PutByName(object_.Get(), slot.name, Variant::Bool(false)));
        EXPECT_EQ(VARIANT_FALSE, BoolFromSlot(slot.get));
        break;
      case Kind::Number:
        for (const long value : {1L, 0L, 3L}) {
          EXPECT_EQ(S_OK, (CallSlot<LONG>(object_.Get(), slot.get + 1, value)));
          EXPECT_EQ(value, GetNumber(object_.Get(), slot.name));
          EXPECT_EQ(value, NumberFromSlot(slot.get));
        }
        PutNumber(object_.Get(), slot.name, 12);
        EXPECT_EQ(12, NumberFromSlot(slot.get));
        break;
      case Kind::Text: {
        Variant text(L"through the slot");
        EXPECT_EQ(S_OK, (CallSlot<BSTR>(object_.Get(), slot.get + 1, text.bstrVal)));
        EXPECT_EQ(L"through the slot", GetText(object_.Get(), slot.name));
        EXPECT_EQ(L"through the slot", TextFromSlot(slot.get));
        PutText(object_.Get(), slot.name, L"by name");
        EXPECT_EQ(L"by name", TextFromSlot(slot.get));
        break;
      }
    }
  }
}

TEST_F(Dispatch, SlotsAndInvokeAgreeOnTheOtherThree) {
  IFontDisp* font = nullptr;
  ASSERT_EQ(S_OK, (CallSlot<IFontDisp**>(object_.Get(), kFontSlot, &font)));
  Variant by_name;
  ASSERT_EQ(S_OK, GetByName(object_.Get(), L"Font", by_name));
  EXPECT_EQ(VT_DISPATCH, by_name.vt);
  EXPECT_EQ(As<IUnknown>(font).Get(), As<IUnknown>(by_name.pdispVal).Get());
  // Put and putref are one operation.
  EXPECT_EQ(S_OK, (CallSlot<IFontDisp*>(object_.Get(), kFontSlot + 1, font)));
  EXPECT_EQ(S_OK, (CallSlot<IFontDisp*>(object_.Get(), kFontSlot + 2, font)));
  font->Release();

  ASSERT_EQ(S_OK, container_.Activate());
  EXPECT_EQ(static_cast<long>(reinterpret_cast<LONG_PTR>(container_.ControlWindow())),
            NumberFromSlot(kWindowSlot));
  EXPECT_EQ(NumberFromSlot(kWindowSlot), GetNumber(object_.Get(), L"hwnd"));

  IPictureDisp* icon = reinterpret_cast<IPictureDisp*>(this);
  EXPECT_EQ(S_OK, (CallSlot<IPictureDisp**>(object_.Get(), kMouseIconSlot, &icon)));
  EXPECT_EQ(nullptr, icon);

  Variant file(L"none.png"), key(L"a");
  VARIANT_BOOL found = 7;
  EXPECT_EQ(E_POINTER, (CallSlot<BSTR, BSTR, VARIANT_BOOL*>(object_.Get(), kLoadSlot, file.bstrVal,
                                                            key.bstrVal, nullptr)));
  EXPECT_EQ(S_OK,
            (CallSlot<BSTR, BSTR, VARIANT_BOOL*>(object_.Get(), kLoadSlot, file.bstrVal, nullptr, &found)));
  EXPECT_EQ(VARIANT_FALSE, found);
}

TEST_F(Dispatch, RefusesANullResult) {
  EXPECT_EQ(E_POINTER, (CallSlot<BSTR*>(object_.Get(), 17, nullptr)));
  EXPECT_EQ(E_POINTER, (CallSlot<LONG*>(object_.Get(), 9, nullptr)));
}

TEST_F(Dispatch, DescribesItself) {
  UINT count = 0;
  EXPECT_EQ(S_OK, object_->GetTypeInfoCount(&count));
  EXPECT_EQ(1u, count);
  ComPtr<ITypeInfo> type;
  ASSERT_EQ(S_OK, object_->GetTypeInfo(0, 0, type.GetAddressOf()));
  TYPEATTR* attributes = nullptr;
  ASSERT_EQ(S_OK, type->GetTypeAttr(&attributes));
  EXPECT_EQ(kDispatchId, attributes->guid);
  type->ReleaseTypeAttr(attributes);
  EXPECT_EQ(DISP_E_BADINDEX, object_->GetTypeInfo(1, 0, type.ReleaseAndGetAddressOf()));
}

// The platform's own invoker goes through the slots that the type library lists.
TEST_F(Dispatch, TypeLibraryLeadsToTheRightSlots) {
  ComPtr<ITypeInfo> type;
  ASSERT_EQ(S_OK, object_->GetTypeInfo(0, 0, type.GetAddressOf()));
  ComPtr<IUnknown> dual;
  ASSERT_EQ(S_OK, object_->QueryInterface(kDispatchId, reinterpret_cast<void**>(dual.GetAddressOf())));
  PutText(object_.Get(), L"Caption", L"found");
  PutNumber(object_.Get(), L"TextEffect", 4);
  DISPPARAMS none = {};
  Variant caption, effect;
  ASSERT_EQ(S_OK,
            type->Invoke(dual.Get(), kCaption, DISPATCH_PROPERTYGET, &none, &caption, nullptr, nullptr));
  EXPECT_EQ(L"found", caption.Text());
  ASSERT_EQ(S_OK,
            type->Invoke(dual.Get(), kTextEffect, DISPATCH_PROPERTYGET, &none, &effect, nullptr, nullptr));
  EXPECT_EQ(4, effect.lVal);
}

// --- Names ------------------------------------------------------------------------------------------------

TEST_F(Dispatch, FindsNamesWithoutRegardToCase) {
  EXPECT_EQ(kCaption, IdOf(object_.Get(), L"CAPTION"));
  EXPECT_EQ(kCaption, IdOf(object_.Get(), L"caption"));
  EXPECT_EQ(kWindow, IdOf(object_.Get(), L"hWnd"));
  EXPECT_EQ(0x68030063, IdOf(object_.Get(), L"ImageKeyHover"));
  EXPECT_EQ(kLoad, IdOf(object_.Get(), L"loadiconimagefromfile"));
}

TEST_F(Dispatch, KnowsNoPrivateNames) {
  for (const wchar_t* name :
       {L"Padding", L"RightToLeft", L"Alignment", L"VerticalAlignment", L"Nonsense", L""})
    EXPECT_EQ(DISPID_UNKNOWN, IdOf(object_.Get(), name));
  Variant value;
  for (const DISPID id : {0x68030062, 0x68030061, 0x6803005E, 0x6803005D, 0, -1, 1, 0x6803006D})
    EXPECT_EQ(DISP_E_MEMBERNOTFOUND, Get(object_.Get(), id, value));
}

TEST_F(Dispatch, FindsArgumentNamesOfTheMethod) {
  LPOLESTR names[] = {const_cast<LPOLESTR>(L"LoadIconImageFromFile"), const_cast<LPOLESTR>(L"SKEY"),
                      const_cast<LPOLESTR>(L"sfile"), const_cast<LPOLESTR>(L"other")};
  DISPID ids[4] = {};
  EXPECT_EQ(S_OK, object_->GetIDsOfNames(IID_NULL, names, 3, 0, ids));
  EXPECT_EQ(kLoad, ids[0]);
  EXPECT_EQ(1, ids[1]);
  EXPECT_EQ(0, ids[2]);
  EXPECT_EQ(DISP_E_UNKNOWNNAME, object_->GetIDsOfNames(IID_NULL, names, 4, 0, ids));
  EXPECT_EQ(DISPID_UNKNOWN, ids[3]);
  EXPECT_EQ(DISP_E_UNKNOWNINTERFACE, object_->GetIDsOfNames(IID_IDispatch, names, 1, 0, ids));
}

// --- Wrong calls ------------------------------------------------------------------------------------------

TEST_F(Dispatch, CountsArguments) {
  Variant text(L"x");
  VARIANTARG two[] = {text, text};
  DISPID put = DISPID_PROPERTYPUT;
  Variant result;
  EXPECT_EQ(DISP_E_BADPARAMCOUNT, Invoke(kCaption, DISPATCH_PROPERTYGET, {two, nullptr, 1, 0}, &result));
  EXPECT_EQ(DISP_E_BADPARAMCOUNT, Invoke(kCaption, DISPATCH_PROPERTYPUT, {two, &put, 2, 1}));
  EXPECT_EQ(DISP_E_BADPARAMCOUNT, Invoke(kCaption, DISPATCH_PROPERTYPUT, {two, nullptr, 0, 0}));
  EXPECT_EQ(DISP_E_BADPARAMCOUNT, Invoke(kLoad, DISPATCH_METHOD, {two, nullptr, 1, 0}, &result));
  EXPECT_EQ(DISP_E_BADPARAMCOUNT, Invoke(kLoad, DISPATCH_METHOD, {two, nullptr, 0, 0}, &result));
}

TEST_F(Dispatch, NamesTheArgumentThatCantBeConverted) {
  const std::pair<DISPID, const wchar_t*> wrong[] = {
      {kBackColor, L"red"}, {kTextEffect, L"effectStroke"}, {kFont, L"Arial"}, {-514, L"perhaps"}};
  for (const auto& [id, text] : wrong) {
    Variant value(text);
    DISPID put = DISPID_PROPERTYPUT;
    UINT bad = 77;
    EXPECT_EQ(DISP_E_TYPEMISMATCH, Invoke(id, DISPATCH_PROPERTYPUT, {&value, &put, 1, 1}, nullptr, &bad))
        << id;
    EXPECT_EQ(0u, bad);
  }
  // Arguments stand last to first, so that the first is the second one here.
  VARIANTARG object = {};
  object.vt = VT_UNKNOWN;
  Variant key(L"key");
  VARIANTARG mixed[] = {key, object};
  UINT bad = 77;
  EXPECT_EQ(DISP_E_TYPEMISMATCH, Invoke(kLoad, DISPATCH_METHOD, {mixed, nullptr, 2, 0}, nullptr, &bad));
  EXPECT_EQ(1u, bad);
}

TEST_F(Dispatch, RefusesWhatAMemberHasNot) {
  Variant number(1);
  DISPID put = DISPID_PROPERTYPUT;
  EXPECT_EQ(DISP_E_MEMBERNOTFOUND, Invoke(kWindow, DISPATCH_PROPERTYPUT, {&number, &put, 1, 1}))
      << "read only";
  EXPECT_EQ(DISP_E_MEMBERNOTFOUND, Invoke(kMouseIcon, DISPATCH_PROPERTYPUT, {&number, &put, 1, 1}))
      << "by reference only";
  EXPECT_EQ(DISP_E_MEMBERNOTFOUND, Invoke(kCaption, DISPATCH_PROPERTYPUTREF, {&number, &put, 1, 1}));
  EXPECT_EQ(DISP_E_MEMBERNOTFOUND, Invoke(kCaption, DISPATCH_METHOD, {nullptr, nullptr, 0, 0}));
  EXPECT_EQ(DISP_E_MEMBERNOTFOUND, Invoke(kLoad, DISPATCH_PROPERTYGET, {nullptr, nullptr, 0, 0}));
  DISPPARAMS none = {};
  EXPECT_EQ(DISP_E_UNKNOWNINTERFACE, object_->Invoke(kCaption, IID_IDispatch, 0, DISPATCH_PROPERTYGET, &none,
                                                     nullptr, nullptr, nullptr));
  EXPECT_EQ(E_POINTER,
            object_->Invoke(kCaption, IID_NULL, 0, DISPATCH_PROPERTYGET, nullptr, nullptr, nullptr, nullptr));
}

TEST_F(Dispatch, TakesGetAndMethodFlagsTogether) {
  // As script languages call, which can't tell the two apart.
  PutText(object_.Get(), L"Caption", L"both");
  Variant result;
  EXPECT_EQ(S_OK,
            Invoke(kCaption, DISPATCH_PROPERTYGET | DISPATCH_METHOD, {nullptr, nullptr, 0, 0}, &result));
  EXPECT_EQ(L"both", result.Text());
}

TEST_F(Dispatch, TakesTheArgumentsOfTheMethodByName) {
  Variant file(L"nothing.png"), key(L"1a");
  VARIANTARG arguments[] = {key, file};
  DISPID names[] = {1, 0};
  Variant result;
  EXPECT_EQ(S_OK, Invoke(kLoad, DISPATCH_METHOD, {arguments, names, 2, 2}, &result));
  EXPECT_EQ(VT_BOOL, result.vt);
  EXPECT_EQ(VARIANT_FALSE, result.boolVal);
  DISPID twice[] = {1, 1};
  EXPECT_EQ(DISP_E_PARAMNOTFOUND, Invoke(kLoad, DISPATCH_METHOD, {arguments, twice, 2, 2}, &result));
}

// --- Conversions ------------------------------------------------------------------------------------------

TEST_F(Dispatch, TakesColoursSignedAndUnsigned) {
  Variant unsigned_double;
  unsigned_double.vt = VT_R8;
  unsigned_double.dblVal = 2147483663.0;  // 0x8000000F
  EXPECT_EQ(S_OK, PutByName(object_.Get(), L"ForeColor", unsigned_double));
  EXPECT_EQ(-2147483633, GetNumber(object_.Get(), L"ForeColor"));
  Variant unsigned_long;
  unsigned_long.vt = VT_UI4;
  unsigned_long.ulVal = 0x80000005;
  EXPECT_EQ(S_OK, PutByName(object_.Get(), L"BackColor", unsigned_long));
  EXPECT_EQ(static_cast<long>(0x80000005), GetNumber(object_.Get(), L"BackColor"));
  PutNumber(object_.Get(), L"EffectColor", -2147483632);
  EXPECT_EQ(-2147483632, GetNumber(object_.Get(), L"EffectColor"));
  EXPECT_EQ(S_OK, PutByName(object_.Get(), L"ForeColor", Variant(L"255")));
  EXPECT_EQ(255, GetNumber(object_.Get(), L"ForeColor"));
}

TEST_F(Dispatch, ConvertsNumbersTextAndTruth) {
  EXPECT_EQ(S_OK, PutByName(object_.Get(), L"Caption", Variant(42)));
  EXPECT_EQ(L"42", GetText(object_.Get(), L"Caption"));
  EXPECT_EQ(S_OK, PutByName(object_.Get(), L"WordWrap", Variant(0)));
  EXPECT_EQ(0, GetNumber(object_.Get(), L"WordWrap"));
  EXPECT_EQ(S_OK, PutByName(object_.Get(), L"WordWrap", Variant(5)));
  EXPECT_EQ(-1, GetNumber(object_.Get(), L"WordWrap"));
  EXPECT_EQ(S_OK, PutByName(object_.Get(), L"TextEffect", Variant(L"3")));
  EXPECT_EQ(3, GetNumber(object_.Get(), L"TextEffect"));
}

TEST_F(Dispatch, LooksThroughReferences) {
  long number = 2;
  VARIANT reference;
  reference.vt = VT_I4 | VT_BYREF;
  reference.plVal = &number;
  EXPECT_EQ(S_OK, PutByName(object_.Get(), L"TextEffect", reference));
  EXPECT_EQ(2, GetNumber(object_.Get(), L"TextEffect"));
  Variant text(L"inner");
  VARIANT outer;
  outer.vt = VT_VARIANT | VT_BYREF;
  outer.pvarVal = &text;
  EXPECT_EQ(S_OK, PutByName(object_.Get(), L"Caption", outer));
  EXPECT_EQ(L"inner", GetText(object_.Get(), L"Caption"));
}

TEST_F(Dispatch, KeepsNullCharactersInTexts) {
  Variant text;
  text.vt = VT_BSTR;
  text.bstrVal = SysAllocStringLen(L"a\0b", 3);
  EXPECT_EQ(S_OK, PutByName(object_.Get(), L"Caption", text));
  EXPECT_EQ(std::wstring(L"a\0b", 3), GetText(object_.Get(), L"Caption"));
}

TEST_F(Dispatch, KeepsValuesOutsideTheEnumerations) {
  PutNumber(object_.Get(), L"ImageSize", 9);
  EXPECT_EQ(9, GetNumber(object_.Get(), L"ImageSize"));
  for (const wchar_t* name :
       {L"TextEffect", L"BackStyle", L"BorderStyle", L"Appearance", L"ImageAlignment", L"MousePointer"}) {
    PutNumber(object_.Get(), name, -2000000000);
    EXPECT_EQ(-2000000000, GetNumber(object_.Get(), name));
  }
}

// --- Objects ----------------------------------------------------------------------------------------------

ComPtr<IFontDisp> MakeFont(const wchar_t* name, int points, bool bold) {
  FONTDESC description = {};
  description.cbSizeofstruct = sizeof description;
  description.lpstrName = const_cast<LPOLESTR>(name);
  description.cySize.int64 = points * 10000LL;
  description.sWeight = static_cast<SHORT>(bold ? 700 : 400);
  ComPtr<IFontDisp> font;
  EXPECT_EQ(S_OK, OleCreateFontIndirect(&description, IID_PPV_ARGS(font.GetAddressOf())));
  return font;
}

TEST_F(Dispatch, CopiesAFontDeeply) {
  const ComPtr<IFontDisp> font = MakeFont(L"DejaVu Sans", 14, true);
  EXPECT_EQ(S_OK, Put(object_.Get(), kFont, Variant(font.Get()), DISPATCH_PROPERTYPUTREF));
  EXPECT_EQ(L"DejaVu Sans", GetText(object_.Get(), L"FontName"));
  EXPECT_EQ(14, GetNumber(object_.Get(), L"FontSize"));
  EXPECT_EQ(-1, GetNumber(object_.Get(), L"FontBold"));
  // What becomes of the given font is no concern of the control.
  EXPECT_EQ(S_OK, As<IFont>(font)->put_Italic(TRUE));
  EXPECT_EQ(0, GetNumber(object_.Get(), L"FontItalic"));
  EXPECT_EQ(S_OK, Put(object_.Get(), kFont, Variant(MakeFont(L"Tahoma", 9, false).Get())));
  EXPECT_EQ(L"Tahoma", GetText(object_.Get(), L"FontName"));
}

TEST_F(Dispatch, RoundsTheFontSizeToWholePoints) {
  Variant font;
  ASSERT_EQ(S_OK, Get(object_.Get(), kFont, font));
  CY size = {};
  size.int64 = 92500;  // 9.25
  EXPECT_EQ(S_OK, As<IFont>(font.pdispVal)->put_Size(size));
  EXPECT_EQ(S_OK, Put(object_.Get(), kFont, font));
  EXPECT_EQ(9, GetNumber(object_.Get(), L"FontSize"));
  PutNumber(object_.Get(), L"FontSize", 12);
  Variant after;
  ASSERT_EQ(S_OK, Get(object_.Get(), kFont, after));
  ASSERT_EQ(S_OK, As<IFont>(after.pdispVal)->get_Size(&size));
  EXPECT_EQ(120000, size.int64);
}

TEST_F(Dispatch, HandsOutAFontThatStaysConnected) {
  Variant font;
  ASSERT_EQ(S_OK, Get(object_.Get(), kFont, font));
  EXPECT_EQ(S_OK, As<IFont>(font.pdispVal)->put_Bold(TRUE));
  EXPECT_EQ(-1, GetNumber(object_.Get(), L"FontBold"));
  // A member that is set makes a new font object; the old one is on its own from then on.
  EXPECT_EQ(S_OK, PutByName(object_.Get(), L"FontItalic", Variant::Bool(true)));
  Variant other;
  ASSERT_EQ(S_OK, Get(object_.Get(), kFont, other));
  EXPECT_NE(As<IUnknown>(font.pdispVal).Get(), As<IUnknown>(other.pdispVal).Get());
  EXPECT_EQ(S_OK, As<IFont>(font.pdispVal)->put_Bold(FALSE));
  EXPECT_EQ(-1, GetNumber(object_.Get(), L"FontBold"));
}

TEST_F(Dispatch, TakesNothingAsAFont) {
  PutNumber(object_.Get(), L"FontSize", 11);
  EXPECT_EQ(S_OK, Put(object_.Get(), kFont, Variant(static_cast<IDispatch*>(nullptr))));
  EXPECT_EQ(S_OK,
            Put(object_.Get(), kFont, Variant(static_cast<IDispatch*>(nullptr)), DISPATCH_PROPERTYPUTREF));
  EXPECT_EQ(11, GetNumber(object_.Get(), L"FontSize"));
  EXPECT_EQ(S_OK, (CallSlot<IFontDisp*>(object_.Get(), kFontSlot + 1, nullptr)));
}

TEST_F(Dispatch, RefusesAnObjectThatIsNoFont) {
  Variant control(object_.Get());
  UINT bad = 77;
  DISPID put = DISPID_PROPERTYPUT;
  EXPECT_EQ(DISP_E_TYPEMISMATCH,
            Invoke(kFont, DISPATCH_PROPERTYPUTREF, {&control, &put, 1, 1}, nullptr, &bad));
  EXPECT_EQ(0u, bad);
}

TEST_F(Dispatch, GivesThePictureBackThatItGot) {
  PICTDESC description = {};
  description.cbSizeofstruct = sizeof description;
  description.picType = PICTYPE_ICON;
  description.icon.hicon = LoadIconW(nullptr, reinterpret_cast<LPCWSTR>(IDI_APPLICATION));
  ComPtr<IPictureDisp> picture;
  ASSERT_EQ(S_OK, OleCreatePictureIndirect(&description, IID_IPictureDisp, FALSE,
                                           reinterpret_cast<void**>(picture.GetAddressOf())));
  EXPECT_EQ(S_OK, Put(object_.Get(), kMouseIcon, Variant(picture.Get()), DISPATCH_PROPERTYPUTREF));
  Variant back;
  ASSERT_EQ(S_OK, Get(object_.Get(), kMouseIcon, back));
  EXPECT_EQ(VT_DISPATCH, back.vt);
  EXPECT_EQ(As<IUnknown>(picture).Get(), As<IUnknown>(back.pdispVal).Get());
  EXPECT_EQ(S_OK, Put(object_.Get(), kMouseIcon, Variant(static_cast<IDispatch*>(nullptr)),
                      DISPATCH_PROPERTYPUTREF));
  Variant none;
  ASSERT_EQ(S_OK, Get(object_.Get(), kMouseIcon, none));
  EXPECT_EQ(nullptr, none.pdispVal);
}

}  // namespace
}  // namespace ocx_test
