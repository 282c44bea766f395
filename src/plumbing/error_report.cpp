#include <string>

#include "platform/types.h"
#include "plumbing/csubclass_asm.h"

namespace marklet::plumbing {
namespace {

std::wstring Wide(std::u16string_view text) { return {text.begin(), text.end()}; }

void WriteToApplicationLog(const std::wstring& text) {
  const ::HANDLE log = ::RegisterEventSourceW(nullptr, L"zvsMarklet");
  if (!log) return;
  const wchar_t* strings[] = {text.c_str()};
  ::ReportEventW(log, EVENTLOG_ERROR_TYPE, 0, 0, nullptr, 1, 0, strings, nullptr);
  ::DeregisterEventSource(log);
}

}  // namespace

void CSubClassAsm::zError(std::u16string_view routine, std::u16string_view message) {
  const std::wstring place = L"CSubClassAsm." + Wide(routine);
  WriteToApplicationLog(place + L": " + Wide(message));
  ::MessageBoxW(nullptr, (Wide(message) + L".").c_str(), (L"Error in " + place).c_str(), MB_ICONEXCLAMATION);
}

}  // namespace marklet::plumbing
