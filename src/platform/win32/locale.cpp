#include "platform/locale.h"

#include <algorithm>

#include "platform/win32/sdk.h"

namespace marklet {

bool IsValidLocale(std::uint32_t locale, std::uint32_t flags) {
  if (const auto& configured = ConfiguredLocales())
    return std::find(configured->begin(), configured->end(), locale) != configured->end();
  return ::IsValidLocale(locale, flags) != 0;
}

}  // namespace marklet
