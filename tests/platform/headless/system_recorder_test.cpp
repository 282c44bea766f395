// The answers that the headless platform fixes.
#include <gtest/gtest.h>

#include "platform/shared/std_font.h"
#include "platform/system.h"
#include "platform/text.h"

namespace marklet {
namespace {

class HeadlessSystem : public testing::Test {
 protected:
  ~HeadlessSystem() override { Configuration() = {}; }
};

TEST_F(HeadlessSystem, IsVersionTen) {
  OSVERSIONINFOA version;
  ASSERT_TRUE(GetVersionExA(version));
  EXPECT_EQ(version, (OSVERSIONINFOA{10, 0, 2}));
}

TEST_F(HeadlessSystem, HasTheClassicColours) {
  EXPECT_EQ(GetSysColor(15), MakeRgb(212, 208, 200));  // button face
  EXPECT_EQ(GetSysColor(16), MakeRgb(128, 128, 128));  // button shadow
  EXPECT_EQ(GetSysColor(20), MakeRgb(255, 255, 255));  // button highlight
  EXPECT_EQ(GetSysColor(21), MakeRgb(64, 64, 64));     // dark shadow
  EXPECT_EQ(GetSysColor(5), MakeRgb(255, 255, 255));   // window
  EXPECT_EQ(GetSysColor(8), MakeRgb(0, 0, 0));         // window text
  EXPECT_EQ(GetSysColor(13), MakeRgb(10, 36, 106));    // highlight
  EXPECT_EQ(GetSysColor(18), MakeRgb(0, 0, 0));        // button text
}

TEST_F(HeadlessSystem, HasNinetySixPixelsPerInchUnlessConfigured) {
  EXPECT_EQ(PixelsPerInch(nullptr), 96);
  Configuration().pixels_per_inch = 144;
  EXPECT_EQ(PixelsPerInch(nullptr), 144);
}

TEST_F(HeadlessSystem, TakesNoPartOfALibrarysNameForTheWhole) {
  EXPECT_NE(LoadLibraryA("USP10.DLL"), nullptr);
  EXPECT_EQ(LoadLibraryA("usp10.dll.old"), nullptr);
  EXPECT_EQ(LoadLibraryA("UNICOWS"), nullptr);
}

}  // namespace
}  // namespace marklet
