#include "text/shaping.h"

#include <cstdint>

#include "platform/shared/os_tests.h"
#include "platform/system.h"
#include "platform/uniscribe.h"

namespace marklet {
namespace {

thread_local bool uniscribe_found = false;

// The script processor comes with the system from Vista on, and isn't loaded just to know that.
bool FindUniscribe() {
  if (IsVistaOrLater()) return true;
  // Values up to 32 are the error codes of the older loader.
  return reinterpret_cast<std::uintptr_t>(LoadLibraryA("usp10.dll")) > 32;
}

}  // namespace

ScriptError::ScriptError(Long code)
    : std::runtime_error("the script processor answered " + std::to_string(code)), code_(code) {}

bool UniscribeAvailable() {
  if (!uniscribe_found) uniscribe_found = FindUniscribe();
  return uniscribe_found;
}

void ForgetUniscribe() { uniscribe_found = false; }

bool IsComplexText(std::u16string_view text) {
  const Long answer = ScriptIsComplex(text, SIC_COMPLEX);
  if (answer != S_OK && answer != S_FALSE) throw ScriptError(answer);
  return answer == S_OK;
}

Long FitCharacters(HDC, std::u16string_view, Long, Long, Long, Long) { return 0; }

void DrawScriptString(HDC, std::uint32_t, const RECT&, std::u16string_view, Long, Long,
                      const ScriptAlignment&) {}

}  // namespace marklet
