// The control in containers of the system's: the ATL host window and the script host.
#include "activex/server.h"

namespace ocx_test {
namespace {

// --- AtlAxWin100 ------------------------------------------------------------------------------------------

class AtlHost : public ::testing::Test {
 protected:
  void SetUp() override {
    Server::Get();
    library_ = LoadLibraryW(L"atl100.dll");
    if (!library_) GTEST_SKIP() << "the system has no atl100.dll";
    // Registers the window class, which works once a program.
    static const bool initialised = Entry<BOOL WINAPI()>("AtlAxWinInit")() != FALSE;
    ASSERT_TRUE(initialised);
    parent_ =
        CreateWindowExW(0, L"Static", L"", WS_POPUP, 50, 50, 300, 200, nullptr, nullptr, nullptr, nullptr);
    ShowWindow(parent_, SW_SHOWNOACTIVATE);
    host_ = CreateWindowExW(0, L"AtlAxWin100", L"", WS_CHILD | WS_VISIBLE, 20, 10, 180, 60, parent_, nullptr,
                            nullptr, nullptr);
    ASSERT_TRUE(host_);
  }
  void TearDown() override {
    if (parent_) DestroyWindow(parent_);
    PumpMessages();
    EXPECT_EQ(S_OK, Server::Get().CanUnloadNow());
  }

  template <typename Function>
  Function* Entry(const char* name) {
    return reinterpret_cast<Function*>(reinterpret_cast<void (*)()>(GetProcAddress(library_, name)));
  }

  // The host takes a control that has been started off.
  HRESULT Attach(IUnknown* control) {
    EXPECT_EQ(S_OK, As<IPersistStreamInit>(control)->InitNew());
    ComPtr<IUnknown> container;
    return Entry<HRESULT WINAPI(IUnknown*, HWND, IUnknown**)>("AtlAxAttachControl")(control, host_,
                                                                                    container.GetAddressOf());
  }

  HMODULE library_ = nullptr;
  HWND parent_ = nullptr, host_ = nullptr;
};

TEST_F(AtlHost, ShowsTheControl) {
  const ComPtr<IUnknown> control = CreateControl();
  ASSERT_EQ(S_OK, Attach(control.Get()));
  const HWND window = GetWindow(host_, GW_CHILD);
  ASSERT_TRUE(window);
  EXPECT_TRUE(IsWindowVisible(window));
  const auto object = As<IDispatch>(control);
  EXPECT_EQ(static_cast<long>(reinterpret_cast<LONG_PTR>(window)), GetNumber(object.Get(), L"hwnd"));
  PutNumber(object.Get(), L"BackColor", 0x0000FF);
  PutNumber(object.Get(), L"ForeColor", 0x00FFFF);
  PutText(object.Get(), L"Caption", L"<b>hosted</b>");
  const HDC dc = GetDC(window);
  EXPECT_EQ(0x0000FFu, GetPixel(dc, 170, 55));
  int text = 0;
  for (int y = 0; y < 20; ++y)
    for (int x = 0; x < 60; ++x) text += GetPixel(dc, x, y) == 0x00FFFF;
  EXPECT_GT(text, 20);
  ReleaseDC(window, dc);
}

TEST_F(AtlHost, SizesTheControlWithItsWindow) {
  const ComPtr<IUnknown> control = CreateControl();
  ASSERT_EQ(S_OK, Attach(control.Get()));
  MoveWindow(host_, 0, 0, 222, 111, TRUE);
  RECT client = {};
  GetClientRect(GetWindow(host_, GW_CHILD), &client);
  EXPECT_EQ(222, client.right);
  EXPECT_EQ(111, client.bottom);
}

TEST_F(AtlHost, AutoSizeChangesTheWindowThoughTheHostIgnoresTheWish) {
  const ComPtr<IUnknown> control = CreateControl();
  ASSERT_EQ(S_OK, Attach(control.Get()));
  const auto object = As<IDispatch>(control);
  PutByName(object.Get(), L"WordWrap", Variant::Bool(false));
  PutText(object.Get(), L"Caption", L"W");
  PutByName(object.Get(), L"AutoSize", Variant::Bool(true));
  RECT client = {};
  GetClientRect(GetWindow(host_, GW_CHILD), &client);
  EXPECT_LT(client.right, 60);
}

TEST_F(AtlHost, GoesWithItsWindow) {
  ComPtr<IUnknown> control = CreateControl();
  ASSERT_EQ(S_OK, Attach(control.Get()));
  const auto object = As<IDispatch>(control);
  DestroyWindow(host_);
  PutText(object.Get(), L"Caption", L"still here");
  EXPECT_EQ(L"still here", GetText(object.Get(), L"Caption"));
  EXPECT_EQ(0, GetNumber(object.Get(), L"hwnd"));
}

// --- Scripts ----------------------------------------------------------------------------------------------

// Runs a script of ours with the script host and gives what it printed. A script prints "ok" last.
std::string RunScript(const std::wstring& name) {
  SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
  HANDLE read = nullptr, write = nullptr;
  CreatePipe(&read, &write, &inherited, 0);
  SetHandleInformation(read, HANDLE_FLAG_INHERIT, 0);
  STARTUPINFOW start = {};
  start.cb = sizeof start;
  start.dwFlags = STARTF_USESTDHANDLES;
  start.hStdOutput = start.hStdError = write;
  std::wstring command = L"cscript.exe //nologo \"" + ScriptsPath() + L"\\" + name + L"\"";
  PROCESS_INFORMATION process = {};
  std::string output;
  if (!CreateProcessW(nullptr, command.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start, &process))
    output = "cscript could not be started";
  CloseHandle(write);
  char buffer[512];
  DWORD count = 0;
  while (ReadFile(read, buffer, sizeof buffer, &count, nullptr) && count) output.append(buffer, count);
  CloseHandle(read);
  if (!process.hProcess) return output;
  WaitForSingleObject(process.hProcess, 60000);
  CloseHandle(process.hProcess);
  CloseHandle(process.hThread);
  std::erase(output, '\r');
  return output;
}

class Scripts : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_EQ(S_OK, Server::Get().Register()); }
  void TearDown() override { Server::Get().Unregister(); }
};

TEST_F(Scripts, VBScriptSetsAndReadsEveryProperty) { EXPECT_EQ("ok\n", RunScript(L"properties.vbs")); }
TEST_F(Scripts, VBScriptUsesFonts) { EXPECT_EQ("ok\n", RunScript(L"fonts.vbs")); }
TEST_F(Scripts, VBScriptSeesErrors) { EXPECT_EQ("ok\n", RunScript(L"errors.vbs")); }

}  // namespace
}  // namespace ocx_test
