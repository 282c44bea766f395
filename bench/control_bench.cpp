// Whole controls: a repaint with nothing changed beside the bare block copy, and what ten thousand of them
// cost.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <vector>

#include "bitmaps/cdib24.h"
#include "captions.h"
#include "control/marklet.h"
#include "control/properties.h"
#include "heap.h"
#include "platform/gdi.h"
#include "render/memory_host.h"

namespace marklet::bench {
namespace {

constexpr Long kDotsPerInch = 96;
constexpr int kControls = 10000;

// A control as a form has it after loading: with a caption, painted once. Unless told otherwise of the size
// of an ordinary label.
struct Control {
  MemoryHost host;
  marklet::Marklet control{host, host};

  explicit Control(Long width = 120, Long height = 24) : host(width, height, kDotsPerInch) {
    host.Attach(control);
    control.InitProperties();
    control.Set(*FindProperty("Caption"), std::u16string(u"Total: <b>12</b>"));
  }
};

void MakeOrAbort(CDib24& surface, Long width, Long height) {
  if (surface.Create(width, height)) return;
  std::fputs("no surface\n", stderr);
  std::abort();
}

void Repaint(benchmark::State& state) {
  Control one(kWidth, kHeight);
  CDib24 window;
  MakeOrAbort(window, kWidth, kHeight);
  one.control.PaintControl(window.hDC());
  while (state.KeepRunning()) one.control.PaintControl(window.hDC());
}
BENCHMARK(Repaint)->Name("repaint/control");

void Blit(benchmark::State& state) {
  CDib24 picture, window;
  MakeOrAbort(picture, kWidth, kHeight);
  MakeOrAbort(window, kWidth, kHeight);
  while (state.KeepRunning()) {
    BitBlt(window.hDC(), 0, 0, kWidth, kHeight, picture.hDC(), 0, 0, SRCCOPY);
  }
}
BENCHMARK(Blit)->Name("repaint/blit");

using Controls = std::vector<std::unique_ptr<Control>>;

void Make(Controls& controls) {
  for (int i = 0; i < kControls; ++i) controls.push_back(std::make_unique<Control>());
}

void Create(benchmark::State& state) {
  while (state.KeepRunning()) {
    Controls controls;
    controls.reserve(kControls);
    Make(controls);
    state.PauseTiming();
    controls.clear();
    state.ResumeTiming();
  }
}
BENCHMARK(Create)->Name("controls/create")->Iterations(1);

void CreateAndDestroy(benchmark::State& state) {
  while (state.KeepRunning()) {
    Controls controls;
    controls.reserve(kControls);
    Make(controls);
  }
}
BENCHMARK(CreateAndDestroy)->Name("controls/create-and-destroy")->Iterations(1);

std::size_t PixelBytes(const CDib24* surface) {
  if (surface == nullptr || surface->Bits() == nullptr) return 0;
  return static_cast<std::size_t>(surface->BytesPerScanLine()) * static_cast<std::size_t>(surface->Height());
}

// The heap that a control and its host hold, without the pixels of the control's picture and of the host's
// window.
void Memory(benchmark::State& state) {
  Control first;  // what is made once: fonts, caches
  while (state.KeepRunning()) {
    const std::size_t before = HeapInUse();
    Controls controls;
    controls.reserve(kControls);
    Make(controls);
    std::size_t buffers = 0;
    for (const auto& one : controls) {
      buffers += PixelBytes(&one->host.Surface()) + PixelBytes(one->control.State().BackBuffer.get());
    }
    const std::size_t held = HeapInUse() - before - buffers;
    state.counters["bytes_per_control"] = static_cast<double>(held) / kControls;
  }
}
BENCHMARK(Memory)->Name("controls/memory")->Iterations(1);

}  // namespace
}  // namespace marklet::bench
