// Reads the type library back from the built server and compares it with the published list, item by item.
#include <map>
#include <set>

#include "activex/server.h"

namespace ocx_test {
namespace {

// --- The published list -----------------------------------------------------------------------------------

struct KnownEnumeration {
  const wchar_t* name;
  const wchar_t* guid;
  std::vector<std::pair<const wchar_t*, long>> members;
};

const KnownEnumeration kEnumerations[] = {
    {L"AppearanceConstants", L"{853A7E22-BEB2-47CB-B20D-9EEE1BD4FD48}", {{L"Flat", 0}, {L"3d", 1}}},
    {L"BorderConstants", L"{154782F5-034D-427E-86A6-6E78494C06F9}", {{L"None", 0}, {L"Fixed Single", 1}}},
    {L"HorizontalAlignment",
     L"{90AE0A96-60DA-44A7-ACB4-C66489E5CA2D}",
     {{L"Left Justify", 0}, {L"Right Justify", 1}, {L"Center", 2}}},
    {L"HorizontalJAlignment",
     L"{868ED000-BE70-4B48-AA4E-9713EEAEF1B6}",
     {{L"Left Justify", 0}, {L"Right Justify", 1}, {L"Center", 2}, {L"Justified", 3}}},
    {L"HorizontalLRAlignment",
     L"{56512B48-9033-48F0-A545-B94DBF50F02F}",
     {{L"Left Justify", 0}, {L"Right Justify", 1}}},
    {L"VertAlignment",
     L"{1CB4CA81-3A0B-4644-970F-BD5270BCFB43}",
     {{L"Top", 0}, {L"Center", 2}, {L"Bottom", 3}}},
    {L"TextEffects",
     L"{DF09C74B-18B7-4424-859C-14E1D2EFCBA7}",
     {{L"effectNone", 0},
      {L"effectStroke", 1},
      {L"effectShadow", 2},
      {L"effectEmboss", 3},
      {L"effectEngrave", 4},
      {L"effectHollow", 5}}},
    {L"ImageSizes",
     L"{83FFE3BA-2BBB-472E-B64A-63BF2C247E5C}",
     {{L"16x16", 0},
      {L"24x24", 1},
      {L"32x32", 2},
      {L"48x48", 3},
      {L"72x72", 4},
      {L"96x96", 5},
      {L"128x128", 6},
      {L"256x256", 7}}},
    {L"BackStyle", L"{B6EEA008-90BB-4F94-BD56-33D771ABA47F}", {{L"TRANSPARENT", 0}, {L"OPAQUE", 1}}},
};

enum Slots { kGet = 1, kPut = 2, kPutRef = 4, kGetPut = kGet | kPut };
constexpr WORD kHidden = FUNCFLAG_FNONBROWSABLE, kUiDefault = FUNCFLAG_FUIDEFAULT;

struct KnownProperty {
  const wchar_t* name;
  unsigned dispid;
  const wchar_t* type;
  int slots;
  WORD flags;
  const wchar_t* help;
};

// In the order of the slots.
const KnownProperty kProperties[] = {
    {L"AutoSize", 0x6803006C, L"bool", kGetPut, 0,
     L"Determines whether a control is automatically resized to display its entire contents."},
    {L"BackColor", 0xFFFFFE0B, L"stdole.OLE_COLOR", kGetPut, 0,
     L"Returns/sets the background color used to display text and graphics in an object."},
    {L"BackStyle", 0xFFFFFE0A, L"zvsMarklet.BackStyle", kGetPut, 0,
     L"Indicates whether a control is transparent or opaque."},
    {L"Appearance", 0xFFFFFDF8, L"zvsMarklet.AppearanceConstants", kGetPut, 0,
     L"Returns/sets whether or not an object is painted at runtime with 3-D effects."},
    {L"BorderStyle", 0xFFFFFE08, L"zvsMarklet.BorderConstants", kGetPut, 0,
     L"Returns/sets the border style for an object."},
    {L"Caption", 0xFFFFFDFA, L"string", kGetPut, kUiDefault,
     L"Returns/sets the text displayed in an object's title bar or below an object's icon."},
    {L"Font", 0xFFFFFE00, L"stdole.Font*", kGet | kPut | kPutRef, 0, L"Returns a Font object."},
    {L"FontBold", 0x6803006B, L"bool", kGetPut, kHidden, L""},
    {L"FontItalic", 0x6803006A, L"bool", kGetPut, kHidden, L""},
    {L"FontStrikethru", 0x68030069, L"bool", kGetPut, kHidden, L""},
    {L"FontUnderline", 0x68030068, L"bool", kGetPut, kHidden, L""},
    {L"FontName", 0x68030067, L"string", kGetPut, kHidden, L""},
    {L"FontSize", 0x68030066, L"i32", kGetPut, kHidden, L""},
    {L"ForeColor", 0xFFFFFDFF, L"stdole.OLE_COLOR", kGetPut, 0,
     L"Returns/sets the foreground color used to display text and graphics in an object."},
    {L"EffectColor", 0x68030065, L"stdole.OLE_COLOR", kGetPut, 0, L""},
    {L"ImageKey", 0x68030064, L"string", kGetPut, 0,
     L"Returns/sets a unique value representing the key of the image to use."},
    {L"ImageKeyhover", 0x68030063, L"string", kGetPut, 0,
     L"Returns/sets a unique value representing the key of the image to use when the mouse hovers over the "
     L"control."},
    {L"UseMnemonic", 0x68030060, L"bool", kGetPut, 0,
     L"Returns/sets a value that specifies whether an & in a control's Caption property defines an access "
     L"key."},
    {L"UniToolTipText", 0x6803005F, L"string", kGetPut, 0,
     L"Returns/sets the Unicode text displayed when the mouse is paused over the control."},
    {L"TextEffect", 0x6803005C, L"zvsMarklet.TextEffects", kGetPut, 0, L""},
    {L"Enabled", 0xFFFFFDFE, L"bool", kGetPut, 0,
     L"Returns/sets a value that determines whether an object can respond to user-generated events."},
    {L"WordWrap", 0x6803005B, L"bool", kGetPut, 0,
     L"Returns/sets a value that determines whether a control will wrap long lines of text to fit in the "
     L"control."},
    {L"ImageAlignment", 0x6803005A, L"zvsMarklet.HorizontalAlignment", kGetPut, 0,
     L"Returns/sets the alignment of the control's image."},
    {L"ImageSize", 0x68030059, L"zvsMarklet.ImageSizes", kGetPut, 0,
     L"Returns/sets the size of the image when rendered in the control."},
    {L"hwnd", 0x68030058, L"i32", kGet, kHidden, L""},
    {L"MouseIcon", 0x68030057, L"stdole.Picture*", kGet | kPutRef, 0, L""},
    {L"MousePointer", 0x68030056, L"i32", kGetPut, 0, L""},
};

struct KnownEvent {
  const wchar_t* name;
  MEMBERID dispid;
  WORD flags;
  std::vector<std::pair<const wchar_t*, const wchar_t*>> arguments;
};

using Arguments = std::vector<std::pair<const wchar_t*, const wchar_t*>>;
const Arguments kMouse = {{L"Button", L"i16*"}, {L"Shift", L"i16*"}, {L"x", L"f32*"}, {L"y", L"f32*"}};

const KnownEvent kEvents[] = {
    {L"Change", 1, 0, {}},
    {L"Click", 2, kUiDefault, {}},
    {L"DblClick", 3, 0, {}},
    {L"MouseDown", 4, 0, kMouse},
    {L"MouseUp", 5, 0, kMouse},
    {L"MouseMove", 6, 0, kMouse},
    {L"MouseEnter", 7, 0, {}},
    {L"MouseLeave", 8, 0, {}},
    {L"OLECompleteDrag", 9, 0, {{L"Effect", L"i32*"}}},
    {L"OLEDragDrop",
     10,
     0,
     {{L"Data", L"object*"},
      {L"Effect", L"i32*"},
      {L"Button", L"i16*"},
      {L"Shift", L"i16*"},
      {L"x", L"f32*"},
      {L"y", L"f32*"}}},
    {L"OLEDragOver",
     11,
     0,
     {{L"Data", L"object*"},
      {L"Effect", L"i32*"},
      {L"Button", L"i16*"},
      {L"Shift", L"i16*"},
      {L"x", L"f32*"},
      {L"y", L"f32*"},
      {L"State", L"i16*"}}},
    {L"OLEGiveFeedback", 12, 0, {{L"Effect", L"i32*"}, {L"DefaultCursors", L"bool*"}}},
    {L"OLESetData", 13, 0, {{L"Data", L"object*"}, {L"DataFormat", L"i16*"}}},
    {L"OLEStartDrag", 14, 0, {{L"Data", L"object*"}, {L"AllowedEffects", L"i32*"}}},
};

// --- Reading ----------------------------------------------------------------------------------------------

std::wstring Take(BSTR text) {
  std::wstring result = text ? text : L"";
  SysFreeString(text);
  return result;
}

std::wstring GuidText(const GUID& guid) {
  wchar_t text[40] = {};
  StringFromGUID2(guid, text, 40);
  return text;
}

std::wstring NameOf(ITypeInfo* type) {
  BSTR name = nullptr;
  EXPECT_EQ(S_OK, type->GetDocumentation(MEMBERID_NIL, &name, nullptr, nullptr, nullptr));
  return Take(name);
}

// "Library.Type"
std::wstring FullName(ITypeInfo* type) {
  ComPtr<ITypeLib> library;
  UINT index = 0;
  BSTR name = nullptr;
  if (FAILED(type->GetContainingTypeLib(library.GetAddressOf(), &index))) return L"?." + NameOf(type);
  library->GetDocumentation(-1, &name, nullptr, nullptr, nullptr);
  return Take(name) + L"." + NameOf(type);
}

std::wstring Describe(ITypeInfo* owner, const TYPEDESC& type) {
  static const std::map<VARTYPE, const wchar_t*> kNames = {
      {VT_I2, L"i16"},      {VT_I4, L"i32"},    {VT_R4, L"f32"},         {VT_BOOL, L"bool"},
      {VT_BSTR, L"string"}, {VT_VOID, L"void"}, {VT_HRESULT, L"result"}, {VT_DISPATCH, L"object"}};
  if (type.vt == VT_PTR) return Describe(owner, *type.lptdesc) + L"*";
  if (type.vt == VT_USERDEFINED) {
    ComPtr<ITypeInfo> referred;
    if (FAILED(owner->GetRefTypeInfo(type.hreftype, referred.GetAddressOf()))) return L"broken reference";
    return FullName(referred.Get());
  }
  const auto found = kNames.find(type.vt);
  return found == kNames.end() ? L"type " + std::to_wstring(type.vt) : found->second;
}

struct ReadFunction {
  std::wstring name, help, result;
  MEMBERID dispid = 0;
  INVOKEKIND kind = INVOKE_FUNC;
  WORD flags = 0;
  int slot = 0;  // 0 is QueryInterface
  std::vector<std::wstring> parameters;
  std::vector<USHORT> parameter_flags;
  std::vector<std::wstring> parameter_names;
};

ReadFunction Read(ITypeInfo* type, UINT index) {
  ReadFunction result;
  FUNCDESC* function = nullptr;
  EXPECT_EQ(S_OK, type->GetFuncDesc(index, &function));
  BSTR name = nullptr, help = nullptr;
  type->GetDocumentation(function->memid, &name, &help, nullptr, nullptr);
  result.name = Take(name);
  result.help = Take(help);
  result.dispid = function->memid;
  result.kind = function->invkind;
  result.flags = function->wFuncFlags;
  result.slot = function->oVft / static_cast<int>(sizeof(void*));
  result.result = Describe(type, function->elemdescFunc.tdesc);
  for (int i = 0; i < function->cParams; ++i) {
    result.parameters.push_back(Describe(type, function->lprgelemdescParam[i].tdesc));
    result.parameter_flags.push_back(function->lprgelemdescParam[i].paramdesc.wParamFlags);
  }
  BSTR names[10] = {};
  UINT count = 0;
  type->GetNames(function->memid, names, 10, &count);
  for (UINT i = 0; i < count; ++i) {
    const std::wstring text = Take(names[i]);
    if (i > 0) result.parameter_names.push_back(text);
  }
  type->ReleaseFuncDesc(function);
  return result;
}

struct Attributes {
  explicit Attributes(ITypeInfo* info) : info_(info) { EXPECT_EQ(S_OK, info->GetTypeAttr(&value_)); }
  ~Attributes() { info_->ReleaseTypeAttr(value_); }
  const TYPEATTR* operator->() const { return value_; }

