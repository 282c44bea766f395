// What a sheet takes of memory.
#include <gtest/gtest.h>

#include "render/sheet.h"
#if defined(__SANITIZE_ADDRESS__)
#include "png/heap_watch.h"
#endif

namespace marklet {
namespace {

std::string SheetOf(int items) {
  std::string json = R"({ "columns": 20, "margin": 0, "gap": 0,
    "items": [ { "size": "10x10", "properties": { "Caption": "a caption" } })";
  for (int i = 1; i < items; ++i)
    json += R"(, { "size": "10x10", "properties": { "Caption": "a caption" } })";
  return json + "] }";
}

TEST(SheetMemory, HoldsOneControlAtATime) {
#if defined(__SANITIZE_ADDRESS__)
  RenderSheet(SheetOf(20), 1);  // what is kept for good
  const std::size_t few = png::test::PeakOfHeap([] { RenderSheet(SheetOf(20), 1); });
  const std::size_t many = png::test::PeakOfHeap([] { RenderSheet(SheetOf(400), 1); });
  EXPECT_LT(many, few + (1u << 20));
#else
  GTEST_SKIP() << "only the address sanitizer tells what is allocated";
#endif
}

}  // namespace
}  // namespace marklet
