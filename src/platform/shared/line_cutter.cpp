#include "platform/shared/line_cutter.h"

#include <algorithm>

#include "platform/shared/line_breaks.h"

namespace marklet {
namespace {

constexpr std::u16string_view kDots = u"...";
constexpr char16_t kBlank = u' ';

bool IsLineEnd(char16_t c) { return c == u'\r' || c == u'\n'; }

bool IsPair(char16_t first, char16_t second) {
  return (first & 0xFC00) == 0xD800 && (second & 0xFC00) == 0xDC00;
}

}  // namespace

LineCutter::LineCutter(LineDevice& device, std::u16string_view text, std::uint32_t flags, std::int64_t limit)
    : device_(device),
      text_(text),
      limit_(limit),
      single_((flags & DT_SINGLELINE) != 0),
      wrap_((flags & DT_WORDBREAK) != 0 && !single_),
      trim_((flags & (DT_CENTER | DT_RIGHT)) != 0),
      dots_((flags & DT_WORD_ELLIPSIS) != 0) {
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
  if (dots_ && extent.width > limit_) line = WithDots(extent.end);
  Advance(extent.next);
  return line;
}

LineCutter::Extent LineCutter::ExtentTo(std::size_t end, std::size_t next) {
  return {end, next, device_.WidthOf(text_.substr(position_, end - position_))};
}

LineCutter::Extent LineCutter::WholeRest() { return ExtentTo(paragraph_end_, paragraph_end_); }

void LineCutter::Measure() {
  if (!widths_.empty()) return;
  device_.UnitWidths(text_.substr(paragraph_start_, paragraph_end_ - paragraph_start_), widths_);
}

LineCutter::Extent LineCutter::WrappedRest() {
  Measure();
  std::int64_t width = 0;
  std::size_t overflow = position_;
  while (overflow < paragraph_end_ && width + WidthAt(overflow) <= limit_) width += WidthAt(overflow++);
  if (overflow == paragraph_end_) return {overflow, overflow, width};
  return text_[overflow] == kBlank ? BreakBlanks(overflow) : BreakWord(overflow);
}

std::size_t LineCutter::EndOfBlanks(std::size_t position) const {
  while (position < paragraph_end_ && text_[position] == kBlank) ++position;
  return position;
}

// The last place up to `position` where the line may end; the line's start when there is none.
std::size_t LineCutter::LastBreak(std::size_t position) const {
  while (position > position_ && !MayBreakBetween(text_[position - 1], text_[position])) --position;
  return position;
}

// A blank is the first that doesn't fit: it and those next to it hang over the edge.
LineCutter::Extent LineCutter::BreakBlanks(std::size_t overflow) {
  const std::size_t next = EndOfBlanks(overflow);
  if (next < paragraph_end_ && !MayBreakBetween(kBlank, text_[next])) return BreakWord(overflow);
  return ExtentTo(overflow, next);
}

LineCutter::Extent LineCutter::BreakWord(std::size_t overflow) {
  const std::size_t at = LastBreak(overflow);
  if (at > position_) {
    const bool drop = trim_ && text_[at - 1] == kBlank;
    return ExtentTo(at - (drop ? 1 : 0), at);
  }
  // One word takes more than the line: it runs on to a blank.
  std::size_t end = overflow;
  while (end < paragraph_end_ && text_[end] != kBlank) ++end;
  return ExtentTo(end, EndOfBlanks(end));
}

// The line up to `end`, shortened until the dots fit after it. A pair goes as a whole.
CutLine LineCutter::WithDots(std::size_t end) {
  Measure();
  std::int64_t width = device_.WidthOf(kDots);
  std::size_t kept = position_;
  while (kept < end && width + WidthAt(kept) <= limit_) width += WidthAt(kept++);
  if (kept > position_ && kept < end && IsPair(text_[kept - 1], text_[kept])) --kept;
  shortened_.assign(text_.substr(position_, kept - position_));
  shortened_ += kDots;
  return {shortened_, position_, kept - position_, device_.WidthOf(shortened_)};
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

}  // namespace marklet
