// Saving and loading a control with ten images of all sizes beside a plain copy of the same bytes, and what a
// control costs from its making to its end.
#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "control/marklet.h"
#include "control/saved_bag.h"
#include "heap.h"
#include "images/image_sizes.h"
#include "render/memory_host.h"

namespace marklet::bench {
namespace {

struct Control {
  MemoryHost host{120, 24, 96};
  marklet::Marklet control{host, host};

  Control() { host.Attach(control); }
};

// --- Saving and loading -----------------------------------------------------------------------------------

constexpr int kImages = 10;

ByteArray Pixels(Long edge) {
  ByteArray cell{{{0, 4}, {0, edge}, {0, edge}}, {}};
  cell.bytes.resize(static_cast<std::size_t>(4) * static_cast<std::size_t>(edge) *
                    static_cast<std::size_t>(edge));
  std::uint32_t noise = static_cast<std::uint32_t>(edge);
  for (std::uint8_t& byte : cell.bytes) {
    noise = noise * 1664525u + 1013904223u;
    byte = static_cast<std::uint8_t>(noise >> 24);
  }
  return cell;
}

std::unique_ptr<Control> WithImages() {
  auto made = std::make_unique<Control>();
  made->control.InitProperties();
  for (int i = 0; i < kImages; ++i) {
    const auto image = std::make_shared<CIconBytes>();
    const std::u16string key = u"image " + std::u16string(1, static_cast<char16_t>(u'0' + i));
    image->PutKey(key);
    for (Long size = 0; size < CIconBytes::kSizes; ++size)
      image->SetBytes(size, 4, Pixels(SizeFromIndex(size)));
    made->control.State().Images->Add(key, image);
  }
  return made;
}

std::vector<std::uint8_t> SavedForm() {
  SavedBag bag;
  WithImages()->control.WriteProperties(bag);
  return bag.Bytes();
}

void CountBytes(benchmark::State& state, std::size_t bytes) {
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * static_cast<std::int64_t>(bytes));
  state.counters["bytes"] = static_cast<double>(bytes);
}

void Save(benchmark::State& state) {
  const auto made = WithImages();
  std::size_t bytes = 0;
  while (state.KeepRunning()) {
    SavedBag bag;
    made->control.WriteProperties(bag);
    bytes = bag.Bytes().size();
  }
  CountBytes(state, bytes);
}
BENCHMARK(Save)->Name("saving/save");

// As from a stream: its bytes are there, and the reader keeps them.
void Load(benchmark::State& state) {
  const std::vector<std::uint8_t> form = SavedForm();
  const auto made = WithImages();
  while (state.KeepRunning()) {
    SavedBag bag;
    benchmark::DoNotOptimize(bag.Read(form));
    made->control.ReadProperties(bag);
  }
  CountBytes(state, form.size());
}
BENCHMARK(Load)->Name("saving/load");

void Copy(benchmark::State& state) {
  const std::vector<std::uint8_t> form = SavedForm();
  while (state.KeepRunning()) {
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): it is what is measured
    const std::vector<std::uint8_t> copy = form;
    benchmark::DoNotOptimize(copy.data());
  }
  CountBytes(state, form.size());
}
BENCHMARK(Copy)->Name("saving/copy");

// --- Lives ------------------------------------------------------------------------------------------------

// So many controls made, initialised as new ones, and released. They have no window and haven't painted
// elsewhere than on the memory host's surface.
void Lives(benchmark::State& state) {
  const auto count = static_cast<std::size_t>(state.range(0));
  std::vector<std::unique_ptr<Control>> controls;
  controls.reserve(count);
  const auto make = [&] {
    for (std::size_t i = 0; i < count; ++i) {
      controls.push_back(std::make_unique<Control>());
      controls.back()->control.InitProperties();
    }
  };
  const std::size_t before = HeapInUse();
  make();
  const std::size_t held = HeapInUse() - before;
  controls.clear();
  while (state.KeepRunning()) {
    make();
    controls.clear();
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * state.range(0));
  state.counters["bytes_per_control"] = static_cast<double>(held) / static_cast<double>(count);
}
BENCHMARK(Lives)->Name("lives")->Arg(1)->Arg(100)->Arg(10000)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace marklet::bench
