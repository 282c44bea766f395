#include "text/unicode_text_render.h"

#include <algorithm>

#include "base/ignore_errors.h"
#include "base/rounding.h"
#include "platform/shared/os_tests.h"
#include "platform/system.h"
#include "platform/text.h"
#include "text/emit_text_run.h"
#include "text/shaping.h"
#include "text/string_helpers.h"

namespace marklet {
namespace {

constexpr Long kBaselineDrop = 13;  // pixels from a rectangle's top to the line that characters stand on

// How many units past a prefix that doesn't fit a longer one may still: a character can narrow those before
// it, by joining, kerning or ligature, but not from afar.
constexpr std::size_t kNarrowingReach = 64;

class AlignedContext {
 public:
  AlignedContext(HDC dc, std::uint32_t align) : dc_(dc), former_(SetTextAlign(dc, align)) {}
  ~AlignedContext() { SetTextAlign(dc_, former_); }
  AlignedContext(const AlignedContext&) = delete;
  AlignedContext& operator=(const AlignedContext&) = delete;

 private:
  HDC dc_;
  std::uint32_t former_;
};

// Sets a flag for as long as it lives, however that ends.
class Busy {
 public:
  explicit Busy(bool& flag) : flag_(flag) { flag_ = true; }
  ~Busy() { flag_ = false; }
  Busy(const Busy&) = delete;
  Busy& operator=(const Busy&) = delete;

 private:
  bool& flag_;
};

template <typename Fits>
std::size_t LongestPrefix(std::size_t length, Fits fits) {
  // Widths grow with the length but for the narrowing above, so halving finds the neighbourhood of the answer
  // without measuring every prefix of a long text.
  std::size_t fitting = 0, too_long = length;
  while (too_long - fitting > 1) {
    const std::size_t middle = fitting + (too_long - fitting) / 2;
    (fits(middle) ? fitting : too_long) = middle;
  }
  const std::size_t last = std::min(length, too_long + kNarrowingReach);
  for (std::size_t tried = too_long + 1; tried <= last; ++tried) {
    if (fits(tried)) fitting = tried;
  }
  return fitting;
}

}  // namespace

struct CUnicodeTextRender::Run {
  HDC dc;
  std::u16string& text;
  RECT& rect;
  std::uint32_t format;
  bool rtl;
};

struct CUnicodeTextRender::Route {
  std::u16string_view tag;
  void (CUnicodeTextRender::*draw)(const Run&);
};

Long CUnicodeTextRender::FitLength(HDC dc, std::u16string_view text, Long max_width) const {
  const std::size_t line_break = text.find_first_of(u"\r\n");
  if (line_break != text.npos) return static_cast<Long>(line_break + 1);
  const auto fits = [&](std::size_t count) {
    return MeasureString(dc, text.substr(0, count)).cx <= max_width;
  };
  if (fits(text.size())) return static_cast<Long>(text.size());
  return static_cast<Long>(LongestPrefix(text.size(), fits));
}

Long CUnicodeTextRender::IsLineBreak(Long code) { return code == 10 || code == 13 ? 1 : 0; }

void CUnicodeTextRender::DrawText(HDC dc, std::u16string& text, Long length, RECT& rect, std::uint32_t format,
                                  COLORREF color, bool rtl, bool mark_route) {
  if (length != -1 || text.empty()) return;
  if (format == 0) format = DT_WORD_ELLIPSIS | DT_SINGLELINE;
  SetTextColor(dc, color);
  const Route& route = ChooseRoute(RenderRoute());
  // The tag is part of what is drawn, and stays in the caller's text.
  text += route.tag;
  if (mark_route) text += u"<map>";
  (this->*route.draw)({dc, text, rect, format, rtl});
}

std::uint32_t CUnicodeTextRender::TextAlignFlags(std::uint32_t, bool rtl) {
  return rtl ? TA_BASELINE | TA_RTLREADING : TA_BASELINE;
}

std::u16string CUnicodeTextRender::StripControlCodes(std::u16string_view) {
  // U+0001 and U+0330 would be dropped from a copy, but a copy with a character left in it is thrown away.
  return {};
}

const CUnicodeTextRender::Route& CUnicodeTextRender::ChooseRoute(int number) {
  using Render = CUnicodeTextRender;
  // The Unicode layer's DrawTextW is reached by the same name as the system's.
  static constexpr Route kNumbered[] = {{u"<DrawTextW>", &Render::DrawPlainW},
                                        {u"<ExtTextOutW>", &Render::DrawAtPoint},
                                        {u"<Uniscribe>", &Render::DrawShaped},
                                        {u"<UNICOWS>", &Render::DrawPlainW}};
  static constexpr Route kUnicodeSystem = {u"<!DrawTextW!>", &Render::DrawPlainW};
  static constexpr Route kUnicodeLayer = {u"<!UNICOWS!>", &Render::DrawPlainW};
  static constexpr Route kBytes = {u"<!!!!!DrawTextA!!!!!>", &Render::DrawPlainA};
  if (number >= 1 && number <= 4) return kNumbered[number - 1];
  if (IsUnicodeCapable()) return kUnicodeSystem;
  return LoadLibraryA("UNICOWS") != nullptr ? kUnicodeLayer : kBytes;
}

void CUnicodeTextRender::DrawPlainW(const Run& run) {
  DrawTextW(run.dc, TrimAtNull(run.text), run.rect, run.format);
}

void CUnicodeTextRender::DrawAtPoint(const Run& run) {
  const AlignedContext aligned(run.dc, TextAlignFlags(run.format, run.rtl));
  ExtTextOutW(run.dc, run.rect.left, WrapAdd(run.rect.top, kBaselineDrop), 0, &run.rect, run.text);
}

void CUnicodeTextRender::DrawShaped(const Run& run) {
  const AlignedContext aligned(run.dc, TextAlignFlags(run.format, run.rtl));
  if (busy_) return;
  const Busy busy(busy_);
  RECT place = run.rect;
  place.top = WrapAdd(place.top, kBaselineDrop);
  IgnoreErrors(
      [&] { DrawScriptString(run.dc, 0, place, run.text, 0, 0, {.right = (run.format & DT_RIGHT) != 0}); });
}

void CUnicodeTextRender::DrawPlainA(const Run& run) {
  const std::string bytes = WideCharToMultiByte(CP_ACP, run.text);
  DrawTextA(run.dc, std::string_view(bytes).substr(0, bytes.find('\0')), run.rect, run.format);
  run.text = MultiByteToWideChar(CP_ACP, bytes);
}

}  // namespace marklet