 private:
  ITypeInfo* info_;
  TYPEATTR* value_ = nullptr;
};

class TypeLibrary : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(S_OK, LoadTypeLibEx(ServerPath().c_str(), REGKIND_NONE, library_.GetAddressOf()));
  }

  ComPtr<ITypeInfo> Type(const wchar_t* guid) {
    GUID id = {};
    EXPECT_EQ(S_OK, IIDFromString(guid, &id));
    ComPtr<ITypeInfo> type;
    EXPECT_EQ(S_OK, library_->GetTypeInfoOfGuid(id, type.GetAddressOf())) << "no type with this GUID";
    return type;
  }

  // The slots of a dual interface, after its dispatch description.
  static ComPtr<ITypeInfo> VtableOf(ITypeInfo* dispatch) {
    HREFTYPE reference = 0;
    ComPtr<ITypeInfo> vtable;
    EXPECT_EQ(S_OK, dispatch->GetRefTypeOfImplType(static_cast<UINT>(-1), &reference));
    EXPECT_EQ(S_OK, dispatch->GetRefTypeInfo(reference, vtable.GetAddressOf()));
    return vtable;
  }

  ComPtr<ITypeLib> library_;
};

constexpr wchar_t kDispatchText[] = L"{310A4F20-C1CC-4F0F-90A4-9826804A23C7}";
constexpr wchar_t kEventsText[] = L"{6E85A505-50AA-4694-9B51-64C50D1D2045}";

