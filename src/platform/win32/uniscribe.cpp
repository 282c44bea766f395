#include "platform/uniscribe.h"

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <limits>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/shared/aligned_corner.h"
#include "platform/shared/complex_characters.h"
#include "platform/shared/script_window.h"
#include "platform/text.h"
#include "platform/win32/handles.h"
#include "platform/win32/saved_state.h"
#include "platform/win32/system_function.h"
#include "platform/win32/text_run.h"

namespace marklet {
namespace {

using win32::Native;
using win32::Near;

// Never linked: the import library names gdi32.dll, where only newer systems have these functions.
template <typename Function>
Function* Usp10(const char* name) {
  return win32::SystemFunction<Function*>(L"usp10.dll", name);
}

struct Functions {
  decltype(&::ScriptStringAnalyse) analyse = Usp10<decltype(::ScriptStringAnalyse)>("ScriptStringAnalyse");
  decltype(&::ScriptStringFree) free = Usp10<decltype(::ScriptStringFree)>("ScriptStringFree");
  decltype(&::ScriptString_pcOutChars) out_chars =
      Usp10<decltype(::ScriptString_pcOutChars)>("ScriptString_pcOutChars");
  decltype(&::ScriptString_pSize) size = Usp10<decltype(::ScriptString_pSize)>("ScriptString_pSize");
  decltype(&::ScriptString_pLogAttr) attributes =
      Usp10<decltype(::ScriptString_pLogAttr)>("ScriptString_pLogAttr");
  decltype(&::ScriptStringCPtoX) x_of = Usp10<decltype(::ScriptStringCPtoX)>("ScriptStringCPtoX");
  decltype(&::ScriptStringOut) out = Usp10<decltype(::ScriptStringOut)>("ScriptStringOut");

  bool Complete() const { return analyse && free && out_chars && size && attributes && x_of && out; }
};

const Functions& Platform() {
  static const Functions functions;
  return functions;
}

struct Freed {
  using pointer = ::SCRIPT_STRING_ANALYSIS;
  void operator()(pointer analysis) const { Platform().free(&analysis); }
};
using NativeAnalysis = std::unique_ptr<void, Freed>;

constexpr char16_t kNoWidth = 0x200B, kLam = 0x0644;

bool IsMarkFromTheRight(char16_t c) {
  return (c >= 0x0591 && c <= 0x05BD) || c == 0x05BF || c == 0x05C1 || c == 0x05C2 || c == 0x05C4 ||
         c == 0x05C5 || c == 0x05C7 || (c >= 0x0610 && c <= 0x061A) || (c >= 0x064B && c <= 0x065F) ||
         c == 0x0670 || (c >= 0x06D6 && c <= 0x06ED) || (c >= 0x08D3 && c <= 0x08FF) || c == 0xFB1E;
}

bool IsFromTheRight(char16_t c) {
  return (c >= 0x0590 && c <= 0x08FF) || (c >= 0xFB1D && c <= 0xFDFF) || (c >= 0xFE70 && c <= 0xFEFC);
}

// Digits of these scripts run from left to right.
bool IsLetterFromTheRight(char16_t c) {
  const bool digit_or_its_sign = (c >= 0x0600 && c <= 0x0605) || (c >= 0x0660 && c <= 0x066C) ||
                                 (c >= 0x06F0 && c <= 0x06F9) || c == 0x06DD || c == 0x08E2;
  return IsFromTheRight(c) && !digit_or_its_sign;
}

// Not so what is made of surrogates, among which are scripts from the right, and what sets a direction.
bool RunsFromTheLeft(char16_t c) {
  const bool sets_direction =
      (c >= 0x200E && c <= 0x200F) || (c >= 0x202A && c <= 0x202E) || (c & 0xFFF0) == 0x2060;
  return !IsFromTheRight(c) && !sets_direction && (c & 0xF800) != 0xD800;
}

bool IsAlef(char16_t c) { return c == 0x0622 || c == 0x0623 || c == 0x0625 || c == 0x0627 || c == 0x0671; }

// A Hebrew or Arabic mark in front of its letters, with nothing to stand on, brings Wine's script processor
// down with some fonts. For one on the ligature of lam and alef that ends its run, as in a greeting, it reads
// in front of a list and ends the program.
bool FellsWine(std::u16string_view text, std::size_t at) {
  if (!IsMarkFromTheRight(text[at]) || !win32::IsWine()) return false;
  const bool stands = at > 0 && IsFromTheRight(text[at - 1]);
  const bool on_ligature = at >= 2 && IsAlef(text[at - 1]) && text[at - 2] == kLam;
  return !stands || on_ligature;
}

// A NUL would be drawn as the missing character.
std::u16string Drawable(std::u16string_view text) {
  std::u16string result(text);
  for (std::size_t i = 0; i < result.size(); ++i)
    if (result[i] == 0 || FellsWine(result, i)) result[i] = kNoWidth;
  return result;
}

// Complex for more than its direction: Hebrew letters keep their forms.
bool MayJoin(char16_t c) { return IsComplexUnit(c) && (c < 0x0590 || c > 0x05FF); }

// Of text that begins and ends with letters from the right, or stands in a line from there: whether nothing
// in it runs the other way.
bool RunsFromTheRight(std::u16string_view text, bool rtl_line) {
  if (!rtl_line && !(IsLetterFromTheRight(text.front()) && IsLetterFromTheRight(text.back()))) return false;
  return std::all_of(text.begin(), text.end(), [](char16_t c) {
    return IsLetterFromTheRight(c) || c == u' ' || c == u',' || c == u'.' || c == kNoWidth;
  });
}

// How wide a line of an analysis is up to each of its units, in the order of the text. The platform's own
// list of widths won't do: where characters are more glyphs than they are, it writes past its end.
class LineWidths {
 public:
  LineWidths(::SCRIPT_STRING_ANALYSIS analysis, std::u16string_view text, bool rtl)
      : analysis_(analysis), count_(text.size()), start_(Edge(0, false)) {
    const bool one_direction =
        RunsFromTheRight(text, rtl) || (!rtl && std::all_of(text.begin(), text.end(), RunsFromTheLeft));
    if (!one_direction) AddUp();
  }

