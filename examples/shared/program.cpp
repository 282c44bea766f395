#include "program.h"

#include <windows.h>

#include <shellapi.h>

namespace example {

std::vector<std::wstring> Arguments() {
  int count = 0;
  LPWSTR* const words = CommandLineToArgvW(GetCommandLineW(), &count);
  std::vector<std::wstring> arguments(words + 1, words + count);
  LocalFree(words);
  return arguments;
}

std::wstring BesideProgram(const std::wstring& file) {
  wchar_t program[MAX_PATH] = {};
  GetModuleFileNameW(nullptr, program, MAX_PATH);
  const std::wstring path = program;
  return path.substr(0, path.find_last_of(L'\\') + 1) + file;
}

void HandleMessagesFor(unsigned long milliseconds) {
  const DWORD start = GetTickCount();
  for (MSG message; GetTickCount() - start < milliseconds; Sleep(10)) {
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
  }
}

}  // namespace example