// --- Tests ------------------------------------------------------------------------------------------------

TEST_F(TypeLibrary, HasItsIdentity) {
  BSTR name = nullptr, help = nullptr;
  ASSERT_EQ(S_OK, library_->GetDocumentation(-1, &name, &help, nullptr, nullptr));
  EXPECT_EQ(L"zvsMarklet", Take(name));
  EXPECT_EQ(L"Zarvo Marklet Control", Take(help));
  TLIBATTR* attributes = nullptr;
  ASSERT_EQ(S_OK, library_->GetLibAttr(&attributes));
  EXPECT_EQ(L"{8F6B874C-6DE0-4902-A016-DBCDD8F272C1}", GuidText(attributes->guid));
  EXPECT_EQ(3, attributes->wMajorVerNum);
  EXPECT_EQ(0, attributes->wMinorVerNum);
  EXPECT_EQ(0x409u, attributes->lcid);
  EXPECT_EQ(sizeof(void*) == 8 ? SYS_WIN64 : SYS_WIN32, attributes->syskind);
  library_->ReleaseTLibAttr(attributes);
}

TEST_F(TypeLibrary, HoldsTheseTypesAndNoOthers) {
  std::map<std::wstring, std::wstring> expected = {
      {L"_Marklet", kDispatchText},
      {L"Marklet", L"{2C94FDA3-AB60-4E3F-85FD-A5AEC6543F3F}"},
      {L"__Marklet", kEventsText},
      {L"_ISupportsAlphaImage", L"{215FB7C9-18D0-42C9-BE97-3A3FA3C703E4}"},
      {L"ISupportsAlphaImage", L"{35D4D430-2D52-44B8-9189-8ECE9ABC223B}"},
      {L"_prpImage", L"{FBF96550-A8CD-41BE-9064-EBFBF5BB0A63}"},
      {L"prpImage", L"{E7111604-8459-4582-BAD0-28915B59AB15}"},
  };
  for (const KnownEnumeration& enumeration : kEnumerations) expected[enumeration.name] = enumeration.guid;
  std::map<std::wstring, std::wstring> found;
  for (UINT i = 0; i < library_->GetTypeInfoCount(); ++i) {
    ComPtr<ITypeInfo> type;
    ASSERT_EQ(S_OK, library_->GetTypeInfo(i, type.GetAddressOf()));
    found[NameOf(type.Get())] = GuidText(Attributes(type.Get())->guid);
  }
  EXPECT_EQ(expected, found);
}

