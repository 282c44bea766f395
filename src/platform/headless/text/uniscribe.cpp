#include "platform/uniscribe.h"

#include <algorithm>
#include <new>

#include "platform/headless/pixels/device_context.h"
#include "platform/headless/recorder/hook.h"
#include "platform/headless/text/script_string.h"
#include "platform/shared/complex_characters.h"

namespace marklet {
namespace {

using headless::Operation;
using headless::Refused;

constexpr Long kFailure = static_cast<Long>(0x80004005);  // E_FAIL

}  // namespace

Long ScriptIsComplex(std::u16string_view text, std::uint32_t flags) {
  if (Refused(Operation::kScriptIsComplex, text, flags)) return kFailure;
  if ((flags & SIC_COMPLEX) == 0) return S_FALSE;
  return std::any_of(text.begin(), text.end(), IsComplexUnit) ? S_OK : S_FALSE;
}

SCRIPT_STRING_ANALYSIS ScriptStringAnalyse(HDC dc, std::u16string_view text, std::uint32_t flags, Long width,
                                           const SCRIPT_CONTROL& /*control*/, const SCRIPT_STATE& /*state*/,
                                           const SCRIPT_TABDEF& /*tabs*/) {
  if (Refused(Operation::kScriptStringAnalyse, dc, text, flags, width)) return nullptr;
  if (dc == nullptr || text.empty()) return nullptr;
  return headless::Made(new (std::nothrow) ScriptStringHandle(dc, text, flags, width));
}

bool ScriptStringFree(SCRIPT_STRING_ANALYSIS analysis) {
  if (Refused(Operation::kScriptStringFree, analysis)) return false;
  delete analysis;
  return analysis != nullptr;
}

const Long* ScriptString_pcOutChars(SCRIPT_STRING_ANALYSIS analysis) {
  if (Refused(Operation::kScriptString_pcOutChars, analysis) || analysis == nullptr) return nullptr;
  return &analysis->OutChars();
}

const SIZE* ScriptString_pSize(SCRIPT_STRING_ANALYSIS analysis) {
  if (Refused(Operation::kScriptString_pSize, analysis) || analysis == nullptr) return nullptr;
  return &analysis->Size();
}

const std::uint8_t* ScriptString_pLogAttr(SCRIPT_STRING_ANALYSIS analysis) {
  if (Refused(Operation::kScriptString_pLogAttr, analysis) || analysis == nullptr) return nullptr;
  return analysis->LogAttrs();
}

bool ScriptStringOut(SCRIPT_STRING_ANALYSIS analysis, Long x, Long y, std::uint32_t options, const RECT* clip,
                     Long first_selected, Long past_selected, bool disabled) {
  if (Refused(Operation::kScriptStringOut, analysis, x, y, options, clip, first_selected, past_selected,
              disabled))
    return false;
  return analysis != nullptr && analysis->Draw(x, y, options, clip);
}

}  // namespace marklet
