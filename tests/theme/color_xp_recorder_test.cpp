// What the colours of a scheme ask of the platform.
#include <vector>

#include "platform/headless/recorder/recorder.h"
#include "platform/headless/system/registry.h"
#include "theme/scheme_fixture.h"

namespace marklet {
namespace {

using namespace std::string_literals;
using Lines = std::vector<std::string>;

struct ColorXPCalls : testing::SchemeTest {
  ~ColorXPCalls() override { headless::Registry().clear(); }
};

TEST_F(ColorXPCalls, CloseWhatTheyOpen) {
  ShowTheme(u"NormalColor");
  ShowNormalColor();
  const Recorder recorder;
  ColoursOf(u"", true, testing::kSomeWindow);
  EXPECT_EQ(recorder.Lines(), (Lines{"OpenThemeData(\"Button\")", "GetCurrentThemeName()", "CloseThemeData()",
                                     "GetSysColor(5)", "GetSysColor(15)", "GetSysColor(13)"}))
      << "nothing is computed";
}

TEST_F(ColorXPCalls, AskNothingOfAWindowThatHasNoTheme) {
  Recorder recorder;
  ColoursOf(u"", true, testing::kSomeWindow);
  EXPECT_EQ(recorder.Lines("OpenThemeData").size(), 1u);
  EXPECT_EQ(recorder.Lines("GetCurrentThemeName"), Lines{});
  EXPECT_EQ(recorder.Lines("CloseThemeData"), Lines{});
  recorder.Clear();
  ColoursOf(u"", true, nullptr);
  EXPECT_EQ(recorder.Lines("OpenThemeData"), Lines{});
}

TEST_F(ColorXPCalls, CloseTheThemeWhoseNamesCantBeTold) {
  ShowTheme(u"NormalColor");
  Recorder recorder;
  recorder.Fail("GetCurrentThemeName");
  std::u16string scheme = u"Wheat";
  Compute(scheme, true, testing::kSomeWindow);
  EXPECT_EQ(scheme, u"");
  EXPECT_EQ(recorder.Lines("CloseThemeData").size(), 1u);
}

// Owners of images ask for the colours of their own window and of the user's scheme.
TEST_F(ColorXPCalls, OfAnOwnerTakeItsWindowAndTheUsersScheme) {
  headless::Registry()[{"Control Panel\\Appearance", "Current"}] = "Windows Classic\0"s;
  ShowColours(MakeRgb(255, 255, 255), MakeRgb(192, 192, 192), MakeRgb(0, 0, 128));
  testing::HostedControl hosted;
  const ThemeColours classic = hosted.control.GetThemeColors();
  EXPECT_EQ(classic, ColoursOf(u"WINDOWS CLASSIC"));
  EXPECT_EQ(classic[0], MakeRgb(192, 192, 192));
  EXPECT_EQ(classic[19], MakeRgb(161, 161, 161)) << "the row, not computed";
  hosted.host.window = testing::kSomeWindow;
  ShowTheme(u"NormalColor");
  EXPECT_EQ(hosted.control.GetThemeColors(), ColoursOf(u"NORMALCOLOR", true, testing::kSomeWindow));
}

TEST_F(ColorXPCalls, OfAnOwnerWithoutASchemeAreComputed) {
  ShowColours(MakeRgb(255, 255, 255), MakeRgb(192, 192, 192), MakeRgb(0, 0, 128));
  testing::HostedControl hosted;
  EXPECT_EQ(hosted.control.GetThemeColors(), ColoursOf(u""));
}

}  // namespace
}  // namespace marklet
