#include <gtest/gtest.h>

#include <sstream>

#include "render/run.h"
#include "support/temporary_folder.h"

namespace marklet {
namespace {

TEST(RunLog, PrintsThePlatformCallsOfOnePaint) {
  const testing::TemporaryFolder folder;
  std::ostringstream out, err;
  EXPECT_EQ(RunMarkletRender({"Caption=Total", "--log", "-o", folder.File("a.png")}, out, err), 0);
  EXPECT_NE(out.str().find("\nDrawTextW(\"Total\",[0,0,200,40],0x40010)\n"), std::string::npos) << out.str();
  EXPECT_TRUE(out.str().ends_with("BitBlt(0,0,200,40,0,0,0xCC0020)\n"));
  EXPECT_EQ(folder.Entries(), 1);
}

TEST(RunLog, ShowsACaptionFileWithoutItsMarkAndLastLineEnd) {
  const testing::TemporaryFolder folder;
  for (const char* bytes : {"Total", "Total\n", "Total\r\n", "\xEF\xBB\xBFTotal"}) {
    const std::string file = folder.Write("caption.txt", bytes);
    std::ostringstream out, err;
    EXPECT_EQ(RunMarkletRender({"--caption-file", file, "--log", "-o", folder.File("a.png")}, out, err), 0);
    EXPECT_NE(out.str().find("\nDrawTextW(\"Total\",["), std::string::npos) << out.str();
  }
}

TEST(RunLog, CoversEveryControlOfASheet) {
  const testing::TemporaryFolder folder;
  const std::string sheet = folder.Write(
      "s.json", R"({"items": [{"properties": {"Caption": "one"}}, {"properties": {"Caption": "two"}}]})");
  std::ostringstream out, err;
  EXPECT_EQ(RunMarkletRender({"--sheet", sheet, "--log", "-o", folder.File("a.png")}, out, err), 0);
  EXPECT_NE(out.str().find("DrawTextW(\"one\""), std::string::npos);
  EXPECT_NE(out.str().find("DrawTextW(\"two\""), std::string::npos);
}

}  // namespace
}  // namespace marklet
