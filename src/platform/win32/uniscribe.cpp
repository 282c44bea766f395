#include "platform/uniscribe.h"

#include <algorithm>
#include <limits>

#include "platform/win32/handles.h"

namespace marklet {

Long ScriptIsComplex(std::u16string_view text, std::uint32_t flags) {
  constexpr std::size_t kMost = std::numeric_limits<int>::max();
  if (text.empty()) return S_FALSE;
  return ::ScriptIsComplex(Native(text.data()), static_cast<int>(std::min(text.size(), kMost)), flags);
}

}  // namespace marklet
