// What a sheet takes of memory.
#include <gtest/gtest.h>

#include "render/sheet.h"
#include "support/heap_watch.h"

namespace marklet {
namespace {

std::string SheetOf(int items) {
  std::string json = R"({ "columns": 20, "margin": 0, "gap": 0,
    "items": [ { "size": "10x10", "properties": { "Caption": "a caption" } })";
  for (int i = 1; i < items; ++i)
    json += R"(, { "size": "10x10", "properties": { "Caption": "a caption" } })";
  return json + "] }";
}

using SheetMemory = HeapTest;

TEST_F(SheetMemory, HoldsOneControlAtATime) {
  RenderSheet(SheetOf(20), 1);  // what is kept for good
  const std::size_t few = PeakOfHeap([] { RenderSheet(SheetOf(20), 1); });
  const std::size_t many = PeakOfHeap([] { RenderSheet(SheetOf(400), 1); });
  EXPECT_LT(many, few + (1u << 20));
}

}  // namespace
}  // namespace marklet
