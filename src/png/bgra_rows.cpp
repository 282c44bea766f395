#include "png/bgra_rows.h"

#include <algorithm>
#include <bit>
#include <iterator>

#include "base/byte_order.h"
#include "png/lanes.h"

namespace marklet::png {
namespace {

static_assert(std::endian::native == std::endian::little,
              "pixels are handled as 32-bit numbers, blue lowest");

inline std::uint32_t LoadPixel(const std::uint8_t* from) { return LoadLittleEndian<std::uint32_t>(from); }
inline void StorePixel(std::uint8_t* to, std::uint32_t pixel) { StoreLittleEndian(to, pixel); }

// ---- where pixels come from ----

// What neighbours outside the picture count as, and what is added to pixels without a filter. Where the file
// holds no alpha that is an opaque nothing: then every neighbour has alpha 255, every filter predicts 255,
// and pixels whose own alpha counts as 0 come out opaque by themselves.
constexpr std::uint32_t kClear = 0, kOpaque = 0xFF000000;

// Four pixels of red, green, blue, alpha.
inline Bytes16 WithRedAndBlueSwapped(Bytes16 bytes) {
  const Pixels4 pixels = Pixels4(bytes);
  const Pixels4 red_blue = pixels & 0x00FF00FF;
  return Bytes16((pixels & 0xFF00FF00) | red_blue << 16 | red_blue >> 16);
}

inline Words8 WithRedAndBlueSwapped(Words8 words) {
  return __builtin_shufflevector(words, words, 2, 1, 0, 3, 6, 5, 4, 7);
}

// Each gives one pixel or four, and moves on. The bytes of a raw pixel are in the file's order, with anything
// where there is no alpha; InOrder mends that.
class Rgba {
 public:
  static constexpr std::uint32_t kBorder = kClear;
  static Words8 InOrder(Words8 raw) { return WithRedAndBlueSwapped(raw); }
  Rgba(const std::uint8_t* scanline, const PixelRun&) : from_(scanline) {}
  std::uint32_t One() {
    const std::uint32_t pixel = std::rotr(LoadBigEndian<std::uint32_t>(from_), 8);
    from_ += 4;
    return pixel;
  }
  std::uint32_t OneRaw() {
    const std::uint32_t pixel = LoadPixel(from_);
    from_ += 4;
    return pixel;
  }
  Bytes16 Four() {
    const Bytes16 pixels = WithRedAndBlueSwapped(LoadBytes16(from_));
    from_ += 16;
    return pixels;
  }

 private:
  const std::uint8_t* from_;
};

class Rgb {
 public:
  static constexpr std::uint32_t kBorder = kOpaque;
  static Words8 InOrder(Words8 raw) {
    return WithRedAndBlueSwapped(raw & Words8{0xFF, 0xFF, 0xFF, 0, 0xFF, 0xFF, 0xFF, 0});
  }
  Rgb(const std::uint8_t* scanline, const PixelRun&) : from_(scanline) {}
  std::uint32_t One() {
    const std::uint32_t pixel = LoadBigEndian<std::uint32_t>(from_) >> 8;
    from_ += 3;
    return pixel;
  }
  std::uint32_t OneRaw() {
    const std::uint32_t pixel = LoadPixel(from_);
    from_ += 3;
    return pixel;
  }
  Bytes16 Four() {
    const Pixels4 pixels{LoadPixel(from_), LoadPixel(from_ + 3), LoadPixel(from_ + 6), LoadPixel(from_ + 9)};
    from_ += 12;
    return WithRedAndBlueSwapped(Bytes16(pixels & 0x00FFFFFF));
  }

 private:
  const std::uint8_t* from_;
};

// Pixels that are in their places already, but for the filter.
template <std::uint32_t border>
class InPlace {
 public:
  static constexpr std::uint32_t kBorder = border;
  static Words8 InOrder(Words8 raw) { return raw; }
  InPlace(const std::uint8_t*, const PixelRun& run) : from_(run.to), step_(run.step) {}
  std::uint32_t One() {
    const std::uint32_t pixel = LoadPixel(from_);
    from_ += step_;
    return pixel;
  }
  std::uint32_t OneRaw() {
    const std::uint32_t pixel = LoadPixel(from_);
    from_ += step_;
    return pixel;
  }
  Bytes16 Four() {
    const Bytes16 pixels = LoadBytes16(from_);
    from_ += 16;
    return pixels;
  }

