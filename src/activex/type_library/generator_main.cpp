// Writes the type library of zvsMarklet from the tables: typelib_generator FILE
//
// The platform makes the file, so that this runs on Windows only. The library is of the program's own
// bitness: a maker of the other one lays out the slots of inherited members by its own pointer size.
#include <cstdio>
#include <exception>
#include <string>
#include <string_view>

#include "activex/com/com.h"
#include "activex/type_library/builder.h"

namespace marklet::type_library {
namespace {

constexpr unsigned short kInternal = TYPEFLAG_FHIDDEN | TYPEFLAG_FNONEXTENSIBLE;

void Write(SYSKIND kind, const std::wstring& path) {
  Builder builder(kind, path);
  for (const Enumeration* enumeration : Enumerations()) builder.AddEnumeration(*enumeration);

  ITypeInfo* dispatch = builder.AddInterface(library::kDispatch, kInternal, DispatchMembers());
  ITypeInfo* events = builder.AddEvents(library::kEvents, kInternal, EventMembers());
  builder.AddClass(library::kClass, TYPEFLAG_FCONTROL | TYPEFLAG_FCANCREATE, dispatch, events);

  ITypeInfo* owner = builder.AddInterface(library::kImageOwner, kInternal, ImageOwnerMembers());
  builder.AddClass(library::kImageOwnerClass, TYPEFLAG_FHIDDEN, owner, nullptr);
  ITypeInfo* page = builder.AddInterface(library::kImagePage, kInternal, {});
  builder.AddClass(library::kImagePageClass, TYPEFLAG_FHIDDEN, page, nullptr);
  builder.Save();
}

int Run(int count, char** arguments) {
  if (count != 2) {
    std::fprintf(stderr, "usage: typelib_generator FILE\n");
    return 2;
  }
  try {
    Write(sizeof(void*) == 8 ? SYS_WIN64 : SYS_WIN32, activex::Wide(std::string_view(arguments[1])));
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "typelib_generator: %s\n", error.what());
    return 1;
  }
}

}  // namespace
}  // namespace marklet::type_library

int main(int count, char** arguments) { return marklet::type_library::Run(count, arguments); }
