// The script-shaping route.
#pragma once

#include <stdexcept>
#include <string_view>

#include "platform/types.h"

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

// How many code units of `text`, drawn from `x`, fit before `right` up to a break opportunity; 0 on failure.
// y and bottom bound the line. All in pixels. Answers 0 until the shaping route is built: the caller then
// advances by one unit.
Long FitCharacters(HDC dc, std::u16string_view text, Long x, Long right, Long y, Long bottom);

struct ScriptAlignment {
  bool rtl = false, right = false, singleLine = false, center = false, justified = false;
};
// Lays out and draws a whole text inside `rect`. Draws nothing until the shaping route is built.
void DrawScriptString(HDC dc, std::uint32_t out_options, const RECT& rect, std::u16string_view text,
                      Long min_sel, Long max_sel, const ScriptAlignment& alignment);

}  // namespace marklet
