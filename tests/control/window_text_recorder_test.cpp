// The window's own text, which screen readers and window lists show.
#include <gtest/gtest.h>

#include "platform/headless/system/window.h"
#include "support/fake_host.h"

namespace marklet {
namespace {

using testing::FixedSystem;
using testing::HostedControl;

struct WindowText : ::testing::Test {
  WindowHandle window;
  HostedControl hosted;
  void SetUp() override {
    hosted.Init();
    hosted.host.window = &window;
  }
};

TEST_F(WindowText, IsTheCaptionsSourceWithItsTags) {
  const FixedSystem windows7;
  hosted.Set("Caption", std::u16string(u"<b>\u0395</b> &x"));
  EXPECT_EQ(window.text, u"<b>\u0395</b> &x");
}

TEST_F(WindowText, IsTheRepairedText) {
  const FixedSystem windows7;
  hosted.Set("Caption", std::u16string(u"f\u00C3\u00BCnf"));
  EXPECT_EQ(window.text, u"f\u00FCnf");
}

TEST_F(WindowText, GoesThroughBytesOnSystemsWithoutUnicodeWindows) {
  const FixedSystem windows98(4, 10, 1);
  hosted.Set("Caption", std::u16string(u"caf\u00E9 \u0395"));
  EXPECT_EQ(window.text, u"caf\u00E9 ?") << "a letter that the code page lacks is lost";
}

TEST_F(WindowText, IsGivenBeforeTheKeysAndTheRepaint) {
  const FixedSystem windows7;
  std::u16string at_repaint;
  hosted.host.on_enabled_asked = [&] { at_repaint = window.text; };
  hosted.Set("Caption", std::u16string(u"new"));
  EXPECT_EQ(at_repaint, u"new");
}

TEST_F(WindowText, InitPropertiesGivesTheDisplayName) {
  const FixedSystem windows7;
  hosted.host.ambient.display_name = u"Marklet1";
  hosted.control.InitProperties();
  EXPECT_EQ(window.text, u"Marklet1");
}

}  // namespace
}  // namespace marklet