TEST_F(TypeLibrary, EnumeratesNamesWithBlanksAndDigitsAsTheyStand) {
  for (const KnownEnumeration& expected : kEnumerations) {
    SCOPED_TRACE(
        std::string(expected.name, expected.name + std::char_traits<wchar_t>::length(expected.name)));
    const ComPtr<ITypeInfo> type = Type(expected.guid);
    ASSERT_TRUE(type);
    EXPECT_EQ(expected.name, NameOf(type.Get()));
    const Attributes attributes(type.Get());
    EXPECT_EQ(TKIND_ENUM, attributes->typekind);
    ASSERT_EQ(expected.members.size(), attributes->cVars);
    std::set<MEMBERID> ids;
    for (UINT i = 0; i < attributes->cVars; ++i) {
      VARDESC* member = nullptr;
      ASSERT_EQ(S_OK, type->GetVarDesc(i, &member));
      BSTR name = nullptr;
      type->GetDocumentation(member->memid, &name, nullptr, nullptr, nullptr);
      EXPECT_EQ(expected.members[i].first, Take(name));
      EXPECT_EQ(VAR_CONST, member->varkind);
      EXPECT_EQ(VT_I4, member->lpvarValue->vt);
      EXPECT_EQ(expected.members[i].second, member->lpvarValue->lVal);
      EXPECT_TRUE(ids.insert(member->memid).second);
      type->ReleaseVarDesc(member);
    }
  }
}

