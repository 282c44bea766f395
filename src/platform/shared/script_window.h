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
      : kind_{width, line_height, PerTenHeights(text)},
        line_(CutToLine(text, std::max<std::int64_t>(width, 0))),
        end_(Within(last_line_.kind == kind_ ? LikeLastLine() : ByOrdinaryLetters())) {}

  // What to lay out first.
  std::u16string_view Text() const { return line_.substr(0, end_); }
  // Whether what was laid out, that wide in pixels, tells where the line ends: it is all there is to look at,
  // or it has a letter or two to spare, since the last one before a cut may have another form.
  bool Tells(std::int64_t laid_out) const {
    return end_ == line_.size() || laid_out > std::int64_t{kind_.width} + kind_.line_height;
  }
  // More of it, when the first part didn't tell. Each step adds a share of what was there, so that all steps
  // together take a time linear in the last.
  void Grow() { end_ = Within(static_cast<std::int64_t>(end_ + end_ / 2) + 16); }
  // How many units the width turned out to hold. The next line of a paragraph holds about as many.
  void Ended(std::size_t units) const { last_line_ = {kind_, units}; }

 private:
  struct Kind {
    Long width, line_height, per_ten_heights;
    bool operator==(const Kind&) const = default;
  };
  struct LastLine {
    Kind kind;
    std::size_t units;
  };

  static std::int64_t LikeLastLine() {
    return static_cast<std::int64_t>(last_line_.units + last_line_.units / 16) + 8;
  }
  std::int64_t ByOrdinaryLetters() const {
    return std::max<std::int64_t>(kind_.width, 0) * kind_.per_ten_heights / 10 /
               std::max<Long>(kind_.line_height, 1) +
           16;
  }

  // About how many letters of the text's first kind are ten times as wide as the line is high. The guess is
  // on the safe side: looking twice costs more than looking at a few too many.
  static Long PerTenHeights(std::u16string_view text) {
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

  // Only ever a guess: a wrong one costs time.
  inline static thread_local LastLine last_line_ = {};

  const Kind kind_;
  std::u16string_view line_;
  std::size_t end_;
};

}  // namespace marklet
