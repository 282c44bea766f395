// How much of a text has to be looked at to find where a line of a certain width ends. The script processor
// of a platform would shape all that it is given, and a caption hands it all that is left for every line.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "platform/types.h"

namespace marklet {

class ScriptWindow {
 public:
  // `width` and `line_height` in pixels.
  ScriptWindow(std::u16string_view text, Long width, Long line_height)
      : line_(CutToLine(text, std::max<std::int64_t>(width, 0))),
        end_(Within(std::max<std::int64_t>(width, 0) * PerTenHeights(text) / 10 /
                        std::max<Long>(line_height, 1) +
                    16)) {}

  // What to lay out first, by the width of ordinary letters.
  std::u16string_view Text() const { return line_.substr(0, end_); }
  // Whether there is nothing to be gained by more.
  bool Whole() const { return end_ == line_.size(); }
  // More of it, when the first part turned out to be narrower than the line. Each step adds a share of what
  // was there, so that all steps together take a time linear in the last.
  void Grow() { end_ = Within(static_cast<std::int64_t>(end_ + end_ / 2) + 16); }

 private:
  // About how many letters of the text's first kind are ten times as wide as the line is high. The guess is
  // on the safe side: looking twice costs more than looking at a few too many.
  static std::int64_t PerTenHeights(std::u16string_view text) {
    const char16_t first = text.empty() ? u' ' : text.front();
    if (first >= 0x0600 && first <= 0x08FF) return 33;  // letters that join are narrow
    return first >= 0x2E80 ? 12 : 25;                   // ideographs are square
  }

  // A line ends with the first CR LF at the latest. It also ends after a number of characters that no width
  // can hold if each has one: without that a line would have all the characters of no width of a text.
  static std::u16string_view CutToLine(std::u16string_view text, std::int64_t width) {
    const std::int64_t most = 512 + 2 * width;
    if (static_cast<std::int64_t>(text.size()) > most) text = text.substr(0, WholePairs(text, most));
    const std::size_t line_end = text.find(u"\r\n");
    return line_end == text.npos ? text : text.substr(0, line_end + 2);
  }

  // `end`, or one less where it stands inside a surrogate pair.
  static std::size_t WholePairs(std::u16string_view text, std::int64_t end) {
    const auto at = static_cast<std::size_t>(end);
    const bool inside = (text[at] & 0xFC00) == 0xDC00 && (text[at - 1] & 0xFC00) == 0xD800;
    return inside ? at - 1 : at;
  }

  std::size_t Within(std::int64_t end) const {
    const auto size = static_cast<std::int64_t>(line_.size());
    // A little that is left over isn't worth a second try.
    return end + end / 4 >= size ? line_.size() : WholePairs(line_, end);
  }

  std::u16string_view line_;
  std::size_t end_;
};

}  // namespace marklet
