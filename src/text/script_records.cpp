#include "text/script_records.h"

#include <cmath>
#include <initializer_list>

#include "base/rounding.h"

namespace marklet {
namespace {

// Flags one after the other, from a bit on.
std::uint32_t Bits(int first, std::initializer_list<bool> flags) {
  std::uint32_t bits = 0;
  for (const bool flag : flags) bits |= std::uint32_t{flag} << first++;
  return bits;
}

}  // namespace

Long ShiftBits(Long value, int n) { return RoundHalfEven(std::ldexp(value, n)); }
Long UnshiftBits(Long value, int n) { return RoundHalfEven(std::ldexp(value, -n)); }

SCRIPT_CONTROL Packed(const ScriptControl* control) {
  if (control == nullptr) return {};
  return {(static_cast<std::uint32_t>(control->uDefaultLanguage) & 0xFFFF) |
          Bits(16, {control->fContextDigits, control->fInvertPreBoundDir, control->fInvertPostBoundDir,
                    control->fLinkStringBefore, control->fLinkStringAfter, control->fNeutralOverride,
                    control->fNumericOverride, control->fLegacyBidiClass})};
}

SCRIPT_STATE Packed(const ScriptState* state) {
  if (state == nullptr) return {};
  // The level stands four bits up, where the platform reads its last bit and the flag after it: callers that
  // set a level have always got that.
  const std::uint32_t low =
      (static_cast<std::uint32_t>(ShiftBits(state->uBidiLevel, 4)) |
       Bits(5, {state->fOverrideDirection, state->fInhibitSymSwap, state->fCharShape})) &
      0xFF;
  const std::uint32_t high = Bits(8, {state->fDigitSubstitute, state->fInhibitLigate, state->fDisplayZWG,
                                      state->fArabicNumContext, state->fGcpClusters});
  return {static_cast<std::uint16_t>(low | high)};
}

SCRIPT_TABDEF Packed(const ScriptTabDef* tabs, std::uint32_t flags) {
  if (tabs == nullptr || (flags & SSA_TAB) == 0) return {};
  return {tabs->cTabStops, tabs->iScale, tabs->pTabStops.data(), tabs->iTabOrigin};
}

}  // namespace marklet