  // Not of the whole line.
  std::int64_t Before(std::size_t unit) const {
    if (unit == 0) return 0;
    if (!ends_.empty()) return ends_[unit - 1];
    return std::abs(Edge(unit, false) - start_);
  }
  // How many units at most are that wide together; the whole line isn't.
  std::size_t UnitsWithin(Long width) const {
    std::size_t within = 0, too_wide = count_;
    while (too_wide - within > 1) {
      const std::size_t middle = within + (too_wide - within) / 2;
      (Before(middle) <= width ? within : too_wide) = middle;
    }
    return within;
  }

 private:
  // Where a unit begins or ends on the line, which in one from the right is further to the left.
  int Edge(std::size_t unit, bool trailing) const {
    int x = 0;
    Platform().x_of(analysis_, static_cast<int>(unit), trailing, &x);
    return x;
  }
  // In a line of two directions a unit's place doesn't tell what stands before it in the text.
  void AddUp() {
    std::int64_t end = 0;
    for (std::size_t i = 0; i < count_; ++i) ends_.push_back(end += std::abs(Edge(i, true) - Edge(i, false)));
  }

  const ::SCRIPT_STRING_ANALYSIS analysis_;
  const std::size_t count_;
  const int start_;
  std::vector<std::int64_t> ends_;  // only for two directions
};

}  // namespace

struct ScriptStringHandle {
 public:
  ScriptStringHandle(::HDC dc, std::uint32_t flags, Long width, const SCRIPT_CONTROL& control,
                     const SCRIPT_STATE& state, const SCRIPT_TABDEF& tabs)
      : dc_(dc), flags_(flags), width_(width), control_(control), state_(state), tabs_(tabs) {}

  // False when the platform fails; then the object is of no use.
  bool Analyse(std::u16string_view text);

  const Long& OutChars() const { return fitting_; }
  const SIZE* Size();
  const std::uint8_t* LogAttrs();
  bool Draw(Long x, Long y, std::uint32_t options, const RECT* clip, Long first_selected, Long past_selected,
            bool disabled);

 private:
  const TEXTMETRICW& Metrics();
  NativeAnalysis Analysed(std::size_t first, std::size_t units, std::uint32_t flags) const;
  bool FindFit(std::u16string_view text);
  Long SearchFit();
  bool FitsWhenCut(const LineWidths& widths, std::size_t units);
  bool StartsCluster(std::size_t unit) const;
  std::size_t ClusterStart(std::size_t unit) const;
  bool MakeDrawn();

