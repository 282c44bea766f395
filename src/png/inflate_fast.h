// The symbols of a block far from both ends of a stream's input and output: eight bytes of input at a time,
// and no look at the limits but where a match could pass them.
#pragma once

#include <cstddef>
#include <cstdint>

#include "png/code_table.h"
#include "png/fast_bits.h"

namespace marklet::png {

struct FastRun {
  // Bytes that may be written without a look at the limits.
  static constexpr std::size_t kMostLiterals = 6;

  const CodeTable& literals;
  const CodeTable& distances;
  FastBits bits;
  std::uint8_t* out;              // the next byte
  const std::uint8_t* out_first;  // no match reaches before this
  const std::uint8_t* out_end;    // at or past this the run ends; kMostLiterals fit after it
  const std::uint8_t* out_limit;  // no match writes past this, but for InflateWindow::kSpill bytes

  // True when the block has ended; otherwise the next symbol is for someone who looks closer.
  bool Run();
};

}  // namespace marklet::png
