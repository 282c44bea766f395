// Writes a type library through the platform's own type library maker.
#pragma once

#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "activex/type_library/member.h"
#include "platform/win32/sdk_ole.h"

namespace marklet::type_library {

// A step that failed: what, and the platform's result code.
class BuildError : public std::runtime_error {
 public:
  BuildError(std::string_view what, HRESULT result);
};

class Builder {
 public:
  // Makes an empty library for `kind` that will be saved at `path`.
  Builder(SYSKIND kind, const std::wstring& path);

  void AddEnumeration(const Enumeration& enumeration);
  // A dual interface over IDispatch.
  ITypeInfo* AddInterface(const Identity& identity, unsigned short flags, const std::vector<Member>& members);
  // A dispatch interface whose members take their arguments by reference.
  ITypeInfo* AddEvents(const Identity& identity, unsigned short flags, const std::vector<Member>& members);
  // A class with its default interface and, unless null, its default source of events.
  void AddClass(const Identity& identity, unsigned short flags, ITypeInfo* interface_type, ITypeInfo* events);
  void Save();

 private:
  template <typename T>
  using Com = Microsoft::WRL::ComPtr<T>;

  Com<ICreateTypeInfo> Create(const Identity& identity, TYPEKIND kind, unsigned short flags);
  ITypeInfo* Finish(ICreateTypeInfo& info);
  Com<ITypeInfo> StdOleType(std::string_view guid);
  Com<ITypeInfo> OwnType(std::string_view guid);
  // Fills `type`; a pointed-to type lives in `pointees`.
  void Describe(ICreateTypeInfo& info, const TypeName& name, bool by_reference, TYPEDESC& type,
                std::vector<std::unique_ptr<TYPEDESC>>& pointees);
  void AddFunction(ICreateTypeInfo& info, unsigned index, const Member& member, bool event);

  Com<ICreateTypeLib2> library_;
  Com<ITypeLib> std_ole_;
  std::vector<Com<ITypeInfo>> types_;
};

}  // namespace marklet::type_library
