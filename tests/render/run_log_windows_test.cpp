#include <gtest/gtest.h>

#include <sstream>

#include "render/run.h"
#include "support/temporary_folder.h"

namespace marklet {
namespace {

TEST(RunLog, IsNotAvailableOnWindows) {
  const testing::TemporaryFolder folder;
  std::ostringstream out, err;
  EXPECT_EQ(RunMarkletRender({"Caption=Total", "--log", "-o", folder.File("a.png")}, out, err), 2);
  EXPECT_EQ(err.str(), "marklet-render: --log isn't available on this platform\n");
  EXPECT_EQ(folder.Entries(), 0);
}

}  // namespace
}  // namespace marklet
