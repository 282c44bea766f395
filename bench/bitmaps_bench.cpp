// Surfaces: compositing and what else walks every pixel beside Qt and pixman, and changes of size beside
// libyuv, pixman and stb_image_resize. A peer's counter "bar" is how many times its time ours may be.
#include <benchmark/benchmark.h>
#include <libyuv.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <random>
#include <string>

#include "bitmap_peers.h"
#include "bitmaps/alpha_resample.h"
#include "bitmaps/alpha_rows.h"
#include "bitmaps/cdib24.h"
#include "bitmaps/cdib32.h"
#include "bitmaps/dib.h"

namespace marklet::bench {
namespace {

constexpr double kMinSeconds = 0.02;  // there are many of them
constexpr double kLevel = 1.05;       // as fast, but for the noise of measuring
constexpr Long kSizes[] = {32, 256, 1024};
constexpr const char* kAlphas[] = {"random", "icon"};

// A disc with a soft edge, as icons have it, or noise in which no two pixels are alike.
std::uint8_t AlphaAt(bool icon, Long x, Long y, Long size, std::mt19937& random) {
  if (!icon) return static_cast<std::uint8_t>(random());
  const double middle = (size - 1) / 2.0;
  const double inside = 0.45 * size - std::hypot(x - middle, y - middle);
  return static_cast<std::uint8_t>(std::lround(255 * std::clamp(inside / 1.5 + 0.5, 0.0, 1.0)));
}

std::unique_ptr<CDib32> Picture(Long size, bool icon) {
  auto picture = std::make_unique<CDib32>();
  if (!picture->Create(size, size)) return picture;
  std::mt19937 random(7);
  std::uint8_t* pixel = picture->Bits();
  for (Long y = 0; y < size; ++y) {
    for (Long x = 0; x < size; ++x, pixel += 4) {
      pixel[3] = AlphaAt(icon, x, y, size, random);
      for (int c = 0; c < 3; ++c) pixel[c] = static_cast<std::uint8_t>(pixel[3] == 0 ? 0 : random());
    }
  }
  return picture;
}

std::unique_ptr<CDib24> Opaque(Long size, bool keyed) {
  auto picture = std::make_unique<CDib24>();
  if (!picture->Create(size, size)) return picture;
  picture->Clear(keyed ? KeyColour : 0);
  Picture(size, true)->PaintTransparent(picture->hDC(), 0, 0, -1, -1, 0, 0, MakeRgb(0, 0, 0));
  return picture;
}

PixelBlock BlockOf(const Dib& dib, Depth depth) {
  return {dib.Bits(), dib.Width(), dib.Height(), dib.BytesPerScanLine(), depth};
}

template <typename Run>
void Add(const std::string& name, Run run, double bar = 0) {
  benchmark::RegisterBenchmark(("versus/" + name).c_str(),
                               [run, bar](benchmark::State& state) {
                                 run(state);
                                 if (bar > 0) state.counters["bar"] = bar;
                               })
      ->MeasureProcessCPUTime()  // Qt draws with several threads
      ->MinTime(kMinSeconds);
}

// How long a library takes to lay one picture over another, which is what every walk over pixels is held
// against.
void AddYardsticks(const std::string& group, Long size, bool icon, Depth depth) {
  for (const Compositor& peer : Compositors()) {
    Add(
        group + "/" + peer.name,
        [=](benchmark::State& state) {
          const auto source = Picture(size, icon);
          source->Premultiply();
          CDib24 shallow;
          CDib32 deep;
          const bool made = depth == Depth::k24 ? shallow.Create(size, size) : deep.Create(size, size);
          if (!made) return state.SkipWithError("no surface");
          const Dib& target = depth == Depth::k24 ? static_cast<const Dib&>(shallow) : deep;
          const auto compose = peer.prepare(BlockOf(*source, Depth::k32), BlockOf(target, depth));
          while (state.KeepRunning()) compose();
        },
        peer.bar ? kLevel : 0);
  }
}

void AddCompositing(Long size, bool icon) {
  const std::string picture = std::string(", ") + kAlphas[icon ? 1 : 0] + " alpha, " + std::to_string(size);
  const auto paint = [=](benchmark::State& state, Dib& target, std::uint8_t constant) {
    const auto source = Picture(size, icon);
    while (state.KeepRunning()) source->SoftwareAlphaPaint(target.hDC(), 0, 0, constant);
  };
  const auto onto24 = [=](benchmark::State& state, std::uint8_t constant) {
    CDib24 target;
    if (!target.Create(size, size)) return state.SkipWithError("no surface");
    paint(state, target, constant);
  };
  std::string group = "SoftwareAlphaPaint onto 32 bits" + picture;
  Add(group + "/marklet", [=](benchmark::State& state) {
    CDib32 target;
    if (!target.Create(size, size)) return state.SkipWithError("no surface");
    paint(state, target, 255);
  });
  AddYardsticks(group, size, icon, Depth::k32);
  group = "SoftwareAlphaPaint onto 24 bits" + picture;
  Add(group + "/marklet", [=](benchmark::State& state) { onto24(state, 255); });
  AddYardsticks(group, size, icon, Depth::k24);
  group = "SoftwareAlphaPaint onto 24 bits, disabled" + picture;
  Add(group + "/marklet", [=](benchmark::State& state) { onto24(state, 92); });
  AddYardsticks(group, size, icon, Depth::k24);

  group = "Premultiply" + picture;
  Add(group + "/marklet", [=](benchmark::State& state) {
    const auto source = Picture(size, icon);
    while (state.KeepRunning()) PremultiplyPixels(source->Bits(), std::ptrdiff_t{size} * size);
  });
  AddYardsticks(group, size, icon, Depth::k32);
  Add(group + "/libyuv's ARGBAttenuate", [=](benchmark::State& state) {
    const auto source = Picture(size, icon);
    while (state.KeepRunning())
      libyuv::ARGBAttenuate(source->Bits(), size * 4, source->Bits(), size * 4, size, size);
  });
  group = "Grayscale" + picture;
  Add(group + "/marklet", [=](benchmark::State& state) {
    const auto source = Picture(size, icon);
    while (state.KeepRunning()) source->Grayscale(-1);
  });
  AddYardsticks(group, size, icon, Depth::k32);
  Add(group + "/libyuv's ARGBGray", [=](benchmark::State& state) {
    const auto source = Picture(size, icon);
    while (state.KeepRunning()) libyuv::ARGBGray(source->Bits(), size * 4, 0, 0, size, size);
  });
}

// Pictures that carry a key instead of alpha: a disc on KeyColour.
void AddKeyed(Long size) {
  const std::string picture = ", " + std::to_string(size);
  const auto copy = [=](benchmark::State& state, const Dib& source, Dib& target) {
    while (state.KeepRunning()) source.PaintTransparent(target.hDC(), 0, 0, -1, -1, 0, 0, KeyColour);
  };
  std::string group = "TransparentCopy, 32 to 32 bits" + picture;
  Add(group + "/marklet", [=](benchmark::State& state) {
    CDib32 source, target;
    if (!source.Create(size, size) || !target.Create(size, size)) return state.SkipWithError("no surface");
    Opaque(size, true)->PaintTo(source.hDC(), 0, 0, -1, -1, 0, 0, SRCCOPY);
    copy(state, source, target);
  });
  AddYardsticks(group, size, true, Depth::k32);
  group = "TransparentCopy, 32 to 24 bits" + picture;
  Add(group + "/marklet", [=](benchmark::State& state) {
    CDib32 source;
    CDib24 target;
    if (!source.Create(size, size) || !target.Create(size, size)) return state.SkipWithError("no surface");
    Opaque(size, true)->PaintTo(source.hDC(), 0, 0, -1, -1, 0, 0, SRCCOPY);
    copy(state, source, target);
  });
  AddYardsticks(group, size, true, Depth::k24);
  group = "TransparentCopy, 24 to 24 bits" + picture;
  Add(group + "/marklet", [=](benchmark::State& state) {
    CDib24 target;
    if (!target.Create(size, size)) return state.SkipWithError("no surface");
    copy(state, *Opaque(size, true), target);
  });
  AddYardsticks(group, size, true, Depth::k24);
}

// Into pixels that are there already: what a surface costs is another matter.
void AddResizers(Long from, Long to) {
  const std::string sizes = ", " + std::to_string(from) + " to " + std::to_string(to);
  const auto resample = [=](benchmark::State& state, void (*work)(const PixelView&, const PixelView&)) {
    const auto source = Picture(from, true), target = Picture(to, true);
    while (state.KeepRunning()) work(source->View(), target->View());
  };
  Add("ResampleNearest" + sizes + "/marklet", [=](benchmark::State& state) { resample(state, CopyNearest); });
  Add("ResampleArea" + sizes + "/marklet", [=](benchmark::State& state) { resample(state, AverageArea); });
  Add("ResizeKeyed" + sizes + "/marklet", [=](benchmark::State& state) {
    const auto source = Opaque(from, true), target = Opaque(to, true);
    while (state.KeepRunning()) source->BilinearInto(*target, KeyColour);
  });
  for (const Resizer& peer : Resizers()) {
    const double bar = peer.bar == 1 ? kLevel : peer.bar;
    const bool held = !peer.only_256_to_48 || from == 256;
    Add(
        std::string(peer.like) + sizes + "/" + peer.name,
        [=](benchmark::State& state) {
          const auto source = Picture(from, true), target = Picture(to, true);
          const auto resize = peer.prepare(BlockOf(*source, Depth::k32), BlockOf(*target, Depth::k32));
          while (state.KeepRunning()) resize();
        },
        held ? bar : 0);
  }
}

const bool registered = [] {
  for (const Long size : kSizes) {
    for (const bool icon : {false, true}) AddCompositing(size, icon);
    AddKeyed(size);
  }
  AddResizers(256, 48);
  AddResizers(40, 32);
  AddResizers(48, 96);
  return true;
}();

}  // namespace
}  // namespace marklet::bench
