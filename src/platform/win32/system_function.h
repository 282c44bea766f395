// Functions that the oldest supported Windows lacks, or has in a library that isn't loaded for everybody.
#pragma once

#include "platform/win32/sdk.h"

namespace marklet::win32 {

// The library of that name in the system's own folder, loaded until the program ends; null when there is
// none. A file of the same name beside the program is never taken.
inline ::HMODULE SystemLibrary(const wchar_t* name) {
  wchar_t path[MAX_PATH + 32];
  const UINT length = ::GetSystemDirectoryW(path, MAX_PATH);
  if (length == 0 || length > MAX_PATH || lstrlenW(name) > 30) return nullptr;
  path[length] = L'\\';
  ::lstrcpyW(path + length + 1, name);
  return ::LoadLibraryW(path);
}

// Null when the system has no such function. Ask once and keep the answer.
template <typename Function>
Function SystemFunction(const wchar_t* library, const char* name) {
  const ::HMODULE module = SystemLibrary(library);
  return module ? reinterpret_cast<Function>(reinterpret_cast<void*>(::GetProcAddress(module, name)))
                : nullptr;
}

// Whether the system is Wine, some of whose functions fall short of Windows'.
inline bool IsWine() {
  static const bool result = SystemFunction<void (*)()>(L"ntdll.dll", "wine_get_version") != nullptr;
  return result;
}

}  // namespace marklet::win32
