#include "render/reference.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

namespace marklet {
namespace {

TEST(Reference, ThePageInTheDocumentationIsUpToDate) {
  std::ifstream file(MARKLET_TESTS "/../docs/reference.md");
  std::ostringstream page;
  page << file.rdbuf();
  ASSERT_TRUE(file);
  EXPECT_EQ(page.str(), ReferenceText()) << "run scripts/docs";
}

TEST(Reference, NamesEveryEnumerationMemberAsHostsSeeIt) {
  const std::string text = ReferenceText();
  for (const char* member : {"`Left Justify` = 0", "`3d` = 1", "`256x256` = 7", "`Bottom` = 3"})
    EXPECT_NE(text.find(member), std::string::npos) << member;
}

}  // namespace
}  // namespace marklet
