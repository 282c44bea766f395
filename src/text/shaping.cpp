#include "text/shaping.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>

#include "base/rounding.h"
#include "platform/shared/os_tests.h"
#include "platform/system.h"
#include "platform/text.h"

namespace marklet {
namespace {

thread_local bool uniscribe_found = false;

// The script processor comes with the system from Vista on, and isn't loaded just to know that.
bool FindUniscribe() {
  if (IsVistaOrLater()) return true;
  // Values up to 32 are the error codes of the older loader.
  return reinterpret_cast<std::uintptr_t>(LoadLibraryA("usp10.dll")) > 32;
}

// A text of more lines ends here, and so does one that gets nowhere.
constexpr int kMostLines = 650;

constexpr char16_t kEllipsis = 0x2026;

// Frees its analysis once, however the line ends.
class OwnedAnalysis {
 public:
  explicit OwnedAnalysis(SCRIPT_STRING_ANALYSIS analysis) : analysis_(analysis) {}
  ~OwnedAnalysis() { FreeScriptString(analysis_); }
  OwnedAnalysis(const OwnedAnalysis&) = delete;
  OwnedAnalysis& operator=(const OwnedAnalysis&) = delete;

  SCRIPT_STRING_ANALYSIS Get() const { return analysis_; }
  void Free() { FreeScriptString(analysis_); }
  void Set(SCRIPT_STRING_ANALYSIS analysis) { analysis_ = analysis; }

 private:
  SCRIPT_STRING_ANALYSIS analysis_;
};

Long LengthOf(std::u16string_view text) {
  return static_cast<Long>(std::min<std::size_t>(text.size(), std::numeric_limits<Long>::max()));
}

// The first of a line's analyses, of all that is left: where the line is to end. None when it fails.
std::optional<Long> FirstPass(HDC dc, std::u16string_view text, std::uint32_t flags, Long width) {
  const OwnedAnalysis whole(AnalyseScriptString(dc, text, LengthOf(text), flags, width));
  if (whole.Get() == nullptr) return std::nullopt;
  const Long count = OutCharCount(whole.Get());
  std::vector<LogAttr> attrs;
  ReadLogAttrs(whole.Get(), count, attrs);
  return FindBreakPosition(text, attrs, count);
}

struct Selection {
  Long first, past;
};

// Draws a text line by line from a rectangle's top.
class ScriptLines {
 public:
  ScriptLines(HDC dc, std::uint32_t out_options, const RECT& rect, Selection selection,
              const ScriptAlignment& alignment)
      : dc_(dc),
        out_options_(out_options),
        rect_(rect),
        selection_(selection),
        alignment_(alignment),
        flags_(kScriptFlags | (alignment.justified ? SSA_FIT : 0) | (alignment.rtl ? SSA_RTL : 0)) {}

  // Draws the first line of a text and answers how many units it took. None when the platform fails before
  // there is anything to draw.
  std::optional<Long> DrawNext(std::u16string_view text);

 private:
  Long Width() const { return WrapSub(rect_.right, rect_.left); }
  void Shorten(OwnedAnalysis& line, std::u16string_view text, Long out, Long break_position);
  Long Align();

