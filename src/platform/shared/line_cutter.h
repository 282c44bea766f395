// Cuts a text into the lines that DrawTextW draws.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/shared/text_layout.h"

namespace marklet {

struct CutLine {
  std::u16string_view text;  // as it is drawn, with its dots
  std::size_t start = 0;     // where it begins in the whole text
  std::size_t kept = 0;      // how many units of the whole text it has, without dots
  std::int64_t width = 0;    // pixels
};

class LineCutter {
 public:
  // `flags` are those of DrawTextW, `limit` is the width of its rectangle. Marks are taken out already.
  // The device and the text must outlive the cutter.
  LineCutter(LineDevice& device, std::u16string_view text, std::uint32_t flags, std::int64_t limit);

  bool Done() const { return done_; }
  // The next line; at least one, however short the text. It is valid until the next call.
  CutLine Next();

 private:
  struct Extent {
    std::size_t end;   // of the units on the line
    std::size_t next;  // where the next line begins
    std::int64_t width;
  };

  void FindParagraphEnd();
  Extent WholeRest();
  Extent WrappedRest();
  Extent BreakBlanks(std::size_t overflow);
  Extent BreakWord(std::size_t overflow);
  Extent ExtentTo(std::size_t end, std::size_t next);
  std::size_t EndOfBlanks(std::size_t position) const;
  std::size_t LastBreak(std::size_t position) const;
  void Measure();
  // Of the unit at a position of the text, once its paragraph is measured.
  Long WidthAt(std::size_t position) const { return widths_[position - paragraph_start_]; }
  CutLine WithDots(std::size_t end);
  void Advance(std::size_t next);

  LineDevice& device_;
  const std::u16string_view text_;
  const std::int64_t limit_;
  const bool single_, wrap_, trim_, dots_;
  bool done_ = false;
  std::size_t position_ = 0;
  std::size_t paragraph_start_ = 0, paragraph_end_ = 0;
  std::vector<Long> widths_;  // of the paragraph's units, once they are needed
  std::u16string shortened_;
};

}  // namespace marklet
