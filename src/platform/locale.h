// Locales: languages with their regions, by the platform's numbers.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

namespace marklet {

// The locales that count as there on this thread, in place of the system's own; not set, the system is asked.
std::optional<std::vector<std::uint32_t>>& ConfiguredLocales();

constexpr std::uint32_t LCID_INSTALLED = 1;

// Whether the system has a locale: installed (LCID_INSTALLED) or known at all (2). The headless platform has
// every locale that names a language.
bool IsValidLocale(std::uint32_t locale, std::uint32_t flags);

}  // namespace marklet
