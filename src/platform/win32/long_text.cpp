#include "platform/win32/long_text.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "platform/win32/saved_state.h"
#include "platform/win32/text_run.h"

namespace marklet::win32 {
namespace {

// A text without its "&" marks, and where they underline.
struct Unmarked {
  std::u16string text;
  std::vector<std::size_t> underlined;  // ascending indices
};

Unmarked TakeMarksOut(std::u16string_view text, bool marks) {
  if (!marks) return {std::u16string(text), {}};
  Unmarked result;
  result.text.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == u'&' && i + 1 < text.size()) {
      if (text[++i] != u'&') result.underlined.push_back(result.text.size());
    }
    result.text += text[i];
  }
  return result;
}

struct Line {
  std::size_t start, length;  // the part of the text that it shows
  std::u16string text;        // which dots may follow
  std::int64_t width = 0;
};

class LongText {
 public:
  LongText(::HDC dc, const RECT& rect, std::uint32_t flags, const Unmarked& source)
      : dc_(dc), rect_(rect), flags_(flags), source_(source), line_height_(MetricsOf(dc).tmHeight) {}

  // Places every line, and draws it unless only the size is asked for.
  void Run();
  std::int64_t Width() const { return widest_; }
  std::int64_t Height() const { return y_; }

 private:
  bool Has(std::uint32_t flag) const { return (flags_ & flag) != 0; }
  std::int64_t Room() const { return std::int64_t{rect_.right} - rect_.left; }
  bool Done() const;
  void RunParagraph(std::size_t start, std::size_t end);
  std::size_t LineLength(std::u16string_view rest) const;
  void Place(std::size_t start, std::size_t length);
  void Shorten(Line& line) const;
  void Draw(const Line& line) const;
  std::int64_t Left(std::int64_t width) const;
  std::int64_t Top() const;
  void Underline(const Line& line, std::int64_t left) const;

  ::HDC dc_;
  RECT rect_;
  std::uint32_t flags_;
  const Unmarked& source_;
  std::int64_t line_height_;
  std::int64_t y_ = 0;  // of the next line, from the rectangle's top
  std::int64_t widest_ = 0;
};

bool LongText::Done() const {
  return !Has(DT_CALCRECT) && !Has(DT_NOCLIP) && !Has(DT_SINGLELINE) && rect_.top + y_ >= rect_.bottom;
}

void LongText::Run() {
  const std::u16string_view text = source_.text;
  for (std::size_t start = 0; start < text.size() && !Done();) {
    const std::size_t end =
        Has(DT_SINGLELINE) ? text.size() : std::min(text.find_first_of(u"\r\n", start), text.size());
    RunParagraph(start, end);
    const std::u16string_view line_end = text.substr(end, 2);
    start = end + (line_end == u"\r\n" || line_end == u"\n\r" ? 2 : 1);
  }
}

void LongText::RunParagraph(std::size_t start, std::size_t end) {
  const std::u16string_view text = source_.text;
  do {
    const std::size_t length = LineLength(text.substr(start, end - start));
    Place(start, length);
    start += length;
    if (start < end && text[start] == u' ')
      ++start;  // one of the blanks at which a line was broken is dropped
  } while (start < end && !Done());
}

// Up to the last word that fits, and at the left with the blank behind it. A word too long for any line stays
// whole.
std::size_t LongText::LineLength(std::u16string_view rest) const {
  if (!Has(DT_WORDBREAK) || Has(DT_SINGLELINE)) return rest.size();
  const std::size_t fit = UnitsThatFit(dc_, rest, Room());
  if (fit == rest.size()) return fit;
  std::size_t blank = rest.rfind(u' ', fit);
  if (blank == rest.npos || blank == 0) blank = rest.find(u' ', std::max<std::size_t>(fit, 1));
  if (blank == rest.npos) return rest.size();
  return Has(DT_RIGHT | DT_CENTER) ? blank : blank + 1;
}

void LongText::Place(std::size_t start, std::size_t length) {
  Line line{start, length, source_.text.substr(start, length)};
  WidthOf(dc_, line.text, line.width);
  if (Has(DT_WORD_ELLIPSIS) && line.width > Room()) Shorten(line);
  widest_ = std::max(widest_, line.width);
  if (!Has(DT_CALCRECT)) Draw(line);
  y_ += line_height_;
}

// To what leaves room for the dots.
void LongText::Shorten(Line& line) const {
  constexpr std::u16string_view kDots = u"...";
  std::int64_t dots = 0;
  WidthOf(dc_, kDots, dots);
  line.length = UnitsThatFit(dc_, line.text, Room() - dots);
  if (line.length > 0 && IS_SURROGATE_PAIR(line.text[line.length - 1], line.text[line.length])) --line.length;
  line.text.replace(line.length, line.text.npos, kDots);
  WidthOf(dc_, line.text, line.width);
}

std::int64_t LongText::Left(std::int64_t width) const {
  if (Has(DT_RIGHT)) return rect_.right - width;
  if (Has(DT_CENTER)) return (std::int64_t{rect_.left} + rect_.right - width) / 2;
  return rect_.left;
}

std::int64_t LongText::Top() const {
  if (Has(DT_SINGLELINE) && Has(DT_BOTTOM)) return rect_.bottom - line_height_;
  if (Has(DT_SINGLELINE) && Has(DT_VCENTER))
    return rect_.top + (std::int64_t{rect_.bottom} - rect_.top) / 2 - line_height_ / 2;
  return rect_.top + y_;
}

void LongText::Draw(const Line& line) const {
  const std::int64_t left = Left(line.width);
  DrawRun(dc_, left, Top(), line.text, Has(DT_RTLREADING));
  Underline(line, left);
}

// As on the platform only the last mark of a line shows.
void LongText::Underline(const Line& line, std::int64_t left) const {
  const std::vector<std::size_t>& marks = source_.underlined;
  const auto behind = std::lower_bound(marks.begin(), marks.end(), line.start + line.length);
  if (behind == marks.begin() || *(behind - 1) < line.start) return;
  const std::u16string_view text = line.text;
  const std::size_t at = *(behind - 1) - line.start;
  std::int64_t from = 0, to = 0;
  WidthOf(dc_, text.substr(0, at), from);
  WidthOf(dc_, text.substr(0, at + 1), to);
  --to;  // the bar is a pixel shorter than its character
  if (Has(DT_RTLREADING)) {
    std::swap(from, to);
    from = line.width - from;
    to = line.width - to;
  }
  const std::int64_t y = Top() + MetricsOf(dc_).tmAscent + 1;
  const ::RECT bar = Native(RECT{Near(left + from), Near(y), Near(left + to), Near(y + 1)});
  SetDCBrushColor(dc_, ::GetTextColor(dc_));
  ::FillRect(dc_, &bar, static_cast<::HBRUSH>(GetStockObject(DC_BRUSH)));
}

}  // namespace

int DrawLongText(HDC dc, std::u16string_view text, RECT& rect, std::uint32_t flags) {
  const Unmarked source = TakeMarksOut(text, (flags & DT_NOPREFIX) == 0);
  const SavedState state(Native(dc));
  if ((flags & (DT_NOCLIP | DT_CALCRECT)) == 0) ClipTo(Native(dc), rect);
  LongText layout(Native(dc), rect, flags, source);
  layout.Run();
  if (flags & DT_CALCRECT) {
    rect.right = Saturated(rect.left + layout.Width());
    rect.bottom = Saturated(rect.top + layout.Height());
  }
  return Saturated(layout.Height());
}

}  // namespace marklet::win32
