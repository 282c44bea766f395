// Questions to Windows itself, and answers that were fixed in advance.
#include "platform/system.h"

#include <gtest/gtest.h>

#include <string>

#include "platform/uniscribe.h"
#include "platform/win32/handles.h"

namespace marklet {
namespace {

using win32::Wrap;

class WindowsSystem : public testing::Test {
 protected:
  WindowsSystem() { Configuration() = {}; }
  ~WindowsSystem() override { Configuration() = {}; }
};

TEST_F(WindowsSystem, AFixedVersionWinsOverTheSystems) {
  OSVERSIONINFOA version;
  ASSERT_TRUE(GetVersionExA(version));
  EXPECT_EQ(version.dwPlatformId, 2u);
  EXPECT_GE(version.dwMajorVersion, 5u);
  Configuration().version = OSVERSIONINFOA{4, 10, 1};
  ASSERT_TRUE(GetVersionExA(version));
  EXPECT_EQ(version, (OSVERSIONINFOA{4, 10, 1}));
}

TEST_F(WindowsSystem, AFixedColourWinsOverTheSystems) {
  EXPECT_EQ(GetSysColor(15), ::GetSysColor(15));
  Configuration().system_colours[15] = 0x123456;
  EXPECT_EQ(GetSysColor(15), 0x123456u);
  EXPECT_EQ(GetSysColor(16), ::GetSysColor(16));
  COLORREF colour = 0;
  ASSERT_TRUE(OleTranslateColor(0x8000000F, colour));
  EXPECT_EQ(colour, 0x123456u);
}

TEST_F(WindowsSystem, ColourIndicesThatDoNotExistAreBlack) {
  for (const int index : {-1, 31, 255, 1000000}) EXPECT_EQ(GetSysColor(index), 0u) << index;
}

TEST_F(WindowsSystem, ColoursThatCannotBeTranslatedLeaveTheResultAlone) {
  COLORREF colour = 7;
  for (const OLE_COLOR wrong : {0x03000000u, 0x10FFFFFFu, 0x81000005u, 0xFFFFFFFFu, 0x8000001Fu, 0x800000FFu})
    EXPECT_FALSE(OleTranslateColor(wrong, colour)) << wrong;
  EXPECT_EQ(colour, 7u);
  EXPECT_TRUE(OleTranslateColor(0x00ABCDEF, colour));
  EXPECT_EQ(colour, 0x00ABCDEFu);
}

TEST_F(WindowsSystem, FixedLibrariesWinOverTheSystems) {
  const auto number = [](HMODULE library) { return reinterpret_cast<std::uintptr_t>(library); };
  EXPECT_GT(number(LoadLibraryA("usp10.dll")), 32u);
  EXPECT_EQ(LoadLibraryA("marklet-has-no-such-library.dll"), nullptr);
  Configuration().libraries["usp10.dll"] = false;
  Configuration().libraries["marklet-has-no-such-library.dll"] = true;
  EXPECT_EQ(LoadLibraryA("usp10.dll"), nullptr);
  EXPECT_GT(number(LoadLibraryA("marklet-has-no-such-library.dll")), 32u);
}

TEST_F(WindowsSystem, LoneSurrogatesBecomeReplacementCharactersInUtf8) {
  EXPECT_EQ(WideCharToMultiByte(CP_UTF8, u"a\xD800z"), "a\xEF\xBF\xBDz");
  EXPECT_EQ(WideCharToMultiByte(CP_UTF8, u"\xDC00"), "\xEF\xBF\xBD");
  EXPECT_EQ(WideCharToMultiByte(CP_UTF8, u"\U0001D400"), "\xF0\x9D\x90\x80");
}

TEST_F(WindowsSystem, InvalidUtf8BecomesReplacementCharacters) {
  EXPECT_EQ(MultiByteToWideChar(CP_UTF8, "a\xFFz"), u"a\uFFFDz");
  EXPECT_EQ(MultiByteToWideChar(CP_UTF8, "\xE2\x82\xAC"), u"\u20AC");
}

TEST_F(WindowsSystem, NulsAreCharactersLikeOthers) {
  EXPECT_EQ(WideCharToMultiByte(CP_UTF8, std::u16string_view(u"a\0b", 3)), std::string("a\0b", 3));
  EXPECT_EQ(MultiByteToWideChar(CP_ACP, std::string_view("a\0b", 3)), std::u16string(u"a\0b", 3));
}

TEST_F(WindowsSystem, NothingIsConvertedToNothing) {
  EXPECT_EQ(WideCharToMultiByte(CP_ACP, u""), "");
  EXPECT_EQ(MultiByteToWideChar(CP_UTF8, ""), u"");
  EXPECT_EQ(MultiByteToWideChar(4711, "abc"), u"") << "a code page that doesn't exist";
}

TEST_F(WindowsSystem, ComplexScriptsAreToldFromSimpleOnes) {
  EXPECT_EQ(ScriptIsComplex(u"plain", SIC_COMPLEX), S_FALSE);
  EXPECT_EQ(ScriptIsComplex(u"\u05E9\u05DC\u05D5\u05DD", SIC_COMPLEX), S_OK);
  EXPECT_EQ(ScriptIsComplex(u"", SIC_COMPLEX), S_FALSE);
}

// A window that takes its text in a subclass of its own unless the default procedure is asked directly.
LRESULT CALLBACK RefuseText(::HWND window, UINT message, WPARAM wide, LPARAM pointer) {
  return message == WM_SETTEXT ? FALSE : ::DefWindowProcW(window, message, wide, pointer);
}

class WindowWithoutText {
 public:
  WindowWithoutText() {
    WNDCLASSW kind{};
    kind.lpfnWndProc = RefuseText;
    kind.hInstance = GetModuleHandleW(nullptr);
    kind.lpszClassName = L"MarkletRefusesText";
    RegisterClassW(&kind);
    window_ = CreateWindowExW(0, kind.lpszClassName, L"", WS_OVERLAPPED, 0, 0, 10, 10, nullptr, nullptr,
                              kind.hInstance, nullptr);
  }
  ~WindowWithoutText() {
    DestroyWindow(window_);
    UnregisterClassW(L"MarkletRefusesText", GetModuleHandleW(nullptr));
  }
  WindowWithoutText(const WindowWithoutText&) = delete;
  WindowWithoutText& operator=(const WindowWithoutText&) = delete;

  HWND Handle() const { return Wrap(window_); }
  std::u16string Text() const {
    wchar_t text[64] = {};
    GetWindowTextW(window_, text, 64);
    return Wrap(text);
  }

 private:
  ::HWND window_;
};

TEST_F(WindowsSystem, AWindowsTextIsSetPastItsOwnProcedure) {
  const WindowWithoutText window;
  ASSERT_NE(window.Handle(), nullptr);
  EXPECT_TRUE(DefWindowProcW_SetText(window.Handle(), u"Ω title"));
  EXPECT_EQ(window.Text(), u"Ω title");
  EXPECT_TRUE(DefWindowProcA_SetText(window.Handle(), "caf\xE9"));
  EXPECT_EQ(window.Text(), u"caf\u00E9") << "code page 1252";
  EXPECT_FALSE(DefWindowProcW_SetText(nullptr, u"x"));
  EXPECT_FALSE(DefWindowProcA_SetText(nullptr, "x"));
}

}  // namespace
}  // namespace marklet