TEST_F(TypeLibrary, MakesTheDispatchInterfaceDual) {
  const ComPtr<ITypeInfo> type = Type(kDispatchText);
  const Attributes attributes(type.Get());
  EXPECT_EQ(L"_Marklet", NameOf(type.Get()));
  EXPECT_EQ(TKIND_DISPATCH, attributes->typekind);
  EXPECT_TRUE(attributes->wTypeFlags & TYPEFLAG_FDUAL);
  const ComPtr<ITypeInfo> vtable = VtableOf(type.Get());
  const Attributes of_vtable(vtable.Get());
  EXPECT_EQ(TKIND_INTERFACE, of_vtable->typekind);
  EXPECT_EQ(62 * sizeof(void*), of_vtable->cbSizeVft);
}

void ExpectAccessor(const KnownProperty& expected, INVOKEKIND kind, const ReadFunction& found, int slot) {
  EXPECT_EQ(expected.name, found.name);
  EXPECT_EQ(static_cast<MEMBERID>(expected.dispid), found.dispid);
  EXPECT_EQ(kind, found.kind);
  EXPECT_EQ(expected.flags, found.flags);
  EXPECT_EQ(expected.help, found.help);
  EXPECT_EQ(slot, found.slot);
  EXPECT_EQ(L"result", found.result);
  const std::wstring type = expected.type;
  ASSERT_EQ(1u, found.parameters.size());
  EXPECT_EQ(kind == INVOKE_PROPERTYGET ? type + L"*" : type, found.parameters[0]);
  EXPECT_EQ(kind == INVOKE_PROPERTYGET ? PARAMFLAG_FOUT | PARAMFLAG_FRETVAL : PARAMFLAG_FIN,
            found.parameter_flags[0]);
}

