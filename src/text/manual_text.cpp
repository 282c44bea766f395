#include "text/manual_text.h"

#include <algorithm>
#include <optional>
#include <string>

#include "base/rounding.h"
#include "platform/locale.h"
#include "platform/text.h"
#include "text/growing_line.h"
#include "text/string_helpers.h"

namespace marklet {
namespace {

constexpr char16_t kCarriageReturn = u'\r';
constexpr unsigned kLastControl = 31;

// One for each Arabic country, in the order in which they are asked for.
constexpr std::uint32_t kArabicLocales[] = {1025, 15361, 3073,  2049,  11265, 13313, 12289, 4097,
                                            6145, 8193,  16385, 10241, 7169,  14337, 9217};
thread_local std::optional<bool> arabic_locale;

std::u16string Replaced(std::u16string_view text, std::u16string_view what, std::u16string_view by) {
  std::u16string result;
  result.reserve(text.size());
  for (std::size_t from = 0;;) {
    const std::size_t found = text.find(what, from);
    result += text.substr(from, found - from);
    if (found == text.npos) return result;
    result += by;
    from = found + what.size();
  }
}

// The marker is a plain string: a caption that holds it comes out with "&" there.
std::u16string WithoutMnemonics(std::u16string_view text) {
  constexpr std::u16string_view kMarker = u"@#$%";
  return Replaced(Replaced(Replaced(text, u"&&", kMarker), u"&", u""), kMarker, u"&");
}

// Of a character that the system code page can't say nothing is known, and it stays.
bool IsControl(char16_t ch) { return AnsiCode(ch).value_or(kLastControl + 1) <= kLastControl; }

// The text and its extent in one line.
struct Passage {
  Passage(HDC dc, const RECT& rect, std::u16string_view marked)
      : text(WithoutMnemonics(marked)), room(std::int64_t{rect.right} - rect.left) {
    GetTextExtentPoint32W(dc, text, extent);
  }
  bool FitsInOneLine() const {
    return extent.cx <= room && text.find(kCarriageReturn) == std::u16string::npos;
  }

  std::u16string text;
  std::int64_t room;  // for a line, in pixels
  SIZE extent;
};

// Gives each piece of the text to `output`, with its y and the width that places it, and returns where the
// last one would stand.
template <typename Output>
Long ForEachPiece(HDC dc, const Passage& passage, Long y, Output output) {
  GrowingLine line(dc, passage.extent);
  // Counted from the start of the text, and used as a length within the line.
  std::size_t break_at = 0;
  for (std::size_t position = 1; position <= passage.text.size(); ++position) {
    const char16_t ch = passage.text[position - 1];
    if (!IsControl(ch)) {
      line.Append(ch);
      if (IsWrapPoint(ch)) break_at = position;
      line.Measure();
      if (line.Extent().cx <= passage.room) {
        if (position == passage.text.size()) output(line.Text(), y, line.Extent().cx);
        continue;
      }
    } else if (ch != kCarriageReturn) {
      continue;
    } else if (line.Empty()) {
      y = WrapAdd(y, line.Extent().cy);
      continue;
    }
    // A word that is too wide for the first line has no break before it, and its piece is empty. When the
    // last character is the one that is too much, what stays in the line is never drawn.
    const std::u16string_view piece = line.Text().substr(0, break_at);
    output(piece, y, line.Extent().cx);
    y = WrapAdd(y, line.Extent().cy);
    line.DropLeft(piece.size());
    break_at = 1;
  }
  return y;
}

Long StartY(HDC dc, const RECT& rect, std::u16string_view text, bool center, bool right_aligned) {
  const Long reach = MeasureWrappedText(dc, rect, text, true, center, right_aligned);
  const double height = static_cast<double>(rect.bottom) - rect.top;
  return RoundHalfEven(rect.top + height / 2 - reach / 3.0);
}

// A quarter of the width, where centring takes half: centred captions of one line stand to the right.
Long CenteredX(const RECT& rect, Long width) {
  const double room = static_cast<double>(rect.right) - rect.left;
  return RoundHalfEven(rect.left + room / 2 - width / 4.0);
}

Long RightX(const RECT& rect, Long width) { return WrapSub(WrapAdd(rect.left, rect.right), width); }

}  // namespace

void DrawTextManual(HDC dc, const RECT& rect, std::u16string_view text, bool center_vertically, bool center,
                    bool right_aligned) {
  ArabicLocaleInstalled();  // the answer has no effect
  const Long top = center_vertically ? StartY(dc, rect, text, center, right_aligned) : rect.top;
  const Passage passage(dc, rect, text);
  const Long start_x = center ? CenteredX(rect, passage.extent.cx) : rect.left;
  if (passage.FitsInOneLine()) {
    TextOutW(dc, right_aligned ? RightX(rect, passage.extent.cx) : start_x, top, passage.text);
    return;
  }
  const std::int64_t twice_middle = std::int64_t{rect.left} + rect.right;
  // The width that places a piece is that of its line, which may be longer.
  ForEachPiece(dc, passage, top, [&](std::u16string_view piece, Long y, Long line_width) {
    const Long x = right_aligned ? RightX(rect, line_width)
                   : center      ? static_cast<Long>(twice_middle / 2 - line_width / 2)
                                 : start_x;
    TextOutW(dc, x, y, piece);
  });
}

Long MeasureWrappedText(HDC dc, const RECT& rect, std::u16string_view text, bool center_vertically, bool,
                        bool) {
  const Passage passage(dc, rect, text);
  if (passage.FitsInOneLine()) return 0;
  const std::int64_t height = std::int64_t{rect.bottom} - rect.top;
  const std::int64_t middle = rect.top + height / 2 - passage.extent.cy / 2;
  const Long top = center_vertically ? static_cast<Long>(middle) : rect.top;
  return ForEachPiece(dc, passage, top, [](std::u16string_view, Long, Long) {});
}

bool IsWrapPoint(char16_t ch) {
  // A line end as two characters was meant too, which no single character is.
  return ch == u' ';
}

bool ArabicLocaleInstalled() {
  if (!arabic_locale)
    arabic_locale = std::any_of(std::begin(kArabicLocales), std::end(kArabicLocales),
                                [](std::uint32_t locale) { return IsValidLocale(locale, LCID_INSTALLED); });
  return *arabic_locale;
}

void ForgetArabicLocale() { arabic_locale.reset(); }

}  // namespace marklet
