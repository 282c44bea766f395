// Plain captions in many scripts: whichever route a system draws them by, they look the same.
#include <gtest/gtest.h>

#include "markup/canvas.h"
#include "markup/markup_caption.h"
#include "text/system_fixture.h"

namespace marklet {
namespace {

constexpr std::u16string_view kCaptions[] = {
    u"\u0645\u0631\u062D\u0628\u0627 123 (\u0646\u0635)",      // Arabic
    u"\u05E9\u05DC\u05D5\u05DD, \u05E2\u05D5\u05DC\u05DD 12",  // Hebrew
    u"\u0928\u092E\u0938\u094D\u0924\u0947",                   // Devanagari
    u"\u0E2A\u0E27\u0E31\u0E2A\u0E14\u0E35",                   // Thai
    u"\u4F60\u597D",                                           // Chinese
    u"\uC548\uB155",                                           // Korean
    u"\U0001F600 x",                                           // beyond the basic plane
    u"x\u0304 a\u0310",                                        // combining marks
    u"The word \u05E9\u05DC\u05D5\u05DD means peace",          // both directions
};

using EverySystem = SystemTest;

TEST_F(EverySystem, DrawsPlainCaptionsOfEveryScriptAlike) {
  const Canvas canvas(260, 40);
  const auto drawn = [&](std::u16string_view caption, bool right_to_left) {
    canvas.Fill(0xFF);
    SetTextAlign(canvas.dc(), 0);
    CaptionStyle style;
    style.ForeColor = 0;
    style.SingleLine = true;
    style.RightToLeft = right_to_left;
    RECT rect = {10, 5, 250, 40};
    DrawMarkupCaption(canvas.dc(), caption, rect, style);
    return canvas.Pixels();
  };
  for (const std::u16string_view caption : kCaptions) {
    for (const bool right_to_left : {false, true}) {
      SCOPED_TRACE(testing::PrintToString(std::u16string(caption)) + (right_to_left ? " rtl" : ""));
      Play(kWindows10, true);
      const auto newest = drawn(caption, right_to_left);
      canvas.Fill(0xFF);
      EXPECT_NE(newest, canvas.Pixels());
      for (const OSVERSIONINFOA& version : {kWindows98, kNt4, kWindows2000, kXp, kVista}) {
        Play(version, true);
        EXPECT_EQ(drawn(caption, right_to_left), newest)
            << version.dwMajorVersion << '.' << version.dwMinorVersion;
      }
    }
  }
}

}  // namespace
}  // namespace marklet
