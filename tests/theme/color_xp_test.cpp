// The colours of a desktop's scheme, by its name.
#include "theme/color_xp.h"

#include <cmath>

#include "theme/scheme_fixture.h"
#include "theme/schemes.h"

namespace marklet {
namespace {

using testing::kSomeWindow;

constexpr COLORREF kWhite = MakeRgb(255, 255, 255), kBlack = 0, kGreen = MakeRgb(0, 255, 0);
constexpr COLORREF Grey(unsigned level) { return MakeRgb(level, level, level); }

class ColorXP : public testing::SchemeTest {
 protected:
  static std::u16string NameAfter(std::u16string scheme, HWND window = nullptr) {
    Compute(scheme, true, window);
    return scheme;
  }
};

constexpr ThemeColours kClassic = {
    MakeRgb(192, 192, 192), MakeRgb(246, 246, 246), MakeRgb(102, 102, 102), MakeRgb(0, 0, 0),
    MakeRgb(166, 166, 166), MakeRgb(0, 0, 0),       MakeRgb(166, 166, 166), MakeRgb(0, 0, 128),
    MakeRgb(173, 173, 209), MakeRgb(202, 202, 202), MakeRgb(186, 186, 186), MakeRgb(246, 246, 246),
    MakeRgb(196, 196, 196), MakeRgb(245, 245, 245), MakeRgb(227, 227, 227), MakeRgb(0, 0, 128),
    MakeRgb(204, 204, 216), MakeRgb(128, 128, 192), MakeRgb(0, 0, 128),     MakeRgb(161, 161, 161),
    MakeRgb(130, 130, 130), MakeRgb(129, 129, 156), MakeRgb(141, 141, 141), MakeRgb(0, 0, 0),
    MakeRgb(0, 0, 0),       MakeRgb(0, 0, 0),       MakeRgb(0, 0, 0),       MakeRgb(227, 227, 227)};

constexpr ThemeColours kNormalColorInMenuStyle = {
    MakeRgb(162, 193, 245), MakeRgb(246, 246, 246), MakeRgb(0, 45, 150),    MakeRgb(0, 0, 0),
    MakeRgb(141, 141, 141), MakeRgb(0, 0, 0),       MakeRgb(106, 140, 203), MakeRgb(0, 0, 128),
    MakeRgb(255, 238, 194), MakeRgb(135, 173, 228), MakeRgb(132, 171, 227), MakeRgb(227, 239, 255),
    MakeRgb(135, 173, 228), MakeRgb(227, 238, 255), MakeRgb(147, 180, 229), MakeRgb(0, 0, 128),
    MakeRgb(255, 192, 111), MakeRgb(254, 128, 62),  MakeRgb(20, 20, 128),   MakeRgb(117, 166, 241),
    MakeRgb(4, 57, 148),    MakeRgb(255, 192, 111), MakeRgb(106, 141, 204), MakeRgb(0, 0, 0),
    MakeRgb(0, 0, 0),       MakeRgb(0, 0, 0),       MakeRgb(0, 0, 0),       MakeRgb(255, 251, 233),
    MakeRgb(99, 138, 222),  MakeRgb(0, 56, 148),    MakeRgb(255, 255, 255), MakeRgb(90, 138, 222),
    MakeRgb(16, 65, 156),   MakeRgb(206, 223, 255), MakeRgb(165, 190, 247), MakeRgb(156, 190, 247),
    MakeRgb(214, 231, 255), MakeRgb(123, 166, 231), MakeRgb(255, 235, 156), MakeRgb(247, 154, 24),
    MakeRgb(255, 223, 123), MakeRgb(239, 130, 8),   MakeRgb(255, 255, 222), MakeRgb(255, 195, 90)};

// --- Names ------------------------------------------------------------------------------------------------

TEST_F(ColorXP, LooksUpNamesInCapitalsWithoutTheirSizes) {
  EXPECT_EQ(NameAfter(u"Wheat (large)"), u"WHEAT ");
  EXPECT_EQ(NameAfter(u"wHEAT (Extra Large)"), u"WHEAT ");
  EXPECT_EQ(NameAfter(u"(large)Windows(LARGE) Classic(extra large)"), u"WINDOWS CLASSIC");
  EXPECT_EQ(NameAfter(u""), u"");
}

TEST_F(ColorXP, RemovesEachSizeOnceAndTheLargeOneFirst) {
  EXPECT_EQ(NameAfter(u"(la(large)rge)"), u"(LARGE)") << "what a removal brings together stays";
  EXPECT_EQ(NameAfter(u"(extra (large)large)"), u"") << "what the first brings together goes with the second";
  EXPECT_EQ(NameAfter(u"(extra(extra large) large)"), u"(EXTRA LARGE)");
}

TEST_F(ColorXP, LeavesLettersBeyondAsciiAsTheyAre) { EXPECT_EQ(NameAfter(u"grün"), u"GRüN"); }

TEST_F(ColorXP, FindsASchemeOfAnySizeAndInAnyCase) {
  ShowClassic();
  for (const char16_t* name : {u"Windows Classic", u"WINDOWS CLASSIC (EXTRA LARGE)",
                               u"  windows classic (large)  ", u"WINDOWS (Large)CLASSIC"}) {
    EXPECT_EQ(ColoursOf(name), kClassic) << std::string(name, name + 8);
  }
  for (const char16_t* name : {u"\tWindows Classic", u"Windows  Classic", u"Windows Classic (LARGE", u""}) {
    EXPECT_NE(ColoursOf(name), kClassic);
  }
}

TEST_F(ColorXP, KnowsWheatAmongItsSchemes) {
  for (const char16_t* name : {u"wheat", u"wHeAt (LARGE)", u"WHEAT (EXTRA LARGE)"}) {
    const std::u16string cleaned = NameAfter(name);
    const Scheme* const scheme = SchemeNamed(cleaned.substr(0, cleaned.find(u' ')));
    ASSERT_NE(scheme, nullptr);
    EXPECT_EQ(scheme->name, u"WHEAT");
    EXPECT_EQ(scheme->button_face, MakeRgb(222, 222, 160));
  }
  EXPECT_EQ(SchemeNamed(u"wheat"), nullptr) << "names are compared as they are";
  EXPECT_EQ(SchemeNamed(u""), nullptr);
}

// --- Rows -------------------------------------------------------------------------------------------------

TEST_F(ColorXP, StartsAllBlack) {
  ThemeColours colours;
  colours.fill(1);
  CColorXP().GetColours(colours);
  EXPECT_EQ(colours, ThemeColours{});
}

TEST_F(ColorXP, GivesAShownSchemeItsOwnColours) {
  ShowClassic();
  EXPECT_EQ(ColoursOf(u"Windows Classic"), kClassic);
  EXPECT_EQ(ColoursOf(u"Windows Classic", false), kClassic) << "this one has no menu style";
}

TEST_F(ColorXP, GivesNormalColorInMenuStyleItsOwnColoursAndComputesNone) {
  ShowNormalColor();
  EXPECT_EQ(ColoursOf(u"NormalColor"), kNormalColorInMenuStyle);
  ShowTheme(u"NormalColor");
  EXPECT_EQ(ColoursOf(u"", true, kSomeWindow), kNormalColorInMenuStyle) << "with the theme, too";
}

TEST_F(ColorXP, ComputesTheColoursOfASchemeThatIsNotShown) {
  const COLORREF shown[] = {kWhite, Grey(192), MakeRgb(0, 0, 128)};
  for (int other = 0; other < 3; ++other) {
    COLORREF colours[3];
    for (int i = 0; i < 3; ++i) colours[i] = i == other ? shown[i] ^ 1u : shown[i];
    ShowColours(colours[0], colours[1], colours[2]);
    const ThemeColours computed = ColoursOf(u"Windows Classic");
    EXPECT_NE(computed, kClassic) << other;
    EXPECT_EQ(computed[0], colours[1]) << "the button face";
    EXPECT_EQ(computed[15], colours[2]) << "the highlight";
    for (const std::size_t kept : {10u, 19u, 20u, 23u, 24u})
      EXPECT_EQ(computed[kept], kClassic[kept]) << kept;
  }
}

TEST_F(ColorXP, ComputesTheColoursOfAnUnknownName) {
  ShowClassic();
  for (const char16_t* name : {u"", u"No such scheme", u"normalcolour"}) {
    const ThemeColours computed = ColoursOf(name);
    EXPECT_EQ(computed[0], Grey(192));
    EXPECT_EQ(computed[15], MakeRgb(0, 0, 128));
    EXPECT_EQ(computed[10], MakeRgb(204, 200, 193)) << "of the default row";
    EXPECT_EQ(computed[19], MakeRgb(171, 169, 165));
    EXPECT_EQ(computed[20], Grey(129));
    EXPECT_EQ(computed[23], kBlack);
    EXPECT_EQ(computed[30], kBlack);
  }
}

TEST_F(ColorXP, ComputesTheColoursOfSchemesWithoutColoursOfTheirOwn) {
  ShowColours(kWhite, MakeRgb(222, 222, 160), MakeRgb(128, 128, 0));
  EXPECT_EQ(ColoursOf(u"Wheat"), ColoursOf(u"No such scheme")) << "though it is the one that is shown";
  ShowNormalColor();
  EXPECT_EQ(ColoursOf(u"NormalColor", false), ColoursOf(u"No such scheme", false));
}

TEST_F(ColorXP, KeepsWhatAnEarlierComputationLeftInSlotsThatItDoesntWrite) {
  ShowNormalColor();
  CColorXP color_xp;
  std::u16string normal_color = u"NormalColor", other = u"other";
  color_xp.ComputeColours(normal_color, true, nullptr);
  color_xp.ComputeColours(other, true, nullptr);
  EXPECT_EQ(color_xp.Fields().Colours[43], kNormalColorInMenuStyle[43]);
}

// --- Themes -----------------------------------------------------------------------------------------------

TEST_F(ColorXP, TakesTheNameOfTheWindowsThemeForTheSchemes) {
  ShowClassic();
  ShowTheme(u"Windows Classic");
  EXPECT_EQ(NameAfter(u"Wheat", kSomeWindow), u"WINDOWS CLASSIC");
  EXPECT_EQ(ColoursOf(u"Wheat", true, kSomeWindow), kClassic);
  EXPECT_NE(ColoursOf(u"Wheat", true, nullptr), kClassic) << "no window, no theme";
  ShowTheme(u"Wheat");
  EXPECT_NE(ColoursOf(u"Windows Classic", true, kSomeWindow), kClassic);
  EXPECT_EQ(ColoursOf(u"Windows Classic", true, nullptr), kClassic);
}

TEST_F(ColorXP, LeavesASizeInTheNameOfATheme) {
  ShowTheme(u"Windows Classic (Large)");
  EXPECT_EQ(NameAfter(u"Wheat", kSomeWindow), u"WINDOWS CLASSIC (LARGE)");
}

TEST_F(ColorXP, AsksForThemesOnWindowsXPButNotOnVista) {
  ShowTheme(u"NormalColor");
  struct System {
    std::uint32_t major, minor, platform;
    bool themed;
  };
  for (const System& system :
       {System{4, 0, 2, false}, System{4, 10, 1, false}, System{5, 0, 2, false}, System{5, 1, 2, true},
        System{5, 2, 2, true}, System{6, 0, 2, false}, System{6, 1, 2, true}, System{10, 0, 2, false}}) {
    const testing::FixedSystem fixed(system.major, system.minor, system.platform);
    EXPECT_EQ(NameAfter(u"Wheat", kSomeWindow), system.themed ? u"NORMALCOLOR" : u"WHEAT")
        << system.major << '.' << system.minor;
  }
}

TEST_F(ColorXP, ReadsTheNamesOfTheThemeUpToTheirFirstNul) {
  ConfiguredTheme() = {.active = true,
                       .names = ThemeConfiguration::Names{std::u16string(u"a\0b", 3), u"Blue", u""}};
  CColorXP color_xp;
  color_xp.ReadThemeNames();
  EXPECT_EQ(color_xp.Fields().ThemeFileName, u"a");
  EXPECT_EQ(color_xp.Fields().ThemeColourName, u"Blue");
  EXPECT_EQ(color_xp.Fields().ThemeSizeName, u"");
  EXPECT_EQ(CColorXP::CutAtNul(std::u16string_view(u"\0a", 2)), u"");
  EXPECT_EQ(CColorXP::CutAtNul(u"abc"), u"abc");
}

TEST_F(ColorXP, EmptiesTheNamesThatCantBeToldAndComputesThen) {
  ShowNormalColor();
  ShowTheme(u"NormalColor");
  CColorXP color_xp;
  std::u16string scheme = u"NormalColor";
  color_xp.ComputeColours(scheme, true, kSomeWindow);
  ConfiguredTheme()->names.reset();
  color_xp.ComputeColours(scheme, true, kSomeWindow);
  EXPECT_EQ(scheme, u"");
  EXPECT_EQ(color_xp.Fields().ThemeFileName, u"");
  EXPECT_EQ(color_xp.Fields().ThemeColourName, u"");
  EXPECT_EQ(color_xp.Fields().ThemeSizeName, u"");
  EXPECT_EQ(color_xp.Fields().Colours[0], MakeRgb(236, 233, 216)) << "computed";
  EXPECT_EQ(color_xp.Fields().Colours[10], MakeRgb(204, 200, 193)) << "over the default row";
}

// --- Colours ----------------------------------------------------------------------------------------------

TEST_F(ColorXP, TranslatesSystemColoursAndNoOthers) {
  Configuration().system_colours[COLOR_BTNFACE] = 0x123456;
  EXPECT_EQ(CColorXP::TranslateSystem(kButtonFace), 0x123456u);
  EXPECT_EQ(CColorXP::TranslateSystem(0xFFFFFFFF), 0xFFFFFFFFu);
  EXPECT_EQ(CColorXP::TranslateSystem(0x654321), 0x654321u);
}

TEST_F(ColorXP, BlendsBothSharesBeforeItRounds) {
  EXPECT_EQ(CColorXP::Blend(Grey(100), Grey(100), 100), Grey(100)) << "where two truncated shares give 99";
  EXPECT_EQ(CColorXP::Blend(kWhite, kBlack, 128), Grey(128));
  EXPECT_EQ(CColorXP::Blend(MakeRgb(1, 2, 3), MakeRgb(4, 5, 6), 255), MakeRgb(1, 2, 3));
  EXPECT_EQ(CColorXP::Blend(MakeRgb(1, 2, 3), MakeRgb(4, 5, 6), 0), MakeRgb(4, 5, 6));
  Configuration().system_colours[COLOR_BTNFACE] = 0x123456;
  EXPECT_EQ(CColorXP::Blend(kButtonFace, kBlack, 255), 0x123456u);
  EXPECT_EQ(CColorXP::Blend(kBlack, kButtonFace, 0), 0x123456u);
}

TEST_F(ColorXP, DarkensUntilTheMeanIsBelow128) {
  const auto darkened = [](OLE_COLOR colour) { return CColorXP::DarkenToReadable(colour); };
  EXPECT_EQ(darkened(Grey(127)), Grey(127));
  EXPECT_EQ(darkened(Grey(128)), Grey(83));
  EXPECT_EQ(darkened(kWhite), Grey(108)) << "166 on the way";
  EXPECT_EQ(darkened(MakeRgb(255, 128, 0)), MakeRgb(255, 128, 0)) << "127 and two thirds, truncated";
  EXPECT_EQ(darkened(MakeRgb(255, 129, 0)), MakeRgb(166, 84, 0));
  EXPECT_EQ(darkened(MakeRgb(255, 10, 130)), MakeRgb(166, 6, 84)) << "6.5 and 84.5 go to the even number";
  EXPECT_EQ(darkened(MakeRgb(255, 30, 110)), MakeRgb(166, 20, 72)) << "19.5 and 71.5 too";
  Configuration().system_colours[COLOR_HIGHLIGHT] = kWhite;
  OLE_COLOR colour = OleColourOf(COLOR_HIGHLIGHT);
  EXPECT_EQ(CColorXP::DarkenToReadable(colour), Grey(108));
  EXPECT_EQ(colour, kWhite) << "translated, and not darkened";
}

// Slot 1 is what a computation leaves there.
class RaisedContrast : public ColorXP {
 protected:
  RaisedContrast() {
    ShowClassic();
    std::u16string scheme = u"Windows Classic";
    color_xp_.ComputeColours(scheme, true, nullptr);
  }
  COLORREF Raised(OLE_COLOR colour, COLORREF reference) const {
    return color_xp_.RaiseContrast(colour, reference);
  }
  // 200 255ths of a channel and 55 of slot 1's 246.
  static unsigned Towards246(unsigned channel) {
    return static_cast<unsigned>(std::nearbyint(channel * 200 / 255.0 + 246 * 55 / 255.0));
  }

