// CNonClientFont with the system's own answers.
#include <gtest/gtest.h>

#include <cstring>

#include "markup/canvas.h"
#include "platform/win32/sdk.h"
#include "text/non_client_font.h"

namespace marklet {
namespace {

bool Same(const CNonClientFont::FontRecord& record, const ::LOGFONTA& native) {
  return std::memcmp(&record.font, &native, sizeof native) == 0;
}

TEST(NonClientFontOfTheSystem, IsWhatTheSystemTells) {
  ::NONCLIENTMETRICSA metrics{};
  metrics.cbSize = 340;
  ASSERT_TRUE(::SystemParametersInfoA(41, 340, &metrics, 0));
  ::LOGFONTA icon_title{};
  ASSERT_TRUE(::SystemParametersInfoA(31, 60, &icon_title, 0));

  CNonClientFont fonts;
  EXPECT_TRUE(fonts.GetMetrics());
  EXPECT_EQ(fonts.CaptionHeight(), metrics.iCaptionHeight);
  EXPECT_EQ(fonts.SMCaptionWIdth(), metrics.iSmCaptionWidth);
  EXPECT_EQ(fonts.BorderWidth(), metrics.iBorderWidth);
  EXPECT_GT(fonts.MenuHeight(), 0);
  EXPECT_TRUE(Same(fonts.LogFont(1), icon_title));
  EXPECT_TRUE(Same(fonts.LogFont(2), metrics.lfCaptionFont));
  EXPECT_TRUE(Same(fonts.LogFont(6), metrics.lfMessageFont));
  const Canvas canvas(10, 10);
  for (Long which = 1; which <= 6; ++which) {
    const FontRef font = fonts.Font(canvas.dc(), which);
    EXPECT_GT(font->Size(), 0);
    EXPECT_FALSE(font->Name().empty());
  }
}

}  // namespace
}  // namespace marklet