  const ::HDC dc_;
  const std::uint32_t flags_;
  const Long width_;
  const SCRIPT_CONTROL control_;
  const SCRIPT_STATE state_;
  const SCRIPT_TABDEF tabs_;
  std::u16string text_;                 // as far as it was looked at
  NativeAnalysis analysis_;             // of that
  NativeAnalysis drawn_;                // of what is drawn when that isn't all; once it is needed
  std::optional<TEXTMETRICW> metrics_;  // once somebody asks
  Long fitting_ = 0;
  SIZE size_;
};

const TEXTMETRICW& ScriptStringHandle::Metrics() {
  if (!metrics_) metrics_ = win32::MetricsOf(dc_);
  return *metrics_;
}

NativeAnalysis ScriptStringHandle::Analysed(std::size_t first, std::size_t units, std::uint32_t flags) const {
  auto control = std::bit_cast<::SCRIPT_CONTROL>(control_);
  auto state = std::bit_cast<::SCRIPT_STATE>(state_);
  // What the flag stands for, for who knows only the record.
  if (flags & SSA_RTL) state.uBidiLevel = 1;
  ::SCRIPT_TABDEF tabs{tabs_.cTabStops, tabs_.iScale, const_cast<int*>(tabs_.pTabStops), tabs_.iTabOrigin};
  ::SCRIPT_STRING_ANALYSIS analysis = nullptr;
  // How many glyphs there are is the platform's to reckon; -1 says that the text is Unicode.
  const HRESULT result = Platform().analyse(dc_, text_.data() + first, static_cast<int>(units), 0, -1, flags,
                                            width_, &control, &state, nullptr, &tabs, nullptr, &analysis);
  return NativeAnalysis(SUCCEEDED(result) ? analysis : nullptr);
}

bool ScriptStringHandle::Analyse(std::u16string_view text) {
  if (flags_ & SSA_CLIP) return FindFit(text);
  text_ = Drawable(text);
  fitting_ = static_cast<Long>(text_.size());
  analysis_ = Analysed(0, text_.size(), flags_);
  return analysis_ != nullptr;
}

bool ScriptStringHandle::FindFit(std::u16string_view text) {
  ScriptWindow window(text, width_, Metrics().tmHeight);
  for (;; window.Grow()) {
    text_ = Drawable(window.Text());
    analysis_ = Analysed(0, text_.size(), flags_);
    const int* const out = analysis_ ? Platform().out_chars(analysis_.get()) : nullptr;
    const ::SIZE* const size = analysis_ ? Platform().size(analysis_.get()) : nullptr;
    if (!out || !size) return false;
    fitting_ = std::clamp(*out, 0, static_cast<int>(text_.size()));
    if (fitting_ == std::ssize(text_)) {
      if (!window.Tells(size->cx)) continue;
      if (size->cx <= width_) return true;
      fitting_ = SearchFit();
    }
    window.Ended(static_cast<std::size_t>(fitting_));
    return true;
  }
}

// What a platform leaves to us that never clips: the longest part of the line that still fits when the text
// is cut there.
Long ScriptStringHandle::SearchFit() {
  const LineWidths widths(analysis_.get(), text_, (flags_ & SSA_RTL) != 0);
  std::size_t fitting = ClusterStart(widths.UnitsWithin(width_));
  while (fitting > 0 && !FitsWhenCut(widths, fitting)) fitting = ClusterStart(fitting - 1);
  return static_cast<Long>(fitting);
}

// At the end of a line a letter may be wider than inside its word: where letters join it has another form,
// and elsewhere a pair of letters may stand closer. So that word is laid out anew, unless there is room to
// spare.
bool ScriptStringHandle::FitsWhenCut(const LineWidths& widths, std::size_t units) {
  const std::size_t blank = text_.find_last_of(u" \t", units - 1);
  const std::size_t word = blank == text_.npos ? 0 : blank + 1;
  if (word == units) return true;
  if (!MayJoin(text_[units - 1]) && !MayJoin(text_[units]) &&
      widths.Before(units) + Metrics().tmHeight / 4 <= width_)
    return true;
  const NativeAnalysis cut = Analysed(word, units - word, flags_ & ~(SSA_CLIP | SSA_FIT));
  const ::SIZE* const size = cut ? Platform().size(cut.get()) : nullptr;
  return size && widths.Before(word) + size->cx <= width_;
}

// Whether a cluster begins at a unit, or the text ends there.
bool ScriptStringHandle::StartsCluster(std::size_t unit) const {
  if (unit == 0 || unit >= text_.size()) return true;
  if (IS_SURROGATE_PAIR(text_[unit - 1], text_[unit])) return false;
  const SCRIPT_LOGATTR* const attributes = Platform().attributes(analysis_.get());
  return !attributes || attributes[unit].fCharStop || text_[unit] == kNoWidth;
}

// Where the cluster begins that a unit belongs to.
std::size_t ScriptStringHandle::ClusterStart(std::size_t unit) const {
  while (!StartsCluster(unit)) --unit;
  return unit;
}

// The line that is drawn has the cluster too that no longer fits whole.
bool ScriptStringHandle::MakeDrawn() {
  if (fitting_ == std::ssize(text_)) return true;
  if (drawn_) return true;
  std::size_t end = static_cast<std::size_t>(fitting_) + 1;
  while (!StartsCluster(end)) ++end;
  drawn_ = Analysed(0, end, flags_ & ~(SSA_CLIP | SSA_FIT));
  return drawn_ != nullptr;
}

const SIZE* ScriptStringHandle::Size() {
  const ::SIZE* const size = MakeDrawn() ? Platform().size((drawn_ ? drawn_ : analysis_).get()) : nullptr;
  if (!size) return nullptr;
  size_ = win32::Wrap(*size);
  return &size_;
}

const std::uint8_t* ScriptStringHandle::LogAttrs() {
  static_assert(sizeof(SCRIPT_LOGATTR) == 1);
  return reinterpret_cast<const std::uint8_t*>(Platform().attributes(analysis_.get()));
}

bool ScriptStringHandle::Draw(Long x, Long y, std::uint32_t options, const RECT* clip, Long first_selected,
                              Long past_selected, bool disabled) {
  const SIZE* const size = Size();
  if (!size) return false;
  const TEXTMETRICW& metrics = Metrics();
  const win32::SavedClip saved(dc_);
  const LineCorner corner = AlignedCorner(saved.Align(), x, y, {size->cx, size->cy, metrics.tmAscent});
  // Not every platform clips what it draws item by item, and it would align each item of its own.
  if (clip && (options & ETO_CLIPPED)) win32::ClipTo(dc_, *clip);
  ::SetTextAlign(dc_, TA_LEFT | TA_TOP);
  // Of glyphs that large the platform would make bitmaps.
  if (metrics.tmHeight > win32::kPlainHeight)
    return win32::DrawRun(dc_, corner.x, corner.y, text_, (flags_ & SSA_RTL) != 0);
  const ::RECT box = clip ? Native(Near(*clip)) : ::RECT{};
  return SUCCEEDED(Platform().out((drawn_ ? drawn_ : analysis_).get(), Near(corner.x), Near(corner.y),
                                  options, clip ? &box : nullptr, first_selected, past_selected, disabled));
}

Long ScriptIsComplex(std::u16string_view text, std::uint32_t flags) {
  static const auto function = Usp10<decltype(::ScriptIsComplex)>("ScriptIsComplex");
  constexpr std::size_t kMost = std::numeric_limits<int>::max();
  if (text.empty()) return S_FALSE;
  if (!function) return E_NOTIMPL;
  return function(Native(text.data()), static_cast<int>(std::min(text.size(), kMost)), flags);
}

SCRIPT_STRING_ANALYSIS ScriptStringAnalyse(HDC dc, std::u16string_view text, std::uint32_t flags, Long width,
                                           const SCRIPT_CONTROL& control, const SCRIPT_STATE& state,
                                           const SCRIPT_TABDEF& tabs) {
  if (!dc || text.empty() || !Platform().Complete()) return nullptr;
  auto analysis = std::make_unique<ScriptStringHandle>(Native(dc), flags, width, control, state, tabs);
  return analysis->Analyse(text) ? analysis.release() : nullptr;
}

bool ScriptStringFree(SCRIPT_STRING_ANALYSIS analysis) {
  delete analysis;
  return analysis != nullptr;
}

const Long* ScriptString_pcOutChars(SCRIPT_STRING_ANALYSIS analysis) {
  return analysis ? &analysis->OutChars() : nullptr;
}

const SIZE* ScriptString_pSize(SCRIPT_STRING_ANALYSIS analysis) {
  return analysis ? analysis->Size() : nullptr;
}

const std::uint8_t* ScriptString_pLogAttr(SCRIPT_STRING_ANALYSIS analysis) {
  return analysis ? analysis->LogAttrs() : nullptr;
}

bool ScriptStringOut(SCRIPT_STRING_ANALYSIS analysis, Long x, Long y, std::uint32_t options, const RECT* clip,
                     Long first_selected, Long past_selected, bool disabled) {
  return analysis && analysis->Draw(x, y, options, clip, first_selected, past_selected, disabled);
}

}  // namespace marklet
