// The desktop's own visual style.
#include "platform/theme.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

#include "platform/win32/handles.h"

namespace marklet {
namespace {

class WindowsTheme : public testing::Test {
 protected:
  WindowsTheme()
      : window_(::CreateWindowExW(0, L"BUTTON", L"", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr, nullptr,
                                  nullptr)) {}
  ~WindowsTheme() override { ::DestroyWindow(window_); }

  // Whether windows have one, by the platform's own answer.
  static bool IsActive() {
    const ::HMODULE library = ::LoadLibraryW(L"uxtheme.dll");
    const auto ask = reinterpret_cast<BOOL(WINAPI*)()>(
        reinterpret_cast<void*>(::GetProcAddress(library, "IsThemeActive")));
    return ask != nullptr && ask();
  }

  ::HWND window_;
};

TEST_F(WindowsTheme, OpensForAWindowWhereOneIsActive) {
  ASSERT_NE(window_, nullptr);
  const HTHEME theme = OpenThemeData(win32::Wrap(window_), u"Button");
  EXPECT_EQ(theme != nullptr, IsActive());
  EXPECT_EQ(CloseThemeData(theme), IsActive());
  EXPECT_EQ(OpenThemeData(win32::Wrap(window_), u"No such class"), nullptr);
  EXPECT_EQ(OpenThemeData(nullptr, u"Button"), nullptr);
}

TEST_F(WindowsTheme, HasNamesWhereOneIsActive) {
  std::array<char16_t, 256> file{}, colour{}, size{};
  ASSERT_EQ(GetCurrentThemeName(file, colour, size), IsActive());
  EXPECT_EQ(std::u16string(file.data()).ends_with(u".msstyles"), IsActive());
  EXPECT_EQ(!std::u16string(colour.data()).empty(), IsActive());
  EXPECT_EQ(!std::u16string(size.data()).empty(), IsActive());
}

}  // namespace
}  // namespace marklet
