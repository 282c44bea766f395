#include "platform/uniscribe.h"

#include <algorithm>
#include <limits>

#include "platform/win32/handles.h"
#include "platform/win32/system_function.h"

namespace marklet {

// Never linked: the import library names gdi32.dll, where only newer systems have this function.
Long ScriptIsComplex(std::u16string_view text, std::uint32_t flags) {
  using Function = HRESULT(WINAPI*)(const WCHAR*, int, DWORD);
  static const auto function = win32::SystemFunction<Function>(L"usp10.dll", "ScriptIsComplex");
  constexpr std::size_t kMost = std::numeric_limits<int>::max();
  if (text.empty()) return S_FALSE;
  if (!function) return E_NOTIMPL;
  return function(win32::Native(text.data()), static_cast<int>(std::min(text.size(), kMost)), flags);
}

}  // namespace marklet