 private:
  const std::uint8_t* from_;
  std::size_t step_;
};

// ---- filters; pointers are copied out of the run, since a store to a pixel could change the run itself ----

// How many pixels can be made by fours: those of a row that has all its pixels.
inline std::size_t InFours(const PixelRun& run) { return run.step == kPixelBytes ? run.count / 4 * 4 : 0; }

template <typename Source>
void MakeUnfiltered(const std::uint8_t* scanline, const PixelRun& run) {
  Source source(scanline, run);
  std::uint8_t* to = run.to;
  const std::size_t count = run.count, in_fours = InFours(run), step = run.step;
  std::size_t x = 0;
  for (; x < in_fours; x += 4, to += 16) StoreBytes16(to, source.Four() | FourTimes(Source::kBorder));
  for (; x < count; ++x, to += step) StorePixel(to, source.One() | Source::kBorder);
}

template <typename Source>
void MakeSub(const std::uint8_t* scanline, const PixelRun& run) {
  Source source(scanline, run);
  std::uint8_t* to = run.to;
  const std::size_t count = run.count, in_fours = InFours(run), step = run.step;
  Bytes16 left = FourTimes(Source::kBorder);
  std::size_t x = 0;
  for (; x < in_fours; x += 4, to += 16) {
    Bytes16 sums = source.Four();
    sums += MovedUp<1>(sums);
    sums += MovedUp<2>(sums);
    sums += left;
    StoreBytes16(to, sums);
    left = LastPixelFourTimes(sums);
  }
  for (; x < count; ++x, to += step) {
    left += FromPixel(source.One());
    StorePixel(to, FirstPixel(left));
  }
}

template <typename Source>
void MakeUp(const std::uint8_t* scanline, const PixelRun& run) {
  Source source(scanline, run);
  std::uint8_t* to = run.to;
  const std::uint8_t* above = run.above;
  const std::size_t count = run.count, in_fours = InFours(run), step = run.step;
  std::size_t x = 0;
  for (; x < in_fours; x += 4, to += 16, above += 16) StoreBytes16(to, source.Four() + LoadBytes16(above));
  for (; x < count; ++x, to += step, above += step)
    StorePixel(to, FirstPixel(FromPixel(source.One()) + FromPixel(LoadPixel(above))));
}

// With all bytes complemented the average rounds up, as the processor's own does, and the sum is a
// difference.
template <typename Source>
inline void MakeAverageUnder(const std::uint8_t* above, std::size_t above_step, const std::uint8_t* scanline,
                             const PixelRun& run) {
  Source source(scanline, run);
  std::uint8_t* to = run.to;
  const std::size_t count = run.count, step = run.step;
  Bytes16 left = ~FromPixel(Source::kBorder);
  for (std::size_t x = 0; x < count; ++x, to += step, above += above_step) {
    left = AverageUp(left, ~FromPixel(LoadPixel(above))) - FromPixel(source.One());
    StorePixel(to, ~FirstPixel(left));
  }
}

template <typename Source>
void MakeAverage(const std::uint8_t* scanline, const PixelRun& run) {
  MakeAverageUnder<Source>(run.above, run.step, scanline, run);
}

template <typename Source>
void MakeAverageOnTop(const std::uint8_t* scanline, const PixelRun& run) {
  std::uint8_t border[kPixelBytes];
  StorePixel(border, Source::kBorder);
  MakeAverageUnder<Source>(border, 0, scanline, run);
}

// The neighbour that left + upper - upper_left comes nearest to; on a tie left, then upper. Three times the
// upper left one less the other two is a threshold: at or below both, the greater is nearest, at or above
// both, the lesser, and in between upper_left. Where both hold the two are one.
inline Words8 PaethPredictor(Words8 left, Words8 upper, Words8 upper_left, Words8 threshold) {
  const Words8 lesser = Lesser(left, upper), greater = Greater(left, upper);
  const Words8 under_greater = greater > threshold;
  const Words8 over_lesser = threshold > lesser;
  return (lesser & ~under_greater) | (greater & ~over_lesser) | (upper_left & under_greater & over_lesser);
}

// A sum of bytes in words; what is carried out of a byte is lost.
inline Words8 ByteSum(Words8 a, Words8 b) { return Words8(Bytes16(a) + Bytes16(b)); }

template <typename Source>
void MakePaeth(const std::uint8_t* scanline, const PixelRun& run) {
  Source source(scanline, run);
  std::uint8_t* to = run.to;
  const std::uint8_t* above = run.above;
  const std::size_t count = run.count, step = run.step;
  Words8 left = Widened(FromPixel(Source::kBorder)), upper_left = left;
  for (std::size_t x = 0; x < count; ++x, to += step, above += step) {
    const Words8 upper = Widened(FromPixel(LoadPixel(above)));
    const Words8 threshold = (upper_left + upper_left + upper_left - upper) - left;  // left comes last
    const Words8 difference = Source::InOrder(Widened(FromPixel(source.OneRaw())));
    left = ByteSum(PaethPredictor(left, upper, upper_left, threshold), difference);
    upper_left = upper;
    StorePixel(to, FirstPixel(Narrowed(left)));
  }
}

// Vectors hold a pixel of the upper row and the one of the lower row that lies below and to the left.
template <typename Source>
void MakePaethPair(const std::uint8_t* upper_scanline, const std::uint8_t* lower_scanline,
                   const PixelRun& run, std::uint8_t* lower_to) {
  Source upper_source(upper_scanline, run);
  Source lower_source(lower_scanline, {lower_to, run.to, run.count, run.step});
  std::uint8_t* upper_to = run.to;
  const std::uint8_t* above = run.above;
  const std::size_t count = run.count, step = run.step;
  Words8 left = Widened(FourTimes(Source::kBorder)), upper_left = left;
  const auto next = [&](std::uint32_t above_pixel, std::uint32_t upper_pixel, std::uint32_t lower_pixel) {
    const Words8 upper = Together(Widened(FromPixel(above_pixel)), left);
    const Words8 threshold = (upper_left + upper_left + upper_left - left) - upper;  // upper comes last
    const Words8 differences = Widened(Together(FromPixel(upper_pixel), FromPixel(lower_pixel)));
    left = ByteSum(PaethPredictor(left, upper, upper_left, threshold), Source::InOrder(differences));
    upper_left = upper;
    return Pixels4(Narrowed(left));
  };
  StorePixel(upper_to, next(LoadPixel(above), upper_source.OneRaw(), 0)[0]);
  for (std::size_t x = 1; x < count; ++x, lower_to += step) {
    upper_to += step;
    above += step;
    const Pixels4 pixels = next(LoadPixel(above), upper_source.OneRaw(), lower_source.OneRaw());
    StorePixel(upper_to, pixels[0]);
    StorePixel(lower_to, pixels[1]);
  }
  StorePixel(lower_to, next(0, 0, lower_source.OneRaw())[1]);
}

// ---- spreading in advance; the numbers are the offsets of a colour in a pixel of `bytes` ----

constexpr std::size_t kNoAlpha = 99;

template <std::size_t bytes, std::size_t blue, std::size_t green, std::size_t red, std::size_t alpha>
void Spread(const std::uint8_t* from, const PixelRun& run) {
  std::uint8_t* to = run.to;
  const std::size_t count = run.count, step = run.step;
  for (std::size_t x = 0; x < count; ++x, from += bytes, to += step) {
    std::uint32_t pixel = from[blue] | std::uint32_t{from[green]} << 8 | std::uint32_t{from[red]} << 16;
    if constexpr (alpha != kNoAlpha) pixel |= std::uint32_t{from[alpha]} << 24;
    StorePixel(to, pixel);
  }
}

}  // namespace

// ---- tables ----

using Maker = void (*)(const std::uint8_t* scanline, const PixelRun& run);

struct RowMakers {
  Maker spread;     // runs first; null where the others take the scanline as it is
  Maker on_top[5];  // by filter, for the picture's first row
  Maker below[5];   // and for the others
  void (*paeth_pair)(const std::uint8_t* upper_scanline, const std::uint8_t* lower_scanline,
                     const PixelRun& run, std::uint8_t* lower_to);
};

namespace {

// The row above the first is the border; Up adds nothing then, and Paeth always takes the pixel to the left.
template <typename Source, Maker spread>
constexpr RowMakers kMakers = {
    spread,
    {MakeUnfiltered<Source>, MakeSub<Source>, MakeUnfiltered<Source>, MakeAverageOnTop<Source>,
     MakeSub<Source>},
    {MakeUnfiltered<Source>, MakeSub<Source>, MakeUp<Source>, MakeAverage<Source>, MakePaeth<Source>},
    MakePaethPair<Source>};

constexpr PixelFormat kFormats[] = {
    {2, 8, 3, false, kMakers<Rgb, nullptr>},
    {2, 16, 6, false, kMakers<InPlace<kOpaque>, Spread<6, 4, 2, 0, kNoAlpha>>},
    {4, 8, 2, true, kMakers<InPlace<kClear>, Spread<2, 0, 0, 0, 1>>},
    {4, 16, 4, true, kMakers<InPlace<kClear>, Spread<4, 0, 0, 0, 2>>},
    {6, 8, 4, true, kMakers<Rgba, nullptr>},
    {6, 16, 8, true, kMakers<InPlace<kClear>, Spread<8, 4, 2, 0, 6>>},
};

}  // namespace

const PixelFormat* FindPixelFormat(Long color_type, Long depth) {
  const auto format =
      std::find_if(std::begin(kFormats), std::end(kFormats), [&](const PixelFormat& candidate) {
        return candidate.color_type == color_type && candidate.depth == depth;
      });
  return format == std::end(kFormats) ? nullptr : format;
}

void UnfilterToBgra(const PixelFormat& format, std::uint8_t filter, const std::uint8_t* scanline,
                    const PixelRun& run) {
  const RowMakers& makers = format.makers;
  if (makers.spread) makers.spread(scanline, run);
  const std::size_t known = filter < std::size(makers.below) ? filter : 0;
  (run.above ? makers.below : makers.on_top)[known](scanline, run);
}

void UnfilterPaethPairToBgra(const PixelFormat& format, const std::uint8_t* upper_scanline,
                             const std::uint8_t* lower_scanline, const PixelRun& upper,
                             std::uint8_t* lower_to) {
  const RowMakers& makers = format.makers;
  if (makers.spread) {
    makers.spread(upper_scanline, upper);
    makers.spread(lower_scanline, {lower_to, upper.to, upper.count, upper.step});
  }
  makers.paeth_pair(upper_scanline, lower_scanline, upper, lower_to);
}

}  // namespace marklet::png
