// The visual style of windows, as configured.
#include "platform/theme.h"

#include <gtest/gtest.h>

#include <array>

namespace marklet {
namespace {

// A configured style looks at no window: any address will do.
const HWND kWindow = reinterpret_cast<HWND>(0x10);

class ConfiguredThemes : public testing::Test {
 protected:
  ~ConfiguredThemes() override { ConfiguredTheme().reset(); }
  std::array<char16_t, 8> file_{}, colour_{}, size_{};
};

TEST_F(ConfiguredThemes, OpenForAWindowAndClose) {
  ConfiguredTheme() = {.active = true, .names = {}};
  const HTHEME theme = OpenThemeData(kWindow, u"Button");
  ASSERT_NE(theme, nullptr);
  EXPECT_TRUE(CloseThemeData(theme));
  EXPECT_EQ(OpenThemeData(nullptr, u"Button"), nullptr);
  EXPECT_FALSE(CloseThemeData(nullptr));
}

TEST_F(ConfiguredThemes, DontOpenWhereThereAreNone) {
  ConfiguredTheme() = {.active = false, .names = ThemeConfiguration::Names{u"a", u"b", u"c"}};
  EXPECT_EQ(OpenThemeData(kWindow, u"Button"), nullptr);
  EXPECT_FALSE(GetCurrentThemeName(file_, colour_, size_));
}

TEST_F(ConfiguredThemes, GiveTheirNamesWhereThereIsRoom) {
  ConfiguredTheme() = {.active = true, .names = ThemeConfiguration::Names{u"a.style", u"Blue", u""}};
  ASSERT_TRUE(GetCurrentThemeName(file_, colour_, size_));
  EXPECT_EQ(std::u16string(file_.data()), u"a.style") << "just fits, with its NUL";
  EXPECT_EQ(std::u16string(colour_.data()), u"Blue");
  EXPECT_EQ(size_[0], u'\0');
  ConfiguredTheme()->names->size = u"12345678";
  EXPECT_FALSE(GetCurrentThemeName(file_, colour_, size_));
}

TEST_F(ConfiguredThemes, MayHaveNamesThatCantBeTold) {
  ConfiguredTheme() = {.active = true, .names = {}};
  EXPECT_FALSE(GetCurrentThemeName(file_, colour_, size_));
}

}  // namespace
}  // namespace marklet
