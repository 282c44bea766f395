// The headless platform's registry, which is empty but in tests.
#include "platform/registry.h"

#include <gtest/gtest.h>

#include "platform/headless/recorder/recorder.h"
#include "platform/headless/system/registry.h"

namespace marklet {
namespace {

using Lines = std::vector<std::string>;

struct HeadlessRegistry : testing::Test {
  ~HeadlessRegistry() override { headless::Registry().clear(); }
};

TEST_F(HeadlessRegistry, IsEmptyAtFirst) {
  RegistryKeyHandle* key = nullptr;
  EXPECT_FALSE(RegOpenKeyExA(kCurrentUserHive, "Control Panel\\Appearance", key));
  EXPECT_EQ(key, nullptr);
}

TEST_F(HeadlessRegistry, GivesValuesThatFit) {
  headless::Registry()[{"Key", "Name"}] = "abc";
  RegistryKeyHandle* key = nullptr;
  EXPECT_FALSE(RegOpenKeyExA(0x80000002, "Key", key)) << "another hive";
  ASSERT_TRUE(RegOpenKeyExA(kCurrentUserHive, "Key", key));
  std::uint32_t size = 0;
  EXPECT_TRUE(RegQueryValueExA(key, "Name", nullptr, size));
  EXPECT_EQ(size, 3u);
  char small[2] = {'x', 'y'}, large[8] = {};
  size = 2;
  EXPECT_FALSE(RegQueryValueExA(key, "Name", small, size));
  EXPECT_EQ(small[0], 'x');
  size = 8;
  EXPECT_TRUE(RegQueryValueExA(key, "Name", large, size));
  EXPECT_EQ(std::string(large), "abc");
  EXPECT_EQ(size, 3u);
  EXPECT_FALSE(RegQueryValueExA(key, "Other", nullptr, size));
  EXPECT_TRUE(RegCloseKey(key));
}

TEST_F(HeadlessRegistry, HasNoValuesWithoutAKey) {
  std::uint32_t size = 0;
  EXPECT_FALSE(RegQueryValueExA(nullptr, "Name", nullptr, size));
  EXPECT_FALSE(RegCloseKey(nullptr));
}

TEST_F(HeadlessRegistry, IsRecorded) {
  headless::Registry()[{"Key", "Name"}] = "abc";
  const Recorder recorder;
  RegistryKeyHandle* key = nullptr;
  RegOpenKeyExA(kCurrentUserHive, "Key", key);
  std::uint32_t size = 5;
  RegQueryValueExA(key, "Name", nullptr, size);
  RegCloseKey(key);
  EXPECT_EQ(recorder.Lines(),
            (Lines{"RegOpenKeyExA(0x80000001,\"Key\")", "RegQueryValueExA(\"Name\",5)", "RegCloseKey()"}));
}

}  // namespace
}  // namespace marklet
