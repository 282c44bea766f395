#include "platform/shared/os_tests.h"

#include "platform/system.h"

namespace marklet {
namespace {

enum class Flag { Unset, Yes, No };

struct Caches {
  Flag unicode_capable = Flag::Unset;  // shared: every true answer of a test sets it
  Flag windows_2000_family = Flag::Unset;
  Flag xp_or_later = Flag::Unset;
  Flag vista_or_later = Flag::Unset;
};
thread_local Caches caches;

constexpr std::uint32_t kNtFamily = 2;

// All zero, which no test accepts, when the system doesn't say.
OSVERSIONINFOA Version() {
  OSVERSIONINFOA version;
  if (!GetVersionExA(version)) return {};
  return version;
}

bool Told(bool answer) {
  if (answer) caches.unicode_capable = Flag::Yes;
  return answer;
}

template <typename Test>
bool Cached(Flag& flag, Test test) {
  if (flag == Flag::Unset) flag = test(Version()) ? Flag::Yes : Flag::No;
  return Told(flag == Flag::Yes);
}

}  // namespace

bool IsNT4OrLater() {
  const OSVERSIONINFOA version = Version();
  const bool answer = version.dwPlatformId == kNtFamily && version.dwMajorVersion >= 4;
  if (!answer) caches.unicode_capable = Flag::No;
  return Told(answer);
}

bool IsWindows2000Family() {
  const bool first_call = caches.windows_2000_family == Flag::Unset;
  if (first_call) {
    // The call that fills the cache still answers false; hosts have only ever seen the later answers be true.
    const OSVERSIONINFOA version = Version();
    const bool family = version.dwPlatformId == kNtFamily && version.dwMajorVersion == 5;
    caches.windows_2000_family = family ? Flag::Yes : Flag::No;
    return false;
  }
  return Told(caches.windows_2000_family == Flag::Yes);
}

bool IsXPOrLater() {
  return Cached(caches.xp_or_later, [](const OSVERSIONINFOA& version) {
    return version.dwPlatformId == kNtFamily && version.dwMajorVersion >= 5 && version.dwMinorVersion >= 1;
  });
}

bool IsVistaOrLater() {
  return Cached(caches.vista_or_later, [](const OSVERSIONINFOA& version) {
    return version.dwPlatformId == kNtFamily && version.dwMajorVersion >= 6;
  });
}

bool IsUnicodeCapable() {
  if (caches.unicode_capable == Flag::Unset) return IsNT4OrLater();
  return caches.unicode_capable == Flag::Yes;
}

void ForgetOsTests() { caches = {}; }

}  // namespace marklet
