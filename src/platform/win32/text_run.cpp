#include "platform/win32/text_run.h"

#include <algorithm>
#include <array>

#include "platform/text.h"
#include "platform/win32/giant_text.h"

namespace marklet::win32 {
namespace {

// At such heights a handful of characters cover any screen; the rest of a heap of them on one spot is left
// out.
constexpr std::size_t kMostGiants = 64;

using Ends = std::array<int, kPlainUnits>;  // of each unit of a piece: where it ends, from the piece's start

// Fills the ends of a piece and returns its width, -1 when the platform refuses.
int Measure(::HDC dc, std::u16string_view piece, Ends& ends) {
  ::SIZE size{};
  const bool measured = GetTextExtentExPointW(dc, Native(piece.data()), static_cast<int>(piece.size()), 0,
                                              nullptr, ends.data(), &size);
  return measured ? size.cx : -1;
}

void FillBox(::HDC dc, const ::RECT& box) {
  if (::GetBkMode(dc) == OPAQUE) ::ExtTextOutW(dc, 0, 0, ETO_OPAQUE, &box, nullptr, 0, nullptr);
}

// Draws those characters of a piece in a giant font that the clip shows.
bool DrawGiants(::HDC dc, int x, int y, std::u16string_view piece, const Ends& ends, const ::RECT& clip,
                int height) {
  FillBox(dc, {x, y, x + ends[piece.size() - 1], y + height});
  const auto last = ends.begin() + static_cast<std::ptrdiff_t>(piece.size());
  // A glyph may reach out of its own width by about its height.
  const auto from = std::lower_bound(ends.begin(), last, clip.left - height - x);
  const auto to = std::upper_bound(from, last, clip.right + height - x);
  const std::size_t first = static_cast<std::size_t>(from - ends.begin());
  const std::size_t count =
      std::min({static_cast<std::size_t>(to - from) + 1, piece.size() - first, kMostGiants});
  if (first >= piece.size()) return true;
  return FillGiantText(dc, x + (first ? ends[first - 1] : 0), y, piece.substr(first, count), clip);
}

bool DrawPiece(::HDC dc, std::int64_t x, std::int64_t y, std::u16string_view piece, const Ends& ends,
               const ::RECT& clip, int height) {
  const std::int64_t end = x + ends[piece.size() - 1];
  if (x > std::int64_t{clip.right} + height || end < std::int64_t{clip.left} - height) return true;
  const int left = static_cast<int>(x), top = static_cast<int>(y);
  if (height > kPlainHeight) return DrawGiants(dc, left, top, piece, ends, clip, height);
  return ::TextOutW(dc, left, top, Native(piece.data()), static_cast<int>(piece.size()));
}

}  // namespace

TEXTMETRICW MetricsOf(::HDC dc) {
  TEXTMETRICW metrics{};
  GetTextMetricsW(dc, &metrics);
  return metrics;
}

std::size_t PieceLength(std::u16string_view text) {
  if (text.size() <= kPlainUnits) return text.size();
  const bool pair = IS_SURROGATE_PAIR(text[kPlainUnits - 1], text[kPlainUnits]);
  return kPlainUnits - (pair ? 1 : 0);
}

bool WidthOf(::HDC dc, std::u16string_view text, std::int64_t& width) {
  std::int64_t sum = 0;
  while (!text.empty()) {
    const std::size_t count = PieceLength(text);
    ::SIZE size{};
    if (!::GetTextExtentPoint32W(dc, Native(text.data()), static_cast<int>(count), &size)) return false;
    sum += size.cx;
    text.remove_prefix(count);
  }
  width = sum;
  return true;
}

void UnitWidths(::HDC dc, std::u16string_view text, std::vector<Long>& widths) {
  widths.clear();
  widths.reserve(text.size());
  Ends ends;
  while (!text.empty()) {
    const std::u16string_view piece = text.substr(0, PieceLength(text));
    if (Measure(dc, piece, ends) < 0) ends.fill(0);
    for (std::size_t i = 0; i < piece.size(); ++i) widths.push_back(ends[i] - (i == 0 ? 0 : ends[i - 1]));
    text.remove_prefix(piece.size());
  }
}

bool DrawRun(::HDC dc, std::int64_t x, std::int64_t y, std::u16string_view text, bool rtl) {
  const int height = MetricsOf(dc).tmHeight;
  std::int64_t end = 0;  // where the next piece ends, when what comes first stands at the right
  ::RECT clip{};
  if (!GetClipBox(dc, &clip) || (rtl && !WidthOf(dc, text, end))) return false;
  if (y > clip.bottom || y + height < clip.top) return true;
  end += x;

  const UINT align = ::SetTextAlign(dc, rtl ? TA_RTLREADING : 0);
  bool drawn = true;
  Ends ends;
  while (drawn && !text.empty()) {
    const std::u16string_view piece = text.substr(0, PieceLength(text));
    const int width = Measure(dc, piece, ends);
    const std::int64_t left = rtl ? end - width : x;
    if (width < 0 || !DrawPiece(dc, left, y, piece, ends, clip, height)) drawn = false;
    x += width;
    end -= width;
    text.remove_prefix(piece.size());
  }
  ::SetTextAlign(dc, align);
  return drawn;
}

}  // namespace marklet::win32
