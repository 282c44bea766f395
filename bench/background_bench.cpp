// What lies below a caption and beside it: a full repaint against the platform calls that it makes, made
// again without it; a form of such controls when a system colour changes; gradients.
#include <benchmark/benchmark.h>

#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "bitmaps/cdib24.h"
#include "bitmaps/colour.h"
#include "full_control.h"
#include "platform/gdi.h"
#include "platform/headless/recorder/recorder.h"
#include "platform/system.h"
#include "recorded_calls.h"

namespace marklet::bench {
namespace {

using Form = std::vector<std::unique_ptr<FullControl>>;

Form MakeForm(int controls) {
  Form form;
  for (int number = 0; number < controls; ++number) form.push_back(std::make_unique<FullControl>(number));
  return form;
}

// --- A full repaint ---------------------------------------------------------------------------------------

// Several in turn: a single one again and again would measure how well the processor learns its branches by
// heart.
constexpr int kDifferent = NumberOf(Vocabulary::Common);

void RepaintAll(const Form& form) {
  for (const auto& full : form) full->Repaint();
}

void Repaint(benchmark::State& state) {
  const Form form = MakeForm(kDifferent);
  while (state.KeepRunningBatch(kDifferent)) RepaintAll(form);
}

void Replay(benchmark::State& state) {
  const Form form = MakeForm(kDifferent);
  RepaintAll(form);  // the fonts are made once, as for the controls
  Recorder recorder;
  RepaintAll(form);
  while (state.KeepRunningBatch(kDifferent)) recorder.Replay();
}

// --- A change of the system's colours ---------------------------------------------------------------------

constexpr int kControls = 1000;

// The host paints each once; that is when they notice.
void PaintAll(const Form& form) {
  for (const auto& full : form) full->control.PaintControl(nullptr);
}

void AfterColourChange(benchmark::State& state) {
  const Form form = MakeForm(kControls);
  COLORREF colour = 0;
  while (state.KeepRunning()) {
    Configuration().system_colours[COLOR_BTNTEXT] = ++colour;
    PaintAll(form);
  }
  Configuration().system_colours.clear();
}

void WithoutColourChange(benchmark::State& state) {
  const Form form = MakeForm(kControls);
  while (state.KeepRunning()) PaintAll(form);
}

// --- Gradients --------------------------------------------------------------------------------------------

constexpr Long kBands = 1000;
constexpr COLORREF kFirst = MakeRgb(10, 20, 30), kSecond = MakeRgb(200, 210, 220);

struct Canvas {
  Canvas() { surface.Create(kWidth, kBands); }
  void Fill(COLORREF first, COLORREF second) {
    GradientRect(surface.hDC(), first, second, 0, 0, kWidth, kBands, false);
  }
  CDib24 surface;
};

void Gradient(benchmark::State& state) {
  Canvas canvas;
  while (state.KeepRunning()) canvas.Fill(kFirst, kSecond);
}

void OneFill(benchmark::State& state) {
  Canvas canvas;
  while (state.KeepRunning()) canvas.Fill(kFirst, kFirst);
}

// The fills of the bands with one brush for all.
void OneBrush(benchmark::State& state) {
  Canvas canvas;
  const HBRUSH brush = CreateSolidBrush(kFirst);
  while (state.KeepRunning())
    for (Long y = 0; y < kBands; ++y) FillRect(canvas.surface.hDC(), {0, y, kWidth, y + 1}, brush);
  DeleteObject(brush);
}

void Brushes(benchmark::State& state) {
  while (state.KeepRunning())
    for (unsigned band = 0; band < kBands; ++band) DeleteObject(CreateSolidBrush(band));
}

const bool kRegistered = [] {
  using benchmark::RegisterBenchmark;
  // As close a comparison as the engine's.
  constexpr int kRepetitions = 40;
  RegisterBenchmark("full-repaint/control", Repaint)->Repetitions(kRepetitions);
  RegisterBenchmark("full-repaint/replay", Replay)->Repetitions(kRepetitions);
  RegisterBenchmark("form-of-1000/colour-change", AfterColourChange)->Unit(benchmark::kMillisecond);
  RegisterBenchmark("form-of-1000/no-change", WithoutColourChange)->Unit(benchmark::kMillisecond);
  RegisterBenchmark("gradient/bands", Gradient);
  RegisterBenchmark("gradient/one-brush", OneBrush);
  RegisterBenchmark("gradient/brushes", Brushes);
  RegisterBenchmark("gradient/one-fill", OneFill);
  return true;
}();

std::vector<std::string> LinesOf(const std::function<void()>& work) {
  Recorder recorder;
  work();
  return recorder.Lines();
}

}  // namespace

bool SaveRepaintCalls(const char* file) {
  FullControl full;
  full.Repaint();  // the fonts are made once
  const std::vector<std::string> lines = LinesOf([&] { full.Repaint(); });
  RecordedCalls calls(lines);
  const HDC behind = full.control.State().Background->hDC(), window = full.host.Surface().hDC();
  if (LinesOf([&] { calls.MakeAgain(behind, window); }) != lines) return false;
  std::ofstream out(file);
  for (const std::string& line : lines) out << line << "\n";
  return !out.flush().fail();
}

}  // namespace marklet::bench
