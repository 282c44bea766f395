#include "png_pictures.h"

#include <png.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace marklet::bench {
namespace {

struct Colour {
  double red, green, blue, alpha;  // 0 to 1, not premultiplied
};

Colour Mixed(const Colour& from, const Colour& to, double t) {
  return {from.red + t * (to.red - from.red), from.green + t * (to.green - from.green),
          from.blue + t * (to.blue - from.blue), from.alpha + t * (to.alpha - from.alpha)};
}

Colour Over(const Colour& top, const Colour& ground) {
  const double alpha = top.alpha + ground.alpha * (1 - top.alpha);
  if (alpha == 0) return {0, 0, 0, 0};
  const double share = top.alpha / alpha;
  return {ground.red + share * (top.red - ground.red), ground.green + share * (top.green - ground.green),
          ground.blue + share * (top.blue - ground.blue), alpha};
}

// How much of a pixel lies inside a shape whose edge is `distance` pixels away, outside above 0; `softness`
// is the width of the edge.
double Coverage(double distance, double softness) { return std::clamp(0.5 - distance / softness, 0.0, 1.0); }

// A number from 0 to 1 for a point of a grid.
double Hashed(std::uint32_t x, std::uint32_t y, std::uint32_t salt) {
  std::uint32_t hash = x * 0x9E3779B1u ^ y * 0x85EBCA77u ^ salt * 0xC2B2AE3Du;
  hash = (hash ^ hash >> 15) * 0x2C1B3C6Du;
  hash = (hash ^ hash >> 12) * 0x297A2D39u;
  return static_cast<double>(hash ^ hash >> 15) / 4294967295.0;
}

// ---- subjects; x and y run from 0 to 1 over the picture, `pixel` is the size of one ----

double RoundedBox(double x, double y, double half, double radius) {
  const double dx = std::max(std::abs(x - 0.5) - half + radius, 0.0);
  const double dy = std::max(std::abs(y - 0.5) - half + radius, 0.0);
  return std::hypot(dx, dy) - radius;
}

Colour IconAt(double x, double y, double pixel, bool alpha) {
  Colour colour = alpha ? Colour{0, 0, 0, 0} : Colour{1, 1, 1, 1};
  const auto paint = [&](Colour ink, double coverage) {
    ink.alpha *= coverage;
    if (ink.alpha > 0) colour = Over(ink, colour);
  };
  const double box = RoundedBox(x, y, 0.40, 0.12);
  paint({0, 0, 0, 0.35}, Coverage(RoundedBox(x - 0.02, y - 0.03, 0.40, 0.12) / pixel, 0.06 / pixel));
  paint({0.10, 0.25, 0.50, 1}, Coverage(box / pixel, 1));
  paint(Mixed({0.55, 0.80, 1, 1}, {0.15, 0.45, 0.85, 1}, y), Coverage(box / pixel + 1.2, 1));
  const double disc = std::hypot(x - 0.42, y - 0.45) - 0.20;
  paint(Mixed({1, 0.95, 0.55, 1}, {0.95, 0.60, 0.10, 1}, std::hypot(x - 0.36, y - 0.38) / 0.3),
        Coverage(disc / pixel, 1));
  const double bar = std::max(std::abs(x - y * 0.6 - 0.27) * 0.86 - 0.035, std::abs(y - 0.66) - 0.17);
  paint({1, 1, 1, 0.9}, Coverage(bar / pixel, 1));
  return colour;
}

double SmoothNoise(double x, double y, std::uint32_t salt) {
  const double left = std::floor(x), top = std::floor(y);
  const auto column = static_cast<std::uint32_t>(left), row = static_cast<std::uint32_t>(top);
  const auto ease = [](double t) { return t * t * (3 - 2 * t); };
  const double across = ease(x - left), down = ease(y - top);
  const double upper = std::lerp(Hashed(column, row, salt), Hashed(column + 1, row, salt), across);
  const double lower = std::lerp(Hashed(column, row + 1, salt), Hashed(column + 1, row + 1, salt), across);
  return std::lerp(upper, lower, down);
}

Colour PhotoAt(double x, double y, double pixel, bool) {
  double light = 0, weight = 0.5, scale = 3;
  for (std::uint32_t octave = 0; octave < 6; ++octave, weight /= 2, scale *= 2)
    light += weight * SmoothNoise(x * scale, y * scale, octave);
  const double tint = SmoothNoise(x * 2, y * 2, 90);
  const auto column = static_cast<std::uint32_t>(x / pixel), row = static_cast<std::uint32_t>(y / pixel);
  const auto grained = [&](double value, std::uint32_t salt) {
    return std::clamp(value + (Hashed(column, row, salt) - 0.5) * 0.02, 0.0, 1.0);
  };
  return {grained(light * (0.7 + 0.5 * tint), 100), grained(light, 101),
          grained(light * (1.2 - 0.5 * tint), 102), 1};
}

Colour FlatAt(double x, double y, double, bool alpha) {
  static constexpr std::array<Colour, 5> kColours = {
      {{0.9, 0.9, 0.9, 1}, {0.2, 0.4, 0.8, 1}, {0.8, 0.2, 0.2, 1}, {1, 0.8, 0.1, 1}, {0.1, 0.6, 0.3, 0.5}}};
  std::size_t area = 0;
  if (y < 0.2) area = 1;
  if (x > 0.1 && x < 0.45 && y > 0.3 && y < 0.9) area = 2;
  if (x > 0.55 && x < 0.9 && y > 0.3 && y < 0.6) area = 3;
  if (x > 0.55 && x < 0.9 && y > 0.7 && y < 0.9) area = 4;
  const Colour& colour = kColours.at(area);
  return alpha ? colour : Over(colour, {1, 1, 1, 1});
}

using Subjects = Colour (*)(double x, double y, double pixel, bool alpha);
constexpr Subjects kSubjects[] = {IconAt, PhotoAt, FlatAt};

void Append(png_structp png, png_bytep data, std::size_t length) {
  auto& file = *static_cast<Bytes*>(png_get_io_ptr(png));
  file.insert(file.end(), data, data + length);
}

}  // namespace

