// Runs the benchmarks. All peers get the same fonts, from the fontconfig file of the tests.
#include <benchmark/benchmark.h>

#include <QGuiApplication>
#include <cstdlib>

int main(int count, char** arguments) {
  setenv("FONTCONFIG_FILE", MARKLET_FONTS_CONF, 1);
  setenv("QT_QPA_PLATFORM", "offscreen", 1);
  benchmark::Initialize(&count, arguments);
  if (benchmark::ReportUnrecognizedArguments(count, arguments)) return 2;
  const QGuiApplication application(count, arguments);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
