// The script-shaping route: thin wrappers over the platform's script processor, and the wrap loop on them.
#pragma once

#include <span>
#include <stdexcept>
#include <string_view>
#include <vector>

#include "platform/uniscribe.h"
#include "text/script_records.h"

namespace marklet {

// What the script processor answered when that was neither yes nor no.
class ScriptError : public std::runtime_error {
 public:
  explicit ScriptError(Long code);
  Long Code() const { return code_; }

 private:
  Long code_;
};

// Whether script shaping is there. A true answer is kept for the thread, a false one asked again.
bool UniscribeAvailable();
void ForgetUniscribe();

// Whether any character needs shaping. Throws ScriptError when the platform's answer is unexpected.
bool IsComplexText(std::u16string_view text);

// What a line may do at a character.
struct LogAttr {
  std::uint8_t fSoftBreak = 0, fWhiteSpace = 0, fCharStop = 0, fWordStop = 0, fInvalid = 0, fReserved = 0;
};
// From the platform's byte: a bit each in this order, and fReserved has the last three.
LogAttr Unpacked(std::uint8_t byte);

// The flags of every analysis; justified text adds SSA_FIT, text from right to left SSA_RTL.
constexpr std::uint32_t kScriptFlags =
    SSA_TAB | SSA_CLIP | SSA_FALLBACK | SSA_BREAK | SSA_GLYPHS | SSA_HOTKEY;
static_assert(kScriptFlags == 0x4E6);

// An analysis of the first `length` units of a text, which the caller frees; null on failure. A length past
// the end goes on with the NUL that ends a string.
SCRIPT_STRING_ANALYSIS AnalyseScriptString(HDC dc, std::u16string_view text, Long length, std::uint32_t flags,
                                           Long width, const ScriptControl* control = nullptr,
                                           const ScriptState* state = nullptr,
                                           const ScriptTabDef* tabs = nullptr);
// Frees an analysis that isn't null and makes it null.
void FreeScriptString(SCRIPT_STRING_ANALYSIS& analysis);

// 0, or nothing, for null and on failure.
Long OutCharCount(SCRIPT_STRING_ANALYSIS analysis);
SIZE ScriptStringSize(SCRIPT_STRING_ANALYSIS analysis);
// The attributes of the first `count` units, which must fit; left as they are on failure.
void ReadLogAttrs(SCRIPT_STRING_ANALYSIS analysis, Long count, std::vector<LogAttr>& attrs);

// After how many units of a text a line ends when `count` fit: at the first CR LF, which leaves its LF to the
// next line, else at the last blank or break, else at `count`. Units without attributes allow no break.
Long FindBreakPosition(std::u16string_view text, std::span<const LogAttr> attrs, Long count);

// How many code units of `text`, drawn from `x`, go on the line that ends at `right`; 0 on failure. y and
// bottom bound the line. All in pixels.
Long FitCharacters(HDC dc, std::u16string_view text, Long x, Long right, Long y, Long bottom);

struct ScriptAlignment {
  bool rtl = false, right = false, singleLine = false, center = false, justified = false;
};
// Lays out and draws a text inside `rect`, at most 650 lines of it, however deep the rectangle. `out_options`
// are those of ScriptStringOut. Leaves the context's text alignment as the last line needed it: centred and
// right-aligned lines change it, and whoever draws next has to live with that.
void DrawScriptString(HDC dc, std::uint32_t out_options, const RECT& rect, std::u16string_view text,
                      Long min_sel, Long max_sel, const ScriptAlignment& alignment);

}  // namespace marklet
