// What marklet-render says of characters that it has no font for.
#include <gtest/gtest.h>

#include <sstream>

#include "render/run.h"
#include "support/temporary_folder.h"

namespace marklet {
namespace {

class RunMissing : public ::testing::Test {
 protected:
  std::string Told(const std::string& caption) {
    std::ostringstream out, err;
    EXPECT_EQ(RunMarkletRender({"Caption=" + caption, "FontSize=17", "-o", folder_.File("a.png")}, out, err),
              0);
    EXPECT_EQ(out.str(), "");
    return err.str();
  }
  testing::TemporaryFolder folder_;
};

TEST_F(RunMissing, CharactersAreToldOnceABlock) {
  EXPECT_EQ(Told("\u0F40\u0F41\u0F40 \u1200\u1201"),
            "marklet-render: no font has U+0F40; others from U+0F00 to U+0F7F may be missing too\n"
            "marklet-render: no font has U+1200; others from U+1200 to U+127F may be missing too\n");
}

TEST_F(RunMissing, CharactersOfOneRunAreNotToldOfTheNext) {
  EXPECT_NE(Told("\u0F50\u0F51"), "");
  EXPECT_EQ(Told("Total"), "");
}

TEST_F(RunMissing, CharactersAreNotThoseThatEveryFontIsSetUpFor) {
  EXPECT_EQ(Told("a \u05D0 \u0628 \u0928 \u0E01 \u4E2D \uAC00 \U0001F600 e\u0301"), "");
}

}  // namespace
}  // namespace marklet
