#include "text/growing_line.h"

#include <algorithm>
#include <limits>

#include "platform/text.h"

namespace marklet {
namespace {

// In units: of one line, which is more than one on a screen has, and of all the lines measured so far.
//
// Up to there a line is measured whole at each step, since its letters may join: no sum of its parts tells
// how wide they are together. A line of 400 Arabic letters takes about 12 ms so, and all the lines of a text
// together a third of a second at most.
constexpr std::size_t kMeasuredWhole = 512, kMeasuredInAll = std::size_t{1} << 20;

bool IsHighSurrogate(char16_t unit) { return (unit & 0xFC00) == 0xD800; }

}  // namespace

void GrowingLine::Measure() {
  const std::size_t length = Text().size();
  by_characters_ =
      length > kMeasuredWhole || measured_units_ > kMeasuredInAll || (by_characters_ && length > 1);
  if (!by_characters_) {
    measured_units_ += length;
    GetTextExtentPoint32W(dc_, Text(), extent_);
    return;
  }
  AddWidths();
  const std::int64_t width = ends_.back() - (start_ == 0 ? 0 : ends_[start_ - 1]);
  extent_.cx = static_cast<Long>(std::min<std::int64_t>(width, std::numeric_limits<Long>::max()));
}

// A pair is measured as one character, at its second half.
void GrowingLine::AddWidths() {
  const std::u16string_view units = units_;
  while (ends_.size() < units.size()) {
    const std::size_t at = ends_.size();
    SIZE size;
    if (!IsHighSurrogate(units[at])) {
      const bool pair = at > 0 && IsHighSurrogate(units[at - 1]) && (units[at] & 0xFC00) == 0xDC00;
      GetTextExtentPoint32W(dc_, pair ? units.substr(at - 1, 2) : units.substr(at, 1), size);
    }
    ends_.push_back((at == 0 ? 0 : ends_.back()) + size.cx);
  }
}

}  // namespace marklet