std::string NameOf(const PictureKind& kind) {
  constexpr const char* kNames[] = {"icon", "photo", "flat"};
  return std::string(kNames[static_cast<std::size_t>(kind.subject)]) + (kind.alpha ? "/rgba" : "/rgb") +
         (kind.interlaced ? "/adam7" : "/plain");
}

Bytes PixelsOf(const PictureKind& kind, std::size_t size) {
  const double pixel = 1 / static_cast<double>(size);
  const Subjects subject = kSubjects[static_cast<std::size_t>(kind.subject)];
  const auto byte = [](double value) { return static_cast<std::uint8_t>(std::lround(value * 255)); };
  Bytes pixels;
  for (std::size_t row = 0; row < size; ++row)
    for (std::size_t column = 0; column < size; ++column) {
      const auto middle = [pixel](std::size_t index) { return (static_cast<double>(index) + 0.5) * pixel; };
      const Colour colour = subject(middle(column), middle(row), pixel, kind.alpha);
      pixels.insert(pixels.end(), {byte(colour.red), byte(colour.green), byte(colour.blue)});
      if (kind.alpha) pixels.push_back(byte(colour.alpha));
    }
  return pixels;
}

Bytes FileOf(const PictureKind& kind, std::size_t size) {
  Bytes pixels = PixelsOf(kind, size);
  Bytes file;
  png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  png_infop info = png_create_info_struct(png);
  png_set_write_fn(png, &file, Append, nullptr);
  const auto side = static_cast<png_uint_32>(size);
  png_set_IHDR(png, info, side, side, 8, kind.alpha ? PNG_COLOR_TYPE_RGB_ALPHA : PNG_COLOR_TYPE_RGB,
               kind.interlaced ? PNG_INTERLACE_ADAM7 : PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
               PNG_FILTER_TYPE_DEFAULT);
  std::vector<png_bytep> rows;
  for (std::size_t row = 0; row < size; ++row) rows.push_back(pixels.data() + row * (pixels.size() / size));
  png_set_rows(png, info, rows.data());
  png_write_png(png, info, PNG_TRANSFORM_IDENTITY, nullptr);
  png_destroy_write_struct(&png, &info);
  return file;
}

}  // namespace marklet::bench
