#include "activex/type_library/builder.h"

#include <cstdio>

#include "activex/com/guid.h"

namespace marklet::type_library {
namespace {

using activex::ParseGuid;
using activex::Wide;

void Check(HRESULT result, std::string_view what) {
  if (FAILED(result)) throw BuildError(what, result);
}

std::string Describe(std::string_view what, HRESULT result) {
  char code[16];
  std::snprintf(code, sizeof code, "%08lX", static_cast<unsigned long>(result));
  return std::string(what) + ": " + code;
}

// The platform's calls take names that they don't change through pointers that aren't const.
class Name {
 public:
  explicit Name(std::string_view ascii) : text_(Wide(ascii)) {}
  wchar_t* Get() { return text_.data(); }

 private:
  std::wstring text_;
};

INVOKEKIND InvokeKind(Invoke invoke) {
  switch (invoke) {
    case Invoke::Method:
      return INVOKE_FUNC;
    case Invoke::Get:
      return INVOKE_PROPERTYGET;
    case Invoke::Put:
      return INVOKE_PROPERTYPUT;
    case Invoke::PutRef:
      return INVOKE_PROPERTYPUTREF;
  }
  return INVOKE_FUNC;
}

bool IsPut(Invoke invoke) { return invoke == Invoke::Put || invoke == Invoke::PutRef; }
bool HasResult(const Member& member) {
  return member.result.kind != TypeName::Kind::Automation || member.result.vartype != VT_EMPTY;
}

WORD FunctionFlags(const Member& member) {
  WORD flags = 0;
  if (!member.browsable) flags |= FUNCFLAG_FNONBROWSABLE;
  if (member.ui_default) flags |= FUNCFLAG_FUIDEFAULT;
  return flags;
}

}  // namespace

BuildError::BuildError(std::string_view what, HRESULT result) : std::runtime_error(Describe(what, result)) {}

Builder::Builder(SYSKIND kind, const std::wstring& path) {
  Check(::CreateTypeLib2(kind, path.c_str(), library_.GetAddressOf()), "CreateTypeLib2");
  Check(::LoadTypeLib(L"stdole2.tlb", std_ole_.GetAddressOf()), "stdole2.tlb");
  Check(library_->SetGuid(ParseGuid(library::kGuid)), "library GUID");
  Check(library_->SetVersion(library::kMajorVersion, library::kMinorVersion), "library version");
  Check(library_->SetName(Name(library::kName).Get()), "library name");
  Check(library_->SetDocString(Name(library::kHelp).Get()), "library help");
  Check(library_->SetLcid(library::kLocale), "library locale");
  Check(library_->SetLibFlags(LIBFLAG_FCONTROL), "library flags");
}

Builder::Com<ICreateTypeInfo> Builder::Create(const Identity& identity, TYPEKIND kind, unsigned short flags) {
  Com<ICreateTypeInfo> info;
  Check(library_->CreateTypeInfo(Name(identity.name).Get(), kind, info.GetAddressOf()), identity.name);
  Check(info->SetGuid(ParseGuid(identity.guid)), identity.name);
  Check(info->SetVersion(kind == TKIND_ENUM ? 0 : 1, 0), identity.name);
  if (flags) Check(info->SetTypeFlags(flags), identity.name);
  return info;
}

ITypeInfo* Builder::Finish(ICreateTypeInfo& info) {
  Check(info.LayOut(), "layout");
  Com<ITypeInfo> type;
  Check(info.QueryInterface(IID_PPV_ARGS(type.GetAddressOf())), "type");
  types_.push_back(type);
  return type.Get();
}

Builder::Com<ITypeInfo> Builder::StdOleType(std::string_view guid) {
  Com<ITypeInfo> type;
  Check(std_ole_->GetTypeInfoOfGuid(ParseGuid(guid), type.GetAddressOf()), "standard type");
  return type;
}

Builder::Com<ITypeInfo> Builder::OwnType(std::string_view guid) {
  Com<ITypeLib> own;
  Check(library_.As(&own), "own library");
  Com<ITypeInfo> type;
  Check(own->GetTypeInfoOfGuid(ParseGuid(guid), type.GetAddressOf()), "own type");
  return type;
}

void Builder::AddEnumeration(const Enumeration& enumeration) {
  const Com<ICreateTypeInfo> info = Create({enumeration.name, enumeration.guid}, TKIND_ENUM, 0);
  unsigned index = 0;
  MEMBERID id = 0x40000000;  // where compilers of type libraries begin to number
  for (const EnumMember& member : enumeration.members) {
    VARIANT value;
    value.vt = VT_I4;
    value.lVal = member.value;
    VARDESC variable = {};
    variable.memid = id++;
    variable.varkind = VAR_CONST;
    variable.elemdescVar.tdesc.vt = VT_I4;
    variable.lpvarValue = &value;
    Check(info->AddVarDesc(index, &variable), member.name);
    Check(info->SetVarName(index, Name(member.name).Get()), member.name);
    ++index;
  }
  Finish(*info.Get());
}

void Builder::Describe(ICreateTypeInfo& info, const TypeName& name, bool by_reference, TYPEDESC& type,
                       std::vector<std::unique_ptr<TYPEDESC>>& pointees) {
  const auto pointer_to = [&](TYPEDESC& outer) -> TYPEDESC& {
    pointees.push_back(std::make_unique<TYPEDESC>());
    outer.vt = VT_PTR;
    outer.lptdesc = pointees.back().get();
    return *outer.lptdesc;
  };
  TYPEDESC* target = by_reference ? &pointer_to(type) : &type;
  if (name.kind == TypeName::Kind::Automation) {
    target->vt = name.vartype;
    return;
  }
  if (name.kind == TypeName::Kind::StdOleClass) target = &pointer_to(*target);
  const bool own = name.kind == TypeName::Kind::Enumerated;
  const Com<ITypeInfo> referred = own ? OwnType(name.guid) : StdOleType(name.guid);
  target->vt = VT_USERDEFINED;
  Check(info.AddRefTypeInfo(referred.Get(), &target->hreftype), "reference");
}

void Builder::AddFunction(ICreateTypeInfo& info, unsigned index, const Member& member, bool event) {
  std::vector<std::unique_ptr<TYPEDESC>> pointees;
  std::vector<ELEMDESC> arguments;
  std::vector<std::wstring> names = {Wide(member.name)};
  for (const Parameter& parameter : member.parameters) {
    ELEMDESC argument = {};
    Describe(info, parameter.type, event, argument.tdesc, pointees);
    argument.paramdesc.wParamFlags =
        static_cast<USHORT>(event ? PARAMFLAG_FIN | PARAMFLAG_FOUT : PARAMFLAG_FIN);
    arguments.push_back(argument);
    // The value of a put has no name of its own.
    if (!IsPut(member.invoke)) names.push_back(Wide(parameter.name));
  }

  FUNCDESC function = {};
  function.memid = member.dispid;
  function.funckind = event ? FUNC_DISPATCH : FUNC_PUREVIRTUAL;
  function.invkind = InvokeKind(member.invoke);
  function.callconv = CC_STDCALL;
  function.wFuncFlags = FunctionFlags(member);
  function.elemdescFunc.tdesc.vt = static_cast<VARTYPE>(event ? VT_VOID : VT_HRESULT);
  if (HasResult(member)) {
    ELEMDESC result = {};
    Describe(info, member.result, true, result.tdesc, pointees);
    result.paramdesc.wParamFlags = PARAMFLAG_FOUT | PARAMFLAG_FRETVAL;
    arguments.push_back(result);
  }
  function.cParams = static_cast<SHORT>(arguments.size());
  function.lprgelemdescParam = arguments.data();
  Check(info.AddFuncDesc(index, &function), member.name);

  std::vector<LPOLESTR> name_pointers;
  name_pointers.reserve(names.size());
  for (std::wstring& name : names) name_pointers.push_back(name.data());
  // An accessor that shares its DISPID with an earlier one has that one's name.
  Check(info.SetFuncAndParamNames(index, name_pointers.data(), static_cast<UINT>(name_pointers.size())),
        member.name);
  if (!member.help.empty()) Check(info.SetFuncDocString(index, Name(member.help).Get()), member.name);
}

ITypeInfo* Builder::AddInterface(const Identity& identity, unsigned short flags,
                                 const std::vector<Member>& members) {
  const Com<ICreateTypeInfo> info =
      Create(identity, TKIND_INTERFACE,
             static_cast<unsigned short>(flags | TYPEFLAG_FDUAL | TYPEFLAG_FOLEAUTOMATION));
  const Com<ITypeInfo> base = StdOleType("{00020400-0000-0000-C000-000000000046}");
  HREFTYPE reference = 0;
  Check(info->AddRefTypeInfo(base.Get(), &reference), identity.name);
  Check(info->AddImplType(0, reference), identity.name);
  for (unsigned i = 0; i < members.size(); ++i) AddFunction(*info.Get(), i, members[i], false);
  return Finish(*info.Get());
}

ITypeInfo* Builder::AddEvents(const Identity& identity, unsigned short flags,
                              const std::vector<Member>& members) {
  const Com<ICreateTypeInfo> info = Create(identity, TKIND_DISPATCH, flags);
  const Com<ITypeInfo> base = StdOleType("{00020400-0000-0000-C000-000000000046}");
  HREFTYPE reference = 0;
  Check(info->AddRefTypeInfo(base.Get(), &reference), identity.name);
  Check(info->AddImplType(0, reference), identity.name);
  for (unsigned i = 0; i < members.size(); ++i) AddFunction(*info.Get(), i, members[i], true);
  return Finish(*info.Get());
}

void Builder::AddClass(const Identity& identity, unsigned short flags, ITypeInfo* interface_type,
                       ITypeInfo* events) {
  const Com<ICreateTypeInfo> info = Create(identity, TKIND_COCLASS, flags);
  HREFTYPE reference = 0;
  Check(info->AddRefTypeInfo(interface_type, &reference), identity.name);
  Check(info->AddImplType(0, reference), identity.name);
  Check(info->SetImplTypeFlags(0, IMPLTYPEFLAG_FDEFAULT), identity.name);
  if (events) {
    Check(info->AddRefTypeInfo(events, &reference), identity.name);
    Check(info->AddImplType(1, reference), identity.name);
    Check(info->SetImplTypeFlags(1, IMPLTYPEFLAG_FDEFAULT | IMPLTYPEFLAG_FSOURCE), identity.name);
  }
  Finish(*info.Get());
}

void Builder::Save() { Check(library_->SaveAllChanges(), "save"); }

}  // namespace marklet::type_library
