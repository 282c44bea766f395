// Colour pictures, and gray ones with alpha: from inflated data, as it comes, to finished pixels.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "platform/types.h"
#include "png/bgra_rows.h"

namespace marklet::png {

enum class RowOrder {
  kPlain,  // each row after its filter byte, top row first
  kAdam7,  // seven passes of such rows
  kBare,   // rows without filter bytes: an interlace method that doesn't exist
};

// Takes scanlines in the order of the file and puts their pixels into a bottom-up bitmap of 32 bits.
class TrueColourPicture {
 public:
  // Width and height are at least 1, and a row's bytes times the height is a 32-bit number.
  TrueColourPicture(const PixelFormat& format, Long width, Long height, RowOrder order);

  std::size_t total_bytes() const { return total_bytes_; }  // of all scanlines
  std::size_t longest_scanline() const { return longest_scanline_; }

  // From here on pixels go to `bits`, width * height * 4 bytes of the caller's; the next scanline is the
  // first.
  void Start(std::uint8_t* bits);
  // Uses up the whole scanlines that `data` begins with and returns their bytes. One byte more may be read.
  std::size_t Take(std::span<const std::uint8_t> data);
  bool complete() const { return pass_ == pass_count_; }

 private:
  // Scanlines of one width that follow each other.
  struct Pass {
    std::size_t x_start, y_start, x_step, y_step;
    std::size_t width, height;  // never 0
  };

  void AddPass(const Pass& pass);
  std::size_t ScanlineBytes(const Pass& pass) const { return filter_bytes_ + pass.width * format_.bytes; }
  bool IsPaethPair(std::span<const std::uint8_t> data, const Pass& pass) const;
  PixelRun NextRun(const Pass& pass) const;
  void TakeScanline(const std::uint8_t* scanline, const Pass& pass);
  void TakePaethPair(const std::uint8_t* scanlines, const Pass& pass);

  const PixelFormat& format_;
  std::size_t filter_bytes_;  // before each scanline
  std::size_t stride_, height_;
  std::array<Pass, 7> passes_;
  std::size_t pass_count_ = 0;
  std::size_t total_bytes_ = 0, longest_scanline_ = 0;

  std::uint8_t* bits_ = nullptr;
  std::size_t pass_ = 0, row_ = 0;  // of the next scanline
};

}  // namespace marklet::png
