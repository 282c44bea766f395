// A full repaint on Windows against the platform calls that it makes, made again without it; a thousand such
// controls when a system colour changes; gradients: repaint_bench CALLS RESULTS.json. CALLS are the lines
// that the native benchmark program writes with --calls.
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "bitmaps/cdib24.h"
#include "bitmaps/colour.h"
#include "full_control.h"
#include "platform/gdi.h"
#include "platform/system.h"
#include "recorded_calls.h"
#include "windows/report.h"

namespace marklet::bench {
namespace {

constexpr int kRepetitions = 9, kRepaints = 20, kControls = 1000;
constexpr Long kBands = 1000;
constexpr COLORREF kFirst = MakeRgb(10, 20, 30), kSecond = MakeRgb(200, 210, 220);

std::vector<std::string> LinesIn(const std::string& path) {
  std::ifstream file(path);
  std::vector<std::string> lines;
  for (std::string line; std::getline(file, line);) lines.push_back(line);
  Require(!lines.empty(), "no recorded calls");
  return lines;
}

class Surface {
 public:
  Surface(Long width, Long height) { Require(surface_.Create(width, height), "no surface"); }
  HDC Dc() const { return surface_.hDC(); }

 private:
  CDib24 surface_;
};

void Gradient(const Surface& surface, COLORREF first, COLORREF second) {
  GradientRect(surface.Dc(), first, second, 0, 0, kWidth, kBands, false);
}

// The fills of the bands with one brush for all.
void FillWithOneBrush(const Surface& surface) {
  const HBRUSH brush = CreateSolidBrush(kFirst);
  for (Long y = 0; y < kBands; ++y) FillRect(surface.Dc(), {0, y, kWidth, y + 1}, brush);
  DeleteObject(brush);
}

void MakeBrushes() {
  for (unsigned band = 0; band < kBands; ++band) DeleteObject(CreateSolidBrush(band));
}

using Work = std::pair<const char*, std::function<void()>>;

// Taken in turn, so that a busy moment of the machine hits them alike.
void Measure(Report& report, const std::vector<Work>& works, int times) {
  for (const Work& work : works) work.second();
  for (int repetition = 0; repetition < kRepetitions; ++repetition)
    for (const Work& work : works) {
      const double time = TimeOf([&] {
        for (int i = 0; i < times; ++i) work.second();
      });
      report.Add(std::string("windows/") + work.first, time / times);
    }
}

void MeasureRepaint(Report& report, const std::vector<std::string>& lines) {
  FullControl full;
  RecordedCalls calls(lines);
  const HDC behind = full.control.State().Background->hDC(), window = full.host.hDC();
  Measure(report,
          {{"full-repaint/control", [&] { full.Repaint(); }},
           {"full-repaint/replay", [&] { calls.MakeAgain(behind, window); }}},
          kRepaints);
}

void MeasureForm(Report& report) {
  std::vector<std::unique_ptr<FullControl>> form;
  form.reserve(kControls);
  for (int number = 0; number < kControls; ++number) form.push_back(std::make_unique<FullControl>(number));
  const auto paint_all = [&] {
    for (const auto& full : form) {
      full->control.PaintControl(nullptr);
      Require(full->control.State().BackBuffer->View().bits != nullptr, "a control has no picture");
    }
  };
  COLORREF colour = 0;
  const auto change = [&] {
    Configuration().system_colours[COLOR_BTNTEXT] = ++colour;
    paint_all();
  };
  Measure(report, {{"form-of-1000/colour-change", change}, {"form-of-1000/no-change", paint_all}}, 1);
  Configuration().system_colours.clear();
}

void MeasureGradients(Report& report) {
  const Surface surface(kWidth, kBands);
  Measure(report,
          {{"gradient/bands", [&] { Gradient(surface, kFirst, kSecond); }},
           {"gradient/one-brush", [&] { FillWithOneBrush(surface); }},
           {"gradient/brushes", MakeBrushes},
           {"gradient/one-fill", [&] { Gradient(surface, kFirst, kFirst); }}},
          kRepaints);
}

}  // namespace
}  // namespace marklet::bench

int main(int count, char** arguments) {
  Require(count == 3, "repaint_bench CALLS RESULTS.json");
  Report report;
  marklet::bench::MeasureRepaint(report, marklet::bench::LinesIn(arguments[1]));
  marklet::bench::MeasureForm(report);
  marklet::bench::MeasureGradients(report);
  const std::string path = arguments[2];
  Require(report.Write(std::wstring(path.begin(), path.end()).c_str()), "the results can't be written");
  return 0;
}
