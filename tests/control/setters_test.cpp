// What each setter stores, does and announces, in which order.
#include <gtest/gtest.h>

#include <algorithm>
#include <bit>

#include "platform/system.h"
#include "support/fake_host.h"

namespace marklet {
namespace {

using testing::FakeHost;
using testing::FixedSystem;
using testing::HostedControl;
using testing::PlacedControl;
using Log = FakeHost::Log;

// One line a property: a value to set and everything that the host sees of it. AutoSize is off, so that the
// one "hDC" of a line is the repaint.
struct Protocol {
  const char* property;
  Value value;
  Log seen;
};

std::vector<Protocol> Protocols() {
  const std::u16string text = u"Text";
  return {
      {"AutoSize", false, {"hDC", "PropertyChanged(AutoSize)"}},
      {"BackColor", Long{0x102030}, {"BackColor(00102030)", "hDC", "PropertyChanged(BackColor)"}},
      {"BackStyle", Long{0}, {"hDC", "PropertyChanged(BackColor)"}},
      {"Appearance", Long{0}, {"hDC", "PropertyChanged(Appearance)"}},
      {"BorderStyle", Long{1}, {"hDC", "PropertyChanged(BorderStyle)"}},
      {"Caption", text, {"AccessKeys()", "hDC", "PropertyChanged(Caption)", "Change"}},
      {"Font", std::make_shared<StdFont>(), {"Font", "hDC", "PropertyChanged(Font)"}},
      {"FontBold", true, {"Font", "hDC", "PropertyChanged(Font)"}},
      {"FontItalic", true, {"Font", "hDC", "PropertyChanged(Font)"}},
      {"FontStrikethru", true, {"Font", "hDC", "PropertyChanged(Font)"}},
      {"FontUnderline", true, {"Font", "hDC", "PropertyChanged(Font)"}},
      {"FontName", text, {"Font", "hDC", "PropertyChanged(Font)"}},
      {"FontSize", Long{12}, {"Font", "hDC", "PropertyChanged(Font)"}},
      {"ForeColor", Long{1}, {"hDC", "PropertyChanged(ForeColor)"}},
      {"EffectColor", Long{1}, {"hDC", "PropertyChanged(EffectColor)"}},
      {"ImageKey", text, {"hDC", "PropertyChanged(ImageKey)"}},
      {"ImageKeyhover", text, {"hDC", "PropertyChanged(ImageKeyHover)"}},
      {"UseMnemonic", false, {"AccessKeys()", "PropertyChanged(UseMnemonic)"}},
      {"UniToolTipText", text, {"PropertyChanged(UniTooltipText)"}},
      {"TextEffect", Long{2}, {"hDC", "PropertyChanged(TextEffect)"}},
      {"Enabled", false, {"Enabled(0)", "hDC", "PropertyChanged(Enabled)"}},
      {"WordWrap", false, {"hDC", "PropertyChanged(WordWrap)"}},
      {"ImageAlignment", Long{1}, {"hDC", "PropertyChanged(ImageAlignment)"}},
      {"ImageSize", Long{3}, {"hDC", "PropertyChanged(ImageSize)"}},
      {"hwnd", Long{7}, {}},
      {"MouseIcon", HostObjectRef(), {"MouseIcon"}},
      {"MousePointer", Long{99}, {"MousePointer(99)"}},
  };
}

TEST(Setters, EachDoesAndAnnouncesWhatIsKnownOfItInOrder) {
  const FixedSystem windows7;
  const auto protocols = Protocols();
  ASSERT_EQ(protocols.size(), Properties().size());
  for (const Protocol& protocol : protocols) {
    PlacedControl hosted;
    hosted.Set(protocol.property, protocol.value);
    EXPECT_EQ(hosted.host.log, protocol.seen) << protocol.property;
  }
}

TEST(Setters, EachValueReadsBack) {
  const FixedSystem windows7;
  for (const Protocol& protocol : Protocols()) {
    const std::string_view name = protocol.property;
    if (name == "hwnd" || name == "Font") continue;
    PlacedControl hosted;
    hosted.Set(name, protocol.value);
    EXPECT_EQ(hosted.Get(name), protocol.value) << name;
  }
}

// A control that fits itself to its caption.
struct FittingControl : PlacedControl {
  FittingControl() {
    State().Caption = u"Caption";
    State().AutoSize = true;
  }
};

Log SeenUnderAutoSize(const Protocol& protocol) {
  FittingControl hosted;
  const std::string_view name = protocol.property;
  hosted.Set(name, name == "AutoSize" ? Value(true) : protocol.value);
  return hosted.host.log;
}

bool SetsHeight(std::string_view line) { return line.starts_with("Height("); }

// With AutoSize on, these measure (one more context asked for) and size the control before the repaint.
TEST(Setters, SevenKindsOfSetterMeasureUnderAutoSize) {
  const FixedSystem windows7;
  for (const Protocol& protocol : Protocols()) {
    const std::string_view name = protocol.property;
    const bool measures = name == "AutoSize" || name == "Caption" || name.starts_with("Font") ||
                          name == "ImageKey" || name == "WordWrap" || name == "ImageSize";
    const Log seen = SeenUnderAutoSize(protocol);
    EXPECT_EQ(std::ranges::count_if(seen, SetsHeight), measures ? 1 : 0) << name;
  }
}

// The measuring, the sizing and the repaint that goes with them stand before the setter's own repaint; the
// announcement comes last.
TEST(Setters, MeasuringComesBeforeTheRepaintAndTheAnnouncementAfterIt) {
  const FixedSystem windows7;
  for (const Protocol& protocol : Protocols()) {
    const std::string_view name = protocol.property;
    const Log log = SeenUnderAutoSize(protocol);
    if (std::ranges::none_of(log, SetsHeight)) {
      EXPECT_EQ(log, protocol.seen) << name;
      continue;
    }
    Log expected;
    for (const std::string& line : protocol.seen) {
      if (line == "hDC") {
        expected.push_back("hDC");  // the measuring
        if (name == "WordWrap") expected.push_back("Width");
        expected.insert(expected.end(), {"Height", "hDC"});
      }
      expected.push_back(line);
    }
    Log seen;
    for (const std::string& line : log) {
      const bool sizes = line.starts_with("Width(") || line.starts_with("Height(");
      seen.push_back(sizes ? line.substr(0, line.find('(')) : line);
    }
    EXPECT_EQ(seen, expected) << name;
  }
}

TEST(Setters, EachButFourDropsThePictureAndLeavesANewOne) {
  const FixedSystem windows7;
  for (const Protocol& protocol : Protocols()) {
    const std::string_view name = protocol.property;
    PlacedControl hosted;
    hosted.control.RedrawNow();
    const auto before = hosted.State().BackBuffer;
    ASSERT_TRUE(before);
    hosted.Set(name, protocol.value);
    const bool keeps = name == "UseMnemonic" || name == "UniToolTipText" || name == "MouseIcon" ||
                       name == "MousePointer" || name == "hwnd";
    EXPECT_EQ(hosted.State().BackBuffer == before, keeps) << name;
    EXPECT_TRUE(hosted.State().BackBuffer) << name;
  }
}

TEST(Setters, HiddenPropertiesFollowTheSameProtocolUnderTheirOwnNames) {
  PlacedControl hosted;
  const Value values[] = {Long{4}, true, Long{2}, Long{3}};
  for (std::size_t i = 0; i < 4; ++i) {
    const PropertyRow& row = HiddenProperties()[i];
    hosted.control.Set(row, values[i]);
    EXPECT_EQ(hosted.host.TakeLog(), (Log{"hDC", "PropertyChanged(" + std::string(row.name) + ")"}));
    EXPECT_EQ(hosted.control.Get(row), values[i]);
  }
  EXPECT_EQ(hosted.State().Padding, 4);
  EXPECT_TRUE(hosted.State().RightToLeft);
  EXPECT_EQ(hosted.State().Alignment, 2);
  EXPECT_EQ(hosted.State().VerticalAlignment, 3);
}

TEST(Setters, PaddingMeasuresUnderAutoSize) {
  FittingControl hosted;
  hosted.control.Set(HiddenProperties()[0], Long{4});
  EXPECT_EQ(hosted.host.log[0], "hDC");
  EXPECT_TRUE(SetsHeight(hosted.host.log[1]));
}

TEST(Setters, BackStyleAnnouncesBackColorAndNeverItself) {
  PlacedControl hosted;
  hosted.Set("BackStyle", Long{0});
  hosted.Set("BackStyle", Long{1});
  EXPECT_EQ(hosted.host.Announced(), (Log{"BackColor", "BackColor"}));
  EXPECT_EQ(hosted.Number("BackStyle"), 1);
}

TEST(Setters, AppearanceLeavesBackColorAloneWhenItStays) {
  PlacedControl hosted;
  ASSERT_EQ(hosted.Number("Appearance"), 1);
  hosted.Set("BackColor", Long{0x0000FF});
  hosted.host.TakeLog();
  hosted.Set("Appearance", Long{1});
  EXPECT_EQ(hosted.Number("BackColor"), 0x0000FF);
  EXPECT_EQ(hosted.host.log, (Log{"hDC", "PropertyChanged(Appearance)"})) << "it redraws all the same";
}

TEST(Setters, AppearanceOverwritesBackColorWithoutAnnouncingIt) {
  PlacedControl hosted;
  for (const char* name : {"BackColor", "ForeColor", "EffectColor"}) hosted.Set(name, Long{0x0000FF});
  hosted.host.TakeLog();
  hosted.Set("Appearance", Long{0});
  EXPECT_EQ(static_cast<OLE_COLOR>(hosted.Number("BackColor")), 0x80000005u);
  hosted.Set("Appearance", Long{7});
  EXPECT_EQ(static_cast<OLE_COLOR>(hosted.Number("BackColor")), 0x8000000Fu);
  EXPECT_EQ(hosted.host.Announced(), (Log{"Appearance", "Appearance"}));
  EXPECT_EQ(hosted.host.back_color, 0x0000FFu) << "the host's own colour stays";
  EXPECT_FALSE(hosted.State().UsesSystemColors) << "the colour flag isn't updated here";
}

TEST(Setters, ColourFlagFollowsTheThreeColours) {
  PlacedControl hosted;
  EXPECT_TRUE(hosted.State().UsesSystemColors);
  hosted.Set("BackColor", Long{0});
  hosted.Set("ForeColor", Long{0});
  EXPECT_TRUE(hosted.State().UsesSystemColors) << "the effect's colour is still a system colour";
  hosted.Set("EffectColor", Long{0});
  EXPECT_FALSE(hosted.State().UsesSystemColors);
  for (const char* name : {"BackColor", "ForeColor", "EffectColor"}) {
    hosted.Set(name, static_cast<Long>(0x80000008));
    EXPECT_TRUE(hosted.State().UsesSystemColors) << name;
    hosted.Set(name, Long{0xFFFFFF});
    EXPECT_FALSE(hosted.State().UsesSystemColors) << name;
  }
}

// The setter's own repaint looks at the system's colours already.
TEST(Setters, ColourFlagIsUpdatedBeforeTheRepaint) {
  for (const char* name : {"BackColor", "ForeColor", "EffectColor"}) {
    const FixedSystem windows7;
    PlacedControl hosted;
    for (const char* colour : {"BackColor", "ForeColor", "EffectColor"}) hosted.Set(colour, Long{0xFF});
    Configuration().system_colours[15] = 0x00ABCDEF;
    hosted.control.RedrawNow();
    ASSERT_NE(hosted.State().SystemColorCache[0], 0x00ABCDEFu);
    hosted.Set(name, static_cast<Long>(0x80000012));
    EXPECT_EQ(hosted.State().SystemColorCache[0], 0x00ABCDEFu) << name;
  }
}

TEST(Setters, EnabledIsReadFromTheHost) {
  PlacedControl hosted;
  EXPECT_TRUE(hosted.Flag("Enabled"));
  hosted.host.enabled = false;
  EXPECT_FALSE(hosted.Flag("Enabled"));
}

TEST(Setters, ImageSizeOutOfRangeIsKeptAndMeansSixteenPixels) {
  PlacedControl hosted;
  const Long pixels[] = {16, 24, 32, 48, 72, 96, 128, 256};
  for (Long size = 0; size < 8; ++size) {
    hosted.Set("ImageSize", size);
    EXPECT_EQ(hosted.State().ImagePixels, pixels[size]);
  }
  for (const Long size : {9, 8, -1, 2147483647}) {
    hosted.Set("ImageSize", Long{5});
    hosted.Set("ImageSize", size);
    EXPECT_EQ(hosted.Number("ImageSize"), size);
    EXPECT_EQ(hosted.State().ImagePixels, 16);
  }
}

TEST(Setters, NoEnumerationIsChecked) {
  PlacedControl hosted;
  for (const char* name : {"BackStyle", "Appearance", "BorderStyle", "TextEffect", "ImageAlignment"}) {
    for (const Long value : {77, -5}) {
      hosted.Set(name, value);
      EXPECT_EQ(hosted.Number(name), value) << name;
    }
  }
}

TEST(Setters, AValueOfAnotherTypeIsIgnoredWhole) {
  PlacedControl hosted;
  const std::u16string text = u"1";
  hosted.Set("Caption", Long{5});
  hosted.Set("AutoSize", Long{-1});
  hosted.Set("ImageSize", text);
  hosted.Set("Font", text);
  hosted.Set("MouseIcon", Long{0});
  hosted.Set("BackColor", Value());
  EXPECT_TRUE(hosted.host.log.empty());
  EXPECT_EQ(hosted.Text("Caption"), u"");
}

TEST(Setters, HwndIsTheHostsWindow) {
  HostedControl hosted;
  EXPECT_EQ(hosted.Number("hwnd"), 0);
  hosted.host.window = std::bit_cast<HWND>(std::intptr_t{0x1234});
  EXPECT_EQ(hosted.Number("hwnd"), 0x1234);
}

TEST(Setters, MouseIconGoesToTheHostAndComesBackUnread) {
  HostedControl hosted;
  const auto icon = std::make_shared<HostObject>();
  hosted.Set("MouseIcon", HostObjectRef(icon));
  EXPECT_EQ(hosted.host.mouse_icon, icon);
  EXPECT_EQ(hosted.Get("MouseIcon"), Value(HostObjectRef(icon)));
}

// --- Caption ----------------------------------------------------------------------------------------------

TEST(Caption, RaisesChangeAndNothingElseDoes) {
  const FixedSystem windows7;
  for (const Protocol& protocol : Protocols()) {
    PlacedControl hosted;
    hosted.Set(protocol.property, protocol.value);
    const bool changed = !hosted.host.log.empty() && hosted.host.log.back() == "Change";
    EXPECT_EQ(changed, std::string_view(protocol.property) == "Caption") << protocol.property;
  }
}

TEST(Caption, RaisesChangeForTheSameTextToo) {
  PlacedControl hosted;
  hosted.Set("Caption", std::u16string());
  hosted.Set("Caption", std::u16string());
  EXPECT_EQ(std::count(hosted.host.log.begin(), hosted.host.log.end(), "Change"), 2);
}

TEST(Caption, BytesOfUtf8AreRepaired) {
  PlacedControl hosted;
  // Each byte arrives as one character.
  hosted.Set("Caption", std::u16string(u"f\u00C3\u00BCnf \u00C3\u00A9t\u00C3\u00A9s"));
  EXPECT_EQ(hosted.State().Caption, u"f\u00FCnf \u00E9t\u00E9s");
  hosted.Set("UniToolTipText", std::u16string(u"Gr\u00C3\u00BCn"));
  EXPECT_EQ(hosted.State().UniToolTipText, u"Gr\u00FCn");
}

TEST(Caption, TheKeyIsFoundInTheStoredTextWhenMnemonicsAreOn) {
  PlacedControl hosted;
  hosted.Set("Caption", std::u16string(u"Save &As"));
  EXPECT_EQ(hosted.host.access_keys, u"A");
  hosted.State().UseMnemonic = false;
  hosted.Set("Caption", std::u16string(u"E&xit"));
  EXPECT_EQ(hosted.host.access_keys, u"A") << "without mnemonics the keys aren't touched";
}

TEST(Caption, DesignersGetAPlaceholderForTextsBeyondPlainLatin) {
  PlacedControl hosted;
  for (const char* name : {"Caption", "UniToolTipText"}) {
    hosted.host.ambient.user_mode = true;
    hosted.Set(name, std::u16string(u"\u0395\u03BB\u03BB\u03AC\u03B4\u03B1"));
    EXPECT_EQ(hosted.Text(name), u"\u0395\u03BB\u03BB\u03AC\u03B4\u03B1");
    hosted.host.ambient.user_mode = false;
    EXPECT_EQ(hosted.Text(name), u"(Unicode Text)");
    hosted.Set(name, std::u16string(u"plain"));
    EXPECT_EQ(hosted.Text(name), u"plain");
  }
}

TEST(Caption, ThePlaceholderAsksTheHostAndNotTheDesignModeField) {
  PlacedControl hosted;
  hosted.Set("Caption", std::u16string(u"\u03A9"));
  hosted.State().DesignMode = true;
  EXPECT_EQ(hosted.Text("Caption"), u"\u03A9");
}

// Units of 0x8000 and above count as negative, so that a text of nothing else passes for plain.
TEST(Caption, HangulTextIsNoReasonForThePlaceholder) {
  PlacedControl hosted;
  hosted.host.ambient.user_mode = false;
  hosted.Set("Caption", std::u16string(u"\uD55C\uAE00"));
  EXPECT_EQ(hosted.Text("Caption"), u"\uD55C\uAE00");
}

TEST(ToolTip, AnEmptyTextIsStoredAndAnnouncedAndNoMore) {
  PlacedControl hosted;
  hosted.Set("UniToolTipText", std::u16string(u"tip"));
  hosted.host.TakeLog();
  hosted.Set("UniToolTipText", std::u16string());
  EXPECT_EQ(hosted.Text("UniToolTipText"), u"");
  EXPECT_EQ(hosted.host.log, (Log{"PropertyChanged(UniTooltipText)"}));
}

// --- Access keys ------------------------------------------------------------------------------------------

TEST(AccessKeys, UseMnemonicOffClearsThemAndKeepsTheAmpersand) {
  PlacedControl hosted;
  hosted.Set("Caption", std::u16string(u"&Open"));
  ASSERT_EQ(hosted.host.access_keys, u"O");
  hosted.Set("UseMnemonic", false);
  EXPECT_EQ(hosted.host.access_keys, u"");
  EXPECT_EQ(hosted.Text("Caption"), u"&Open");
  hosted.Set("UseMnemonic", true);
  EXPECT_EQ(hosted.host.access_keys, u"O");
}

TEST(AccessKeys, ACaptionThatEndsInAnAmpersandGivesNone) {
  PlacedControl hosted;
  hosted.Set("Caption", std::u16string(u"Save &"));
  EXPECT_EQ(hosted.host.access_keys, u"");
}

TEST(AccessKeys, TheScanKnowsNoMarkup) {
  PlacedControl hosted;
  hosted.Set("Caption", std::u16string(u"<f=A&B>E&xit</f>"));
  EXPECT_EQ(hosted.host.access_keys, u"B");
}

TEST(AccessKeys, ADoubledAmpersandIsTheKey) {
  PlacedControl hosted;
  hosted.Set("Caption", std::u16string(u"a && b &c"));
  EXPECT_EQ(hosted.host.access_keys, u"&");
}

TEST(AccessKeys, TheKeyKeepsItsCase) {
  PlacedControl hosted;
  hosted.Set("Caption", std::u16string(u"&quit"));
  EXPECT_EQ(hosted.host.access_keys, u"q");
}

TEST(AccessKeys, TheScanEndsOnANonCharacter) {
  PlacedControl hosted;
  hosted.Set("Caption", std::u16string(u"&\uFFFF &x"));
  EXPECT_EQ(hosted.host.access_keys, u"");
}

// --- Font -------------------------------------------------------------------------------------------------

TEST(Font, PutMakesADeepCopy) {
  PlacedControl hosted;
  const auto given = std::make_shared<StdFont>();
  given->PutName(u"Arial");
  given->PutSize(14.25);
  given->PutWeight(300);
  given->PutItalic(true);
  given->PutStrikethrough(true);
  given->PutUnderline(true);
  given->PutCharset(161);
  hosted.Set("Font", FontRef(given));
  const FontRef held = std::get<FontRef>(hosted.Get("Font"));
  EXPECT_NE(held, given);
  EXPECT_EQ(held->Name(), u"Arial");
  EXPECT_EQ(held->Size(), 14.25);
  EXPECT_EQ(held->Weight(), 300) << "a weight that is neither regular nor bold survives";
  EXPECT_TRUE(held->Italic());
  EXPECT_TRUE(held->Strikethrough());
  EXPECT_TRUE(held->Underline());
  EXPECT_EQ(held->Charset(), 161);
  given->PutName(u"Courier New");
  EXPECT_EQ(held->Name(), u"Arial");
}

TEST(Font, NoFontLeavesTheFontAndStillRedraws) {
  PlacedControl hosted;
  const FontRef before = hosted.host.font;
  hosted.Set("Font", FontRef());
  EXPECT_EQ(hosted.host.font, before);
  EXPECT_EQ(hosted.host.log, (Log{"Font", "hDC", "PropertyChanged(Font)"}));
}

TEST(Font, EachMemberMakesANewFontAndChangesOnlyItself) {
  PlacedControl hosted;
  const FontRef before = hosted.host.font;
  hosted.Set("FontBold", true);
  EXPECT_NE(hosted.host.font, before);
  EXPECT_EQ(hosted.host.font->Weight(), 700);
  hosted.Set("FontItalic", true);
  hosted.Set("FontStrikethru", true);
  hosted.Set("FontUnderline", true);
  hosted.Set("FontName", std::u16string(u"Verdana"));
  hosted.Set("FontSize", Long{20});
  EXPECT_EQ(hosted.host.font->Weight(), 700);
  EXPECT_TRUE(hosted.host.font->Italic());
  EXPECT_TRUE(hosted.host.font->Strikethrough());
  EXPECT_TRUE(hosted.host.font->Underline());
  EXPECT_EQ(hosted.host.font->Name(), u"Verdana");
  EXPECT_EQ(hosted.host.font->Size(), 20);
  hosted.Set("FontBold", false);
  EXPECT_EQ(hosted.host.font->Weight(), 400);
}

TEST(Font, AMemberSetToWhatItIsMakesANewFontToo) {
  const std::pair<const char*, Value> members[] = {{"FontBold", false},
                                                   {"FontItalic", false},
                                                   {"FontStrikethru", false},
                                                   {"FontUnderline", false},
                                                   {"FontName", std::u16string(u"Tahoma")},
                                                   {"FontSize", Long{8}}};
  for (const auto& [name, value] : members) {
    PlacedControl hosted;
    const FontRef before = hosted.host.font;
    ASSERT_EQ(hosted.Get(name), value) << name;
    hosted.Set(name, value);
    EXPECT_NE(hosted.host.font, before) << name;
  }
}

TEST(Font, AMemberIsSetOnTheFontThatStoodToo) {
  PlacedControl hosted;
  const FontRef before = hosted.host.font;
  hosted.Set("FontItalic", true);
  EXPECT_TRUE(before->Italic());
}

TEST(Font, SizeReadsAsAWholeNumberHalvesToEven) {
  PlacedControl hosted;
  const std::pair<double, Long> sizes[] = {{8.25, 8}, {8.5, 8}, {9.5, 10}, {9.75, 10}};
  for (const auto& [points, whole] : sizes) {
    hosted.host.font->PutSize(points);
    EXPECT_EQ(hosted.Number("FontSize"), whole) << points;
  }
}

// --- What the host passes on ------------------------------------------------------------------------------

TEST(Events, ArePassedOnWithTheirArguments) {
  HostedControl hosted;
  hosted.State().Hover = true;  // so that a move is only a move
  hosted.control.Click();
  hosted.control.DblClick();
  hosted.control.MouseDown(1, 2, 3.5f, 4);
  hosted.control.MouseUp(2, 1, -1, 0.25f);
  hosted.control.MouseMove(0, 4, 10, 20);
  const Log& log = hosted.host.log;
  EXPECT_EQ(log, (Log{"Click", "DblClick", "MouseDown(1,2,3.5,4)", "MouseUp(2,1,-1,0.25)",
                      "MouseMove(0,4,10,20)"}));
}

}  // namespace
}  // namespace marklet
