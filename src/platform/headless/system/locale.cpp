#include "platform/locale.h"

#include <algorithm>

#include "platform/headless/recorder/hook.h"

namespace marklet {

bool IsValidLocale(std::uint32_t locale, std::uint32_t flags) {
  if (headless::Refused(headless::Operation::kIsValidLocale, locale, flags)) return false;
  if (const auto& configured = ConfiguredLocales())
    return std::find(configured->begin(), configured->end(), locale) != configured->end();
  constexpr std::uint32_t kLanguage = 0x3FF;  // the rest is the region and the order of sorting
  return (locale & kLanguage) != 0;
}

}  // namespace marklet
