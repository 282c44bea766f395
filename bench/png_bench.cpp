// PNG files from memory to final pixels: ours, other libraries' decoders, and a bare inflate as the limit.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <map>
#include <string>

#include "png/cpng_decoder.h"
#include "png_peers.h"
#include "png_pictures.h"

namespace marklet::bench {
namespace {

constexpr std::size_t kSizes[] = {16, 24, 32, 48, 96, 128, 256, 512, 1024};
constexpr double kMinSeconds = 0.01;  // there are hundreds of them

struct Picture {
  PictureKind kind;
  std::size_t size;

  std::string Name() const { return "png/" + NameOf(kind) + "/" + std::to_string(size) + "/"; }
  // Made when it is first asked for.
  const Bytes& File() const {
    static std::map<std::string, Bytes> files;
    Bytes& file = files[Name()];
    if (file.empty()) file = FileOf(kind, size);
    return file;
  }
};

void Require(benchmark::State& state, bool decoded) {
  if (!decoded) state.SkipWithError("no picture");
}

// The decoder uses the file's memory up, so it gets a copy each time.
void DecodeByMarklet(benchmark::State& state, const Picture& picture) {
  const Bytes& file = picture.File();
  Bytes scratch(file.size());
  bool decoded = true;
  while (state.KeepRunning()) {
    std::copy(file.begin(), file.end(), scratch.begin());
    CPngDecoder decoder;
    decoder.LoadFromMemory(scratch);
    decoded &= decoder.BitmapHandle() != nullptr;
  }
  Require(state, decoded);
}

void DecodeByPeer(benchmark::State& state, const Picture& picture, const PngPeer& peer) {
  const Bytes& file = picture.File();
  bool decoded = true;
  while (state.KeepRunning()) decoded &= peer.decode(file);
  Require(state, decoded);
}

void Inflate(benchmark::State& state, const Picture& picture) {
  const Bytes stream = StreamOf(picture.File());
  Bytes memory(picture.size * (picture.size * 4 + 1) * 2);
  bool inflated = true;
  while (state.KeepRunning()) inflated &= InflateWithLibdeflate(stream, memory);
  Require(state, inflated);
}

// The analyzer doesn't see that the library keeps what is registered, and calls it a leak.
#ifndef __clang_analyzer__
void Register(const Picture& picture) {
  const auto add = [&](const char* name, auto run, auto... what) {
    benchmark::RegisterBenchmark((picture.Name() + name).c_str(), run, picture, what...)
        ->MinTime(kMinSeconds);
  };
  add("marklet", DecodeByMarklet);
  for (const PngPeer& peer : PngPeers()) add(peer.name, DecodeByPeer, peer);
  add("libdeflate's inflate alone", Inflate);
}

const bool registered = [] {
  for (const Subject subject : {Subject::Icon, Subject::Photo, Subject::Flat})
    for (const bool alpha : {false, true})
      for (const bool interlaced : {false, true})
        for (const std::size_t size : kSizes) Register({{subject, alpha, interlaced}, size});
  return true;
}();
#endif

}  // namespace
}  // namespace marklet::bench
