#include "activex/com/own.h"

namespace marklet::activex {
namespace {

::HMODULE ModuleAround(const void* address) {
  constexpr DWORD kByAddress =
      GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
  ::HMODULE module = nullptr;
  return ::GetModuleHandleExW(kByAddress, static_cast<const wchar_t*>(address), &module) ? module : nullptr;
}

}  // namespace

// An interface pointer leads to the table of its methods, which stands in the module of its code.
bool IsOwn(const void* interface_pointer) {
  static const char here = 0;
  const ::HMODULE module = ModuleAround(*static_cast<const void* const*>(interface_pointer));
  return module && module == ModuleAround(&here);
}

}  // namespace marklet::activex
