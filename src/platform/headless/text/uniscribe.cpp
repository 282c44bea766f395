#include "platform/uniscribe.h"

#include "platform/headless/recorder/hook.h"
#include "platform/headless/text/complex_script.h"

namespace marklet {

Long ScriptIsComplex(std::u16string_view text, std::uint32_t flags) {
  constexpr Long kFailure = static_cast<Long>(0x80004005);  // E_FAIL
  if (headless::Refused(headless::Operation::kScriptIsComplex, text, flags)) return kFailure;
  return (flags & SIC_COMPLEX) != 0 && headless::IsComplex(text) ? S_OK : S_FALSE;
}

}  // namespace marklet