TEST_F(TypeLibrary, GivesEveryPropertyItsSlotsInOrder) {
  const ComPtr<ITypeInfo> vtable = VtableOf(Type(kDispatchText).Get());
  ASSERT_EQ(27u, std::size(kProperties));
  ASSERT_EQ(55, Attributes(vtable.Get())->cFuncs);
  UINT index = 0;
  for (const KnownProperty& expected : kProperties) {
    SCOPED_TRACE(
        std::string(expected.name, expected.name + std::char_traits<wchar_t>::length(expected.name)));
    const std::pair<int, INVOKEKIND> kinds[] = {
        {kGet, INVOKE_PROPERTYGET}, {kPut, INVOKE_PROPERTYPUT}, {kPutRef, INVOKE_PROPERTYPUTREF}};
    for (const auto& [slot_kind, kind] : kinds) {
      if ((expected.slots & slot_kind) == 0) continue;
      ExpectAccessor(expected, kind, Read(vtable.Get(), index), static_cast<int>(7 + index));
      ++index;
    }
  }
  EXPECT_EQ(54u, index);
}

TEST_F(TypeLibrary, PutsTheMethodAfterTheProperties) {
  const ReadFunction method = Read(VtableOf(Type(kDispatchText).Get()).Get(), 54);
  EXPECT_EQ(L"LoadIconImageFromFile", method.name);
  EXPECT_EQ(0x6003008D, method.dispid);
  EXPECT_EQ(INVOKE_FUNC, method.kind);
  EXPECT_EQ(61, method.slot);
  EXPECT_EQ((std::vector<std::wstring>{L"string", L"string", L"bool*"}), method.parameters);
  EXPECT_EQ((std::vector<std::wstring>{L"sfile", L"sKey"}), method.parameter_names);
  EXPECT_EQ(L"", method.help);
}

TEST_F(TypeLibrary, ShowsTheSameMembersToLateBoundCallers) {
  const ComPtr<ITypeInfo> dispatch = Type(kDispatchText);
  std::map<std::pair<MEMBERID, INVOKEKIND>, std::wstring> found;
  for (UINT i = 0; i < Attributes(dispatch.Get())->cFuncs; ++i) {
    const ReadFunction function = Read(dispatch.Get(), i);
    if ((function.flags & FUNCFLAG_FRESTRICTED) == 0) found[{function.dispid, function.kind}] = function.name;
  }
  EXPECT_EQ(55u, found.size());
  for (const KnownProperty& expected : kProperties)
    EXPECT_EQ(expected.name, (found[{static_cast<MEMBERID>(expected.dispid), INVOKE_PROPERTYGET}]));
}

// The four properties without a public accessor leave gaps.
TEST_F(TypeLibrary, LeavesTheNumbersOfThePrivatePropertiesUnassigned) {
  const ComPtr<ITypeInfo> vtable = VtableOf(Type(kDispatchText).Get());
  for (UINT i = 0; i < 55; ++i) {
    const ReadFunction function = Read(vtable.Get(), i);
    for (const unsigned id : {0x68030062u, 0x68030061u, 0x6803005Eu, 0x6803005Du})
      EXPECT_NE(static_cast<MEMBERID>(id), function.dispid);
    for (const wchar_t* name : {L"Padding", L"RightToLeft", L"Alignment", L"VerticalAlignment"})
      EXPECT_NE(name, function.name);
  }
}

