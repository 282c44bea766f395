// Optional records of an analysis: the members that a caller may set by name, packed into the platform's own
// layout. The control's own drawing sets none.
#pragma once

#include <vector>

#include "platform/uniscribe.h"

namespace marklet {

struct ScriptControl {
  Long uDefaultLanguage = 0;  // the low 16 bits
  bool fContextDigits = false, fInvertPreBoundDir = false, fInvertPostBoundDir = false;
  bool fLinkStringBefore = false, fLinkStringAfter = false;
  bool fNeutralOverride = false, fNumericOverride = false, fLegacyBidiClass = false;
};

struct ScriptState {
  Long uBidiLevel = 0;
  bool fOverrideDirection = false, fInhibitSymSwap = false, fCharShape = false;
  bool fDigitSubstitute = false, fInhibitLigate = false, fDisplayZWG = false;
  bool fArabicNumContext = false, fGcpClusters = false;
};

struct ScriptTabDef {
  Long cTabStops = 0, iScale = 0;
  std::vector<Long> pTabStops;
  Long iTabOrigin = 0;
};

// `value` times, or divided by, 2 to the power `n`, rounded to nearest. Past the range of a Long it
// saturates.
Long ShiftBits(Long value, int n);
Long UnshiftBits(Long value, int n);

// Null gives a record of zeros.
SCRIPT_CONTROL Packed(const ScriptControl* control);
SCRIPT_STATE Packed(const ScriptState* state);
// Zeros also where `flags` are without SSA_TAB. Points to the caller's stops.
SCRIPT_TABDEF Packed(const ScriptTabDef* tabs, std::uint32_t flags);

}  // namespace marklet
