// Runs the benchmarks, or with --picture FILE draws what the caption benchmarks draw, or with --calls FILE
// writes the platform calls of a repaint for the benchmark on Windows. All peers get the same fonts, from the
// fontconfig file of the tests.
#include <benchmark/benchmark.h>

#include <QGuiApplication>
#include <cstdlib>
#include <string_view>

#include "captions.h"
#include "full_control.h"

int main(int count, char** arguments) {
  setenv("FONTCONFIG_FILE", MARKLET_FONTS_CONF, 1);
  setenv("QT_QPA_PLATFORM", "offscreen", 1);
  if (count == 3 && std::string_view(arguments[1]) == "--picture") {
    const QGuiApplication application(count, arguments);
    return marklet::bench::SavePicture(arguments[2]) ? 0 : 1;
  }
  if (count == 3 && std::string_view(arguments[1]) == "--calls")
    return marklet::bench::SaveRepaintCalls(arguments[2]) ? 0 : 1;
  benchmark::Initialize(&count, arguments);
  if (benchmark::ReportUnrecognizedArguments(count, arguments)) return 2;
  const QGuiApplication application(count, arguments);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
