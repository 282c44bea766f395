// The registry, and the name of the desktop's scheme in it.
#include "platform/registry.h"

#include <gtest/gtest.h>

#include "platform/win32/registry_value.h"
#include "theme/appearance_scheme.h"

namespace marklet {
namespace {

using namespace std::string_literals;

TEST(WindowsRegistry, HoldsTheNameOfTheScheme) {
  const testing::RegistryValue value("Control Panel\\Appearance", "Current");
  value.Put("Windows Standard\0"s);
  EXPECT_EQ(AppearanceScheme(), u"Windows Standard");
  value.Put("Rose"s, REG_BINARY);
  EXPECT_EQ(AppearanceScheme(), u"Rose") << "without a NUL, and of any type";
  value.Put(""s, REG_BINARY);
  EXPECT_EQ(AppearanceScheme(), u"");
  value.Delete();
  EXPECT_EQ(AppearanceScheme(), u"");
}

TEST(WindowsRegistry, IsReadByHiveKeyAndName) {
  const testing::RegistryValue value("Software\\Marklet Test", "Value");
  value.Put("text\0"s);
  EXPECT_EQ(ReadRegistryString(kCurrentUserHive, "Software\\Marklet Test", "Value"), u"text");
  EXPECT_EQ(ReadRegistryString(kCurrentUserHive, "Software\\Marklet Test", "Other"), u"");
  EXPECT_EQ(ReadRegistryString(kCurrentUserHive, "Software\\Marklet Has No Such Key", "Value"), u"");
  EXPECT_EQ(ReadRegistryString(0, "Software\\Marklet Test", "Value"), u"");
}

TEST(WindowsRegistry, SaysHowLargeAValueIsThatDoesNotFit) {
  const testing::RegistryValue value("Software\\Marklet Test", "Value");
  value.Put("text\0"s);
  RegistryKeyHandle* key = nullptr;
  ASSERT_TRUE(RegOpenKeyExA(kCurrentUserHive, "Software\\Marklet Test", key));
  char buffer[2] = {};
  std::uint32_t size = 2;
  EXPECT_FALSE(RegQueryValueExA(key, "Value", buffer, size));
  EXPECT_EQ(size, 5u);
  EXPECT_TRUE(RegCloseKey(key));
  EXPECT_FALSE(RegCloseKey(nullptr));
}

}  // namespace
}  // namespace marklet