TEST_F(TypeLibrary, ListsAllEventsWithTheirArgumentsByReference) {
  const ComPtr<ITypeInfo> type = Type(kEventsText);
  EXPECT_EQ(L"__Marklet", NameOf(type.Get()));
  const Attributes attributes(type.Get());
  EXPECT_EQ(TKIND_DISPATCH, attributes->typekind);
  EXPECT_FALSE(attributes->wTypeFlags & TYPEFLAG_FDUAL);
  std::vector<ReadFunction> found;
  for (UINT i = 0; i < attributes->cFuncs; ++i) {
    const ReadFunction function = Read(type.Get(), i);
    if ((function.flags & FUNCFLAG_FRESTRICTED) == 0) found.push_back(function);
  }
  ASSERT_EQ(14u, std::size(kEvents));
  ASSERT_EQ(std::size(kEvents), found.size());
  for (std::size_t i = 0; i < found.size(); ++i) {
    const KnownEvent& expected = kEvents[i];
    SCOPED_TRACE(
        std::string(expected.name, expected.name + std::char_traits<wchar_t>::length(expected.name)));
    EXPECT_EQ(expected.name, found[i].name);
    EXPECT_EQ(expected.dispid, found[i].dispid);
    EXPECT_EQ(expected.flags, found[i].flags);
    EXPECT_EQ(INVOKE_FUNC, found[i].kind);
    EXPECT_EQ(L"void", found[i].result);
    ASSERT_EQ(expected.arguments.size(), found[i].parameters.size());
    ASSERT_EQ(expected.arguments.size(), found[i].parameter_names.size());
    for (std::size_t j = 0; j < expected.arguments.size(); ++j) {
      EXPECT_EQ(expected.arguments[j].first, found[i].parameter_names[j]);
      EXPECT_EQ(expected.arguments[j].second, found[i].parameters[j]);
      EXPECT_EQ(PARAMFLAG_FIN | PARAMFLAG_FOUT, found[i].parameter_flags[j]) << "a handler may change it";
    }
  }
}

struct KnownClass {
  const wchar_t* guid;
  const wchar_t* interface_name;
  bool creatable;
};

TEST_F(TypeLibrary, GivesEachClassItsInterfaceAndOneClassEvents) {
  const KnownClass classes[] = {{L"{2C94FDA3-AB60-4E3F-85FD-A5AEC6543F3F}", L"_Marklet", true},
                                {L"{35D4D430-2D52-44B8-9189-8ECE9ABC223B}", L"_ISupportsAlphaImage", false},
                                {L"{E7111604-8459-4582-BAD0-28915B59AB15}", L"_prpImage", false}};
  for (const KnownClass& expected : classes) {
    const ComPtr<ITypeInfo> type = Type(expected.guid);
    const Attributes attributes(type.Get());
    EXPECT_EQ(TKIND_COCLASS, attributes->typekind);
    EXPECT_EQ(expected.creatable, (attributes->wTypeFlags & TYPEFLAG_FCANCREATE) != 0);
    EXPECT_EQ(expected.creatable, (attributes->wTypeFlags & TYPEFLAG_FCONTROL) != 0);
    ASSERT_EQ(expected.creatable ? 2 : 1, attributes->cImplTypes);
    for (UINT i = 0; i < attributes->cImplTypes; ++i) {
      HREFTYPE reference = 0;
      INT flags = 0;
      ComPtr<ITypeInfo> implemented;
      ASSERT_EQ(S_OK, type->GetRefTypeOfImplType(i, &reference));
      ASSERT_EQ(S_OK, type->GetRefTypeInfo(reference, implemented.GetAddressOf()));
      ASSERT_EQ(S_OK, type->GetImplTypeFlags(i, &flags));
      EXPECT_EQ(i == 0 ? expected.interface_name : L"__Marklet", NameOf(implemented.Get()));
      EXPECT_EQ(i == 0 ? IMPLTYPEFLAG_FDEFAULT : IMPLTYPEFLAG_FDEFAULT | IMPLTYPEFLAG_FSOURCE, flags);
    }
  }
}