  CColorXP color_xp_;
};

TEST_F(RaisedContrast, LeavesColoursOverALightReference) {
  EXPECT_EQ(Raised(kBlack, Grey(102)), kBlack);
  EXPECT_EQ(Raised(kBlack, MakeRgb(102, 102, 104)), kBlack) << "truncated: 102";
  EXPECT_NE(Raised(kBlack, MakeRgb(102, 101, 102)), kBlack) << "truncated: 101";
}

TEST_F(RaisedContrast, LeavesColoursOverTheTwoExemptReferences) {
  EXPECT_EQ(Raised(kBlack, MakeRgb(30, 140, 28)), kBlack);
  EXPECT_NE(Raised(kBlack, MakeRgb(30, 140, 29)), kBlack);
  EXPECT_EQ(Raised(kBlack, MakeRgb(140, 140, 28)), kBlack);
}

TEST_F(RaisedContrast, MovesBrightColoursTowardsSlot1) {
  EXPECT_EQ(Raised(MakeRgb(156, 200, 255), kBlack),
            MakeRgb(Towards246(156), Towards246(200), Towards246(255)));
}

TEST_F(RaisedContrast, TakesWhiteForBlack) {
  const COLORREF raised_white = MakeRgb(Towards246(255), Towards246(255), Towards246(255));
  EXPECT_EQ(Raised(kBlack, kBlack), raised_white);
  EXPECT_EQ(Raised(MakeRgb(1, 1, 0), kBlack), raised_white) << "a mean of 0, truncated";
}

TEST_F(RaisedContrast, EndsWhereTheSearchForALighterColourWouldNot) {
  EXPECT_EQ(Raised(kGreen, kBlack), MakeRgb(Towards246(0), Towards246(255), Towards246(0)));
  EXPECT_EQ(Raised(MakeRgb(1, 1, 1), kBlack), MakeRgb(Towards246(1), Towards246(1), Towards246(1)));
  EXPECT_EQ(Raised(Grey(155), kBlack), MakeRgb(Towards246(155), Towards246(155), Towards246(155)));
}

TEST_F(RaisedContrast, TranslatesASystemColourInItsArgument) {
  Configuration().system_colours[COLOR_BTNTEXT] = 0x123456;
  OLE_COLOR colour = kButtonText;
  EXPECT_EQ(color_xp_.RaiseContrast(colour, kWhite), 0x123456u);
  EXPECT_EQ(colour, 0x123456u);
}

TEST_F(ColorXP, ComputesAHighContrastSchemeToItsEnd) {
  ShowColours(kBlack, kBlack, kGreen, kGreen);
  const ThemeColours computed = ColoursOf(u"High Contrast #1");
  EXPECT_EQ(computed[1], kBlack);
  EXPECT_EQ(computed[3], CColorXP::Blend(kWhite, kBlack, 200)) << "black text over slot 1, which is black";
  ShowColours(kWhite, kBlack, kGreen, kGreen);
  EXPECT_EQ(ColoursOf(u"High Contrast Black")[0], kBlack) << "on a window that isn't black, too";
}

}  // namespace
}  // namespace marklet
