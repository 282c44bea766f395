// What the system answers, by itself and as configured.
#include "platform/system.h"

#include <gtest/gtest.h>

#include <cstdint>

#include "platform/text.h"

namespace marklet {
namespace {

class System : public testing::Test {
 protected:
  ~System() override { Configuration() = {}; }
};

TEST_F(System, IsOfTheNtFamilyByItself) {
  OSVERSIONINFOA version;
  ASSERT_TRUE(GetVersionExA(version));
  EXPECT_EQ(version.dwPlatformId, 2u);
  EXPECT_GE(version.dwMajorVersion, 5u);
}

TEST_F(System, IsOfTheConfiguredVersion) {
  Configuration().version = {4, 10, 1};
  OSVERSIONINFOA version;
  ASSERT_TRUE(GetVersionExA(version));
  EXPECT_EQ(version, (OSVERSIONINFOA{4, 10, 1}));
}

TEST_F(System, HasConfiguredColours) {
  Configuration().system_colours[15] = 0x123456;
  EXPECT_EQ(GetSysColor(15), 0x123456u);
  COLORREF colour = 0;
  ASSERT_TRUE(OleTranslateColor(0x8000000F, colour));
  EXPECT_EQ(colour, 0x123456u);
}

TEST_F(System, HasNoColoursOutsideItsTable) {
  EXPECT_EQ(GetSysColor(-1), 0u);
  EXPECT_EQ(GetSysColor(31), 0u);
  EXPECT_EQ(GetSysColor(4711), 0u);
}

TEST_F(System, HasAColourForEveryIndexOfItsTable) {
  COLORREF colour = 0;
  for (std::uint32_t index = 0; index <= 30; ++index) {
    if (index == 25) continue;  // belongs to no colour
    ASSERT_TRUE(OleTranslateColor(0x80000000 | index, colour)) << index;
    EXPECT_EQ(colour, GetSysColor(static_cast<int>(index)));
    EXPECT_LE(colour, 0xFFFFFFu);
  }
}

TEST_F(System, TranslatesColours) {
  COLORREF colour = 0;
  ASSERT_TRUE(OleTranslateColor(0x00C08040, colour));
  EXPECT_EQ(colour, 0x00C08040u);
  ASSERT_TRUE(OleTranslateColor(0x80000008, colour));
  EXPECT_EQ(colour, GetSysColor(8));
}

TEST_F(System, RefusesWhatIsNoColour) {
  COLORREF colour = 0x777777;
  for (const OLE_COLOR value : {0xFFFFFFFFu, 0x800000FFu, 0x40000000u, 0x81000005u})
    EXPECT_FALSE(OleTranslateColor(value, colour)) << value;
  EXPECT_EQ(colour, 0x777777u);
}

TEST_F(System, FindsTheScriptProcessor) {
  EXPECT_GT(reinterpret_cast<std::uintptr_t>(LoadLibraryA("usp10.dll")), 32u);
}

TEST_F(System, FindsNoLibraryThatIsntThere) {
  EXPECT_EQ(LoadLibraryA("there-is-no-such-library.dll"), nullptr);
  EXPECT_EQ(LoadLibraryA(""), nullptr);
}

TEST_F(System, FindsLibrariesAsConfigured) {
  Configuration().libraries["usp10.dll"] = false;
  Configuration().libraries["there-is-no-such-library.dll"] = true;
  EXPECT_EQ(LoadLibraryA("usp10.dll"), nullptr);
  EXPECT_GT(reinterpret_cast<std::uintptr_t>(LoadLibraryA("there-is-no-such-library.dll")), 32u);
}

TEST_F(System, SetsNoTextOnAWindowThatIsntThere) {
  EXPECT_FALSE(DefWindowProcW_SetText(nullptr, u"Total"));
  EXPECT_FALSE(DefWindowProcA_SetText(nullptr, "Total"));
}

}  // namespace
}  // namespace marklet
