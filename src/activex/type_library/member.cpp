#include "activex/type_library/member.h"

#include "platform/win32/sdk_ole.h"

namespace marklet::type_library {
namespace {

constexpr std::string_view kOleColor = "{66504301-BE0F-101A-8BBB-00AA00300CAB}";
// The dispatch interfaces themselves. Their aliases IFontDisp and IPictureDisp have no GUID to refer to, and
// come out damaged on some systems.
constexpr std::string_view kFont = "{BEF6E003-A874-101A-8BBA-00AA00300CAB}";
constexpr std::string_view kPicture = "{7BF80981-BF32-101A-8BBB-00AA00300CAB}";

constexpr TypeName Automation(unsigned short vartype) { return {TypeName::Kind::Automation, vartype, {}}; }

TypeName TypeOf(const PropertyRow& row) {
  switch (row.type) {
    case ValueType::Boolean:
      return Automation(VT_BOOL);
    case ValueType::Number:
      return Automation(VT_I4);
    case ValueType::Colour:
      return {TypeName::Kind::StdOleAlias, VT_UI4, kOleColor};
    case ValueType::Choice:
      return {TypeName::Kind::Enumerated, VT_I4, row.enumeration->guid};
    case ValueType::Text:
      return Automation(VT_BSTR);
    case ValueType::Font:
      return {TypeName::Kind::StdOleClass, VT_DISPATCH, kFont};
    case ValueType::Picture:
      return {TypeName::Kind::StdOleClass, VT_DISPATCH, kPicture};
    case ValueType::MousePointer:
      return Automation(VT_I4);
  }
  return {};
}

TypeName TypeOf(ArgumentType type) {
  switch (type) {
    case ArgumentType::I2:
      return Automation(VT_I2);
    case ArgumentType::I4:
      return Automation(VT_I4);
    case ArgumentType::R4:
      return Automation(VT_R4);
    case ArgumentType::Boolean:
      return Automation(VT_BOOL);
    case ArgumentType::String:
      return Automation(VT_BSTR);
    // The host's own object; no library of ours holds its type.
    case ArgumentType::DataObject:
      return Automation(VT_DISPATCH);
  }
  return {};
}

std::vector<Parameter> Parameters(std::span<const Argument> arguments) {
  std::vector<Parameter> parameters;
  for (const Argument& argument : arguments) parameters.push_back({argument.name, TypeOf(argument.type)});
  return parameters;
}

Member Accessor(const PropertyRow& row, Invoke invoke) {
  Member member;
  member.name = row.name;
  member.dispid = row.dispid;
  member.invoke = invoke;
  member.help = row.help;
  member.browsable = (row.attributes & kNotBrowsable) == 0;
  member.ui_default = (row.attributes & kUiDefault) != 0;
  if (invoke == Invoke::Get)
    member.result = TypeOf(row);
  else
    member.parameters = {{"", TypeOf(row)}};
  return member;
}

}  // namespace

std::vector<Member> DispatchMembers() {
  std::vector<Member> members;
  for (const PropertyRow& row : Properties()) {
    members.push_back(Accessor(row, Invoke::Get));
    if (row.attributes & kPut) members.push_back(Accessor(row, Invoke::Put));
    if (row.attributes & kPutRef) members.push_back(Accessor(row, Invoke::PutRef));
  }
  const MethodRow& load = LoadIconImageFromFileRow();
  Member method;
  method.name = load.name;
  method.dispid = load.dispid;
  method.parameters = Parameters(load.arguments);
  method.result = Automation(VT_BOOL);
  members.push_back(method);
  return members;
}

std::vector<Member> EventMembers() {
  std::vector<Member> members;
  for (const EventRow& row : Events()) {
    Member event;
    event.name = row.name;
    event.dispid = row.dispid;
    event.parameters = Parameters(row.arguments);
    event.ui_default = row.ui_default;
    members.push_back(event);
  }
  return members;
}

std::vector<Member> ImageOwnerMembers() {
  const TypeName text = Automation(VT_BSTR), object = Automation(VT_DISPATCH), none = Automation(VT_EMPTY);
  const Parameter file = {"sfile", text}, key = {"sKey", text};
  std::vector<Member> members = {
      {"DestroyIconByteCollectionData", 0x60030000, Invoke::Method, {}, none, {}, true, false},
      {"DeleteIconImage", 0x60030001, Invoke::Method, {key}, none, {}, true, false},
      {"LoadIconByteImageFromDisk", 0x60030002, Invoke::Method, {file, key}, object, {}, true, false},
      {"GetIconByteCollection", 0x60030003, Invoke::Method, {}, object, {}, true, false},
      {"GetFriendlyString", 0x60030004, Invoke::Method, {}, text, {}, true, false},
  };
  return members;
}

}  // namespace marklet::type_library
