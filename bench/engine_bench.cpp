// The engine's own share: a caption against the platform calls that it makes, made again without it; and how
// the time grows with the caption's length.
#include <benchmark/benchmark.h>

#include "captions.h"
#include "label.h"
#include "platform/headless/recorder/recorder.h"

namespace marklet::bench {
namespace {

// High enough for a thousand words, so that nothing is left out as being off the surface.
constexpr Long kTall = 3000;

// The labels of a form. A single caption again and again would measure how well the processor learns its
// branches by heart.
class Form {
 public:
  explicit Form(int words) {
    const CaptionShape shape = {Kind::Rich, words};
    for (int number = 0; number < NumberOf(shape.vocabulary); ++number)
      captions_.push_back(Utf16(MarkletCaption(shape, number)));
  }
  benchmark::IterationCount Size() const { return static_cast<benchmark::IterationCount>(captions_.size()); }
  void Draw() {
    for (const std::u16string& caption : captions_) label_.Draw(caption);
  }

 private:
  Label label_{kWidth, kTall};
  std::vector<std::u16string> captions_;
};

void Engine(benchmark::State& state, int words) {
  Form form(words);
  while (state.KeepRunningBatch(form.Size())) form.Draw();
}

void Replay(benchmark::State& state, int words) {
  Form form(words);
  form.Draw();  // the fonts are made once, as for the engine
  Recorder recorder;
  form.Draw();
  while (state.KeepRunningBatch(form.Size())) recorder.Replay();
}

// `characters` of text, with words and tags or without a place to break.
std::u16string TextOf(const std::string& unit, int characters) {
  std::string text;
  while (static_cast<int>(text.size()) < characters) text += unit;
  text.resize(static_cast<std::size_t>(characters));
  return Utf16(text);
}

void Length(benchmark::State& state, const std::string& unit, int characters) {
  Label label(kWidth, kHeight);
  const std::u16string caption = TextOf(unit, characters);
  while (state.KeepRunning()) label.Draw(caption);
}

struct Shape {
  const char* name;
  std::string unit;
};

// So close a comparison of so short a time takes more repetitions than others until each has met a quiet
// moment.
constexpr int kRepetitions = 40;

void AddComparison(int words) {
  const std::string name = "replay/" + std::to_string(words);
  const auto add = [&](const char* side, void (*run)(benchmark::State&, int)) {
    benchmark::RegisterBenchmark((name + side).c_str(), [run, words](benchmark::State& state) {
      run(state, words);
    })->Repetitions(kRepetitions);
  };
  add("/engine", Engine);
  add("/replay", Replay);
}

const bool kRegistered = [] {
  for (const int words : {5, 20, 1000}) AddComparison(words);
  const Shape shapes[] = {{"plain", MarkletCaption({Kind::Plain, 20}, 0) + " "},
                          {"rich", MarkletCaption({Kind::Rich, 20}, 0) + " "},
                          {"tags", "<b>x</b>"},
                          {"unbroken", "<b>" + std::string(99, 'x') + "</b>"}};
  for (const Shape& shape : shapes) {
    for (const int characters : {1000, 10000, 100000}) {
      const std::string name = std::string("length/") + shape.name + "/" + std::to_string(characters);
      benchmark::RegisterBenchmark(name.c_str(), [unit = shape.unit, characters](benchmark::State& state) {
        Length(state, unit, characters);
      })->Unit(benchmark::kMicrosecond);
    }
  }
  return true;
}();

}  // namespace
}  // namespace marklet::bench
