// The error report's message box, answered as a user would.
#include <thread>

#include "plumbing/plumbing_test.h"

namespace marklet::plumbing {
namespace {

std::wstring TextOf(::HWND window) {
  wchar_t text[128] = {};
  ::GetWindowTextW(window, text, 128);
  return text;
}

BOOL CALLBACK KeepText(::HWND window, LPARAM texts) {
  PointerIn<std::vector<std::wstring>*>(texts)->push_back(TextOf(window));
  return TRUE;
}

// The box with that title, once it is there.
::HWND AwaitBox(const wchar_t* title) {
  for (int i = 0; i < 500; ++i) {
    if (const ::HWND box = ::FindWindowW(L"#32770", title); box && ::IsWindowVisible(box)) return box;
    ::Sleep(10);
  }
  return nullptr;
}

TEST(ErrorReport, ShowsTheMessageUntilItIsAnswered) {
  std::thread reporter(
      [] { CSubClassAsm::zError(u"ssc_Subclass", u"Unable to change the window procedure"); });
  const ::HWND box = AwaitBox(L"Error in CSubClassAsm.ssc_Subclass");
  if (!box) {
    reporter.detach();
    FAIL() << "no message box";
  }
  std::vector<std::wstring> texts;
  ::EnumChildWindows(box, KeepText, reinterpret_cast<LPARAM>(&texts));
  EXPECT_NE(texts.end(), std::find(texts.begin(), texts.end(), L"Unable to change the window procedure."));
  ::PostMessageW(box, WM_COMMAND, IDOK, 0);
  reporter.join();
}

}  // namespace
}  // namespace marklet::plumbing