// Help stands with the library and its properties, and nowhere else.
TEST_F(TypeLibrary, HelpsWithNoTypeEnumerationMemberOrEvent) {
  for (UINT i = 0; i < library_->GetTypeInfoCount(); ++i) {
    ComPtr<ITypeInfo> type;
    ASSERT_EQ(S_OK, library_->GetTypeInfo(i, type.GetAddressOf()));
    const std::wstring name = NameOf(type.Get());
    SCOPED_TRACE(std::string(name.begin(), name.end()));
    BSTR help = nullptr;
    ASSERT_EQ(S_OK, type->GetDocumentation(MEMBERID_NIL, nullptr, &help, nullptr, nullptr));
    EXPECT_EQ(L"", Take(help));
    const Attributes attributes(type.Get());
    for (UINT k = 0; k < attributes->cVars; ++k) {
      VARDESC* member = nullptr;
      ASSERT_EQ(S_OK, type->GetVarDesc(k, &member));
      help = nullptr;
      ASSERT_EQ(S_OK, type->GetDocumentation(member->memid, nullptr, &help, nullptr, nullptr));
      EXPECT_EQ(L"", Take(help));
      type->ReleaseVarDesc(member);
    }
    if (name == L"_Marklet" || attributes->typekind == TKIND_COCLASS) continue;
    for (UINT k = 0; k < attributes->cFuncs; ++k) {
      const ReadFunction function = Read(type.Get(), k);
      if (function.flags & FUNCFLAG_FRESTRICTED) continue;  // of IDispatch
      EXPECT_EQ(L"", function.help);
    }
  }
}

TEST_F(TypeLibrary, OrdersTheSlotsOfTheImageOwner) {
  const ComPtr<ITypeInfo> vtable = VtableOf(Type(L"{215FB7C9-18D0-42C9-BE97-3A3FA3C703E4}").Get());
  const std::pair<const wchar_t*, std::vector<std::wstring>> expected[] = {
      {L"DestroyIconByteCollectionData", {}},
      {L"DeleteIconImage", {L"string"}},
      {L"LoadIconByteImageFromDisk", {L"string", L"string", L"object*"}},
      {L"GetIconByteCollection", {L"object*"}},
      {L"GetFriendlyString", {L"string*"}},
  };
  ASSERT_EQ(std::size(expected), Attributes(vtable.Get())->cFuncs);
  for (UINT i = 0; i < std::size(expected); ++i) {
    const ReadFunction function = Read(vtable.Get(), i);
    EXPECT_EQ(expected[i].first, function.name);
    EXPECT_EQ(expected[i].second, function.parameters);
    EXPECT_EQ(static_cast<int>(7 + i), function.slot);
  }
}

// The references into the standard library lead to the types themselves.
TEST_F(TypeLibrary, RefersToTheStandardFontAndPicture) {
  const ComPtr<ITypeInfo> vtable = VtableOf(Type(kDispatchText).Get());
  std::map<std::wstring, std::wstring> guids;
  for (UINT i = 0; i < 54; ++i) {
    FUNCDESC* function = nullptr;
    ASSERT_EQ(S_OK, vtable->GetFuncDesc(i, &function));
    const TYPEDESC* type = &function->lprgelemdescParam[0].tdesc;
    while (type->vt == VT_PTR) type = type->lptdesc;
    ComPtr<ITypeInfo> referred;
    if (type->vt == VT_USERDEFINED) {
      ASSERT_EQ(S_OK, vtable->GetRefTypeInfo(type->hreftype, referred.GetAddressOf()));
      guids[NameOf(referred.Get())] = GuidText(Attributes(referred.Get())->guid);
    }
    vtable->ReleaseFuncDesc(function);
  }
  EXPECT_EQ(L"{BEF6E003-A874-101A-8BBA-00AA00300CAB}", guids[L"Font"]);
  EXPECT_EQ(L"{7BF80981-BF32-101A-8BBB-00AA00300CAB}", guids[L"Picture"]);
  EXPECT_EQ(L"{66504301-BE0F-101A-8BBB-00AA00300CAB}", guids[L"OLE_COLOR"]);
}

}  // namespace
}  // namespace ocx_test
