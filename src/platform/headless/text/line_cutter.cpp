#include "platform/headless/text/line_cutter.h"

#include <algorithm>

namespace marklet::headless {
namespace {

constexpr std::u16string_view kEllipsis = u"...";

bool IsLineEnd(char16_t c) { return c == u'\r' || c == u'\n'; }
bool IsSpace(char16_t c) { return c == u' ' || c == u'\t' || c == 0x3000; }

// Ideographs, Kana and full-width forms, between which a line may end.
bool IsIdeographic(char16_t c) {
  return (c >= 0x2E80 && c <= 0xA4CF) || (c >= 0xAC00 && c <= 0xD7A3) || (c >= 0xF900 && c <= 0xFAFF) ||
         (c >= 0xFF01 && c <= 0xFF60);
}

constexpr std::u16string_view kNeverFirst =
    u"!),.:;?]}\u2019\u201D\u2026\u3001\u3002\u3005\u3009\u300B\u300D\u300F\u3011\u3015\u3017\u30FC"
    u"\uFF01\uFF09\uFF0C\uFF0E\uFF1A\uFF1B\uFF1F\uFF3D\uFF5D";
constexpr std::u16string_view kNeverLast =
    u"([{\u2018\u201C\u3008\u300A\u300C\u300E\u3010\u3014\u3016\uFF08\uFF3B\uFF5B";

bool IsOneOf(std::u16string_view set, char16_t c) { return set.find(c) != std::u16string_view::npos; }

}  // namespace

LineCutter::LineCutter(Font& font, std::u16string_view text, std::uint32_t flags, std::int64_t limit)
    : font_(font),
      text_(text),
      limit_(limit),
      single_((flags & DT_SINGLELINE) != 0),
      wrap_((flags & DT_WORDBREAK) != 0 && !single_),
      trim_((flags & (DT_CENTER | DT_RIGHT)) != 0),
      ellipsis_((flags & DT_WORD_ELLIPSIS) != 0),
      rtl_((flags & DT_RTLREADING) != 0) {
  FindParagraphEnd();
}

void LineCutter::FindParagraphEnd() {
  paragraph_start_ = position_;
  const auto from = text_.begin() + static_cast<std::ptrdiff_t>(position_);
  const auto end = single_ ? text_.end() : std::find_if(from, text_.end(), IsLineEnd);
  paragraph_end_ = static_cast<std::size_t>(end - text_.begin());
  widths_.clear();
}

CutLine LineCutter::Next() {
  const std::size_t start = position_;
  const Extent extent = wrap_ ? WrappedRest() : WholeRest();
  CutLine line{text_.substr(start, extent.end - start), start, extent.end - start, extent.width};
  if (ellipsis_ && extent.width > limit_) line = WithEllipsis(extent.end);
  Advance(extent.next);
  return line;
}

LineCutter::Extent LineCutter::WholeRest() {
  const std::u16string_view rest = text_.substr(position_, paragraph_end_ - position_);
  return {paragraph_end_, paragraph_end_, WidthOf(font_, LineOf(rest))};
}

void LineCutter::Measure() {
  if (!widths_.empty()) return;
  const std::u16string_view paragraph = text_.substr(paragraph_start_, paragraph_end_ - paragraph_start_);
  UnitWidths(font_, LineOf(paragraph), widths_);
}

LineCutter::Extent LineCutter::WrappedRest() {
  Measure();
  std::int64_t width = 0;
  std::size_t overflow = position_;
  while (overflow < paragraph_end_ && width + WidthAt(overflow) <= limit_) width += WidthAt(overflow++);
  if (overflow == paragraph_end_) return {overflow, overflow, width};

  const std::size_t next = FindBreak(overflow);
  std::size_t end = next;
  // Blanks hang over the edge; flushed to the right or centred, they count on neither side.
  while (end > position_ && IsSpace(text_[end - 1]) && (trim_ || end > overflow)) --end;
  return {end, next, WidthOf(font_, LineOf(text_.substr(position_, end - position_)))};
}

// Where the next line begins, when the unit at `overflow` is the first that doesn't fit.
std::size_t LineCutter::FindBreak(std::size_t overflow) const {
  std::size_t at = overflow;
  if (IsSpace(text_[at])) {
    while (at < paragraph_end_ && IsSpace(text_[at])) ++at;
    return at;
  }
  while (at > position_ && !MayBreakBefore(at)) --at;
  if (at > position_) return at;
  // One word takes more than the line: it stays whole.
  at = std::max(overflow, position_ + 1);
  while (at < paragraph_end_ && !MayBreakBefore(at)) ++at;
  return at;
}

bool LineCutter::MayBreakBefore(std::size_t position) const {
  const char16_t before = text_[position - 1], after = text_[position];
  if (IsSpace(after)) return false;
  if (IsSpace(before)) return true;
  return (IsIdeographic(before) || IsIdeographic(after)) && !IsOneOf(kNeverFirst, after) &&
         !IsOneOf(kNeverLast, before);
}

// The line up to `end`, shortened until an ellipsis fits behind it.
CutLine LineCutter::WithEllipsis(std::size_t end) {
  Measure();
  const std::int64_t dots = WidthOf(font_, LineOf(kEllipsis));
  std::int64_t width = dots;
  std::size_t kept = position_;
  while (kept < end && width + WidthAt(kept) <= limit_) width += WidthAt(kept++);
  shortened_.assign(text_.substr(position_, kept - position_));
  shortened_ += kEllipsis;
  return {shortened_, position_, kept - position_, WidthOf(font_, LineOf(shortened_))};
}

// A CR, an LF or a pair of both ends a line. At the end of the text it opens no further line.
void LineCutter::Advance(std::size_t next) {
  position_ = next;
  if (position_ < paragraph_end_) return;
  if (position_ < text_.size()) {
    const char16_t end = text_[position_++];
    if (position_ < text_.size() && IsLineEnd(text_[position_]) && text_[position_] != end) ++position_;
  }
  done_ = position_ >= text_.size();
  if (!done_) FindParagraphEnd();
}

}  // namespace marklet::headless