  const HDC dc_;
  const std::uint32_t out_options_;
  RECT rect_;  // its top goes down line by line
  const Selection selection_;
  const ScriptAlignment alignment_;
  const std::uint32_t flags_;
};

std::optional<Long> ScriptLines::DrawNext(std::u16string_view text) {
  // The first analysis tells where the width ends; only one that is cut there has the glyphs of the line.
  const std::optional<Long> end = FirstPass(dc_, text, flags_, Width());
  if (!end) return std::nullopt;
  OwnedAnalysis line(AnalyseScriptString(dc_, text, *end, flags_, Width()));
  if (line.Get() == nullptr) return std::nullopt;
  Long out = OutCharCount(line.Get());
  if (alignment_.singleLine && out < LengthOf(text)) {
    Shorten(line, text, out, *end);
    out = OutCharCount(line.Get());
  }
  const SIZE size = ScriptStringSize(line.Get());
  const Long x = Align();
  ScriptStringOut(line.Get(), x, rect_.top, out_options_, &rect_, selection_.first, selection_.past, false);
  rect_.top = WrapAdd(rect_.top, size.cy);
  return out;
}

// Dots in place of the last character that fits.
void ScriptLines::Shorten(OwnedAnalysis& line, std::u16string_view text, Long out, Long break_position) {
  line.Free();
  std::u16string shortened(text.substr(0, static_cast<std::size_t>(std::max(out - 1, 0))));
  shortened += kEllipsis;
  // One more than there is: the NUL at the end of the string belongs to the line.
  line.Set(AnalyseScriptString(dc_, shortened, WrapAdd(break_position, 1), flags_, Width()));
}

// Sets the text alignment of the line and answers where it is to be drawn. What is aligned at the left isn't
// set: it stands as the context has it.
Long ScriptLines::Align() {
  if (alignment_.justified) return rect_.left;
  if (alignment_.center) {
    SetTextAlign(dc_, TA_CENTER);
    return WrapAdd(rect_.right / 2, rect_.left / 2);
  }
  // From right to left the two sides change places.
  if (alignment_.right == alignment_.rtl) return rect_.left;
  SetTextAlign(dc_, TA_RIGHT);
  return rect_.right;
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

SCRIPT_STRING_ANALYSIS AnalyseScriptString(HDC dc, std::u16string_view text, Long length, std::uint32_t flags,
                                           Long width, const ScriptControl* control, const ScriptState* state,
                                           const ScriptTabDef* tabs) {
  const auto units = static_cast<std::size_t>(std::max(length, 0));
  std::u16string ended;
  if (units > text.size()) {
    ended = text;
    ended.resize(units);
    text = ended;
  }
  return ScriptStringAnalyse(dc, text.substr(0, units), flags, width, Packed(control), Packed(state),
                             Packed(tabs, flags));
}

void FreeScriptString(SCRIPT_STRING_ANALYSIS& analysis) {
  if (analysis != nullptr) ScriptStringFree(analysis);
  analysis = nullptr;
}

Long OutCharCount(SCRIPT_STRING_ANALYSIS analysis) {
  const Long* count = ScriptString_pcOutChars(analysis);
  return count != nullptr ? *count : 0;
}

SIZE ScriptStringSize(SCRIPT_STRING_ANALYSIS analysis) {
  const SIZE* size = analysis != nullptr ? ScriptString_pSize(analysis) : nullptr;
  return size != nullptr ? *size : SIZE{};
}

LogAttr Unpacked(std::uint8_t byte) {
  const auto bit = [byte](int n) { return static_cast<std::uint8_t>(byte >> n & 1); };
  return {bit(0), bit(1), bit(2), bit(3), bit(4), static_cast<std::uint8_t>(byte >> 5)};
}

void ReadLogAttrs(SCRIPT_STRING_ANALYSIS analysis, Long count, std::vector<LogAttr>& attrs) {
  const std::uint8_t* bytes = ScriptString_pLogAttr(analysis);
  if (bytes == nullptr) return;
  attrs.resize(static_cast<std::size_t>(std::max(count, 0)));
  std::transform(bytes, bytes + attrs.size(), attrs.begin(), Unpacked);
}

Long FindBreakPosition(std::u16string_view text, std::span<const LogAttr> attrs, Long count) {
  // A pair that begins within the part that fits may end just past it.
  const std::size_t line_end = text.substr(0, static_cast<std::size_t>(std::max(count, 0)) + 1).find(u"\r\n");
  if (line_end != text.npos) return static_cast<Long>(line_end) + 1;
  if (static_cast<std::int64_t>(text.size()) <= count) return count;
  for (auto i = std::min<std::int64_t>(count, std::ssize(attrs)); i >= 1; --i) {
    const LogAttr& attr = attrs[static_cast<std::size_t>(i - 1)];
    if (attr.fWhiteSpace == 0 && attr.fSoftBreak == 0) continue;
    const auto position = static_cast<Long>(attr.fWhiteSpace != 0 ? i : i - 1);
    return position != 0 ? position : count;
  }
  return count;
}

Long FitCharacters(HDC dc, std::u16string_view text, Long x, Long right, Long /*y*/, Long /*bottom*/) {
  if (text.empty()) return 0;
  return FirstPass(dc, text, kScriptFlags, WrapSub(right, x)).value_or(0);
}

void DrawScriptString(HDC dc, std::uint32_t out_options, const RECT& rect, std::u16string_view text,
                      Long min_sel, Long max_sel, const ScriptAlignment& alignment) {
  ScriptLines lines(dc, out_options, rect, {min_sel, max_sel}, alignment);
  for (int round = 0; round < kMostLines && !text.empty(); ++round) {
    const std::size_t length = text.size();
    const std::optional<Long> drawn = lines.DrawNext(text);
    if (!drawn) continue;  // once more, although nothing has changed
    text.remove_prefix(std::min(length, static_cast<std::size_t>(std::max(*drawn, 0))));
    if (alignment.singleLine || text.size() == length) return;
  }
}

}  // namespace marklet
